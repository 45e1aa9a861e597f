// MS-DOS date and time words against the headers of a ZIP written by the
// Info-ZIP tool (tests/data/legacy_dos.zip; gen_legacy_tables.py takes the raw
// header words and Python's zipfile reading into dos_words.tsv), and against
// glibc's timegm for every date word.
#include <algorithm>

#include "tests/TestValues.h"
#include "time/ZephalFileTime.h"

using namespace zptest;
using Words = std::pair<unsigned short, unsigned short>;  // date, time

TEST(DosDateTime, ReadsZipHeadersAsZipfileDoes) {
  for (const Row& r : readTable("dos_words.tsv")) {
    if (r[0] == "clamped") continue;
    SCOPED_TRACE(r[1]);
    const Words w(toInt(r[8]), toInt(r[9]));
    ZephalSysTime t = marked(makeTime({2000, 1, 1, 0, 0, 0}, false, 500));
    t.fromDosDateTime(w.first, w.second, nullptr);
    EXPECT_EQ(fieldsOf(t), intsOf(r, 10, 7));
    EXPECT_EQ(extrasOf(t), "ms=0 local flags=111 dst=-1");
    EXPECT_EQ(ZephalFileTime::dosDateTimeToUnixTime32(w.first, w.second), toInt(r[17]));
  }
}

// Odd seconds round up, 59 carries through month and year ends on a copy,
// and the year is clamped to 1980..2037 in the record itself.
TEST(DosDateTime, WritesWhatZipWrote) {
  for (const Row& r : readTable("dos_words.tsv")) {
    if (r[0] == "zipread") continue;
    SCOPED_TRACE(r[0] + " " + r[1]);
    Fields f = intsOf(r, 2, 6);
    ZephalSysTime t = makeTime(f, false);
    Words w{0xFFFF, 0xFFFF};
    t.toDosDateTime(false, w.first, w.second, nullptr);
    EXPECT_EQ(w, Words(toInt(r[8]), toInt(r[9])));
    f[0] = std::min(std::max(f[0], 1980), 2037);  // 59 seconds stay; only the year moves
    EXPECT_EQ(stateOf(t), stateOf(makeTime(f, false)));
  }
}

TEST(DosDateTime, BadDateWordMeansNow) {
  for (unsigned short date : {0x0000, 0x3AC0, 0x3A0F, 0x3BAF, 0x3BEF}) {  // day 0, month 0, 13, 15
    const auto [now, got] = atOneSecond([date](time_t) {
      ZephalSysTime t = marked(makeTime({2000, 1, 1, 0, 0, 0}, true, 500));
      t.fromDosDateTime(date, 0x6DAF, nullptr);
      return std::make_pair(t, ZephalFileTime::dosDateTimeToUnixTime32(date, 0x6DAF));
    });
    EXPECT_EQ(got.first.toUnixTime_gmt64(), now);
    EXPECT_EQ(extrasOf(got.first), "ms=0 gmt flags=110 dst=-1");
    EXPECT_EQ(got.second, static_cast<unsigned int>(now));
  }
}

// Every date word with a day and a month, at time words in and out of range
// (an hour past 23, a minute past 59 or a second code past 29 reads as 0),
// against glibc: timegm carries an impossible day (31 February) into the next
// month; fromDosDateTime keeps it as written but names the carried weekday.
TEST(DosDateTime, EveryDateWordAgreesWithTimegm) {
  const struct { unsigned short word; int h, mi, s; } times[] = {
      {0x0000, 0, 0, 0},  {0xBF7D, 23, 59, 58}, {0x3388, 6, 28, 16}, {0xC000, 0, 0, 0},
      {0xFFFF, 0, 0, 0},  {0x6F8F, 13, 0, 30},  {0x6DBE, 13, 45, 0}, {0x6DBF, 13, 45, 0}};
  for (int year = 1980; year <= 2107; ++year) {
    for (int month = 1; month <= 12; ++month) {
      for (int day = 1; day <= 31; ++day) {
        const auto date = static_cast<unsigned short>(day | month << 5 | (year - 1980) << 9);
        const int carriedWeekday = gmtimeOf(timegmOf(year, month, day)).tm_wday;
        for (const auto& c : times) {
          ASSERT_EQ(ZephalFileTime::dosDateTimeToUnixTime32(date, c.word),
                    static_cast<unsigned int>(timegmOf(year, month, day, c.h, c.mi, c.s)))
              << year << "-" << month << "-" << day << " " << std::hex << c.word;
          ZephalSysTime t;
          t.fromDosDateTime(date, c.word, nullptr);
          ASSERT_EQ(fieldsOf(t), (Fields{year, month, day, c.h, c.mi, c.s, carriedWeekday}));
        }
      }
    }
  }
}

// Zoneinfo's wall clock for the TZ of this run (tests/data/zone_instants.tsv).
TEST(DosDateTime, WritesLocalTimeWhenAsked) {
  const std::vector<Row> rows = zoneRows("zone_instants.tsv", "instant");
  ZP_SKIP_IF_NO_ROWS(rows);
  for (const Row& r : rows) {
    const Fields local = intsOf(r, 10, 7);
    if (local[0] < 1980 || local[0] > 2037) continue;
    ZephalSysTime t = makeTime(intsOf(r, 3, 6), false), direct = makeTime(local, true);
    Words viaFlag, expected;
    t.toDosDateTime(true, viaFlag.first, viaFlag.second, nullptr);
    direct.toDosDateTime(false, expected.first, expected.second, nullptr);
    EXPECT_EQ(viaFlag, expected) << r[2];
    EXPECT_TRUE(t.m_bLocal);
    EXPECT_EQ(fieldsOf(t), local);
  }
}
