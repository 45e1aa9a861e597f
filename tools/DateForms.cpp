#include "tools/DateForms.h"

#include <charconv>
#include <cstdio>
#include <cstring>

#include "services/zpDatePattern.h"
#include "services/zpDateParser.h"
#include "services/zpStdio.h"
#include "time/ZephalFileTime.h"

namespace zpdate {
namespace {

constexpr const char* kDayNames[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                     "Thursday", "Friday", "Saturday"};

bool refuse(std::string& why, const char* reason) {
  why = reason;
  return false;
}

void appendText(const StringBuffer& text, std::string& out) {
  out.append(text.getString(), text.getSize());
}

// `clock` written by `layout`, the module's pattern writer.
void appendByLayout(std::string_view layout, const ZephalWallClock& clock, std::string& out) {
  StringBuffer text;
  zpFormatDate(layout, clock, text);
  appendText(text, out);
}

// 2024-03-07T09:05:03[.123](Z|+01:00); `clock` null for Z.
void appendRfc3339(const ZephalCalendarFields& f, const ZephalWallClock* clock, std::string& out) {
  char text[32];
  char* p = zpPutDigits(text, f.wYear, 4);
  const unsigned rest[5] = {f.wMonth, f.wDay, f.wHour, f.wMinute, f.wSecond};
  const char separators[5] = {'-', '-', 'T', ':', ':'};
  for (int i = 0; i < 5; ++i) {
    *p++ = separators[i];
    p = zpPutDigits(p, rest[i], 2);
  }
  if (f.wMilliseconds != 0) {
    *p++ = '.';
    p = zpPutDigits(p, f.wMilliseconds, 3);
  }
  out.append(text, static_cast<size_t>(p - text));
  if (clock == nullptr) {
    out += 'Z';
  } else {
    appendByLayout("%:z", *clock, out);
  }
}

// DOS words hold 1980 to 2107, but the module clamps what it writes to 2037,
// and second 59 rounds up into the next minute: the last wall-clock time
// written true is 2037-12-31 23:59:58.
bool inDosRange(const ZephalCalendarFields& f) {
  const bool lastSecond = f.wYear == 2037 && f.wMonth == 12 && f.wDay == 31 && f.wHour == 23 &&
                          f.wMinute == 59 && f.wSecond == 59;
  return f.wYear >= 1980 && f.wYear <= 2037 && !lastSecond;
}

bool appendDos(const Instant& in, std::string& out, std::string& why) {
  ZephalWallClock local;
  if (!localClock(in, local, why)) return false;
  if (!inDosRange(local.fields)) {
    return refuse(why, "DOS words hold local times from 1980 to 2037-12-31 23:59:58");
  }
  // The words hold the wall clock's fields as they stand: packed from a
  // value that holds them as GMT, which toDosDateTime leaves where it is.
  ZephalSysTime wall;
  wall.m_time = local.fields;
  unsigned short date = 0, time = 0;
  wall.toDosDateTime(false, date, time, nullptr);
  char text[16];
  std::snprintf(text, sizeof text, "0x%04X 0x%04X", date, time);
  out += text;
  return true;
}

bool appendLocal(Form form, const char* pattern, const Instant& in, std::string& out,
                 std::string& why) {
  ZephalWallClock local;
  if (!localClock(in, local, why)) return false;
  if (form == Form::kRfc3339Local) {
    appendRfc3339(local.fields, &local, out);
  } else {
    appendByLayout(form == Form::kRfc822Local ? kRfcEmail : pattern, local, out);
  }
  return true;
}

}  // namespace

const char* dayName(int dayOfWeek) { return kDayNames[dayOfWeek % 7]; }

const FormRow& formRow(Form form) { return kFormRows[static_cast<int>(form)]; }

bool fileTimeOf(const Instant& in, unsigned long long& count, std::string& why) {
  if (in.gmt.m_time.wYear < 1601) return refuse(why, "FILETIME starts at 1601-01-01");
  ZephalFileTime fileTime;
  in.gmt.toFileTime_gmt(fileTime);
  count = (static_cast<unsigned long long>(fileTime.getHighDateTime()) << 32 |
           fileTime.getLowDateTime()) +
          in.gmt.m_time.wMilliseconds * 10000ULL;
  return true;
}

bool isBufferedForm(Form form) {
  return form == Form::kIso || form == Form::kUtcTime || form == Form::kRfc822;
}

bool appendForm(Form form, const Instant& in, StringBuffer& out, std::string& why) {
  if (form == Form::kIso) {
    in.gmt.getIso8601Timestamp(out);
    return true;
  }
  const unsigned year = in.gmt.m_time.wYear;
  if (form == Form::kUtcTime && (year < 1950 || year > 2049)) {
    return refuse(why, "UTCTime holds the years 1950 to 2049");
  }
  ZephalSysTime copy;  // these two writers convert the value they are called on
  copy.copyFrom(in.gmt);
  if (form == Form::kUtcTime) {
    copy.getAsnUtcDateTime(out);
  } else {
    copy.getRfc822String(out);
  }
  return true;
}

bool appendForm(Form form, const char* pattern, const Instant& in, std::string& out,
                std::string& why) {
  const ZephalCalendarFields& g = in.gmt.m_time;
  if (isBufferedForm(form)) {
    StringBuffer text;
    if (!appendForm(form, in, text, why)) return false;
    appendText(text, out);
    return true;
  }
  switch (form) {
    case Form::kIso:
    case Form::kUtcTime:
    case Form::kRfc822: break;
    case Form::kRfc3339: appendRfc3339(g, nullptr, out); return true;
    case Form::kUnix: out += std::to_string(unixSeconds(in)); return true;
    case Form::kFileTime:
    case Form::kTicks: {
      unsigned long long count = 0;
      if (form == Form::kFileTime && !fileTimeOf(in, count, why)) return false;
      if (form == Form::kTicks) {
        ZephalFileTime fileTime;
        in.gmt.toFileTime_gmt(fileTime);
        count = static_cast<unsigned long long>(fileTime.getDateTimeTicks()) +
                g.wMilliseconds * 10000ULL;
      }
      out += std::to_string(count);
      return true;
    }
    case Form::kDos: return appendDos(in, out, why);
    case Form::kOle: {
      if (g.wYear < 100) return refuse(why, "OLE dates start at 0100-01-01");
      ZephalSysTime copy;
      copy.copyFrom(in.gmt);
      char number[32];
      // The shortest text that reads back as the same double.
      const auto end = std::to_chars(number, number + sizeof number, copy.toOleDate(false)).ptr;
      out.append(number, end);
      return true;
    }
    case Form::kRfc3339Local:
    case Form::kRfc822Local:
    case Form::kPattern: return appendLocal(form, pattern, in, out, why);
  }
  return refuse(why, "unknown form");
}

}  // namespace zpdate
