// The numeric targets run under a zone with summer time, so that the local
// forms meet clock changes: set before the module's first use (its tzset
// runs once). A rule string needs no tzdata. tzset here too, because the
// oracles' localtime_r does not read TZ again once the fuzzer's own start-up
// has had the C library read it.
#include <time.h>

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
  tzset();
  return 0;
}
