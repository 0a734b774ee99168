/* A setting of a demo plug-in: a number in the plug-in's own registry branch. Plug-ins know nothing
 * of the registry's form and reach it through the registry editor, `$VELTO_REGEDIT` or else the
 * `velto-regedit` beside the program that they run in.
 */
#ifndef VELTO_DEMO_PLUGINS_SETTING_H
#define VELTO_DEMO_PLUGINS_SETTING_H

struct DemoSetting {
    const char* key; /* below the branch of all plug-ins, such as "GPU\\DemoGPU" */
    const char* name;
    unsigned usual; /* what it counts as until it is set */
    unsigned step;  /* the least value, too */
    unsigned largest;
};

/* Raises the setting by a step, from the largest value to the least, and tells so on standard
 * output. If the registry can't be reached or changed, it stays as it was, and standard error says
 * why.
 */
void step_demo_setting(const struct DemoSetting* setting);

#endif
