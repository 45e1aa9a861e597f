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

std::string readingOf(const Instant& in) {
  const ZephalSysTime& value = in.value;
  if (in.readInZone) return std::string(inputZoneName()) + ", no zone stated";
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
  line("read as", readingOf(in), true);
  line(formRow(Form::kRfc3339).label,
       show(Form::kRfc3339, in).text + ", " + dayName(gmtDayOfWeek(in)), true);
  ZephalWallClock local;
  std::string why;
  const bool haveLocal = localClock(in, local, why);
  const Shown localText = show(Form::kRfc3339Local, in);
  line(formRow(Form::kRfc3339Local).label,
       haveLocal ? localText.text + " " + local.abbreviation + ", " +
                       dayName(local.fields.wDayOfWeek)
                 : why,
       haveLocal);
  for (const FormRow& row : kFormRows) {
    if (row.extra == Extra::kClock) continue;  // the lines above
    Shown s = show(row.form, in);
    if (s.ok && row.extra == Extra::kHalves) {
      const Halves halves = halvesOf(in);
      s.text += " (high " + halves.high.text + ", low " + halves.low.text + ")";
    } else if (s.ok && row.extra == Extra::kWords) {
      s.text = "date " + s.text.substr(0, 6) + ", time " + s.text.substr(7);
    }
    line(row.label, s.text, s.ok);
  }
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
  auto form = [&](const char* field, const Shown& s, bool number) {
    name(field);
    if (!s.ok) {
      out += "null";
    } else if (number) {
      out += s.text;
    } else {
      appendJsonString(s.text.data(), s.text.size(), out);
    }
  };
  name("input");
  appendJsonString(input, size, out);
  text("readAs", readingOf(in));
  form(formRow(Form::kRfc3339).json, show(Form::kRfc3339, in), false);
  form(formRow(Form::kRfc3339Local).json, show(Form::kRfc3339Local, in), false);
  ZephalWallClock local;
  std::string why;
  const bool haveLocal = localClock(in, local, why);
  form("zone", Shown{haveLocal, haveLocal ? local.abbreviation : ""}, false);
  text("dayOfWeek", dayName(gmtDayOfWeek(in)));
  for (const FormRow& row : kFormRows) {
    if (row.extra == Extra::kClock) continue;  // the fields above
    const Shown s = show(row.form, in);
    if (row.extra == Extra::kWords) {
      form("dosDate", Shown{s.ok, s.text.substr(0, 6)}, false);
      form("dosTime", Shown{s.ok, s.ok ? s.text.substr(7) : ""}, false);
      continue;
    }
    form(row.json, s, row.jsonNumber);
    if (row.extra == Extra::kHalves) {
      const Halves halves = halvesOf(in);
      form("fileTimeHigh", halves.high, false);
      form("fileTimeLow", halves.low, false);
    }
  }
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
