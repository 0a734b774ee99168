/* The smallest plug-in. */
unsigned PSEgetLibType(void) { return 2; }
unsigned PSEgetLibVersion(void) { return 0x00010203; }
const char* PSEgetLibName(void) { return "Probe"; }
