#include "time/ZephalSysTime.h"

// A Unix time there and back through the local clock: virtual calls and the
// zone code, both of which need position-independent code in a plugin.
long long pluginRoundTrip(long long unixTime) {
  ZephalSysTime t;
  t.fromUnixTime64(false, unixTime);
  t.toLocalSysTime();
  return t.toUnixTime_gmt64();
}
