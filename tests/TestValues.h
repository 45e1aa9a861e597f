// Small builders shared by the unit tests.
#pragma once

#include <gtest/gtest.h>

#include "time/ZephalSysTime.h"

namespace zptest {

inline ZephalSysTime makeTime(int y, int mo, int d, int h, int mi, int s, bool local,
                              int ms = 0) {
  ZephalSysTime t;
  t.m_time.wYear = static_cast<uint16_t>(y);
  t.m_time.wMonth = static_cast<uint16_t>(mo);
  t.m_time.wDay = static_cast<uint16_t>(d);
  t.m_time.wHour = static_cast<uint16_t>(h);
  t.m_time.wMinute = static_cast<uint16_t>(mi);
  t.m_time.wSecond = static_cast<uint16_t>(s);
  t.m_time.wMilliseconds = static_cast<uint16_t>(ms);
  t.m_bLocal = local;
  return t;
}

// Compares the calendar fields with a Y M D h m s wday row (wday < 0: not compared).
inline void expectFields(const ZephalSysTime& t, int y, int mo, int d, int h, int mi, int s,
                         int wday) {
  EXPECT_EQ(t.m_time.wYear, y);
  EXPECT_EQ(t.m_time.wMonth, mo);
  EXPECT_EQ(t.m_time.wDay, d);
  EXPECT_EQ(t.m_time.wHour, h);
  EXPECT_EQ(t.m_time.wMinute, mi);
  EXPECT_EQ(t.m_time.wSecond, s);
  if (wday >= 0) {
    EXPECT_EQ(t.m_time.wDayOfWeek, wday);
  }
}

inline bool isDefaultState(const ZephalSysTime& t) {
  const ZephalCalendarFields& f = t.m_time;
  return f.wYear == 0 && f.wMonth == 0 && f.wDayOfWeek == 0 && f.wDay == 0 && f.wHour == 0 &&
         f.wMinute == 0 && f.wSecond == 0 && f.wMilliseconds == 0 && !t.m_bLocal &&
         t.m_bFlagA && t.m_bFlagB && !t.m_bFromUnknownTimezone && t.m_isDst == -1;
}

}  // namespace zptest
