/* A graphics plug-in that draws nothing. Its dialog is a step of the brightness. */
#include <stdio.h>

#include "setting.h"

static const struct DemoSetting kBrightness = {
    .key = "GPU\\DemoGPU", .name = "Brightness", .usual = 50, .step = 10, .largest = 100};

char* PSEgetLibName(void) {
    static char name[] = "Demo GPU";
    return name;
}
unsigned PSEgetLibType(void) {
    return 2;
}
unsigned PSEgetLibVersion(void) {
    return 0x00010100;
}

void GPUconfigure(void) {
    step_demo_setting(&kBrightness);
}

int GPUtest(void) {
    return 0;
}

void GPUabout(void) {
    puts("Demo GPU: every picture you imagine, at the brightness that you choose");
}
