#include "tests/tool/ZpdateRun.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace zptest {
namespace {

// Writes all of `input` to `fd` in pieces of uneven size, so that the reader
// sees short reads; a reader that has gone takes no more.
void feed(int fd, const std::string& input) {
  size_t at = 0, piece = 1000;
  while (at < input.size()) {
    const ssize_t put = write(fd, input.data() + at, std::min(piece, input.size() - at));
    if (put <= 0) break;
    at += static_cast<size_t>(put);
    piece = piece % 7000 + 1777;
  }
}

}  // namespace

std::string slurp(const std::string& path) {
  std::ostringstream s;
  s << std::ifstream(path, std::ios::binary).rdbuf();
  return s.str();
}

Outcome runZpdate(const std::vector<std::string>& args, const std::string& input, const Stdin& in,
                  const std::string& env, bool full) {
  const std::string base = ::testing::TempDir() + "zpdate." + std::to_string(getpid());
  const bool named = !input.empty() && input[0] == '@';
  if (in.how == Stdin::kFile && !named) std::ofstream(base + ".in", std::ios::binary) << input;
  const std::string inPath = named ? input.substr(1) : base + ".in";
  const std::string out = full ? "/dev/full" : base + ".out", err = base + ".err";
  int pipeFds[2] = {-1, -1};
  int inFd = -1;
  if (in.how == Stdin::kPipe) {
    if (pipe(pipeFds) != 0) return {-1, "", "pipe failed"};
  } else {
    inFd = open(inPath.c_str(), O_RDONLY);
    lseek(inFd, in.offset, SEEK_SET);
  }
  std::vector<char*> argv{const_cast<char*>(ZP_ZPDATE_PATH)};
  for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    if (in.how == Stdin::kPipe) {
      dup2(pipeFds[0], 0);
      close(pipeFds[1]);
    } else {
      dup2(inFd, 0);
    }
    dup2(open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 1);
    dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 2);
    if (!env.empty()) putenv(const_cast<char*>(env.c_str()));
    execv(argv[0], argv.data());
    _exit(127);
  }
  if (in.how == Stdin::kPipe) {
    close(pipeFds[0]);
    void (*const previous)(int) = signal(SIGPIPE, SIG_IGN);  // zpdate may stop reading early
    feed(pipeFds[1], input);
    close(pipeFds[1]);
    signal(SIGPIPE, previous);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (inFd >= 0) {
    if (in.left != nullptr) *in.left = static_cast<long>(lseek(inFd, 0, SEEK_CUR));
    close(inFd);
  }
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, full ? "" : slurp(out), slurp(err)};
}

}  // namespace zptest
