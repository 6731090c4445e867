// What a test opens.
#ifdef BROKEN
extern "C" int symbolThatNobodyHas();
#else
static int symbolThatNobodyHas() { return 42; }
#endif

extern "C" __attribute__((visibility("default"))) int answer() { return symbolThatNobodyHas(); }
