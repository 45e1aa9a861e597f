// Runs the built zpdate as a user runs it: arguments, standard input from a
// file or a pipe, standard output and error caught in files.
//
//   const zptest::Outcome r = zptest::runZpdate({"-j2", "-f", "-"}, "1700000000\n");
//   // r.status 0, r.out "20231114T221320Z\n", r.err ""
#pragma once

#include <string>
#include <vector>

namespace zptest {

struct Outcome {
  int status;  // the exit status, or -1 when zpdate did not exit
  std::string out, err;
};

struct Stdin {
  enum How { kFile, kPipe };
  How how = kFile;       // kPipe: written into a pipe a few KB at a time
  long offset = 0;       // kFile: where the file's offset stands when zpdate starts
  long* left = nullptr;  // kFile: where zpdate left the offset
};

// Runs zpdate with `args` and `input` on standard input (with kFile, an input
// "@PATH" is the file PATH). `env` ("NAME=VALUE") is added to the
// environment when not empty; with `full` standard output is /dev/full.
Outcome runZpdate(const std::vector<std::string>& args, const std::string& input,
                  const Stdin& in = {}, const std::string& env = "", bool full = false);

// The file's bytes; "" when it cannot be read.
std::string slurp(const std::string& path);

}  // namespace zptest
