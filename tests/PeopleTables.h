// Reads tests/data/people_dates.tsv (tests/data/gen_people_dates.py): dates as
// people's software writes them (Node's Intl, Java's localized formats,
// strftime's spreadsheet and database layouts), each with what it says.
//
//   for (const PeopleDate& d : readPeopleDates()) {
//     if (d.reading == PeopleDate::kWallClock && d.order != ZephalDateOrder::kUnknown) ...
//   }
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "tests/TestTables.h"
#include "time/ZephalText.h"

namespace zptest {

struct PeopleDate {
  enum Reading { kInstant, kWallClock, kRefuse };
  struct Fields {
    int year, month, day, hour, minute, second, millis;
  };

  std::string text;            // UTF-8, unescaped
  std::string writer;          // "java ofLocalizedDateTime(MEDIUM,SHORT)", "python %d-%b-%Y"
  std::string locale;          // en-US, en-GB, de-DE, ja-JP, fr-FR; C for strftime
  std::string zone;            // the IANA zone it was written in
  ZephalDateOrder order;       // the writer's numeric order; kUnknown: the text names its month
  bool ambiguous;              // two orders read different valid dates (03/04/2026)
  std::string readableAs;      // the orders that read a valid date: "MDY,DMY"; "-"
  std::string zoneAsWritten;   // "-", offset, name, ambiguous, unknown, words
  Reading reading;             // what a reader is to make of it
  int64_t unixMs = 0;          // kInstant: the instant
  Fields wall{};               // kWallClock: the fields as written, zone unknown
  std::string expected;        // the column as written: "@1769319121.000", "local ...", "refuse"
  int64_t meantMs = 0;         // the instant the writer was asked for, cut to the text's fields
  std::string dateutil;        // python-dateutil's verdict: ok, wrong, refused
  std::string gnuDate;         // GNU date's verdict: ok, wrong, refused
};

// "@<seconds>.<ms>" as milliseconds; false for another shape.
inline bool parseInstantMs(const std::string& field, int64_t& ms) {
  long long seconds = 0;
  int millis = 0;
  char end = 0;
  if (std::sscanf(field.c_str(), "@%lld.%3d%c", &seconds, &millis, &end) != 2) return false;
  ms = seconds * 1000 + millis;
  return true;
}

// "local YYYY-MM-DDTHH:MM:SS.mmm" as fields; false for another shape.
inline bool parseWallClock(const std::string& field, PeopleDate::Fields& f) {
  char end = 0;
  return std::sscanf(field.c_str(), "local %4d-%2d-%2dT%2d:%2d:%2d.%3d%c", &f.year, &f.month,
                     &f.day, &f.hour, &f.minute, &f.second, &f.millis, &end) == 7;
}

inline ZephalDateOrder dateOrderOf(const std::string& column) {
  if (column == "MDY") return ZephalDateOrder::kMonthDayYear;
  if (column == "DMY") return ZephalDateOrder::kDayMonthYear;
  if (column == "YMD") return ZephalDateOrder::kYearMonthDay;
  EXPECT_EQ(column, "-") << "unknown order";
  return ZephalDateOrder::kUnknown;
}

// Every row of people_dates.tsv, in the table's order; a malformed row fails
// the calling test.
inline std::vector<PeopleDate> readPeopleDates() {
  enum { kText, kWriter, kLocale, kZone, kOrder, kNumeric, kReadable, kZoneWritten, kExpected,
         kMeant, kDateutil, kGnuDate, kColumns };
  std::vector<PeopleDate> out;
  for (const Row& row : readTable("people_dates.tsv")) {
    if (row.size() != kColumns) {
      ADD_FAILURE() << "people_dates.tsv: " << row.size() << " columns in " << row.at(0);
      continue;
    }
    PeopleDate d;
    d.text = unescape(row[kText]);
    d.writer = row[kWriter];
    d.locale = row[kLocale];
    d.zone = row[kZone];
    d.order = dateOrderOf(row[kOrder]);
    d.ambiguous = row[kNumeric] == "ambiguous";
    EXPECT_EQ(row[kNumeric] == "-", d.order == ZephalDateOrder::kUnknown) << row[kText];
    EXPECT_TRUE(d.ambiguous || row[kNumeric] == "settled" || row[kNumeric] == "-") << row[kText];
    d.readableAs = row[kReadable];
    d.zoneAsWritten = row[kZoneWritten];
    d.expected = row[kExpected];
    if (d.expected == "refuse") {
      d.reading = PeopleDate::kRefuse;
    } else if (parseInstantMs(d.expected, d.unixMs)) {
      d.reading = PeopleDate::kInstant;
    } else {
      d.reading = PeopleDate::kWallClock;
      EXPECT_TRUE(parseWallClock(d.expected, d.wall)) << "expected column of " << row[kText];
    }
    EXPECT_TRUE(parseInstantMs(row[kMeant], d.meantMs)) << "meant column of " << row[kText];
    d.dateutil = row[kDateutil];
    d.gnuDate = row[kGnuDate];
    out.push_back(std::move(d));
  }
  return out;
}

}  // namespace zptest
