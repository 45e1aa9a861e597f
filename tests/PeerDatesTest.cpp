// The date reader against independent readers and writers: mail and HTTP
// texts on which Python, libcurl and Go agree (tests/data/gen_peer_dates.py),
// and the texts that common software writes (gen_software_dates.py). Every
// row runs; the mismatches are listed together.
#include <cstdio>

#include "services/zpDateParser.h"
#include "tests/TestValues.h"

using namespace zptest;

namespace {

// The fields as GMT; with an unknown zone, the fields as written read as UTC.
long long unixSecondsOf(const ZephalSysTime& t) {
  const ZephalCalendarFields& f = t.m_time;
  return timegmOf(f.wYear, f.wMonth, f.wDay, f.wHour, f.wMinute, f.wSecond);
}

// rfc822_peers.tsv's verdict: Unix seconds, or "-" for a refusal.
std::string parserVerdict(const std::string& text) {
  ZephalSysTime t;
  LogNull log;
  if (!_zpDateParser::parseRFC822Date(exactCopy(text).get(), t, log)) return "-";
  return std::to_string(unixSecondsOf(t));
}

// software_dates.tsv's verdict: "@1709802303.123", "local 2024-03-07T10:05:03.123"
// or "refuse".
std::string loaderVerdict(const std::string& text) {
  ZephalSysTime t;
  StringBuffer buffer(text.c_str());
  if (!t.loadAnyFormat(false, buffer)) return "refuse";
  const ZephalCalendarFields& f = t.m_time;
  char out[64];
  if (t.m_bFromUnknownTimezone) {
    std::snprintf(out, sizeof out, "local %04d-%02d-%02dT%02d:%02d:%02d.%03d", f.wYear, f.wMonth,
                  f.wDay, f.wHour, f.wMinute, f.wSecond, f.wMilliseconds);
  } else {
    std::snprintf(out, sizeof out, "@%lld.%03d", unixSecondsOf(t), f.wMilliseconds);
  }
  return out;
}

// Each row's text (column `textAt`) through `verdict`, against the row's last
// column; one expectation lists the first 50 rows that differ.
template <typename Verdict>
void expectVerdicts(const std::string& table, size_t textAt, Verdict verdict) {
  const std::vector<Row> rows = readTable(table);
  size_t misses = 0;
  std::string shown;
  for (const Row& row : rows) {
    const std::string got = verdict(unescape(row.at(textAt)));
    if (got == row.back()) continue;
    if (++misses > 50) continue;
    for (size_t i = 0; i + 1 < row.size(); ++i) shown += row[i] + "  ";
    shown += "expected " + row.back() + ", got " + got + "\n";
  }
  EXPECT_EQ(misses, 0u) << misses << " of " << rows.size() << " rows of " << table
                        << " differ; the first of them:\n"
                        << shown;
}

}  // namespace

TEST(PeerDates, ReadsAsPythonCurlAndGoAgree) {
  expectVerdicts("rfc822_peers.tsv", 0, parserVerdict);
}

TEST(PeerDates, LoadsWhatSoftwareWrites) {
  expectVerdicts("software_dates.tsv", 2, loaderVerdict);
}
