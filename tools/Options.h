// zpdate's command line: GNU date's option names where the meaning matches
// (-d, -f, -I, -R, --rfc-3339, -u, +FORMAT), the module's numeric inputs,
// and the forms --to names. Parsed by getopt_long, so long options take
// "--to=iso" or "--to iso" and any unique abbreviation.
#pragma once

#include <string>
#include <vector>

#include "tools/Convert.h"
#include "tools/DateInput.h"

namespace zpdate {

// One input on the command line, in the order given.
struct Input {
  bool isText;
  Numeric kind;           // when not a text
  const char* values[2];  // the text, or the option's values
  std::string label;      // as the user wrote it, for the output and messages
};

struct Options {
  Settings settings;
  std::vector<Input> inputs;
  const char* file = nullptr;  // -f
  unsigned jobs = 0;           // -j; 0: one per online processor
  bool samples = false;
  bool fromZone = false;      // --from-zone
  bool outputChosen = false;  // an output form or --json was named
};

enum class Parsed { kRun, kHelp, kVersion, kUsageError };

// Parses the command line into `o`. After a usage error the message is
// already written. -u sets TZ=UTC0 here, before any zone lookup.
Parsed parseOptions(int argc, char** argv, Options& o);

// The processors online, at least 1: the default of -j.
unsigned onlineProcessors();

}  // namespace zpdate
