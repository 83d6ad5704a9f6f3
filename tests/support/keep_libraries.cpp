// Part of every program of a sanitizer build: libraries stay loaded, so that reports at the end of the run can still
// name them. Without it neither they nor their suppressions know what the graphics driver was.

extern "C" int dlclose(void*) {
    return 0;
}
