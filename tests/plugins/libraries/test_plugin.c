/* A plug-in library for tests. The definitions that it is built with tell its type and what it
 * does wrong.
 *
 *   PREFIX, TYPE, NAME     as the interface has them
 *   GIVE_NAME              what PSEgetLibName does instead of giving NAME
 *   ON_LOAD                what loading it does
 *   WITHOUT_...            an export that is missing
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#ifndef PREFIX
#define PREFIX GPU
#endif
#ifndef TYPE
#define TYPE 2
#endif
#ifndef NAME
#define NAME "Test plug-in"
#endif
#ifndef GIVE_NAME
#define GIVE_NAME return (char*)NAME
#endif
#define JOIN_NAMES(a, b) a##b
#define JOIN(a, b) JOIN_NAMES(a, b)

#ifdef ON_LOAD
__attribute__((constructor)) static void on_load(void) { ON_LOAD; }
#endif

char* PSEgetLibName(void) {
    printf("what a plug-in prints disturbs nobody\n");
    GIVE_NAME;
}
unsigned PSEgetLibType(void) { return TYPE; }
#ifndef WITHOUT_VERSION
unsigned PSEgetLibVersion(void) { return 0x00020305; }
#endif

/* Changes a setting, as a plug-in's own dialog does: with the registry editor. */
void JOIN(PREFIX, configure)(void) {
    FILE* text = fopen("configured.reg", "w");
    if (text == NULL) return;
    fputs("REGEDIT4\n\n[HKEY_CURRENT_USER\\Software\\Test]\n\"configured\"=\"yes\"\n", text);
    fclose(text);
    if (system("\"$VELTO_REGEDIT\" /S configured.reg") != 0) abort();
}

#ifndef WITHOUT_TEST
/* The status that stands in a file of the plug-in folder. */
int JOIN(PREFIX, test)(void) {
    int status = 0;
    FILE* file = fopen("status", "r");
    if (file == NULL) return 0;
    if (fscanf(file, "%d", &status) != 1) status = 0;
    fclose(file);
    return status;
}
#endif

void JOIN(PREFIX, about)(void) { abort(); }
