// zpdate: reads dates in any form the time module knows and writes them in
// every form it knows, or in one. See `zpdate --help` and zpdate(1).
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "time/ZephalTimeVersion.h"
#include "tools/Batch.h"
#include "tools/Convert.h"
#include "tools/LineIo.h"
#include "tools/Options.h"

namespace {

constexpr char kVersion[] = "zpdate (zephal-time) " ZEPHAL_TIME_VERSION "\n";

constexpr char kHelp[] =
    "Usage: zpdate [OPTION]... [TEXT]... [+FORMAT]\n"
    "  or:  zpdate [OPTION]... -f FILE [+FORMAT]\n"
    "Read each date TEXT in any form the zephal time module knows and write it\n"
    "in every form the module writes, or in one.\n"
    "\n"
    "Inputs, converted in the order given:\n"
    "  -d, --date=TEXT         a date text, as a TEXT operand\n"
    "  -f, --file=FILE         batch mode: a date text per line of FILE ('-' is\n"
    "                          standard input), an output line per line\n"
    "      --unix=N            Unix seconds (negative before 1970)\n"
    "      --unix-ms=N         Unix milliseconds, as JavaScript counts them\n"
    "      --filetime=N        FILETIME: 100-ns intervals since 1601 (decimal or 0x hex)\n"
    "      --ticks=N           .NET ticks: 100-ns intervals since 0001-01-01\n"
    "      --dos DATE TIME     MS-DOS date and time words (decimal or 0x hex),\n"
    "                          local time\n"
    "      --ole=D             OLE Automation date: days since 1899-12-30\n"
    "      --now               the current time\n"
    "  -i, --input-format=FORMAT\n"
    "                          read texts by FORMAT (strptime's conversions, with\n"
    "                          %N or %f a fraction) before any form below; may be\n"
    "                          given several times, tried in the order given\n"
    "      --date-order=ORDER  MDY, DMY or YMD: the order of a numeric date such\n"
    "                          as 3/7/2024, which its text does not say\n"
    "      --assume-local      read a text whose zone is unknown (none stated, or\n"
    "                          RFC 822's -0000 or a military letter) and an OLE date\n"
    "                          as local time instead of GMT; counts of seconds since\n"
    "                          1970 are always UTC\n"
    "  -u, --utc, --universal  make the local zone UTC (as TZ=UTC0)\n"
    "      --zone=ZONE         write every local-clock output on ZONE's clock: a\n"
    "                          tzdata name (Asia/Kolkata) or a TZ rule\n"
    "                          (CET-1CEST,M3.5.0,M10.5.0/3); TZ is left alone\n"
    "      --from-zone=ZONE    read a text that states no zone as ZONE's wall\n"
    "                          clock; a time its clock skips is an error, one it\n"
    "                          repeats is read as the first of the two\n"
    "\n"
    "Outputs (at most one; without one, a block per input, or --to iso with -f):\n"
    "      --to=FORM           the module's form FORM, listed below\n"
    "  -I, --iso-8601[=FMT]    ISO 8601 on the local clock; FMT is 'date' (the\n"
    "                          default), 'hours', 'minutes', 'seconds' or 'ns'\n"
    "  -R, --rfc-email         RFC 5322 on the local clock (--to rfc822-local)\n"
    "      --rfc-3339=FMT      RFC 3339 on the local clock; FMT is 'date',\n"
    "                          'seconds' or 'ns'\n"
    "      --json              a JSON object per input, one per line\n"
    "      --log               add the module's log record to each block\n"
    "      --samples           convert the built-in samples\n"
    "  -j, --jobs=N            batch mode: convert on N threads (default: one per\n"
    "                          online processor; 1 converts on the main thread);\n"
    "                          output, messages and exit status are the same\n"
    "  -h, --help              show this help and exit\n"
    "  -V, --version           show the version and exit\n"
    "\n"
    "FORMAT is strftime's conversions on the local clock, as date(1) takes them,\n"
    "with %N the nanoseconds of what was read (kept to the millisecond) and\n"
    "%:z the offset as +hh:mm.\n"
    "\n"
    "Date texts, tried in this order:\n"
    "  /Date(1700000000000+0100)/      JSON milliseconds (the suffix moves whole hours)\n"
    "  2024-03-07T09:05:03.123Z        RFC 3339 / Atom\n"
    "  20240307090503.123Z             ASN.1 GeneralizedTime with a fraction\n"
    "  1700000000                      Unix seconds, up to 4294967295\n"
    "  240307090503Z                   ASN.1 UTCTime (years 00-49 are 20xx)\n"
    "  20240307090503Z                 ASN.1 GeneralizedTime\n"
    "  Thu, 07 Mar 2024 09:05:03 GMT   RFC 822/1123, RFC 850, asctime, ISO 8601,\n"
    "                                  and what people and office software write:\n"
    "  Jan 25, 2026, 12:32:01 AM       month names in either order, 12-hour clocks\n"
    "  25 Jan 2026, 00:32              (AM, p.m.), a date alone (midnight)\n"
    "  21-Oct-2034  25-JAN-26          a database's day-month-year\n"
    "  25.1.2026, 00:32:01             day.month.year\n"
    "  2026/1/25 0:32:01               year first, fields unpadded\n"
    "  3/7/2024  07-03-24 14:05        numeric: in the order --date-order names;\n"
    "                                  without it, read only when one order gives\n"
    "                                  a date (13/03/2024), refused otherwise\n"
    "\n"
    "FORM is one of (GMT unless named local; local here is +01:00):\n";

// What follows the FORM list, which helpText writes from the forms' table.
constexpr char kHelpAfterForms[] =
    "\n"
    "Every input is checked before it is written: a text whose fields name no\n"
    "real date or time, a local time that a clock change skips, an instant\n"
    "outside the years 0001 to 9999, or one outside the chosen form's range, is\n"
    "an error. A decimal text of more than 32 bits is refused: use --unix-ms\n"
    "for milliseconds. The block shows what a form cannot hold in parentheses;\n"
    "JSON shows it as null.\n"
    "\n"
    "With no input, standard input is read as with -f - when it is not a\n"
    "terminal; at a terminal the built-in samples are shown.\n"
    "\n"
    "In batch mode a line may hold up to 4096 bytes and end in CRLF; a UTF-8\n"
    "byte-order mark at the start is skipped. A line that gives no date gives\n"
    "an empty output line (with --json, an object with \"error\") and a message\n"
    "on standard error naming the line.\n"
    "\n"
    "Exit status: 0 if every input was converted, 1 if any was not or reading\n"
    "or writing failed, 2 for a usage error.\n";

std::string helpText() {
  std::string text = kHelp;
  for (const zpdate::FormRow& row : zpdate::kFormRows) {
    char line[96];
    std::snprintf(line, sizeof line, "  %-15s %s\n", row.name, row.example);
    text += line;
  }
  return text + kHelpAfterForms;
}

using zpdate::Input;
using zpdate::Numeric;

std::vector<Input> samples() {
  static const char* const kTexts[] = {
      "/Date(1700000000123+0100)/",
      "2024-03-07T09:05:03.123+01:00",
      "20240307090503.123Z",
      "1700000000",
      "240307090503Z",
      "20240307090503Z",
      "Thu, 07 Mar 2024 09:05:03 GMT",
  };
  std::vector<Input> out;
  for (const char* t : kTexts) out.push_back({true, Numeric::kNow, {t, nullptr}, t});
  out.push_back({false, Numeric::kUnix, {"1245073530", nullptr}, "--unix 1245073530"});
  out.push_back({false, Numeric::kUnixMs, {"1709802303123", nullptr}, "--unix-ms 1709802303123"});
  out.push_back({false,
                 Numeric::kFileTime,
                 {"0x01D9E6A1B2C3D4E5", nullptr},
                 "--filetime 0x01D9E6A1B2C3D4E5"});
  out.push_back(
      {false, Numeric::kTicks, {"638453211030000000", nullptr}, "--ticks 638453211030000000"});
  out.push_back({false, Numeric::kDos, {"0x3ACF", "0x6DAF"}, "--dos 0x3ACF 0x6DAF"});
  out.push_back({false, Numeric::kOle, {"45358.37850694", nullptr}, "--ole 45358.37850694"});
  return out;
}

int convertInputs(const zpdate::Settings& s, const std::vector<Input>& inputs,
                  zpdate::FdWriter& out, zpdate::FdWriter& err) {
  zpdate::Instant in;
  std::string why, text, messages;
  int status = 0;
  for (const Input& input : inputs) {
    const bool loaded = input.isText
                            ? zpdate::loadText(input.values[0], std::strlen(input.values[0]),
                                               s.reading, in, why)
                            : zpdate::loadNumeric(input.kind, input.values,
                                                  s.reading.assumeLocal, in, why);
    if (!zpdate::convertOne(s, "", input.label.data(), input.label.size(), loaded ? &in : nullptr,
                            why, false, text, messages)) {
      status = 1;
    }
  }
  out.write(text);
  err.write(messages);
  if (!out.flush()) return zpdate::writeFailed(out, err);
  err.flush();
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  zpdate::Options o;
  const zpdate::Parsed parsed = zpdate::parseOptions(argc, argv, o);
  if (parsed == zpdate::Parsed::kUsageError) return 2;
  zpdate::FdWriter out(STDOUT_FILENO), err(STDERR_FILENO);
  if (parsed != zpdate::Parsed::kRun) {
    out.write(parsed == zpdate::Parsed::kHelp ? helpText() : kVersion);
    return out.flush() ? 0 : zpdate::writeFailed(out, err);
  }
  if (o.samples || (o.inputs.empty() && !o.file && isatty(STDIN_FILENO))) {
    return convertInputs(o.settings, samples(), out, err);
  }
  if (!o.inputs.empty()) return convertInputs(o.settings, o.inputs, out, err);

  zpdate::Settings batch = o.settings;
  if (!o.outputChosen) batch.shape = zpdate::Settings::Shape::kForm;  // --to iso
  const char* name = o.file ? o.file : "-";
  const unsigned jobs = o.jobs != 0 ? o.jobs : zpdate::onlineProcessors();
  if (std::strcmp(name, "-") == 0) {
    return zpdate::convertStream(batch, STDIN_FILENO, name, jobs, out, err);
  }
  const int fd = open(name, O_RDONLY);
  if (fd < 0) {
    std::fprintf(stderr, "zpdate: %s: %s\n", name, std::strerror(errno));
    return 1;
  }
  const int status = zpdate::convertStream(batch, fd, name, jobs, out, err);
  close(fd);
  return status;
}
