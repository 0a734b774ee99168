/* A CD-ROM plug-in that reads nothing. Its dialog is a step of the speed. */
#include <stdio.h>

#include "setting.h"

static const struct DemoSetting kSpeed = {
    .key = "CDR\\DemoCDR", .name = "Speed", .usual = 4, .step = 4, .largest = 24};

char* PSEgetLibName(void) {
    static char name[] = "Demo CDR";
    return name;
}
unsigned PSEgetLibType(void) {
    return 1;
}
unsigned PSEgetLibVersion(void) {
    return 0x00010100;
}

void CDRconfigure(void) {
    step_demo_setting(&kSpeed);
}

int CDRtest(void) {
    return 0;
}

void CDRabout(void) {
    puts("Demo CDR: an empty tray that turns as fast as you like");
}
