// AtomDateToSysTime: RFC 3339 date-times, as Atom feeds write them.
//
// Forms read (tests/data/atom_accept.tsv starts from this list):
//
//   2024-03-07T09:05:03Z              GMT (z too)
//   2024-03-07t09:05:03+01:00         offset as +hh:mm; lower-case t
//   2024-03-07T09:05:03-0500          offset as -hhmm
//   2024-03-07T09:05:03+05            offset as +hh
//   2024-03-07T09:05:03.123456789Z    fraction of any length, truncated to the millisecond
//   2016-12-31T23:59:60Z              leap second, stored as read
//   2024-03-07T09:05:03-00:00         GMT reading with the local offset unknown
//                                     (RFC 3339 4.3): m_bFromUnknownTimezone true
//
// Nothing else: no space for the T, no missing seconds, no white space
// before or after, no byte after the zone (an embedded zero included, as
// the buffer's size decides where the text ends). The steps are the RFC 822
// reader's (DateParserIso.cpp); the result is the GMT reading of the
// instant, and `extra` receives the stated offset in minutes east.
#include "services/internal/DateCursor.h"
#include "services/internal/ParsedReading.h"
#include "services/LogBase.h"
#include "services/StringBuffer.h"
#include "services/zpDateParser.h"
#include "time/ZephalSysTime.h"

bool _zpDateParser::AtomDateToSysTime(const StringBuffer& text, ZephalSysTime& value, int* extra) {
  LogNull discard;
  return AtomDateToSysTime(text, value, extra, discard);
}

bool _zpDateParser::AtomDateToSysTime(const StringBuffer& text, ZephalSysTime& value, int* extra,
                                      LogBase& log) {
  static const char kReader[] = "AtomDateToSysTime";
  zpread::Reading r;
  if (!zpread::readAtomText(text.getString(), text.getSize(), value, r)) {
    return zpread::refuse(log, kReader, r.why, static_cast<size_t>(r.at - text.getString()),
                          text.getString());
  }
  if (extra) *extra = r.offset;
  return true;
}

bool zpread::readAtomText(const char* text, size_t size, ZephalSysTime& value, Reading& r) {
  const char* p = readRfc3339(text, r);
  // A zero byte stops every step, so one inside the text ends the reading early.
  if (p && p != text + size) p = failAt(r, p, "text after the zone");
  return p && settle(r, value);
}
