// MS-DOS date and time words against the headers of a ZIP written by the
// Info-ZIP tool (tests/data/legacy_dos.zip, read back with Python's zipfile
// into dos_words.tsv), and against glibc's timegm for every date word.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <utility>

#include "tests/TestTables.h"
#include "tests/TestValues.h"
#include "time/ZephalFileTime.h"
#include "time/ZephalSysTime.h"

using zptest::expectFields;
using zptest::makeTime;
using zptest::toInt;

namespace {

using Words = std::pair<unsigned short, unsigned short>;  // date, time

// Entry name -> (date word, time word) from the ZIP's local file headers.
std::map<std::string, Words> zipHeaderWords() {
  std::ifstream in(std::string(ZP_TEST_DATA_DIR) + "/legacy_dos.zip", std::ios::binary);
  const std::string zip((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  const auto u16 = [&](size_t at) {
    return static_cast<unsigned>(static_cast<unsigned char>(zip[at]) |
                                 static_cast<unsigned char>(zip[at + 1]) << 8);
  };
  std::map<std::string, Words> words;
  for (size_t at = 0; at + 30 <= zip.size() && zip.compare(at, 4, "PK\3\4") == 0;) {
    const size_t nameLength = u16(at + 26), extraLength = u16(at + 28);
    const size_t dataLength = u16(at + 18) | static_cast<size_t>(u16(at + 20)) << 16;
    words[zip.substr(at + 30, nameLength)] = {static_cast<unsigned short>(u16(at + 12)),
                                              static_cast<unsigned short>(u16(at + 10))};
    at += 30 + nameLength + extraLength + dataLength;
  }
  EXPECT_EQ(words.size(), 18u);
  return words;
}

ZephalSysTime recordOf(const zptest::Row& r) {
  return makeTime(int(toInt(r[2])), int(toInt(r[3])), int(toInt(r[4])), int(toInt(r[5])),
                  int(toInt(r[6])), int(toInt(r[7])), false);
}

long long timegmOf(int y, int mo, int d, int h, int mi, int s) {
  tm t{};
  t.tm_year = y - 1900;
  t.tm_mon = mo - 1;
  t.tm_mday = d;
  t.tm_hour = h;
  t.tm_min = mi;
  t.tm_sec = s;
  return timegm(&t);
}

}  // namespace

TEST(DosDateTime, ReadsZipHeadersAsZipfileDoes) {
  const std::map<std::string, Words> words = zipHeaderWords();
  for (const zptest::Row& r : zptest::readTable("dos_words.tsv")) {
    if (r[0] == "clamped") continue;
    SCOPED_TRACE(r[1]);
    const Words w = words.at(r[1]);
    EXPECT_EQ(w, Words(toInt(r[8]), toInt(r[9])));
    ZephalSysTime t = makeTime(2000, 1, 1, 0, 0, 0, false, 500);
    t.m_bFlagA = false;
    t.m_isDst = 1;
    t.fromDosDateTime(w.first, w.second, nullptr);
    expectFields(t, int(toInt(r[10])), int(toInt(r[11])), int(toInt(r[12])), int(toInt(r[13])),
                 int(toInt(r[14])), int(toInt(r[15])), int(toInt(r[16])));
    EXPECT_EQ(t.m_time.wMilliseconds, 0);
    EXPECT_TRUE(t.m_bLocal && t.m_bFromUnknownTimezone && t.m_bFlagA && t.m_bFlagB);
    EXPECT_EQ(t.m_isDst, -1);
    EXPECT_EQ(ZephalFileTime::dosDateTimeToUnixTime32(w.first, w.second), toInt(r[17]));
  }
}

// Odd seconds round up, 59 carries through month and year ends on a copy,
// and the year is clamped to 1980..2037 in the record itself.
TEST(DosDateTime, WritesWhatZipWrote) {
  const std::map<std::string, Words> words = zipHeaderWords();
  for (const zptest::Row& r : zptest::readTable("dos_words.tsv")) {
    if (r[0] == "zipread") continue;
    SCOPED_TRACE(r[0] + " " + r[1]);
    ZephalSysTime t = recordOf(r);
    Words w{0xFFFF, 0xFFFF};
    t.toDosDateTime(false, w.first, w.second, nullptr);
    EXPECT_EQ(w, words.at(r[1]));
    ZephalSysTime expected = recordOf(r);  // 59 seconds stay; only the year moves
    expected.m_time.wYear = std::min<uint16_t>(std::max<uint16_t>(expected.m_time.wYear, 1980), 2037);
    EXPECT_EQ(std::memcmp(&t.m_time, &expected.m_time, sizeof t.m_time), 0);
    EXPECT_FALSE(t.m_bLocal);
  }
}

TEST(DosDateTime, OutOfRangeTimeFieldsReadAsZero) {
  const struct {
    unsigned short time;
    int h, mi, s;
  } rows[] = {
      {0xBF7D, 23, 59, 58}, {0xC000, 0, 0, 0},   {0xFFFF, 0, 0, 0},
      {0x6F8F, 13, 0, 30},  {0x6DBE, 13, 45, 0}, {0x6DBF, 13, 45, 0},
  };
  for (const auto& r : rows) {
    ZephalSysTime t;
    t.fromDosDateTime(0x3ACF, r.time, nullptr);  // 2009-06-15
    expectFields(t, 2009, 6, 15, r.h, r.mi, r.s, 1);
    EXPECT_EQ(ZephalFileTime::dosDateTimeToUnixTime32(0x3ACF, r.time),
              timegmOf(2009, 6, 15, r.h, r.mi, r.s))
        << std::hex << r.time;
  }
}

TEST(DosDateTime, BadDateWordMeansNow) {
  for (unsigned short date : {0x0000, 0x3AC0, 0x3A0F, 0x3BAF, 0x3BEF}) {  // day 0, month 0, 13, 15
    for (;;) {
      const time_t now = time(nullptr);
      ZephalSysTime t = makeTime(2000, 1, 1, 0, 0, 0, true, 500);
      t.m_bFromUnknownTimezone = true;
      t.fromDosDateTime(date, 0x6DAF, nullptr);
      const unsigned int seconds = ZephalFileTime::dosDateTimeToUnixTime32(date, 0x6DAF);
      if (time(nullptr) != now) continue;
      EXPECT_EQ(t.toUnixTime_gmt64(), now);
      EXPECT_TRUE(!t.m_bLocal && !t.m_bFromUnknownTimezone && t.m_time.wMilliseconds == 0);
      EXPECT_EQ(seconds, static_cast<unsigned int>(now));
      break;
    }
  }
}

// Every date word with a day and a month, against glibc: timegm carries an
// impossible day (31 February) into the next month; fromDosDateTime keeps it
// as written but names the weekday of the carried date.
TEST(DosDateTime, EveryDateWordAgreesWithTimegm) {
  const struct {
    unsigned short word;
    int h, mi, s;
  } times[] = {{0x0000, 0, 0, 0}, {0xBF7D, 23, 59, 58}, {0x3388, 6, 28, 16}};
  for (int year = 1980; year <= 2107; ++year) {
    for (int month = 1; month <= 12; ++month) {
      for (int day = 1; day <= 31; ++day) {
        const auto date = static_cast<unsigned short>(day | month << 5 | (year - 1980) << 9);
        for (const auto& c : times) {
          const long long expected = timegmOf(year, month, day, c.h, c.mi, c.s);
          ASSERT_EQ(ZephalFileTime::dosDateTimeToUnixTime32(date, c.word),
                    static_cast<unsigned int>(expected))
              << year << "-" << month << "-" << day;
        }
        ZephalSysTime t;
        t.fromDosDateTime(date, 0, nullptr);
        const time_t midnight = timegmOf(year, month, day, 0, 0, 0);
        tm carried;
        gmtime_r(&midnight, &carried);
        ASSERT_EQ(t.m_time.wDayOfWeek, carried.tm_wday) << year << "-" << month << "-" << day;
        ASSERT_EQ(t.m_time.wDay, day);
      }
    }
  }
}

// Zoneinfo's wall clock for the TZ of this run (tests/data/zone_instants.tsv).
TEST(DosDateTime, WritesLocalTimeWhenAsked) {
  for (const zptest::Row& r : zptest::readTable("zone_instants.tsv")) {
    if (r[0] != zptest::currentTz() || r[1] != "instant" || toInt(r[10]) < 1980 ||
        toInt(r[10]) > 2037) {
      continue;
    }
    int g[6], l[6];
    for (int i = 0; i < 6; ++i) {
      g[i] = int(toInt(r[3 + i]));
      l[i] = int(toInt(r[10 + i]));
    }
    ZephalSysTime t = makeTime(g[0], g[1], g[2], g[3], g[4], g[5], false);
    ZephalSysTime local = makeTime(l[0], l[1], l[2], l[3], l[4], l[5], true);
    Words viaFlag, direct;
    t.toDosDateTime(true, viaFlag.first, viaFlag.second, nullptr);
    local.toDosDateTime(false, direct.first, direct.second, nullptr);
    EXPECT_EQ(viaFlag, direct) << r[2];
    EXPECT_TRUE(t.m_bLocal);
    expectFields(t, l[0], l[1], l[2], l[3], l[4], l[5], int(toInt(r[16])));
  }
}
