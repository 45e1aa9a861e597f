// zpdate -j N against zpdate -j1, run as a user runs them: over a regular
// file, standard input on a file and a pipe. Output, messages with their line
// numbers, exit status and the offset left behind must be those of one
// thread, wherever the chunks' edges fall. ZPDATE_TEST_CHUNK_BYTES makes the
// chunks small (tests only), so that small inputs put an edge at every byte;
// -j1 reads as it always does. Under the tsan preset zpdate itself runs
// under ThreadSanitizer, and a race ends it with a report on standard error.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "tests/tool/ZpdateRun.h"

namespace {

using zptest::Outcome;
using zptest::runZpdate;
using zptest::Stdin;

const std::string kDate = "Thu, 07 Mar 2024 09:05:03 GMT";

// A date line of `size` bytes before its end: the date, then a comment.
std::string longDate(size_t size, const char* end) {
  return kDate + " (" + std::string(size - kDate.size() - 3, 'x') + ")" + end;
}

// Lines that break differently at a chunk's edge: CRLF, empty lines, bad
// lines, and lines around 4,096 bytes, the longest that converts, with and
// without CR; one of 9,000 bytes has no '\n' within a window's reach.
std::string edgeLines() {
  std::string s = kDate + "\r\n\n1700000000\nnope\r\n\r\n2024-03-07T09:05:03Z\n";
  for (const size_t size : {4095, 4096, 4097, 4098}) {
    s += longDate(size, "\n") + "x\n" + longDate(size, "\r\n") + "\r\n";
  }
  return s + std::string(9000, 'y') + "\n/Date(1700000000000+0100)/\r\n";
}

// How an input reaches zpdate.
struct Way {
  const char* name;
  Stdin::How how;
  bool named;  // -f FILE rather than -f -
};
constexpr Way kWays[] = {{"-f FILE", Stdin::kFile, true},
                         {"-f - on a file", Stdin::kFile, false},
                         {"-f - on a pipe", Stdin::kPipe, false}};

Outcome run(const std::vector<std::string>& options, const std::string& input, const Way& way,
            const std::string& env) {
  const std::string path = ::testing::TempDir() + "zpdate.jobs.in";
  std::ofstream(path, std::ios::binary) << input;
  std::vector<std::string> args = options;
  args.push_back("-f");
  args.push_back(way.named ? path : "-");
  return runZpdate(args, way.how == Stdin::kFile ? "@" + path : input, {way.how}, env);
}

// Where `got` parts from `want`: the first differing line of each, not
// megabytes of both.
void expectSame(const std::string& got, const std::string& want, const std::string& where) {
  if (got == want) return;
  const size_t at = static_cast<size_t>(
      std::mismatch(got.begin(), got.begin() + std::min(got.size(), want.size()), want.begin())
          .first -
      got.begin());
  const size_t line = got.rfind('\n', at == 0 ? 0 : at - 1);
  const size_t from = line == std::string::npos || at == 0 ? 0 : line + 1;
  const auto lineAt = [&](const std::string& s) {
    return s.substr(from, s.find('\n', from) - from);
  };
  ADD_FAILURE() << where << ": line " << std::count(got.begin(), got.begin() + from, '\n') + 1
                << " differs (" << got.size() << " bytes against " << want.size()
                << ")\n got: " << lineAt(got) << "\nwant: " << lineAt(want);
}

// -j N over each way, checked against -j1 on a file.
void expectAsOneThread(const std::string& input, const std::vector<std::string>& options,
                       const std::vector<std::string>& jobs, const std::string& env,
                       const std::string& where) {
  std::vector<std::string> one = options;
  one.push_back("-j1");
  const Outcome expected = run(one, input, kWays[0], "");
  for (const Way& way : kWays) {
    for (const std::string& j : jobs) {
      std::vector<std::string> many = options;
      many.push_back(j);
      const Outcome r = run(many, input, way, env);
      EXPECT_EQ(r.status, expected.status) << where << ", " << j << " " << way.name << "\n"
                                           << r.err;
      expectSame(r.out, expected.out, where + ", " + j + " " + way.name + ", output");
      expectSame(r.err, expected.err, where + ", " + j + " " + way.name + ", messages");
    }
  }
}

}  // namespace

// Chunks of 64 bytes, and the same lines shifted by 0 to 63 bytes: every
// byte of every line falls on a chunk's edge once. A window then reaches 65
// chunks past its own.
TEST(ZpdateJobs, ChunkEdgeAtEveryByteOfTheLines) {
  for (size_t shift = 0; shift < 64; ++shift) {
    const std::string pad = shift == 0 ? "" : std::string(shift - 1, 'z') + "\n";
    expectAsOneThread("\xEF\xBB\xBF" + pad + edgeLines() + "1700000000", {},
                      {shift % 2 ? "-j2" : "-j3"}, "ZPDATE_TEST_CHUNK_BYTES=64",
                      "shift " + std::to_string(shift));
  }
}

// The input's start and end at every offset in a chunk of 16 bytes: a
// byte-order mark (whole, alone, or two bytes of one), a last line with and
// without '\n', ending in CR, and a last line too long without '\n'.
TEST(ZpdateJobs, InputStartAndEndAtEveryByteOfAChunk) {
  const std::string starts[] = {"\xEF\xBB\xBF", "", "\xEF\xBB"};
  const std::string ends[] = {"", "\n", "\r", "\r\n", std::string(5000, 'w')};
  for (size_t shift = 0; shift < 16; ++shift) {
    const std::string pad = std::string(shift, '9');  // 1700000000 with more digits: a bad line
    for (const std::string& end : ends) {
      const std::string input = starts[shift % 3] + "1700000000\n" + pad + "1700000000" + end;
      expectAsOneThread(
          input, {}, {"-j2"}, "ZPDATE_TEST_CHUNK_BYTES=16",
          "shift " + std::to_string(shift) + ", end of " + std::to_string(end.size()) + " bytes");
    }
  }
  for (const char* tiny : {"", "\xEF\xBB\xBF", "\xEF\xBB\xBF\n", "\n", "x", "\r\n\r\n"}) {
    expectAsOneThread(tiny, {}, {"-j2", "-j5"}, "ZPDATE_TEST_CHUNK_BYTES=4", "a tiny input");
  }
}

// The real 64 KB chunks: a CRLF date line, and a line too long to convert,
// end at each byte from 4 before to 4 after the first chunk's edge.
TEST(ZpdateJobs, RealChunkEdge) {
  for (int at = -4; at <= 4; ++at) {
    for (const std::string& last : {kDate + "\r\n", std::string(5000, 'q') + "\n"}) {
      const size_t before = static_cast<size_t>(65536 + at) - last.size();
      std::string input;
      while (input.size() + 60 < before) input += "2024-03-07T09:05:03Z\nnot a date\n";
      input += std::string(before - input.size() - 1, 'p') + "\n" + last;
      input += longDate(4097, "\n") + std::string(6000, 'r') + "\n1700000000";
      expectAsOneThread(input, {}, {"-j2"}, "",
                        "a line of " + std::to_string(last.size()) + " bytes ending at " +
                            std::to_string(65536 + at));
    }
  }
}

// Thousands of chunks of 512 bytes, many threads, 45% of the lines bad, JSON
// and one form: the threads take turns reading the pipe, count the lines
// before each block and write blocks in order while others convert.
TEST(ZpdateJobs, ManyThreadsOverBadLines) {
  const char* const lines[] = {"1700000000\n",
                               "tomorrow-ish\n",
                               "2024-03-07T09:05:03Z\r\n",
                               "Thu, 32 Mar 2024 09:05:03 GMT\n",
                               "/Date(1700000000000)/\n",
                               "\n",
                               "2024-13-07T09:05:03Z\n",
                               "Sun Mar  3 09:05:03 UTC 2024\r\n",
                               "x\x01y\n"};
  std::string input;
  for (unsigned i = 0; i < 30000; ++i) input += lines[(i * 7 + i / 9) % 9];
  for (const char* options : {"--to=rfc3339", "--json"}) {
    expectAsOneThread(input, {options}, {"-j2", "-j4", "--jobs=8"}, "ZPDATE_TEST_CHUNK_BYTES=512",
                      options);
  }
  expectAsOneThread(input, {}, {"-j3"}, "", "64 KB chunks");
}

// Standard input on a file read from its offset on, which is left at the
// end as one thread leaves it, for the next program to read from there.
TEST(ZpdateJobs, StandardInputFromItsOffset) {
  const std::string input = "nope\n1700000000\nbad\n2024-03-07T09:05:03Z\n1700000000";
  const std::string path = ::testing::TempDir() + "zpdate.offset.in";
  std::ofstream(path, std::ios::binary) << input;
  for (const char* jobs : {"-j1", "-j2"}) {
    long left = 0;
    const Outcome r = runZpdate({jobs, "-f", "-"}, "@" + path, {Stdin::kFile, 5, &left},
                                "ZPDATE_TEST_CHUNK_BYTES=8");
    EXPECT_EQ(r.status, 1) << jobs;
    EXPECT_EQ(r.out, "20231114T221320Z\n\n20240307T090503Z\n20231114T221320Z\n") << jobs;
    EXPECT_EQ(r.err, "zpdate: line 2: 'bad': not a date: unknown month name at byte 0\n") << jobs;
    EXPECT_EQ(left, static_cast<long>(input.size())) << jobs;
  }
}

// A failed write ends the run after the blocks before it, with their
// messages, as on one thread; the threads stop instead of converting on.
TEST(ZpdateJobs, WriteFailureStopsTheThreads) {
  std::string input = "nope\n";
  for (int i = 0; i < 200000; ++i) input += "1700000000\n";
  const std::string path = ::testing::TempDir() + "zpdate.full.in";
  std::ofstream(path, std::ios::binary) << input;
  for (const char* jobs : {"-j1", "-j2", "-j4"}) {
    const Outcome r = runZpdate({jobs, "-f", path}, "", {}, "", true);
    EXPECT_EQ(r.status, 1) << jobs;
    EXPECT_EQ(r.err,
              "zpdate: line 1: 'nope': not a date: unknown month name at byte 0\n"
              "zpdate: write error: No space left on device\n")
        << jobs;
  }
}

// Lines that come slowly, as from tail -f, are converted as they come: each
// answer is read before the next line is written.
TEST(ZpdateJobs, SlowStreamAnsweredLineByLine) {
  int in[2], out[2];
  ASSERT_EQ(pipe(in), 0);
  ASSERT_EQ(pipe(out), 0);
  const std::string err = ::testing::TempDir() + "zpdate.slow.err";
  const pid_t child = fork();
  if (child == 0) {
    dup2(in[0], 0);
    dup2(out[1], 1);
    dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 2);
    close(in[1]);
    close(out[0]);
    execl(ZP_ZPDATE_PATH, ZP_ZPDATE_PATH, "-j2", "-f", "-", static_cast<char*>(nullptr));
    _exit(127);
  }
  close(in[0]);
  close(out[1]);
  const char* const lines[][2] = {
      {"1700000000\n", "20231114T221320Z\n"},
      {"nope\r\n", "\n"},
      {kDate.c_str(), ""},  // the line's end comes with the next
      {"\r\n2024-03-07T09:05:03Z\n", "20240307T090503Z\n20240307T090503Z\n"}};
  for (const auto& line : lines) {
    ASSERT_GT(write(in[1], line[0], std::char_traits<char>::length(line[0])), 0);
    std::string got;
    const size_t want = std::char_traits<char>::length(line[1]);
    pollfd p{out[0], POLLIN, 0};
    while (got.size() < want && poll(&p, 1, 30000) == 1) {
      char buffer[256];
      const ssize_t n = read(out[0], buffer, sizeof buffer);
      if (n <= 0) break;
      got.append(buffer, static_cast<size_t>(n));
    }
    EXPECT_EQ(got, line[1]) << "after " << line[0];
  }
  close(in[1]);
  close(out[0]);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1);
  EXPECT_EQ(zptest::slurp(err), "zpdate: line 2: 'nope': not a date: unknown month name at byte 0\n");
}
