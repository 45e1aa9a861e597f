// zpdate: reads dates in any form the time module knows and writes them in
// every form it knows. See `zpdate --help`.
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "services/StringBuffer.h"
#include "time/ZephalFileTime.h"
#include "time/ZephalSysTime.h"
#include "time/ZephalTimeVersion.h"
#include "tools/DateReport.h"
#include "tools/LineIo.h"

namespace {

constexpr char kVersion[] = "zpdate (zephal-time) " ZEPHAL_TIME_VERSION "\n";

constexpr char kHelp[] =
    "Usage: zpdate [OPTION]... [TEXT]...\n"
    "       zpdate [OPTION]... -f FILE\n"
    "Read each date TEXT in any form it knows and write it in every form it knows.\n"
    "\n"
    "Date texts (tried in this order):\n"
    "  /Date(1700000000000+0100)/      JSON milliseconds (the suffix moves whole hours)\n"
    "  2024-03-07T09:05:03Z            RFC 3339 / Atom\n"
    "  20240307090503.123Z             ASN.1 GeneralizedTime with a fraction\n"
    "  1700000000                      Unix seconds (see --local)\n"
    "  240307090503Z                   ASN.1 UTCTime (years 00-49 are 20xx)\n"
    "  20240307090503Z                 ASN.1 GeneralizedTime\n"
    "  Thu, 07 Mar 2024 09:05:03 GMT   RFC 822/1123, RFC 850, asctime, ISO 8601\n"
    "\n"
    "Numeric inputs (may be mixed with TEXTs):\n"
    "      --unix N        Unix seconds (negative before 1970)\n"
    "      --filetime N    FILETIME: 100-ns intervals since 1601 (decimal or 0x hex)\n"
    "      --ticks N       .NET ticks: 100-ns intervals since 0001-01-01\n"
    "      --dos DATE TIME MS-DOS date and time words (decimal or 0x hex)\n"
    "      --ole D         OLE Automation date: days since 1899-12-30\n"
    "      --now           the current time\n"
    "\n"
    "Options:\n"
    "      --local         read bare Unix seconds and OLE dates as local time\n"
    "  -u, --utc           work in UTC: the local zone is UTC (as TZ=UTC0)\n"
    "      --to FORMAT     print only FORMAT, one line per input: iso, utctime,\n"
    "                      rfc822, unix, filetime, ticks, dos, ole\n"
    "      --json          print one JSON object per input\n"
    "  -f, --file FILE     batch mode: one date text per line of FILE ('-' is\n"
    "                      standard input), one output line per input line (ISO 8601\n"
    "                      unless --to or --json); a line that is no date gives an\n"
    "                      empty output line and a message on standard error\n"
    "      --samples       convert the built-in samples\n"
    "      --help          show this help and exit\n"
    "      --version       show the version and exit\n"
    "\n"
    "With no TEXT, standard input is read as with -f - when it is not a terminal;\n"
    "at a terminal the built-in samples are shown.\n"
    "\n"
    "The block for each input shows how it was read (GMT, local, or unknown zone:\n"
    "a text that states no zone), the ISO 8601 timestamp, UTCTime, RFC 822 in GMT\n"
    "and local time, Unix seconds, FILETIME (decimal and its two 32-bit halves),\n"
    ".NET ticks, the DOS date and time words of the local reading, the OLE date,\n"
    "the day of the week (GMT) and the log record.\n"
    "\n"
    "Exit status: 0 if every input was converted, 1 if any was not, 2 for a usage error.\n";

enum class Kind { kText, kUnix, kFileTime, kTicks, kDos, kOle, kNow };

struct Input {
  Kind kind;
  std::string label;  // what the user wrote, for the block and for messages
  std::vector<std::string> args;
  int position;  // argument number, for messages
};

struct Options {
  std::vector<Input> inputs;
  bool local = false, json = false, samples = false, haveForm = false;
  zpdate::Form form = zpdate::Form::kIso;
  const char* file = nullptr;
};

int usageError(const char* message, const char* what = nullptr) {
  std::fprintf(stderr, "zpdate: %s%s%s\nTry 'zpdate --help' for more information.\n", message,
               what ? " " : "", what ? what : "");
  return 2;
}

// Parses the command line; returns -1 to go on, or an exit status.
int parseOptions(int argc, char** argv, Options& o) {
  struct NumericOption {
    const char* name;
    Kind kind;
    int argCount;
  };
  static const NumericOption kNumeric[] = {
      {"--unix", Kind::kUnix, 1}, {"--filetime", Kind::kFileTime, 1}, {"--ticks", Kind::kTicks, 1},
      {"--dos", Kind::kDos, 2},   {"--ole", Kind::kOle, 1},           {"--now", Kind::kNow, 0},
  };
  bool textsOnly = false;
  for (int i = 1; i < argc; ++i) {
    const char* a = argv[i];
    if (textsOnly || a[0] != '-' || a[1] == '\0') {
      o.inputs.push_back({Kind::kText, a, {a}, i});
      continue;
    }
    if (std::strcmp(a, "--") == 0) {
      textsOnly = true;
    } else if (std::strcmp(a, "--help") == 0) {
      std::fputs(kHelp, stdout);
      return 0;
    } else if (std::strcmp(a, "--version") == 0) {
      std::fputs(kVersion, stdout);
      return 0;
    } else if (std::strcmp(a, "--local") == 0) {
      o.local = true;
    } else if (std::strcmp(a, "-u") == 0 || std::strcmp(a, "--utc") == 0) {
      setenv("TZ", "UTC0", 1);  // before the module's first zone lookup
    } else if (std::strcmp(a, "--json") == 0) {
      o.json = true;
    } else if (std::strcmp(a, "--samples") == 0) {
      o.samples = true;
    } else if (std::strcmp(a, "--to") == 0) {
      if (++i == argc) return usageError("option '--to' needs a FORMAT");
      if (!zpdate::formByName(argv[i], o.form)) {
        return usageError("unknown FORMAT; one of:", zpdate::formNames());
      }
      o.haveForm = true;
    } else if (std::strcmp(a, "-f") == 0 || std::strcmp(a, "--file") == 0) {
      if (++i == argc) return usageError("option '-f' needs a FILE");
      o.file = argv[i];
    } else {
      const NumericOption* numeric = nullptr;
      for (const NumericOption& n : kNumeric) {
        if (std::strcmp(a, n.name) == 0) numeric = &n;
      }
      if (numeric == nullptr) return usageError("unknown option:", a);
      if (i + numeric->argCount >= argc) return usageError("missing value after", a);
      Input in{numeric->kind, a, {}, i};
      for (int k = 1; k <= numeric->argCount; ++k) {
        in.args.push_back(argv[i + k]);
        in.label += std::string(" ") + argv[i + k];
      }
      i += numeric->argCount;
      o.inputs.push_back(in);
    }
  }
  if (o.json && o.haveForm) return usageError("--json and --to exclude each other");
  if (o.file && !o.inputs.empty()) return usageError("-f takes no TEXT or numeric inputs");
  return -1;
}

// Whole-text number readers: the text must be a number and nothing else.
bool readSigned(const std::string& s, long long& out) {
  char* end = nullptr;
  errno = 0;
  out = std::strtoll(s.c_str(), &end, 10);
  return !s.empty() && *end == '\0' && errno == 0;
}

// Decimal, or hex after "0x"; no sign, and no octal surprise for "010".
bool readUnsigned(const std::string& s, unsigned long long limit, unsigned long long& out) {
  const bool hex = s.size() > 2 && s[0] == '0' && (s[1] == 'x' || s[1] == 'X');
  const char* digits = s.c_str() + (hex ? 2 : 0);
  if (*digits == '\0' || *digits == '-' || *digits == '+' || *digits == ' ') return false;
  char* end = nullptr;
  errno = 0;
  out = std::strtoull(digits, &end, hex ? 16 : 10);
  return *end == '\0' && errno == 0 && out <= limit;
}

// Loads one command-line input; on failure returns the reason.
const char* load(const Input& in, bool local, ZephalSysTime& t) {
  long long n = 0;
  unsigned long long u = 0, v = 0;
  ZephalFileTime fileTime;
  switch (in.kind) {
    case Kind::kText: {
      StringBuffer text(in.args[0].c_str());
      return t.loadAnyFormat(local, text) ? nullptr : "not a date";
    }
    case Kind::kUnix:
      if (!readSigned(in.args[0], n)) return "not a number of seconds";
      t.fromUnixTime64(local, n);
      return nullptr;
    case Kind::kFileTime:
      if (!readUnsigned(in.args[0], ~0ULL, u)) return "not a FILETIME count";
      fileTime.setFileTime(static_cast<unsigned int>(u >> 32), static_cast<unsigned int>(u));
      fileTime.toSystemTime_gmt(t);
      return nullptr;
    case Kind::kTicks:
      if (!readSigned(in.args[0], n) || n < 0) return "not a tick count";
      fileTime.fromDateTimeTicks(n);
      fileTime.toSystemTime_gmt(t);
      return nullptr;
    case Kind::kDos: {
      if (!readUnsigned(in.args[0], 0xFFFF, u) || !readUnsigned(in.args[1], 0xFFFF, v)) {
        return "not a pair of 16-bit DOS words";
      }
      const unsigned day = u & 0x1F, month = (u >> 5) & 0xF;
      if (day == 0 || month == 0 || month > 12) return "not a DOS date word";
      t.fromDosDateTime(static_cast<unsigned short>(u), static_cast<unsigned short>(v), nullptr);
      return nullptr;
    }
    case Kind::kOle: {
      char* end = nullptr;
      const double d = std::strtod(in.args[0].c_str(), &end);
      if (in.args[0].empty() || *end != '\0' || !t.fromOleDate(local, d)) {
        return "not an OLE date from 0100-01-01 to 9999-12-31";
      }
      return nullptr;
    }
    case Kind::kNow:
      t.getCurrentGmt();
      return nullptr;
  }
  return "unknown input";
}

void render(const Options& o, const char* label, const ZephalSysTime& t, std::string& out) {
  if (o.json) {
    zpdate::appendJson(label, t, out);
    out += '\n';
  } else if (o.haveForm) {
    StringBuffer text;
    zpdate::appendForm(o.form, t, text);
    out.append(text.getString(), text.getSize());
    out += '\n';
  } else {
    if (!out.empty()) out += '\n';
    zpdate::appendBlock(label, t, out);
  }
}

int convertInputs(const Options& o, const std::vector<Input>& inputs) {
  int status = 0;
  std::string out;
  for (const Input& in : inputs) {
    ZephalSysTime t;
    if (const char* why = load(in, o.local, t)) {
      std::fprintf(stderr, "zpdate: argument %d: %s: '%s'\n", in.position, why, in.label.c_str());
      status = 1;
      continue;
    }
    render(o, in.label.c_str(), t, out);
  }
  std::fwrite(out.data(), 1, out.size(), stdout);
  return status;
}

// One output line per input line, streaming.
int convertLines(const Options& o, std::FILE* in, const char* name) {
  zpdate::LineReader reader(in);
  zpdate::BlockWriter writer(stdout);
  StringBuffer text, line;
  std::string rendered;
  int status = 0;
  const char* data;
  size_t length;
  bool tooLong;
  for (unsigned long number = 1; reader.next(data, length, tooLong); ++number) {
    text.clear();
    text.appendN(data, static_cast<unsigned int>(length));
    ZephalSysTime t;
    if (tooLong || !t.loadAnyFormat(o.local, text)) {
      std::fprintf(stderr, "zpdate: line %lu: %s: '%s'\n", number,
                   tooLong ? "line too long" : "not a date", tooLong ? "..." : text.getString());
      writer.write("\n", 1);
      status = 1;
      continue;
    }
    if (o.json) {
      rendered.clear();
      zpdate::appendJson(text.getString(), t, rendered);
      rendered += '\n';
      writer.write(rendered.data(), rendered.size());
    } else {
      line.clear();
      zpdate::appendForm(o.form, t, line);
      line.appendChar('\n');
      writer.write(line.getString(), line.getSize());
    }
  }
  if (reader.failed()) {
    std::fprintf(stderr, "zpdate: %s: read error\n", name);
    status = 1;
  }
  return status;
}

std::vector<Input> samples() {
  const char* texts[] = {
      "/Date(1700000000000+0100)/", "2024-03-07T09:05:03Z", "20240307090503.123Z",
      "1700000000",                 "240307090503Z",        "20240307090503Z",
      "Thu, 07 Mar 2024 09:05:03 GMT",
  };
  std::vector<Input> out;
  for (const char* t : texts) out.push_back({Kind::kText, t, {t}, 0});
  out.push_back({Kind::kUnix, "--unix 1245073530", {"1245073530"}, 0});
  out.push_back({Kind::kFileTime, "--filetime 0x01D9E6A1B2C3D4E5", {"0x01D9E6A1B2C3D4E5"}, 0});
  out.push_back({Kind::kTicks, "--ticks 638453211030000000", {"638453211030000000"}, 0});
  out.push_back({Kind::kDos, "--dos 0x3ACF 0x6DAF", {"0x3ACF", "0x6DAF"}, 0});
  out.push_back({Kind::kOle, "--ole 45358.37850694", {"45358.37850694"}, 0});
  return out;
}

}  // namespace

int main(int argc, char** argv) {
  Options o;
  const int exitNow = parseOptions(argc, argv, o);
  if (exitNow >= 0) return exitNow;

  if (o.samples || (o.inputs.empty() && !o.file && isatty(STDIN_FILENO))) {
    return convertInputs(o, samples());
  }
  if (!o.inputs.empty()) return convertInputs(o, o.inputs);

  const char* name = o.file ? o.file : "-";
  if (std::strcmp(name, "-") == 0) return convertLines(o, stdin, "standard input");
  std::FILE* in = std::fopen(name, "rb");
  if (in == nullptr) {
    std::fprintf(stderr, "zpdate: %s: %s\n", name, std::strerror(errno));
    return 1;
  }
  const int status = convertLines(o, in, name);
  std::fclose(in);
  return status;
}
