#include "tools/Options.h"

#include <getopt.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tools/Clocks.h"

namespace zpdate {
namespace {

// Long options without a short name; the numeric inputs in Numeric's order.
enum : int {
  kTo = 256,
  kRfc3339,
  kJson,
  kLog,
  kAssumeLocal,
  kDateOrder,
  kZone,
  kFromZone,
  kSamples,
  kFirstNumeric,  // kFirstNumeric + Numeric::k... names each numeric input
};

constexpr int numeric(Numeric kind) { return kFirstNumeric + static_cast<int>(kind); }

const option kOptions[] = {
    {"date", required_argument, nullptr, 'd'},
    {"file", required_argument, nullptr, 'f'},
    {"iso-8601", optional_argument, nullptr, 'I'},
    {"rfc-email", no_argument, nullptr, 'R'},
    {"rfc-3339", required_argument, nullptr, kRfc3339},
    {"utc", no_argument, nullptr, 'u'},
    {"universal", no_argument, nullptr, 'u'},
    {"to", required_argument, nullptr, kTo},
    {"json", no_argument, nullptr, kJson},
    {"log", no_argument, nullptr, kLog},
    {"assume-local", no_argument, nullptr, kAssumeLocal},
    {"date-order", required_argument, nullptr, kDateOrder},
    {"zone", required_argument, nullptr, kZone},
    {"from-zone", required_argument, nullptr, kFromZone},
    {"input-format", required_argument, nullptr, 'i'},
    {"samples", no_argument, nullptr, kSamples},
    {"jobs", required_argument, nullptr, 'j'},
    {"unix", required_argument, nullptr, numeric(Numeric::kUnix)},
    {"unix-ms", required_argument, nullptr, numeric(Numeric::kUnixMs)},
    {"filetime", required_argument, nullptr, numeric(Numeric::kFileTime)},
    {"ticks", required_argument, nullptr, numeric(Numeric::kTicks)},
    {"dos", required_argument, nullptr, numeric(Numeric::kDos)},  // and the next argument
    {"ole", required_argument, nullptr, numeric(Numeric::kOle)},
    {"now", no_argument, nullptr, numeric(Numeric::kNow)},
    {"help", no_argument, nullptr, 'h'},
    {"version", no_argument, nullptr, 'V'},
    {nullptr, 0, nullptr, 0},
};
// "-" first: operands come back in place (as option 1), so inputs keep their order.
constexpr char kShortOptions[] = "-d:f:i:I::Rj:uhV";

struct Named {
  const char* name;
  Form form;
  const char* pattern;  // for Form::kPattern
};

#define ZPDATE_TO_ROW(name, option, ...) {option, Form::name, nullptr},
constexpr Named kForms[] = {ZPDATE_FORMS(ZPDATE_TO_ROW)};
#undef ZPDATE_TO_ROW

// GNU date's -I and --rfc-3339 formats.
constexpr Named kIso8601[] = {
    {"date", Form::kPattern, "%Y-%m-%d"},
    {"hours", Form::kPattern, "%Y-%m-%dT%H%:z"},
    {"minutes", Form::kPattern, "%Y-%m-%dT%H:%M%:z"},
    {"seconds", Form::kPattern, "%Y-%m-%dT%H:%M:%S%:z"},
    {"ns", Form::kPattern, "%Y-%m-%dT%H:%M:%S,%N%:z"},
};
constexpr Named kRfc3339Formats[] = {
    {"date", Form::kPattern, "%Y-%m-%d"},
    {"seconds", Form::kPattern, "%Y-%m-%d %H:%M:%S%:z"},
    {"ns", Form::kPattern, "%Y-%m-%d %H:%M:%S.%N%:z"},
};

// The entry `arg` names exactly or by a unique abbreviation, as GNU's
// argmatch; null when none, or several (`prefixes` tells).
template <size_t N>
const Named* match(const char* arg, const Named (&table)[N], int& prefixes) {
  const Named* found = nullptr;
  prefixes = 0;
  for (const Named& n : table) {
    if (std::strcmp(n.name, arg) == 0) return &n;
    if (*arg != '\0' && std::strncmp(n.name, arg, std::strlen(arg)) == 0) {
      found = &n;
      ++prefixes;
    }
  }
  return prefixes == 1 ? found : nullptr;
}

template <size_t N>
void listNames(const Named (&table)[N], std::string& out) {
  for (const Named& n : table) out += std::string(out.empty() ? "" : ", ") + n.name;
}

Parsed usage(const char* message) {
  if (message != nullptr) std::fprintf(stderr, "zpdate: %s\n", message);
  std::fputs("Try 'zpdate --help' for more information.\n", stderr);
  return Parsed::kUsageError;
}

// Looks `arg` up in `table` for `option`; null after a usage message.
template <size_t N>
const Named* argument(const char* option, const char* arg, const Named (&table)[N]) {
  int prefixes = 0;
  if (const Named* found = match(arg, table, prefixes)) return found;
  std::string names;
  listNames(table, names);
  std::fprintf(stderr, "zpdate: %s argument '%s' for '%s'; valid arguments: %s\n",
               prefixes > 1 ? "ambiguous" : "invalid", arg, option, names.c_str());
  usage(nullptr);
  return nullptr;
}

const char* longName(int value) {
  for (const option& o : kOptions) {
    if (o.val == value) return o.name;
  }
  return "?";
}

// Takes the output `named` gives (null: --json); false when one was taken.
bool choose(Options& o, Settings::Shape shape, const Named* named) {
  if (o.outputChosen) return false;
  o.outputChosen = true;
  o.settings.shape = shape;
  if (named != nullptr) {
    o.settings.form = named->form;
    o.settings.pattern = named->pattern ? named->pattern : "";
  }
  return true;
}

void addText(Options& o, const char* text) {
  o.inputs.push_back({true, Numeric::kNow, {text, nullptr}, text});
}

// An operand: +FORMAT, or a date text. False for a second output.
bool addOperand(Options& o, const char* arg) {
  if (arg[0] != '+') {
    addText(o, arg);
    return true;
  }
  const Named format{"+FORMAT", Form::kPattern, arg + 1};
  return choose(o, Settings::Shape::kForm, &format);
}

// A numeric input; --dos takes the argument after its own as well.
bool addNumeric(Options& o, int c, int argc, char** argv) {
  Input in{false, static_cast<Numeric>(c - kFirstNumeric), {optarg, nullptr}, "--"};
  in.label += longName(c);
  if (in.kind == Numeric::kDos) {
    if (optind >= argc) return false;
    in.values[1] = argv[optind++];  // getopt_long treats it as the option's, as it does optarg
  }
  for (const char* value : in.values) {
    if (value != nullptr) in.label += std::string(" ") + value;
  }
  o.inputs.push_back(in);
  return true;
}

// --date-order's argument, exactly MDY, DMY or YMD; false after a usage message.
bool readOrder(const char* arg, ZephalDateOrder& order) {
  static const struct {
    const char* name;
    ZephalDateOrder order;
  } kOrders[] = {{"MDY", ZephalDateOrder::kMonthDayYear},
                 {"DMY", ZephalDateOrder::kDayMonthYear},
                 {"YMD", ZephalDateOrder::kYearMonthDay}};
  for (const auto& o : kOrders) {
    if (std::strcmp(arg, o.name) == 0) {
      order = o.order;
      return true;
    }
  }
  std::fprintf(stderr,
               "zpdate: invalid argument '%s' for '--date-order'; valid arguments: MDY, DMY, YMD\n",
               arg);
  usage(nullptr);
  return false;
}

// -j's N: a whole number from 1 to 1024; 0 for anything else.
unsigned jobsOf(const char* arg) {
  char* end = nullptr;
  const unsigned long n = std::strtoul(arg, &end, 10);
  const bool whole = *arg >= '0' && *arg <= '9' && *end == '\0';
  return whole && n >= 1 && n <= 1024 ? static_cast<unsigned>(n) : 0;
}

}  // namespace

unsigned onlineProcessors() {
  const long n = sysconf(_SC_NPROCESSORS_ONLN);
  return n > 1 ? static_cast<unsigned>(n) : 1;
}

Parsed parseOptions(int argc, char** argv, Options& o) {
  static const Named kRfcEmail{"rfc-email", Form::kRfc822Local, nullptr};
  bool chosen = true;
  argv[0] = const_cast<char*>("zpdate");  // getopt_long's messages name the program so
  optind = 1;
  for (int c; (c = getopt_long(argc, argv, kShortOptions, kOptions, nullptr)) != -1;) {
    switch (c) {
      case 1: chosen = addOperand(o, optarg); break;
      case 'd': addText(o, optarg); break;
      case 'f': o.file = optarg; break;
      case 'j':
        o.jobs = jobsOf(optarg);
        if (o.jobs == 0) return usage("-j takes a number of threads from 1 to 1024");
        break;
      case 'u': setenv("TZ", "UTC0", 1); break;  // before the module's first zone lookup
      case 'R': chosen = choose(o, Settings::Shape::kForm, &kRfcEmail); break;
      case 'I':
      case kRfc3339:
      case kTo: {
        const Named* named = c == 'I'   ? argument("--iso-8601", optarg ? optarg : "date", kIso8601)
                             : c == kTo ? argument("--to", optarg, kForms)
                                        : argument("--rfc-3339", optarg, kRfc3339Formats);
        if (named == nullptr) return Parsed::kUsageError;
        chosen = choose(o, Settings::Shape::kForm, named);
        break;
      }
      case kJson: chosen = choose(o, Settings::Shape::kJson, nullptr); break;
      case kLog: o.settings.log = true; break;
      case kAssumeLocal: o.settings.reading.assumeLocal = true; break;
      case kDateOrder:
        if (!readOrder(optarg, o.settings.reading.order)) return Parsed::kUsageError;
        break;
      case 'i': o.settings.reading.layouts.emplace_back(optarg); break;
      case kZone:
      case kFromZone: {
        std::string why;
        if (!(c == kZone ? useOutputZone(optarg, why) : useInputZone(optarg, why))) {
          return usage(why.c_str());
        }
        o.fromZone |= c == kFromZone;
        break;
      }
      case kSamples: o.samples = true; break;
      case 'h': return Parsed::kHelp;
      case 'V': return Parsed::kVersion;
      default:
        if (c < kFirstNumeric || c > numeric(Numeric::kNow)) return usage(nullptr);
        if (!addNumeric(o, c, argc, argv)) {
          return usage("option '--dos' needs a DATE and a TIME word");
        }
    }
    if (!chosen) return usage("multiple output formats specified");
  }
  for (; optind < argc && chosen; ++optind) chosen = addOperand(o, argv[optind]);  // after "--"
  if (!chosen) return usage("multiple output formats specified");
  if (o.file != nullptr && !o.inputs.empty()) return usage("-f takes no TEXT or numeric input");
  if (o.fromZone && o.settings.reading.assumeLocal) {
    return usage("--assume-local and --from-zone both name the clock of a text without zone");
  }
  if (o.settings.log && o.settings.shape != Settings::Shape::kBlock) {
    return usage("--log adds to the block, which an output form replaces");
  }
  return Parsed::kRun;
}

}  // namespace zpdate
