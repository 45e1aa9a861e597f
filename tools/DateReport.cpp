#include "tools/DateReport.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>

#include "services/LogBase.h"
#include "services/zpDateParser.h"
#include "time/ZephalFileTime.h"

namespace zpdate {
namespace {

struct FormName {
  const char* name;
  Form form;
};
constexpr FormName kFormNames[] = {
    {"iso", Form::kIso},         {"utctime", Form::kUtcTime}, {"rfc822", Form::kRfc822},
    {"unix", Form::kUnix},       {"filetime", Form::kFileTime}, {"ticks", Form::kTicks},
    {"dos", Form::kDos},         {"ole", Form::kOle},
};

constexpr const char* kDayNames[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                     "Thursday", "Friday", "Saturday"};

std::string textOf(const StringBuffer& sb) { return std::string(sb.getString(), sb.getSize()); }

// Each form on its own, on a copy wherever the module would convert the value
// in place, so that `--to` computes only what it prints.

std::string utcTimeOf(const ZephalSysTime& value) {
  ZephalSysTime copy;
  copy.copyFrom(value);
  StringBuffer out;
  copy.getAsnUtcDateTime(out);
  return textOf(out);
}

std::string rfc822Of(const ZephalSysTime& value, bool local) {
  ZephalSysTime copy;
  copy.copyFrom(value);
  local ? copy.toLocalSysTime() : copy.toGmtSysTime();
  StringBuffer out;
  copy.getRfc822String(out);
  return textOf(out);
}

ZephalFileTime fileTimeOf(const ZephalSysTime& value) {
  ZephalFileTime fileTime;
  value.toFileTime_gmt(fileTime);
  return fileTime;
}

unsigned long long fileTimeCount(const ZephalFileTime& fileTime) {
  return (static_cast<unsigned long long>(fileTime.getHighDateTime()) << 32) |
         fileTime.getLowDateTime();
}

// DOS words of the local reading; the copy is converted and clamped, not the value.
void dosOf(const ZephalSysTime& value, unsigned short& date, unsigned short& time) {
  ZephalSysTime copy;
  copy.copyFrom(value);
  copy.toDosDateTime(true, date, time, nullptr);
}

double oleOf(const ZephalSysTime& value) {
  ZephalSysTime copy;
  copy.copyFrom(value);
  return copy.toOleDate(false);
}

const char* dayOfWeekOf(const ZephalSysTime& value) {
  ZephalSysTime gmt;
  gmt.copyFrom(value);
  gmt.toGmtSysTime();
  return kDayNames[_zpDateParser::DayOfWeek(gmt.m_time.wYear, gmt.m_time.wMonth, gmt.m_time.wDay)];
}

std::string logOf(const ZephalSysTime& value) {
  LogRecorder log;
  value.logSysTime("date", log);
  return log.render();
}

// Shortest text that reads back as the same double.
std::string doubleText(double d) {
  char text[32];
  const auto end = std::to_chars(text, text + sizeof text, d).ptr;
  return std::string(text, end);
}

std::string hex(unsigned long value, int digits) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%0*lX", digits, value);
  return text;
}

void appendJsonString(const char* s, std::string& out) {
  out += '"';
  for (; *s; ++s) {
    const unsigned char c = static_cast<unsigned char>(*s);
    if (c == '"' || c == '\\') {
      out += '\\';
      out += static_cast<char>(c);
    } else if (c < 0x20) {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\u%04X", c);
      out += escaped;
    } else {
      out += static_cast<char>(c);
    }
  }
  out += '"';
}

// Every form of one value as text, for the block and the JSON object.
struct Forms {
  std::string iso, utcTime, rfc822Gmt, rfc822Local, unixTime;
  std::string fileTime, fileTimeHigh, fileTimeLow, ticks, dosDate, dosTime, ole, dayOfWeek;
};

Forms formsOf(const ZephalSysTime& value) {
  Forms f;
  StringBuffer iso;
  value.getIso8601Timestamp(iso);
  f.iso = textOf(iso);
  f.utcTime = utcTimeOf(value);
  f.rfc822Gmt = rfc822Of(value, false);
  f.rfc822Local = rfc822Of(value, true);
  f.unixTime = std::to_string(value.toUnixTime_gmt64());
  const ZephalFileTime fileTime = fileTimeOf(value);
  f.fileTime = std::to_string(fileTimeCount(fileTime));
  f.fileTimeHigh = hex(fileTime.getHighDateTime(), 8);
  f.fileTimeLow = hex(fileTime.getLowDateTime(), 8);
  f.ticks = std::to_string(fileTime.getDateTimeTicks());
  unsigned short dosDate = 0, dosTime = 0;
  dosOf(value, dosDate, dosTime);
  f.dosDate = hex(dosDate, 4);
  f.dosTime = hex(dosTime, 4);
  f.ole = doubleText(oleOf(value));
  f.dayOfWeek = dayOfWeekOf(value);
  return f;
}

}  // namespace

bool formByName(const char* name, Form& form) {
  for (const FormName& f : kFormNames) {
    if (std::strcmp(f.name, name) == 0) {
      form = f.form;
      return true;
    }
  }
  return false;
}

const char* formNames() { return "iso, utctime, rfc822, unix, filetime, ticks, dos, ole"; }

const char* readingOf(const ZephalSysTime& value) {
  if (value.m_bLocal) return "local";
  return value.m_bFromUnknownTimezone ? "unknown zone" : "GMT";
}

void appendBlock(const char* input, const ZephalSysTime& value, std::string& out) {
  auto line = [&out](const char* label, const std::string& text) {
    char head[24];
    std::snprintf(head, sizeof head, "  %-14s", label);
    out += head;
    out += text;
    out += '\n';
  };
  const Forms f = formsOf(value);
  out += input;
  out += '\n';
  line("read as", readingOf(value));
  line("ISO 8601", f.iso);
  line("UTCTime", f.utcTime);
  line("RFC 822 GMT", f.rfc822Gmt);
  line("RFC 822 local", f.rfc822Local);
  line("Unix seconds", f.unixTime);
  line("FILETIME", f.fileTime + " (high " + f.fileTimeHigh + ", low " + f.fileTimeLow + ")");
  line(".NET ticks", f.ticks);
  line("DOS local", "date " + f.dosDate + ", time " + f.dosTime);
  line("OLE date", f.ole);
  line("day of week", f.dayOfWeek);
  out += "  log:\n";
  const std::string log = logOf(value);
  for (size_t start = 0; start < log.size();) {
    const size_t end = std::min(log.find('\n', start), log.size());
    out += "    " + log.substr(start, end - start) + '\n';
    start = end + 1;
  }
}

void appendJson(const char* input, const ZephalSysTime& value, std::string& out) {
  auto field = [&out](const char* name, const std::string& raw, bool quoted) {
    out += out.back() == '{' ? "\"" : ",\"";
    out += name;
    out += "\":";
    if (quoted) {
      appendJsonString(raw.c_str(), out);
    } else {
      out += raw;
    }
  };
  const Forms f = formsOf(value);
  out += '{';
  field("input", input, true);
  field("readAs", readingOf(value), true);
  field("iso8601", f.iso, true);
  field("utcTime", f.utcTime, true);
  field("rfc822Gmt", f.rfc822Gmt, true);
  field("rfc822Local", f.rfc822Local, true);
  field("unix", f.unixTime, false);
  field("fileTime", f.fileTime, false);
  field("fileTimeHigh", f.fileTimeHigh, true);
  field("fileTimeLow", f.fileTimeLow, true);
  field("ticks", f.ticks, false);
  field("dosDate", f.dosDate, true);
  field("dosTime", f.dosTime, true);
  field("ole", f.ole, false);
  field("dayOfWeek", f.dayOfWeek, true);
  out += '}';
}

void appendForm(Form form, const ZephalSysTime& value, StringBuffer& out) {
  std::string text;
  switch (form) {
    case Form::kIso:  // the batch path: no copy, no std::string
      value.getIso8601Timestamp(out);
      return;
    case Form::kUtcTime: text = utcTimeOf(value); break;
    case Form::kRfc822: text = rfc822Of(value, false); break;
    case Form::kUnix: text = std::to_string(value.toUnixTime_gmt64()); break;
    case Form::kFileTime: text = std::to_string(fileTimeCount(fileTimeOf(value))); break;
    case Form::kTicks: text = std::to_string(fileTimeOf(value).getDateTimeTicks()); break;
    case Form::kDos: {
      unsigned short date = 0, time = 0;
      dosOf(value, date, time);
      text = hex(date, 4) + " " + hex(time, 4);
      break;
    }
    case Form::kOle: text = doubleText(oleOf(value)); break;
  }
  out.append(text.c_str());
}

}  // namespace zpdate
