// zpFormatDate against GNU date (tests/data/pattern_writes.tsv) and against
// glibc's strftime on the conversions both take; zpWallClockOf against
// localtime_r.
#include <time.h>

#include <string>
#include <string_view>

#include "services/zpDatePattern.h"
#include "tests/TestValues.h"

using namespace zptest;

namespace {

// A table field: C escapes, '-' for an empty text, and \*N* for N more of
// the byte before (gen_pattern_tables.py).
std::string decodeField(const std::string& field) {
  if (field == "-") return "";
  std::string out;
  for (size_t i = 0; i < field.size(); ++i) {
    if (field[i] == '\\' && i + 1 < field.size() && field[i + 1] == '*') {
      const size_t close = field.find('*', i + 2);
      out.append(std::stoul(field.substr(i + 2, close - i - 2)), out.back());
      i = close;
    } else {
      const size_t next = field.find("\\*", i);
      const size_t stop = next == std::string::npos ? field.size() : next;
      out += unescape(field.substr(i, stop - i));
      i = stop - 1;
    }
  }
  return out;
}

std::string written(std::string_view layout, const ZephalWallClock& clock) {
  StringBuffer out;
  EXPECT_TRUE(zpFormatDate(layout, clock, out));
  return std::string(out.getString(), out.getSize());
}

// The wall clock of an instant: GMT, or local in this run's zone.
ZephalWallClock clockAt(long long seconds, int millis, bool local) {
  ZephalSysTime t;
  t.fromUnixTime64(false, seconds);
  t.m_time.wMilliseconds = static_cast<uint16_t>(millis);
  ZephalWallClock clock;
  local ? zpLocalWallClockOf(t, clock) : zpWallClockOf(t, clock);
  return clock;
}

}  // namespace

TEST(PatternWrite, AsGnuDateWrites) {
  int compared = 0;
  for (const Row& row : readTable("pattern_writes.tsv")) {
    const bool gmt = row[0] == "GMT";
    if (!gmt && row[0] != currentTz()) continue;
    const ZephalWallClock clock = clockAt(toInt(row[1]), static_cast<int>(toInt(row[2])), !gmt);
    const std::string layout = decodeField(row[3]);
    EXPECT_EQ(written(layout, clock), decodeField(row[4]))
        << row[0] << " @" << row[1] << "." << row[2] << " layout " << row[3];
    ++compared;
  }
  EXPECT_GT(compared, 1000);
}
