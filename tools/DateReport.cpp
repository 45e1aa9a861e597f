#include "tools/DateReport.h"

#include <cstdio>

#include "services/LogBase.h"
#include "services/zpDateParser.h"
#include "tools/DateForms.h"
#include "tools/TextEscape.h"

namespace zpdate {
namespace {

// One form's text, or why the instant lies outside it.
struct Shown {
  bool ok;
  std::string text;  // the form, or the reason
};

Shown show(Form form, const Instant& in) {
  Shown s{true, {}};
  std::string why;
  s.ok = appendForm(form, nullptr, in, s.text, why);
  if (!s.ok) s.text = why;
  return s;
}

// The two 32-bit halves of a FILETIME count, as Windows keeps them.
struct Halves {
  Shown high, low;
};

Halves halvesOf(const Instant& in) {
  unsigned long long count = 0;
  std::string why;
  if (!fileTimeOf(in, count, why)) return {{false, why}, {false, why}};
  char high[16], low[16];
  std::snprintf(high, sizeof high, "0x%08llX", count >> 32);
  std::snprintf(low, sizeof low, "0x%08llX", count & 0xFFFFFFFFULL);
  return {{true, high}, {true, low}};
}

int gmtDayOfWeek(const Instant& in) {
  const ZephalCalendarFields& g = in.gmt.m_time;
  return _zpDateParser::DayOfWeek(g.wYear, g.wMonth, g.wDay);
}

std::string logOf(const ZephalSysTime& value) {
  LogRecorder log;
  value.logSysTime("date", log);
  return log.render();
}

}  // namespace

const char* readingOf(const ZephalSysTime& value) {
  if (value.m_bLocal) return value.m_bFromUnknownTimezone ? "local, no zone stated" : "local";
  return value.m_bFromUnknownTimezone ? "unknown zone (read as GMT)" : "GMT";
}

void appendBlock(const std::string& input, const Instant& in, bool withLog, std::string& out) {
  auto line = [&out](const char* label, const std::string& text, bool ok) {
    char head[24];
    std::snprintf(head, sizeof head, "  %-15s", label);
    out += head;
    out += ok ? text : "(" + text + ")";
    out += '\n';
  };
  appendEscaped(input.data(), input.size(), out);
  out += '\n';
  line("read as", readingOf(in.value), true);
  line("GMT", show(Form::kRfc3339, in).text + ", " + dayName(gmtDayOfWeek(in)), true);
  Clock local{};
  std::string why;
  if (localClock(in, local, why)) {
    std::string text;
    appendForm(Form::kRfc3339Local, nullptr, in, text, why);
    line("local", text + " " + local.fields.tm_zone + ", " + dayName(local.fields.tm_wday), true);
  } else {
    line("local", why, false);
  }
  const struct {
    const char* label;
    Form form;
  } kForms[] = {
      {"ISO 8601", Form::kIso},       {"UTCTime", Form::kUtcTime},
      {"RFC 822 GMT", Form::kRfc822}, {"RFC 822 local", Form::kRfc822Local},
      {"Unix seconds", Form::kUnix},
  };
  for (const auto& f : kForms) {
    const Shown s = show(f.form, in);
    line(f.label, s.text, s.ok);
  }
  const Shown fileTime = show(Form::kFileTime, in);
  const Halves halves = halvesOf(in);
  line("FILETIME",
       fileTime.ok ? fileTime.text + " (high " + halves.high.text + ", low " + halves.low.text + ")"
                   : fileTime.text,
       fileTime.ok);
  line(".NET ticks", show(Form::kTicks, in).text, true);
  Shown dos = show(Form::kDos, in);
  if (dos.ok) dos.text = "date " + dos.text.substr(0, 6) + ", time " + dos.text.substr(7);
  line("DOS local", dos.text, dos.ok);
  const Shown ole = show(Form::kOle, in);
  line("OLE date", ole.text, ole.ok);
  if (!withLog) return;
  out += "  log:\n";
  const std::string log = logOf(in.value);
  for (size_t start = 0; start < log.size();) {
    size_t end = log.find('\n', start);
    if (end == std::string::npos) end = log.size();
    out += "    " + log.substr(start, end - start) + '\n';
    start = end + 1;
  }
}

void appendJson(const char* input, size_t size, const Instant& in, std::string& out) {
  bool first = true;
  auto name = [&](const char* field) {
    out += first ? "{\"" : ",\"";
    first = false;
    out += field;
    out += "\":";
  };
  auto text = [&](const char* field, const std::string& value) {
    name(field);
    appendJsonString(value.data(), value.size(), out);
  };
  auto form = [&](const char* field, const Shown& s, bool quoted) {
    name(field);
    if (!s.ok) {
      out += "null";
    } else if (quoted) {
      appendJsonString(s.text.data(), s.text.size(), out);
    } else {
      out += s.text;
    }
  };
  name("input");
  appendJsonString(input, size, out);
  text("readAs", readingOf(in.value));
  form("rfc3339", show(Form::kRfc3339, in), true);
  form("rfc3339Local", show(Form::kRfc3339Local, in), true);
  Clock local{};
  std::string why;
  const bool haveLocal = localClock(in, local, why);
  form("zone", Shown{haveLocal, haveLocal ? local.fields.tm_zone : ""}, true);
  text("dayOfWeek", dayName(gmtDayOfWeek(in)));
  form("iso8601", show(Form::kIso, in), true);
  form("utcTime", show(Form::kUtcTime, in), true);
  form("rfc822Gmt", show(Form::kRfc822, in), true);
  form("rfc822Local", show(Form::kRfc822Local, in), true);
  form("unix", show(Form::kUnix, in), false);
  form("fileTime", show(Form::kFileTime, in), false);
  const Halves halves = halvesOf(in);
  form("fileTimeHigh", halves.high, true);
  form("fileTimeLow", halves.low, true);
  form("ticks", show(Form::kTicks, in), false);
  const Shown dos = show(Form::kDos, in);
  form("dosDate", Shown{dos.ok, dos.text.substr(0, 6)}, true);
  form("dosTime", Shown{dos.ok, dos.ok ? dos.text.substr(7) : ""}, true);
  form("ole", show(Form::kOle, in), false);
  out += '}';
}

void appendJsonError(const char* input, size_t size, const std::string& why, std::string& out) {
  out += "{\"input\":";
  if (input != nullptr) {
    appendJsonString(input, size, out);
  } else {
    out += "null";
  }
  out += ",\"error\":";
  appendJsonString(why.data(), why.size(), out);
  out += '}';
}

}  // namespace zpdate
