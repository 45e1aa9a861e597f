#include "services/LogBase.h"

#include <gtest/gtest.h>

#include <climits>

TEST(LogRecorder, RendersNestedContextsAndLongs) {
  LogRecorder recorder;
  LogBase& log = recorder;
  log.EnterContext("expires", 1);
  log.LogDataStr("gmtDateTime", "3/7/2024 9:05:03");
  log.EnterContext("inner", 1);
  for (long n : {0L, -1L, LONG_MAX, LONG_MIN}) log.LogDataLong("n", n);
  log.LeaveContext();
  log.LeaveContext();
  log.LeaveContext();  // unmatched: ignored
  log.LogDataStr("after", nullptr);
  EXPECT_EQ(recorder.render(),
            "expires:\n  gmtDateTime: 3/7/2024 9:05:03\n  inner:\n    n: 0\n    n: -1\n"
            "    n: 9223372036854775807\n    n: -9223372036854775808\nafter: \n");
}
