// Runs the built zpdate as a user runs it: samples, numeric inputs, --to and
// --json read back, batch mode, messages and exit statuses.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

using Args = std::vector<std::string>;
struct Outcome { int status; std::string out, err; };

static std::string slurp(const std::string& path) {
  std::ostringstream s;
  s << std::ifstream(path, std::ios::binary).rdbuf();
  return s.str();
}

// Single quotes keep every byte of an argument from the shell.
static std::string quoted(const std::string& s) {
  std::string q = "'";
  for (char c : s) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return q + "'";
}

// Runs zpdate with `args`, standard input from `input`, and TZ as given.
static Outcome zpdate(const Args& args, const std::string& input = "", const char* tz = "UTC0") {
  const std::string base = ::testing::TempDir() + "zpdate.";
  std::ofstream(base + "in", std::ios::binary) << input;
  std::string command = "TZ=" + quoted(tz) + " " + quoted(ZP_ZPDATE_PATH);
  for (const std::string& a : args) command += " " + quoted(a);
  command += " <" + quoted(base + "in") + " >" + quoted(base + "out") + " 2>" + quoted(base + "err");
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, slurp(base + "out"), slurp(base + "err")};
}

// The output of a run that must succeed, without its final newline.
static std::string only(const Args& args, const char* tz = "UTC0") {
  const Outcome r = zpdate(args, "", tz);
  EXPECT_EQ(r.status, 0) << r.err;
  return r.out.empty() ? r.out : r.out.substr(0, r.out.size() - 1);
}

// The text of a field of a flat JSON object, quotes removed (none read here holds a comma).
static std::string jsonField(const std::string& json, const std::string& name) {
  size_t at = json.find("\"" + name + "\":");
  if (at == std::string::npos) return "?";
  at += name.size() + 3;
  if (json[at] == '"') ++at;
  return json.substr(at, json.find_first_of("\",}", at) - at);
}

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
  const char* cet = "CET-1CEST,M3.5.0,M10.5.0/3";
  const struct { Args args; const char* tz; const char* expected; } cases[] = {
      {{"--unix", "1245073530", "--to", "iso"}, "UTC0", "20090615T134530Z"},
      {{"--unix", "-1", "--to", "iso"}, "UTC0", "19691231T235959Z"},
      {{"--filetime", "116444736000000000", "--to", "unix"}, "UTC0", "0"},  // FILETIME of 1970
      {{"--filetime", "0x019DB1DED53E8000", "--to", "unix"}, "UTC0", "0"},
      {{"--ticks", "621355968000000000", "--to", "unix"}, "UTC0", "0"},  // .NET ticks of 1970
      {{"--dos", "0x3ACF", "0x6DAF", "--to", "iso"}, "UTC0", "20090615T134530Z"},
      {{"--dos", "15055", "28079", "--to", "unix"}, "UTC0", "1245073530"},
      {{"--ole", "36526.5", "--to", "iso"}, "UTC0", "20000101T120000Z"},
      {{"--ole", "-1.25", "--to", "iso"}, "UTC0", "18991229T060000Z"},
      {{"--unix", "1709802303", "--to", "rfc822"}, "UTC0", "Thu, 07 Mar 2024 09:05:03 GMT"},
      // DOS words are local time: two hours ahead in June they name 11:45:30 GMT.
      {{"--dos", "0x3ACF", "0x6DAF", "--to", "iso"}, cet, "20090615T114530Z"},
      {{"-u", "--dos", "0x3ACF", "0x6DAF", "--to", "iso"}, cet, "20090615T134530Z"},
      {{"--local", "--unix", "3600", "--to", "unix"}, cet, "0"},
  };
  for (const auto& c : cases) EXPECT_EQ(only(c.args, c.tz), c.expected) << c.args[0] << " " << c.tz;
}

// Every --to form read back as an input names the same instant.
TEST(Zpdate, ToFormsReadBack) {
  const std::string text = "Thu, 07 Mar 2024 09:05:04 +0100";
  const std::string unix = only({text, "--to", "unix"});
  EXPECT_EQ(unix, "1709798704");
  for (const Args& form : {Args{"iso"}, Args{"utctime"}, Args{"rfc822"}, Args{"unix", "--unix"},
                           Args{"filetime", "--filetime"}, Args{"ticks", "--ticks"},
                           Args{"ole", "--ole"}}) {
    Args args(form.begin() + 1, form.end());
    args.insert(args.end(), {only({text, "--to", form[0]}), "--to", "unix"});
    EXPECT_EQ(only(args), unix) << form[0] << ": " << args[args.size() - 3];
  }
  const std::string dos = only({text, "--to", "dos"});
  EXPECT_EQ(only({"--dos", dos.substr(0, 6), dos.substr(7), "--to", "unix"}), unix);
}

TEST(Zpdate, JsonReadsBack) {
  const Outcome r = zpdate({"--json", "2024-03-07T09:05:03Z", "/Date(1700000000000)/"});
  ASSERT_EQ(r.status, 0) << r.err;
  ASSERT_EQ(std::count(r.out.begin(), r.out.end(), '\n'), 2);
  const std::string first = r.out.substr(0, r.out.find('\n')), second = r.out.substr(first.size() + 1);
  EXPECT_EQ(jsonField(first, "input"), "2024-03-07T09:05:03Z");
  EXPECT_EQ(jsonField(first, "readAs"), "GMT");
  EXPECT_EQ(jsonField(first, "unix"), "1709802303");
  EXPECT_EQ(jsonField(first, "dayOfWeek"), "Thursday");
  EXPECT_EQ(only({jsonField(first, "utcTime"), "--to", "unix"}), "1709802303");
  EXPECT_EQ(only({"--ticks", jsonField(first, "ticks"), "--to", "unix"}), "1709802303");
  EXPECT_EQ(jsonField(second, "iso8601"), "20231114T221320Z");
  const Outcome bad = zpdate({"--json", "--", "\"x\\"});
  EXPECT_TRUE(bad.status == 1 && bad.out.empty());
}

TEST(Zpdate, BatchKeepsLinesAndReportsBadOnes) {
  const std::string input =
      "Thu, 07 Mar 2024 09:05:03 GMT\r\ntomorrow-ish\n1700000000\n\n2024-03-07T09:05:03Z";
  for (const Args& args : {Args{"-f", "-"}, Args{}}) {
    const Outcome r = zpdate(args, input);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "20240307T090503Z\n\n20231114T221320Z\n\n20240307T090503Z\n");
    EXPECT_EQ(r.err, "zpdate: line 2: not a date: 'tomorrow-ish'\nzpdate: line 4: not a date: ''\n");
  }
  const Outcome unixes = zpdate({"-f", "-", "--to", "unix"}, "240307090503Z\n");
  EXPECT_TRUE(unixes.status == 0 && unixes.out == "1709802303\n");
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
  for (const Args& usage : {Args{"--to", "bogus", "1"}, Args{"--frobnicate"}, Args{"--unix"},
                            Args{"--dos", "1"}, Args{"--json", "--to", "iso", "1"}, Args{"-f", "x", "1"}}) {
    const Outcome r = zpdate(usage);
    EXPECT_EQ(r.status, 2) << usage[0];
    EXPECT_NE(r.err.find("Try 'zpdate --help'"), std::string::npos);
  }
  EXPECT_EQ(zpdate({"-f", "/nonexistent/dates"}).status, 1);
  EXPECT_EQ(zpdate({"--dos", "0", "0"}).status, 1);  // day 0: no DOS date
  const Outcome help = zpdate({"--help"});
  EXPECT_TRUE(help.status == 0 && help.out.find("--filetime") != std::string::npos);
  EXPECT_EQ(zpdate({"--version"}).out.rfind("zpdate ", 0), 0u);
}
