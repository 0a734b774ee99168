/* A sound plug-in that plays nothing. Its dialog is a step of the volume. */
#include <stdio.h>

#include "setting.h"

static const struct DemoSetting kVolume = {
    .key = "SPU\\DemoSPU", .name = "Volume", .usual = 75, .step = 25, .largest = 100};

char* PSEgetLibName(void) {
    static char name[] = "Demo SPU";
    return name;
}
unsigned PSEgetLibType(void) {
    return 4;
}
unsigned PSEgetLibVersion(void) {
    return 0x00010100;
}

void SPUconfigure(void) {
    step_demo_setting(&kVolume);
}

int SPUtest(void) {
    return 0;
}

void SPUabout(void) {
    puts("Demo SPU: the sound of silence, at any volume");
}
