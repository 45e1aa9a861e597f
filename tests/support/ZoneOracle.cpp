#include "tests/support/ZoneOracle.h"

#include <fcntl.h>
#include <time.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

extern char** environ;

namespace fs = std::filesystem;

namespace {

std::string readFile(const std::string& path) {
  std::ifstream in(path);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// This binary, run with TZ=zone and the tests `filter` names; output to `log`.
pid_t spawnChild(const std::string& zone, const std::string& filter, const std::string& log) {
  static const std::string self = fs::read_symlink("/proc/self/exe").string();
  std::vector<std::string> env{"TZ=" + zone};
  for (char** e = environ; *e != nullptr; ++e) {
    if (std::strncmp(*e, "TZ=", 3) != 0) env.emplace_back(*e);
  }
  std::vector<char*> envp, argv;
  for (std::string& e : env) envp.push_back(e.data());
  envp.push_back(nullptr);
  std::string filterArg = "--gtest_filter=" + filter, brief = "--gtest_brief=1";
  argv = {const_cast<char*>(self.c_str()), filterArg.data(), brief.data(), nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_adddup2(&actions, 1, 2);
  pid_t pid = -1;
  if (posix_spawn(&pid, self.c_str(), &actions, nullptr, argv.data(), envp.data()) != 0) pid = -1;
  posix_spawn_file_actions_destroy(&actions);
  return pid;
}

}  // namespace

zptest::Rule zptest::ruleAt(long long instant) {
  const time_t t = instant;
  tm local{};
  localtime_r(&t, &local);
  return {local.tm_gmtoff, local.tm_isdst};
}

int zptest::Walk::occurrences(long long wallClock) const {
  int n = 0;
  for (size_t i = 0; i < offsets.size(); ++i) {
    const long long instant = wallClock - offsets[i];
    n += (i == 0 || changes[i - 1] <= instant) && (i == changes.size() || instant < changes[i]);
  }
  return n;
}

zptest::Walk zptest::walkZone(long long from, long long to) {
  constexpr long long kStep = 86400;
  Walk walk{{}, {ruleAt(from).offset}};
  for (long long at = from; at < to;) {
    const long long next = std::min(at + kStep, to);
    if (ruleAt(at) == ruleAt(next)) {
      at = next;
      continue;
    }
    long long lo = at, hi = next;  // rule(lo) is the old one, rule(hi) is not
    while (hi - lo > 1) {
      const long long mid = lo + (hi - lo) / 2;
      (ruleAt(mid) == ruleAt(lo) ? lo : hi) = mid;
    }
    walk.changes.push_back(hi);
    walk.offsets.push_back(ruleAt(hi).offset);
    at = hi;
  }
  return walk;
}

std::vector<std::string> zptest::zoneFileNames(const std::string& dir) {
  std::vector<std::string> names;
  for (auto it = fs::recursive_directory_iterator(dir); it != fs::recursive_directory_iterator(); ++it) {
    const std::string name = fs::relative(it->path(), dir).string();
    if (it->is_directory()) {
      if (name == "posix" || name == "right") it.disable_recursion_pending();
      continue;
    }
    char magic[4] = {};
    std::ifstream(it->path(), std::ios::binary).read(magic, 4);
    if (std::string(magic, 4) == "TZif") names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

bool zptest::runPerZone(const std::vector<std::string>& zones, const std::string& filter,
                        const std::function<void(const ZoneChild&)>& done) {
  const size_t slots = std::max(1u, std::thread::hardware_concurrency());
  std::map<pid_t, std::pair<std::string, std::string>> running;  // pid -> zone, log
  size_t next = 0;
  while (next < zones.size() || !running.empty()) {
    if (next < zones.size() && running.size() < slots) {
      const std::string log = testing::TempDir() + "zone_child_" + std::to_string(getpid()) + "_" +
                              std::to_string(next) + ".txt";
      const pid_t pid = spawnChild(zones[next], filter, log);
      if (pid <= 0) return false;
      running[pid] = {zones[next++], log};
      continue;
    }
    int status = 0;
    const pid_t pid = waitpid(-1, &status, 0);
    if (pid <= 0) return false;
    const auto [zone, log] = running.at(pid);
    running.erase(pid);
    const std::string output = readFile(log);
    std::remove(log.c_str());
    const bool passed = WIFEXITED(status) && WEXITSTATUS(status) == 0 &&
                        output.find("[  PASSED  ] 1 test.") != std::string::npos;
    done(ZoneChild{zone, passed, output});
  }
  return true;
}

long long zptest::walkedCount(const std::string& output) {
  const size_t at = output.find("walked ");
  return at == std::string::npos ? 0 : std::stoll(output.substr(at + 7));
}

zptest::Walks zptest::runWalks(const std::vector<std::string>& zones, const std::string& filter) {
  Walks walks;
  const bool ran = runPerZone(zones, filter, [&](const ZoneChild& child) {
    walks.walked += walkedCount(child.output);
    if (child.passed) return;
    walks.failed.push_back(child.zone);
    if (walks.failed.size() <= 5) ADD_FAILURE() << "TZ=" << child.zone << ":\n" << child.output.substr(0, 4000);
  });
  EXPECT_TRUE(ran) << "cannot run this binary again";
  return walks;
}
