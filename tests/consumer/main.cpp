#include <cstdio>

#include "time/ZephalSysTime.h"

int main() {
  ZephalSysTime t;
  t.fromUnixTime64(false, 1709802303);  // 2024-03-07 09:05:03 GMT
  t.toLocalSysTime();                   // the same instant on the local clock
  std::printf("%04u-%02u-%02u %02u:%02u:%02u local, %+d s from GMT, summer time: %d\n",
              t.m_time.wYear, t.m_time.wMonth, t.m_time.wDay, t.m_time.wHour,
              t.m_time.wMinute, t.m_time.wSecond, t.getGmtOffsetInSeconds(0), t.getIsDst());
  return t.toUnixTime_gmt64() == 1709802303 ? 0 : 1;
}
