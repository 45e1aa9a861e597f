// people_dates.tsv (tests/data/gen_people_dates.py) holds together: each
// row's reading agrees with how its text states its zone and with the
// instant its writer was asked for, its numeric verdict with its fields, and
// the strftime rows with glibc's strptime reading the same layout.
#include <time.h>

#include <cstring>
#include <map>

#include "tests/PeopleTables.h"
#include "tests/TestValues.h"

using namespace zptest;

namespace {

// The ms of a wall clock read as if at GMT.
int64_t asGmtMs(const PeopleDate::Fields& f) {
  return timegmOf(f.year, f.month, f.day, f.hour, f.minute, f.second) * 1000 + f.millis;
}

bool isVerdict(const std::string& v) { return v == "ok" || v == "wrong" || v == "refused"; }

}  // namespace

TEST(PeopleTable, RowsHoldTogether) {
  const std::vector<PeopleDate> rows = readPeopleDates();
  EXPECT_GT(rows.size(), 900u);
  std::map<std::string, int> zoneKinds;
  for (const PeopleDate& d : rows) {
    SCOPED_TRACE(d.writer + " " + d.locale + " " + d.zone + ": " + d.text);
    ++zoneKinds[d.zoneAsWritten];
    EXPECT_TRUE(isVerdict(d.dateutil) && isVerdict(d.gnuDate));
    switch (d.reading) {
      case PeopleDate::kInstant:
        // A text that states its offset, or a name with one, names the instant asked for.
        EXPECT_TRUE(d.zoneAsWritten == "offset" || d.zoneAsWritten == "name");
        EXPECT_EQ(d.unixMs, d.meantMs);
        break;
      case PeopleDate::kRefuse:
        EXPECT_TRUE(d.zoneAsWritten == "ambiguous" || d.zoneAsWritten == "unknown" ||
                    d.zoneAsWritten == "words");
        break;
      case PeopleDate::kWallClock: {
        EXPECT_EQ(d.zoneAsWritten, "-");
        // Valid fields (timegm would carry an overflow into the next field)...
        const PeopleDate::Fields& f = d.wall;
        const tm back = gmtimeOf(timegmOf(f.year, f.month, f.day, f.hour, f.minute, f.second));
        EXPECT_EQ(fieldsOf(back, 6), (Fields{f.year, f.month, f.day, f.hour, f.minute, f.second}));
        // ...that are the instant asked for at some zone's offset: whole
        // quarter hours within -12:00 and +14:00.
        const int64_t offsetMs = asGmtMs(f) - d.meantMs;
        EXPECT_EQ(offsetMs % (15 * 60 * 1000), 0);
        EXPECT_TRUE(offsetMs >= -12 * 3600 * 1000LL && offsetMs <= 14 * 3600 * 1000LL);
        break;
      }
    }
    if (d.order == ZephalDateOrder::kUnknown) {
      EXPECT_FALSE(d.ambiguous);
      EXPECT_EQ(d.readableAs, "-");
    } else {
      // The writer's own order always reads the text.
      const char* const name[] = {"", "MDY", "DMY", "YMD"};
      EXPECT_NE(d.readableAs.find(name[static_cast<int>(d.order)]), std::string::npos);
      // Two readings at least for an ambiguous text.
      if (d.ambiguous) {
        EXPECT_NE(d.readableAs.find(','), std::string::npos);
      }
    }
    if (d.reading == PeopleDate::kWallClock && d.order != ZephalDateOrder::kUnknown &&
        d.order != ZephalDateOrder::kYearMonthDay && d.wall.day <= 12 &&
        d.wall.day != d.wall.month) {
      // Day and month swap into another valid date.
      EXPECT_TRUE(d.ambiguous);
    }
  }
  // Each way of stating a zone is there.
  for (const char* kind : {"-", "offset", "name", "ambiguous", "unknown", "words"}) {
    EXPECT_GT(zoneKinds[kind], 0) << kind;
  }
}

// strftime wrote these rows; glibc's strptime reads each back with the same
// layout (month names in any case), in the C locale of this process.
TEST(PeopleTable, StrftimeRowsAsStrptimeReadsThem) {
  size_t checked = 0;
  for (const PeopleDate& d : readPeopleDates()) {
    if (d.writer.compare(0, 7, "python ") != 0) continue;
    SCOPED_TRACE(d.writer + ": " + d.text);
    std::string layout = d.writer.substr(7);
    const size_t upper = layout.find(" upper");
    if (upper != std::string::npos) layout.erase(upper);
    ASSERT_EQ(d.reading, PeopleDate::kWallClock);
    tm t;
    std::memset(&t, 0, sizeof t);
    const char* end = strptime(d.text.c_str(), layout.c_str(), &t);
    ASSERT_TRUE(end != nullptr && *end == '\0');
    const PeopleDate::Fields& f = d.wall;
    EXPECT_EQ(fieldsOf(t, 6), (Fields{f.year, f.month, f.day, f.hour, f.minute, f.second}));
    ++checked;
  }
  EXPECT_GT(checked, 200u);
}

// The texts the free-form reader is to read, as the table's header lists
// them, are rows with these readings.
TEST(PeopleTable, HoldsTheExamples) {
  const std::map<std::string, std::string> examples = {
      {"January 25, 2026", "local 2026-01-25T00:00:00.000"},
      {"Jan 25, 2026, 12:32:01 AM", "local 2026-01-25T00:32:01.000"},
      {"25 Jan 2026, 00:32", "local 2026-01-25T00:32:00.000"},
      {"Sunday, January 25, 2026 at 12:32:01 AM EST", "@1769319121.000"},
      {"Dec 16, 2015 03:04 AM", "local 2015-12-16T03:04:00.000"},
      {"21-Oct-2034", "local 2034-10-21T00:00:00.000"},
      {"25-JAN-26", "local 2026-01-25T00:00:00.000"},
      {"25.1.2026, 00:32:01", "local 2026-01-25T00:32:01.000"},
      {"2026/1/25 0:32:01", "local 2026-01-25T00:32:01.000"},
      {"2015.12.16 03:04", "local 2015-12-16T03:04:00.000"},
  };
  std::map<std::string, std::string> found;
  for (const PeopleDate& d : readPeopleDates()) {
    if (examples.count(d.text)) found[d.text] = d.expected;
  }
  EXPECT_EQ(found, examples);
}
