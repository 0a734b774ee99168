#include "setting.h"

#include <errno.h>
#include <libgen.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#define BRANCH "HKEY_CURRENT_USER\\Software\\Vision Thing\\PSEmu Pro\\"

/* Of a key's path and of a line that holds the setting. */
enum { LONGEST_TEXT = 256 };

static int find_editor(char editor[PATH_MAX]) {
    const char* given = getenv("VELTO_REGEDIT");
    if (given != NULL && *given != '\0') {
        return snprintf(editor, PATH_MAX, "%s", given) < PATH_MAX ? 0 : -1;
    }
    char program[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", program, sizeof program - 1);
    if (length < 0) return -1;
    program[length] = '\0';
    return snprintf(editor, PATH_MAX, "%s/velto-regedit", dirname(program)) < PATH_MAX ? 0 : -1;
}

/* Runs the registry editor to its end: an export of `key`, or a merge if that is NULL. 0 if the
 * work is done.
 */
static int run_editor(const char* file, const char* key) {
    char editor[PATH_MAX];
    if (find_editor(editor) != 0) return -1;
    const pid_t child = fork();
    if (child < 0) return -1;
    if (child == 0) {
        /* There is nothing to export before the first step, which is no reason to complain. */
        if (key != NULL && freopen("/dev/null", "w", stderr) == NULL) _exit(1);
        execlp(editor, editor, key != NULL ? "/E" : "/S", file, key, (char*)NULL);
        perror(editor);
        _exit(1);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) return -1;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? 0 : -1;
}

static unsigned read_setting(const struct DemoSetting* setting, const char* file) {
    char key[LONGEST_TEXT];
    char start[LONGEST_TEXT];
    snprintf(key, sizeof key, BRANCH "%s", setting->key);
    snprintf(start, sizeof start, "\"%s\"=dword:", setting->name);
    unsigned value = setting->usual;
    if (run_editor(file, key) != 0) return value;
    FILE* text = fopen(file, "r");
    if (text == NULL) return value;
    char line[LONGEST_TEXT];
    while (fgets(line, sizeof line, text) != NULL) {
        if (strncmp(line, start, strlen(start)) != 0) continue;
        value = (unsigned)strtoul(line + strlen(start), NULL, 16);
    }
    fclose(text);
    return value;
}

static int write_setting(const struct DemoSetting* setting, unsigned value, const char* file) {
    FILE* text = fopen(file, "w");
    if (text == NULL) return -1;
    const int written = fprintf(text, "REGEDIT4\n\n[" BRANCH "%s]\n\"%s\"=dword:%08x\n",
                                setting->key, setting->name, value);
    if (fclose(text) != 0 || written < 0) return -1;
    return run_editor(file, NULL);
}

__attribute__((visibility("hidden"))) void step_demo_setting(const struct DemoSetting* setting) {
    char file[] = "/tmp/velto-demo-XXXXXX";
    const int descriptor = mkstemp(file);
    if (descriptor < 0) {
        perror(file);
        return;
    }
    close(descriptor);
    const unsigned value = read_setting(setting, file);
    const unsigned next =
        value <= setting->largest - setting->step ? value + setting->step : setting->step;
    if (write_setting(setting, next, file) == 0) {
        printf("%s: %s was %u and is now %u\n", setting->key, setting->name, value, next);
    } else {
        fprintf(stderr, "%s: %s can't be changed\n", setting->key, setting->name);
    }
    unlink(file);
}
