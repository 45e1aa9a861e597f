// Runs the built zpdate: samples, numeric inputs, --to and --json read back,
// batch mode, messages and exit statuses.
#include <gtest/gtest.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

extern char** environ;

namespace {

struct Outcome {
  int status;
  std::string out, err;
};

std::string slurp(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

// Runs zpdate with `args`, standard input from `input`, and TZ as given.
Outcome zpdate(const std::vector<std::string>& args, const std::string& input = "",
           const char* tz = "UTC0") {
  const std::string dir = ::testing::TempDir();
  const std::string inPath = dir + "zpdate.in", outPath = dir + "zpdate.out",
                    errPath = dir + "zpdate.err";
  std::ofstream(inPath, std::ios::binary) << input;

  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, 0, inPath.c_str(), O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&files, 1, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addopen(&files, 2, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  std::vector<std::string> env = {std::string("TZ=") + tz};
  for (char** e = environ; *e; ++e) {
    if (std::string(*e).rfind("TZ=", 0) != 0) env.push_back(*e);
  }
  std::vector<char*> argv = {const_cast<char*>(ZP_ZPDATE_PATH)}, envp;
  for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
  for (const std::string& e : env) envp.push_back(const_cast<char*>(e.c_str()));
  argv.push_back(nullptr);
  envp.push_back(nullptr);

  pid_t pid;
  Outcome run{-1, "", ""};
  if (posix_spawn(&pid, ZP_ZPDATE_PATH, &files, nullptr, argv.data(), envp.data()) == 0) {
    int wstatus = 0;
    waitpid(pid, &wstatus, 0);
    run.status = WIFEXITED(wstatus) ? WEXITSTATUS(wstatus) : -1;
  }
  posix_spawn_file_actions_destroy(&files);
  run.out = slurp(outPath);
  run.err = slurp(errPath);
  return run;
}

std::string only(const std::vector<std::string>& args, const char* tz = "UTC0") {
  const Outcome r = zpdate(args, "", tz);
  EXPECT_EQ(r.status, 0) << r.err;
  return r.out.empty() ? r.out : r.out.substr(0, r.out.size() - 1);  // drop the newline
}

// The raw text of a field of a flat JSON object, quotes removed.
std::string jsonField(const std::string& json, const std::string& name) {
  const std::string key = "\"" + name + "\":";
  size_t at = json.find(key);
  if (at == std::string::npos) return "<missing " + name + ">";
  at += key.size();
  if (json[at] == '"') return json.substr(at + 1, json.find('"', at + 1) - at - 1);
  return json.substr(at, json.find_first_of(",}", at) - at);
}

}  // namespace

TEST(Zpdate, SamplesShowEveryForm) {
  const Outcome r = zpdate({"--samples"});
  EXPECT_EQ(r.status, 0) << r.err;
  for (const char* sample : {"/Date(1700000000000+0100)/", "2024-03-07T09:05:03Z",
                             "20240307090503.123Z", "240307090503Z", "20240307090503Z",
                             "Thu, 07 Mar 2024 09:05:03 GMT", "--dos 0x3ACF 0x6DAF"}) {
    EXPECT_NE(r.out.find(std::string(sample) + "\n"), std::string::npos) << sample;
  }
  size_t blocks = 0;
  for (size_t at = 0; (at = r.out.find("  ISO 8601", at)) != std::string::npos; ++at) ++blocks;
  EXPECT_EQ(blocks, 12u);
}

// Each numeric input against published or independently computed values.
TEST(Zpdate, NumericInputs) {
  struct Case {
    std::vector<std::string> args;
    const char* expected;
  } const cases[] = {
      {{"--unix", "1245073530", "--to", "iso"}, "20090615T134530Z"},
      {{"--unix", "-1", "--to", "iso"}, "19691231T235959Z"},
      {{"--filetime", "116444736000000000", "--to", "unix"}, "0"},  // FILETIME of 1970
      {{"--filetime", "0x019DB1DED53E8000", "--to", "unix"}, "0"},
      {{"--ticks", "621355968000000000", "--to", "unix"}, "0"},     // .NET ticks of 1970
      {{"--dos", "0x3ACF", "0x6DAF", "--to", "iso"}, "20090615T134530Z"},
      {{"--dos", "15055", "28079", "--to", "unix"}, "1245073530"},
      {{"--ole", "36526.5", "--to", "iso"}, "20000101T120000Z"},
      {{"--ole", "-1.25", "--to", "iso"}, "18991229T060000Z"},
      {{"--unix", "1709802303", "--to", "rfc822"}, "Thu, 07 Mar 2024 09:05:03 GMT"},
  };
  for (const Case& c : cases) EXPECT_EQ(only(c.args), c.expected) << c.args[0];

  // DOS words are local time: in a zone two hours ahead in June they name 11:45:30 GMT.
  EXPECT_EQ(only({"--dos", "0x3ACF", "0x6DAF", "--to", "iso"}, "CET-1CEST,M3.5.0,M10.5.0/3"),
            "20090615T114530Z");
  EXPECT_EQ(only({"-u", "--dos", "0x3ACF", "0x6DAF", "--to", "iso"}, "CET-1CEST,M3.5.0,M10.5.0/3"),
            "20090615T134530Z");
  EXPECT_EQ(only({"--local", "--unix", "3600", "--to", "unix"}, "CET-1CEST,M3.5.0,M10.5.0/3"), "0");
}

// Every --to form read back as an input names the same instant.
TEST(Zpdate, ToFormsReadBack) {
  const std::string text = "Thu, 07 Mar 2024 09:05:04 +0100";
  const std::string unix = only({text, "--to", "unix"});
  EXPECT_EQ(unix, "1709798704");
  const struct {
    const char* form;
    std::vector<std::string> prefix;
  } forms[] = {{"iso", {}},          {"utctime", {}},          {"rfc822", {}},
               {"unix", {"--unix"}}, {"filetime", {"--filetime"}}, {"ticks", {"--ticks"}},
               {"ole", {"--ole"}}};
  for (const auto& f : forms) {
    std::vector<std::string> args = f.prefix;
    args.push_back(only({text, "--to", f.form}));
    args.insert(args.end(), {"--to", "unix"});
    EXPECT_EQ(only(args), unix) << f.form << ": " << args[args.size() - 3];
  }
  const std::string dos = only({text, "--to", "dos"});
  EXPECT_EQ(only({"--dos", dos.substr(0, 6), dos.substr(7), "--to", "unix"}), unix);
}

TEST(Zpdate, JsonReadsBack) {
  const Outcome r = zpdate({"--json", "2024-03-07T09:05:03Z", "/Date(1700000000000)/"});
  ASSERT_EQ(r.status, 0) << r.err;
  std::istringstream lines(r.out);
  std::string first, second, extra;
  std::getline(lines, first);
  std::getline(lines, second);
  EXPECT_FALSE(std::getline(lines, extra));
  EXPECT_EQ(jsonField(first, "input"), "2024-03-07T09:05:03Z");
  EXPECT_EQ(jsonField(first, "readAs"), "GMT");
  EXPECT_EQ(jsonField(first, "unix"), "1709802303");
  EXPECT_EQ(jsonField(first, "dayOfWeek"), "Thursday");
  EXPECT_EQ(only({jsonField(first, "utcTime"), "--to", "unix"}), "1709802303");
  EXPECT_EQ(only({"--ticks", jsonField(first, "ticks"), "--to", "unix"}), "1709802303");
  EXPECT_EQ(jsonField(second, "iso8601"), "20231114T221320Z");

  const Outcome quoted = zpdate({"--json", "--", "\"x\\"});
  EXPECT_EQ(quoted.status, 1);
  EXPECT_EQ(quoted.out, "");
}

TEST(Zpdate, BatchKeepsLinesAndReportsBadOnes) {
  const std::string input =
      "Thu, 07 Mar 2024 09:05:03 GMT\r\ntomorrow-ish\n1700000000\n\n2024-03-07T09:05:03Z";
  for (const std::vector<std::string>& args :
       {std::vector<std::string>{"-f", "-"}, std::vector<std::string>{}}) {
    const Outcome r = zpdate(args, input);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "20240307T090503Z\n\n20231114T221320Z\n\n20240307T090503Z\n");
    EXPECT_EQ(r.err,
              "zpdate: line 2: not a date: 'tomorrow-ish'\n"
              "zpdate: line 4: not a date: ''\n");
  }
  const Outcome unixes = zpdate({"-f", "-", "--to", "unix"}, "240307090503Z\n");
  EXPECT_EQ(unixes.out, "1709802303\n");
  EXPECT_EQ(unixes.status, 0);
  const Outcome longLine = zpdate({}, std::string(10000, '7') + "\n1700000000\n");
  EXPECT_EQ(longLine.out, "\n20231114T221320Z\n");
  EXPECT_NE(longLine.err.find("line 1: line too long"), std::string::npos);
}

TEST(Zpdate, ExitStatuses) {
  const Outcome mixed = zpdate({"--to", "unix", "1700000000", "not a date", "--ole", "1e9", "0"});
  EXPECT_EQ(mixed.status, 1);
  EXPECT_EQ(mixed.out, "1700000000\n0\n");
  EXPECT_NE(mixed.err.find("zpdate: argument 4: not a date: 'not a date'"), std::string::npos);
  EXPECT_NE(mixed.err.find("zpdate: argument 5: not an OLE date"), std::string::npos);

  for (const std::vector<std::string>& usage :
       {std::vector<std::string>{"--to", "bogus", "1"}, {"--frobnicate"}, {"--unix"},
        {"--dos", "1"}, {"--json", "--to", "iso", "1"}, {"-f", "x", "1"}}) {
    const Outcome r = zpdate(usage);
    EXPECT_EQ(r.status, 2) << usage[0];
    EXPECT_NE(r.err.find("Try 'zpdate --help'"), std::string::npos);
  }
  EXPECT_EQ(zpdate({"-f", "/nonexistent/dates"}).status, 1);
  EXPECT_EQ(zpdate({"--dos", "0", "0"}).status, 1);  // day 0: no DOS date
  const Outcome help = zpdate({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("--filetime"), std::string::npos);
  EXPECT_EQ(zpdate({"--version"}).out.rfind("zpdate ", 0), 0u);
}
