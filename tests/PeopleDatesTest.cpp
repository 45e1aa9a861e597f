// The reader on dates as people's software writes them (people_dates.tsv,
// written by Node's Intl, Java's localized formats and strftime's office
// layouts through tests/data/gen_people_dates.py): never a wrong instant;
// every medium and short form, and every English one, read to what its
// writer meant with the writer's order; a numeric date whose order the text
// does not settle refused without one; loadAnyFormat reading as zpReadDate.
#include <cctype>
#include <cstdio>
#include <string>

#include "tests/TestValues.h"
#include "time/ZephalText.h"

using namespace zptest;

namespace {

struct PeopleDate {
  std::string text, writer, locale;
  ZephalDateOrder order;  // the writer's, for a numeric date
  bool ambiguous;         // two orders read different valid dates
  bool refuse;            // the text's zone settles no instant
  int64_t ms;             // the instant, or the wall clock read as GMT
  bool zoneKnown;
  bool dateutilWrong;
};

ZephalDateOrder orderOf(const std::string& column) {
  if (column == "MDY") return ZephalDateOrder::kMonthDayYear;
  if (column == "DMY") return ZephalDateOrder::kDayMonthYear;
  if (column == "YMD") return ZephalDateOrder::kYearMonthDay;
  return ZephalDateOrder::kUnknown;
}

// The "expected" column: "@<s>.<ms>", "local YYYY-MM-DDTHH:MM:SS.mmm" or "refuse".
void readExpected(const std::string& column, PeopleDate& d) {
  long long s = 0;
  int y, mo, day, h, mi, sec, ms = 0;
  d.refuse = column == "refuse";
  d.zoneKnown = std::sscanf(column.c_str(), "@%lld.%3d", &s, &ms) == 2;
  if (d.zoneKnown) {
    d.ms = s * 1000 + ms;
  } else if (std::sscanf(column.c_str(), "local %4d-%2d-%2dT%2d:%2d:%2d.%3d", &y, &mo, &day, &h,
                         &mi, &sec, &ms) == 7) {
    d.ms = timegmOf(y, mo, day, h, mi, sec) * 1000 + ms;
  } else {
    EXPECT_TRUE(d.refuse) << column;
  }
}

std::vector<PeopleDate> peopleDates() {
  enum { kText, kWriter, kLocale, kOrder = 4, kNumeric, kExpected = 8, kDateutil = 10 };
  std::vector<PeopleDate> out;
  for (const Row& row : readTable("people_dates.tsv")) {
    PeopleDate d{unescape(row[kText]), row[kWriter], row[kLocale], orderOf(row[kOrder]),
                 row[kNumeric] == "ambiguous", false, 0, false, row[kDateutil] == "wrong"};
    readExpected(row[kExpected], d);
    out.push_back(d);
  }
  EXPECT_GT(out.size(), 1000u);
  return out;
}

int64_t gmtMsOf(const ZephalSysTime& t) {
  const ZephalCalendarFields& f = t.m_time;
  return timegmOf(f.wYear, f.wMonth, f.wDay, f.wHour, f.wMinute, f.wSecond) * 1000 +
         f.wMilliseconds;
}

// German and Japanese long and full forms name months in words and kanji
// ("1. März 1996", "2026年1月25日"), which the reader does not know.
bool monthInOtherWords(const PeopleDate& d) {
  bool longStyle = false;
  for (const char* style : {"dateStyle=long", "dateStyle=full", "LONG", "FULL"}) {
    longStyle |= d.writer.find(style) != std::string::npos;
  }
  return (d.locale == "de-DE" || d.locale == "ja-JP") && longStyle;
}

// Day.month.year ("25.1.2026"): the order is the text's own.
bool dotted(const std::string& text) {
  const size_t point = text.find_first_not_of("0123456789");
  return point >= 1 && point <= 2 && text[point] == '.' && text.size() > point + 1 &&
         std::isdigit(static_cast<unsigned char>(text[point + 1]));
}

void expectRead(const PeopleDate& d, ZephalDateOrder order) {
  ZephalTextOptions options;
  options.order = order;
  ZephalSysTime t;
  ZephalTextError error;
  if (!zpReadDate(d.text, options, t, error)) {
    EXPECT_TRUE(d.refuse || monthInOtherWords(d)) << error.reason << " at byte " << error.byte;
    return;
  }
  ASSERT_FALSE(d.refuse) << "read as " << gmtMsOf(t);
  EXPECT_EQ(gmtMsOf(t), d.ms);
  EXPECT_EQ(t.m_bFromUnknownTimezone, !d.zoneKnown);
}

}  // namespace

TEST(PeopleDates, ReadWithTheWritersOrder) {
  for (const PeopleDate& d : peopleDates()) {
    SCOPED_TRACE("'" + d.text + "' (" + d.writer + " " + d.locale + ")");
    expectRead(d, d.order);
  }
}

TEST(PeopleDates, WithoutAnOrderOnlyWhatTheTextSettles) {
  int refused = 0;
  for (const PeopleDate& d : peopleDates()) {
    SCOPED_TRACE("'" + d.text + "' (" + d.writer + " " + d.locale + ")");
    if (!d.ambiguous || dotted(d.text)) {
      expectRead(d, ZephalDateOrder::kUnknown);
      continue;
    }
    // Two orders read different dates; but one of them may be year first
    // with a one-digit year ("8/8/14"), which we do not take for a year.
    ZephalSysTime t;
    ZephalTextError error;
    if (zpReadDate(d.text, {}, t, error)) {
      EXPECT_FALSE(std::isdigit(static_cast<unsigned char>(d.text[1])));
      EXPECT_EQ(gmtMsOf(t), d.ms);
      continue;
    }
    EXPECT_STREQ(error.reason, "day and month order unknown");
    ++refused;
  }
  EXPECT_GT(refused, 50);
}

// loadAnyFormat reads as zpReadDate does; and where we read without an
// order, python-dateutil (which the generator ran) often reads wrongly.
TEST(PeopleDates, TheLoaderAsTheStrictReaderAndThePeers) {
  int read = 0, dateutilWrong = 0, rows = 0;
  for (const PeopleDate& d : peopleDates()) {
    SCOPED_TRACE("'" + d.text + "'");
    ZephalSysTime strict, loaded;
    ZephalTextError error;
    const bool ok = zpReadDate(d.text, {}, strict, error);
    StringBuffer text;
    text.appendN(d.text.data(), static_cast<unsigned>(d.text.size()));
    ASSERT_EQ(loaded.loadAnyFormat(false, text), ok);
    if (ok) {
      EXPECT_EQ(gmtMsOf(loaded), gmtMsOf(strict));
    }
    read += ok;
    dateutilWrong += d.dateutilWrong;
    ++rows;
  }
  EXPECT_GT(read * 10, rows * 7);
  EXPECT_GT(dateutilWrong * 10, rows);
}
