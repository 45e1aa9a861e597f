// The reader on dates as people's software writes them (people_dates.tsv,
// written by Node's Intl, Java's localized formats and strftime's office
// layouts): never a wrong instant; every medium and short form, and every
// English one, read to what its writer meant, with the writer's order; a
// numeric date whose order the text does not settle refused without one;
// and loadAnyFormat reading as zpReadDate does.
#include <cctype>
#include <string>

#include "tests/PeopleTables.h"
#include "tests/TestValues.h"

using namespace zptest;

namespace {

int64_t gmtMsOf(const ZephalSysTime& t) {
  const ZephalCalendarFields& f = t.m_time;
  return timegmOf(f.wYear, f.wMonth, f.wDay, f.wHour, f.wMinute, f.wSecond) * 1000 +
         f.wMilliseconds;
}

int64_t expectedMs(const PeopleDate& d) {
  if (d.reading == PeopleDate::kInstant) return d.unixMs;
  const PeopleDate::Fields& f = d.wall;
  return timegmOf(f.year, f.month, f.day, f.hour, f.minute, f.second) * 1000 + f.millis;
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
    EXPECT_TRUE(d.reading == PeopleDate::kRefuse || monthInOtherWords(d))
        << error.reason << " at byte " << error.byte;
    return;
  }
  ASSERT_NE(d.reading, PeopleDate::kRefuse) << "read as " << gmtMsOf(t);
  EXPECT_EQ(gmtMsOf(t), expectedMs(d));
  EXPECT_EQ(t.m_bFromUnknownTimezone, d.reading == PeopleDate::kWallClock);
}

}  // namespace

TEST(PeopleDates, ReadWithTheWritersOrder) {
  for (const PeopleDate& d : readPeopleDates()) {
    SCOPED_TRACE("'" + d.text + "' (" + d.writer + " " + d.locale + ")");
    expectRead(d, d.order);
  }
}

TEST(PeopleDates, WithoutAnOrderOnlyWhatTheTextSettles) {
  int refused = 0;
  for (const PeopleDate& d : readPeopleDates()) {
    SCOPED_TRACE("'" + d.text + "' (" + d.writer + " " + d.locale + ")");
    if (!d.ambiguous || dotted(d.text)) {
      expectRead(d, ZephalDateOrder::kUnknown);
      continue;
    }
    // Two orders read different dates; but one of them is year first with
    // a one-digit year ("8/8/14"), which we do not take for a year.
    ZephalSysTime t;
    ZephalTextError error;
    if (zpReadDate(d.text, {}, t, error)) {
      EXPECT_FALSE(std::isdigit(static_cast<unsigned char>(d.text[1])));
      EXPECT_EQ(gmtMsOf(t), expectedMs(d));
      continue;
    }
    EXPECT_STREQ(error.reason, "day and month order unknown");
    ++refused;
  }
  EXPECT_GT(refused, 50);
}

TEST(PeopleDates, TheLoaderReadsAsTheStrictReader) {
  for (const PeopleDate& d : readPeopleDates()) {
    SCOPED_TRACE("'" + d.text + "'");
    ZephalSysTime strict, loaded;
    ZephalTextError error;
    const bool read = zpReadDate(d.text, {}, strict, error);
    StringBuffer text;
    text.appendN(d.text.data(), static_cast<unsigned>(d.text.size()));
    ASSERT_EQ(loaded.loadAnyFormat(false, text), read);
    if (read) {
      EXPECT_EQ(gmtMsOf(loaded), gmtMsOf(strict));
    }
  }
}

// What the peers make of the same table, as the generator recorded it:
// python-dateutil reads more of it than we do, but much of it wrongly.
TEST(PeopleDates, ThePeersGoWrongWhereWeRefuse) {
  int dateutilWrong = 0, oursRead = 0, rows = 0;
  for (const PeopleDate& d : readPeopleDates()) {
    ++rows;
    dateutilWrong += d.dateutil == "wrong";
    ZephalSysTime t;
    ZephalTextError error;
    oursRead += zpReadDate(d.text, {}, t, error);
  }
  EXPECT_GT(oursRead * 10, rows * 7);
  EXPECT_GT(dateutilWrong * 10, rows);
}
