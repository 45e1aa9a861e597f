#!/usr/bin/env python3
"""Writes pattern_writes.tsv: what GNU date's +FORMAT writes for each layout;
and from the hand-written tables below, pattern_reads.tsv (what zpParseDate
reads or refuses) and pattern_layouts.tsv (the layouts the reading and
round-trip tests write with strftime and zpFormatDate).

The oracle is GNU date itself (coreutils 9.1 when generated), run as
`TZ=... date -d @SECONDS.MMM +LAYOUT` in the C locale, under each TZ rule
string the unit tests run with, and under TZ=GMT0 for GMT values (date then
names the zone "GMT", as zpWallClockOf does). Layouts cover every conversion
with every flag, the widths, the E and O modifiers, %N, the colon forms of
%z, the years date pads (0, 5, 12345), ISO week edges, summer-time changes,
and the malformed conversions date copies as written.

Row: zone ('GMT' for a GMT value) | seconds | milliseconds | layout | expected
Fields use C escapes (\\t \\n \\\\ \\xHH), '-' for an empty text and \\x2d for
a dash; a run of more than 16 equal bytes (a wide field's padding) is written
as the byte and \\*N* for N more of it.

    python3 tests/data/gen_pattern_tables.py
"""
import os
import subprocess
from datetime import datetime, timezone
from pathlib import Path

HERE = Path(__file__).resolve().parent
GMT = "GMT"
CET = "CET-1CEST,M3.5.0,M10.5.0/3"
EST = "EST5EDT,M3.2.0,M11.1.0"
ZONES = ["UTC0", CET, EST, "<+0530>-5:30"]
SEPARATOR = "\x1e"  # no layout holds it; date copies it as it is

LETTERS = "aAbBcCdDeFgGhHIjklmMnNpPqrRsStTuUVwWxXyYzZ%QfiEJKLOov"
FLAGS = ["", "-", "_", "0", "^", "#", "+", "_-", "-0", "^#"]
WIDTHS = ["", "3", "11"]
MODIFIERS = ["", "E", "O"]
ZONE_FORMS = ["z", ":z", "::z", ":::z", "::::z", "Z", "s"]


def gmt_seconds(year, month, day, hour=0, minute=0, second=0):
    # datetime holds years 1-9999; years 0 and 12345 by whole 400-year cycles.
    shift = 0
    if year < 1:
        shift, year = -12622780800, year + 400
    elif year > 9999:
        cycles = (year - 9000) // 400 + 1
        shift, year = cycles * 12622780800, year - cycles * 400
    d = datetime(year, month, day, hour, minute, second, tzinfo=timezone.utc)
    return int(d.timestamp()) + shift


def run_date(zone, seconds, millis, layouts):
    """date's text for each layout, one process for all of them."""
    env = dict(os.environ, LC_ALL="C", TZ="GMT0" if zone == GMT else zone)
    fmt = "+" + SEPARATOR.join(layouts)
    # date reads @-5.250 as -5.25 s: -6 s and 750 ms.
    total = seconds * 1000 + millis
    when = f"@{'-' if total < 0 else ''}{abs(total) // 1000}.{abs(total) % 1000:03d}"
    out = subprocess.run(["date", "-d", when, fmt], env=env, check=True, capture_output=True).stdout
    assert out.endswith(b"\n")
    parts = out[:-1].split(SEPARATOR.encode())
    assert len(parts) == len(layouts), (layouts, parts)
    return parts


def esc_byte(b):
    c = chr(b)
    if c == "\\":
        return "\\\\"
    if c in "\t\n":
        return {"\t": "\\t", "\n": "\\n"}[c]
    if b < 0x20 or b >= 0x7F:
        return f"\\x{b:02x}"
    return c


def esc(data):
    if isinstance(data, str):
        data = data.encode()
    if not data:
        return "-"
    if data == b"-":
        return "\\x2d"
    out, i = [], 0
    while i < len(data):
        j = i
        while j < len(data) and data[j] == data[i]:
            j += 1
        out.append(esc_byte(data[i]))
        if j - i > 16:
            out.append(f"\\*{j - i - 1}*")
        else:
            out.append(esc_byte(data[i]) * (j - i - 1))
        i = j
    return "".join(out)


ROWS = []


def add(zone, seconds, millis, layouts):
    for layout, text in zip(layouts, run_date(zone, seconds, millis, layouts)):
        ROWS.append([zone, str(seconds), str(millis), esc(layout), esc(text)])


def joined(layouts):
    return "[" + "|".join(layouts) + "]"


def grammar_sweep():
    """Every conversion with every flag, width and modifier, one instant."""
    layouts = [joined(f"%{f}{w}{m}{c}" for c in LETTERS)
               for f in FLAGS[:7] for w in WIDTHS for m in MODIFIERS]
    add(CET, 1709802303, 123, layouts)


def year_sweep():
    """The year-like and week conversions where date pads and signs them."""
    letters = "YCyGgVUWjuwFDcxsq"
    def layouts(mods):
        return [joined(f"%{f}{w}{m}{c}" for c in letters)
                for f in FLAGS[:7] for w in WIDTHS for m in mods]
    for when in [(0, 1, 1), (5, 3, 7, 10, 5, 3), (2021, 1, 1), (12345, 3, 7, 9, 5, 3)]:
        add(GMT, gmt_seconds(*when), 0, layouts(MODIFIERS))
    for when in [(0, 12, 31, 23, 59, 59), (99, 12, 31), (987, 6, 15), (1899, 12, 31),
                 (1999, 12, 31, 23, 59, 59), (2024, 12, 30), (2026, 1, 4),
                 (9999, 12, 31, 23, 59, 59), (65535, 12, 31, 23, 59, 59)]:
        add(GMT, gmt_seconds(*when), 0, layouts([""]))


def zone_sweep():
    """Offsets, abbreviations and Unix seconds with every flag and width."""
    layouts = [joined(f"%{f}{w}{m}{c}" for c in ZONE_FORMS)
               for f in FLAGS[:7] for w in ["", "1", "7"] for m in MODIFIERS]
    for zone in ZONES:
        for when in [1709802303, 1720000000]:
            add(zone, when, 0, layouts)
    add(GMT, -5, 0, layouts)


def nanosecond_sweep():
    layouts = [joined(f"%{f}{w}{m}N" for w in [""] + [str(i) for i in range(1, 13)])
               for f in FLAGS for m in ["", "O"]]
    for millis in [0, 1, 10, 100, 120, 123, 999]:
        add(GMT, 1709802303, millis, layouts)


COMMON = [
    "%a %b %e %H:%M:%S %Z %Y",
    "%Y-%m-%dT%H:%M:%S%:z",
    "%F %T.%3N %z|%::z|%:::z",
    "%a, %d %b %Y %H:%M:%S %z",
    "%A %B %-d %Y, %-I:%M %p|%P",
    "%G-W%V-%u|%Y-%j|%U %W %w|%s",
    "%c|%x|%X|%r|%D|%R|%T",
    "%C %y %g %h %k %l %I %q %n%t%%",
    "%s.%N|%6N|%3N|%-N",
]


def instant_sweep():
    """Common layouts over instants in every zone, summer-time changes included."""
    instants = [gmt_seconds(y, m, d, h, mi, s) for (y, m, d, h, mi, s) in [
        (1, 1, 1, 0, 0, 0), (1000, 2, 28, 12, 0, 0), (1601, 1, 1, 0, 0, 0), (1900, 3, 1, 11, 59, 59),
        (1969, 12, 31, 23, 59, 59), (1970, 1, 1, 0, 0, 0), (2000, 2, 29, 12, 30, 0),
        (2024, 3, 31, 0, 59, 59), (2024, 3, 31, 1, 0, 0), (2024, 10, 27, 0, 30, 0),
        (2024, 10, 27, 1, 30, 0), (2024, 3, 10, 6, 59, 59), (2024, 3, 10, 7, 0, 0),
        (2024, 11, 3, 5, 30, 0), (2024, 11, 3, 6, 30, 0), (2038, 1, 19, 3, 14, 8),
        (2106, 2, 7, 6, 28, 16), (9999, 12, 31, 23, 59, 59)]]
    instants += list(range(-2208988800, 4102444800, 86400 * 3011 + 3607 * 5 + 13))
    for zone in [GMT] + ZONES:
        for i, when in enumerate(instants):
            add(zone, when, (i * 137) % 1000, COMMON)


MALFORMED = ["%", "x%", "%5", "%_", "%^", "%E", "%O", "%-5", "%:", "%:Y", "%::Y", "%::::z",
             "%O:zX", "%O::zX", "%E:z", "%_E:z", "%:Ez", "%5%", "%_%", "%E%", "%-%", "%^%",
             "%Q", "%5Q", "%05Q", "%-5Q", "%^f", "%^5f", "%#f", "%#Ea", "%#EA", "%#Eb", "%#EB",
             "%#Eh", "%^Ea", "%#Oa", "%^Oc", "%#OY", "%+5Q", "%+OY", "%^ON", "%EN", "%:N",
             "%00000000000000000000005d", "%-_0^#+5d", "%1100d", "%1100Z", "%_1100s",
             "%1100:z", "%-1100d", "%01100A", "%^2000B", "%5000N", "%_5000N", "%70000j",
             "%-N", "%--N", "%_-N", "%-9N", "%-^N", "%%-N", "%-5n", "%5t", "%En", "%5On",
             "a%nb%tc", "%%%%", "%%%", "plain text", "%5%%", "%-:z", "%O%"]


def malformed_sweep():
    for zone in [GMT, CET, EST]:
        for layout in MALFORMED:  # one process each: a dangling '%' would eat the separator
            add(zone, 1709802303, 123, [layout])


def value_sweep():
    """Every conversion with each flag, width and modifier over values that
    vary each field: every month, weekday and hour, one- and two-digit days,
    minutes and seconds, years 1000-9999; and padding of any size in one piece."""
    layouts = [joined(f"%{p}{c}" for c in LETTERS)
               for p in ["", "-", "_", "0", "^", "#", "3", "12", "E", "O"]]
    for i in range(48):
        when = gmt_seconds(1000 + 187 * i, 1 + i % 12, 1 + i * 5 % 31 % 28, i % 24, i * 7 % 60,
                           i * 13 % 60)
        add(GMT, when, i * 37 % 1000, layouts)
    add(GMT, 1709802303, 0, ["%3000000d|%_3000000A"])


# ---- Reading: our own contract, written by hand ------------------------------------

def stated(fields, ms=0):
    """A stated zone's reading as stateOf writes it: GMT Y M D h m s weekday."""
    return f"{fields} ms={ms} gmt flags=000 dst=-1"


def wall(fields, ms=0):
    """A wall clock read without a zone, as stateOf writes it."""
    return f"{fields} ms={ms} gmt flags=001 dst=-1"


# kind: "same" where glibc's strptime and timegm read the same instant; "lax"
# where strptime takes the text and we refuse it or read another instant, for
# the reason in the note; "ours" where strptime is not asked. expected: the
# value read, as the tests' stateOf writes it, or the refusal.
READS = [
    ("same", "%Y-%m-%d %H:%M:%S", "2024-03-07 09:05:03", wall("2024 3 7 9 5 3 4")),
    ("same", "%Y-%m-%d %H:%M:%S", "2024-12-31 23:59:60", wall("2024 12 31 23 59 60 2"),
     "a leap second, kept as read"),
    ("same", "%Y-%m-%dT%H:%M:%S%z", "2024-03-07T10:05:03+0100", stated("2024 3 7 9 5 3 4")),
    ("same", "%Y-%m-%dT%H:%M:%S%z", "2024-03-07T03:35:03-05:30", stated("2024 3 7 9 5 3 4")),
    ("same", "%Y-%m-%dT%H:%M:%S%z", "2024-03-07T09:05:03Z", stated("2024 3 7 9 5 3 4")),
    ("same", "%Y-%m-%dT%H:%M:%S%z", "2024-03-07T10:05:03+01", stated("2024 3 7 9 5 3 4")),
    ("same", "%Y-%m-%d %H:%M %z", "2024-01-01 00:30 +2359", stated("2023 12 31 0 31 0 0")),
    ("same", "%a, %d %b %Y %H:%M:%S %Z", "Thu, 07 Mar 2024 09:05:03 GMT", stated("2024 3 7 9 5 3 4")),
    ("same", "%a, %d %b %Y %H:%M:%S %Z", "thu, 07 mar 2024 09:05:03 UTC", stated("2024 3 7 9 5 3 4")),
    ("same", "%A %B %d %Y", "THURSDAY march 07 2024", wall("2024 3 7 0 0 0 4")),
    ("same", "%b %d %Y", "Sep 7 2024", wall("2024 9 7 0 0 0 6")),
    ("same", "%m/%d/%Y", "3/7/2024", wall("2024 3 7 0 0 0 4")),
    ("same", "%d/%m/%y", "07/03/24", wall("2024 3 7 0 0 0 4")),
    ("same", "%d/%m/%y", "31/12/49", wall("2049 12 31 0 0 0 5")),
    ("same", "%D %T", "03/07/24 09:05:03", wall("2024 3 7 9 5 3 4")),
    ("same", "%F %T", "2024-03-07 09:05:03", wall("2024 3 7 9 5 3 4")),
    ("same", "%c", "Thu Mar  7 09:05:03 2024", wall("2024 3 7 9 5 3 4")),
    ("same", "%x %X", "03/07/24 09:05:03", wall("2024 3 7 9 5 3 4")),
    ("same", "%F %r", "2024-03-07 09:05:03 PM", wall("2024 3 7 21 5 3 4")),
    ("same", "%F %I:%M %p", "2024-03-07 12:00 AM", wall("2024 3 7 0 0 0 4")),
    ("same", "%F %I:%M %p", "2024-03-07 12:30 pm", wall("2024 3 7 12 30 0 4")),
    ("same", "%F %l:%M %p", "2024-03-07  1:30 pm", wall("2024 3 7 13 30 0 4")),
    ("same", "%e %b %Y %k:%M", " 7 Mar 2024  9:05", wall("2024 3 7 9 5 0 4")),
    ("same", "%Y %j", "2024 067", wall("2024 3 7 0 0 0 4")),
    ("same", "%Y %j", "2024 366", wall("2024 12 31 0 0 0 2")),
    ("same", "%Y %j", "2023 1", wall("2023 1 1 0 0 0 0")),
    ("same", "%Y %j", "2000 366", wall("2000 12 31 0 0 0 0")),
    ("same", "%Y %U %a", "2024 09 Thu", wall("2024 3 7 0 0 0 4")),
    ("same", "%Y %U %w", "2024 00 6", wall("2024 1 6 0 0 0 6")),
    ("same", "%Y %U %a", "2023 53 Sun", wall("2023 12 31 0 0 0 0")),
    ("same", "%Y %W %A", "2024 10 Thursday", wall("2024 3 7 0 0 0 4")),
    ("same", "%Y %W %u", "2024 52 7", wall("2024 12 29 0 0 0 0")),
    ("same", "%C%y%m%d", "20240307", wall("2024 3 7 0 0 0 4")),
    ("same", "%C%y%m%d", "19991231", wall("1999 12 31 0 0 0 5")),
    ("same", "%Y%m%d%H%M%S", "20240307090503", wall("2024 3 7 9 5 3 4")),
    ("same", "%Y%m%d", "2024037", wall("2024 3 7 0 0 0 4")),
    ("same", "%s", "1709802303", stated("2024 3 7 9 5 3 4")),
    ("same", "%s", "0", stated("1970 1 1 0 0 0 4")),
    ("same", "%Y-%m-%d%n%H:%M", "2024-03-07\t09:05", wall("2024 3 7 9 5 0 4")),
    ("same", "%Y-%m-%d %t %H:%M", "2024-03-07 \n 09:05", wall("2024 3 7 9 5 0 4")),
    ("same", "%Y-%m-%d %%", "2024-03-07 %", wall("2024 3 7 0 0 0 4")),
    ("same", "%Y", "2024", wall("2024 1 1 0 0 0 1")),
    ("same", "%Y-%m", "2024-02", wall("2024 2 1 0 0 0 4")),
    ("same", "%Y/%m/%d %H", "0001/01/01 00", wall("1 1 1 0 0 0 1")),
    ("same", "%Y/%m/%d %H:%M:%S", "9999/12/31 23:59:59", wall("9999 12 31 23 59 59 5")),
    ("same", "%h %d %Y %R", "mAr 07 2024 09:05", wall("2024 3 7 9 5 0 4")),
    ("lax", "%Y-%m-%d", "24-03-07", "expected a four-digit year at byte 0", "%Y is four digits"),
    ("lax", "%Y-%m-%d", " 2024-03-07", "expected a four-digit year at byte 0",
     "no white space the layout does not have"),
    ("lax", "%Y-%m-%d", "2024-02-30", "day out of range for the month at byte 8",
     "timegm would move it to 1 March"),
    ("lax", "%Y-%m-%d", "2023-02-29", "day out of range for the month at byte 8",
     "no 29 February in 2023"),
    ("lax", "%Y %j", "2023 366", "day of the year out of range for the year at byte 5",
     "2023 has 365"),
    ("lax", "%Y %j", "1900 366", "day of the year out of range for the year at byte 5",
     "1900 has 365"),
    ("lax", "%a %Y-%m-%d", "Fri 2024-03-07", "weekday does not match the date at byte 0",
     "the text contradicts itself"),
    ("lax", "%Y-%m-%d %H:%M %p", "2024-03-07 22:05 AM", "AM/PM does not match the hour at byte 17",
     "the text contradicts itself"),
    ("lax", "%Y-%m-%d %I:%M", "2024-03-07 09:05", "12-hour hour without AM or PM at byte 11",
     "morning or evening is a guess"),
    ("lax", "%H:%M", "09:05", "layout names no year at byte 0",
     "no date: today or 1900 is a guess"),
    ("lax", "%d %b", "07 Mar", "layout names no year at byte 0", "no year"),
    ("lax", "%Y-%m-%d %Z", "2024-03-07 XYZ", "unknown zone name at byte 11",
     "strptime skips any word, we need its offset"),
    ("lax", "%Y-%m-%d %Z", "2024-03-07 IST", "zone name with several offsets at byte 11",
     "India, Ireland or Israel"),
    ("lax", "%Y-%m-%d %H:%M:%S", "2024-03-07 9:5:3 ", "text left unread at byte 16",
     "strptime skips white space after its last field"),
    ("lax", "%Y-%m-%d %H:%M", "2024-03-07 09:05:30", "text left unread at byte 16",
     "strptime stops where the layout does, we read the whole text"),
    ("lax", "%Y-%m-%d %Z", "2024-03-07 UTC+1", "text left unread at byte 14",
     "a name ends at its letters"),
    ("lax", "%Y-%m-%d%H", "2024-03-07 09", "expected an hour at byte 10",
     "no white space the layout does not have"),
    ("lax", "%d/%m/%y", "01/01/68", wall("1968 1 1 0 0 0 1"),
     "pivot: 00-49 are 20xx here, 00-68 in glibc"),
    ("ours", "%d/%m/%y", "01/01/50", wall("1950 1 1 0 0 0 0"), "the pivot"),
    # Refusals, each with its reason and byte.
    ("ours", "%F %T", "2024-03-07 09:05", "expected ':' at byte 16"),
    ("ours", "%F %T", "2024-03-07T09:05:03", "expected white space at byte 10"),
    ("ours", "%F", "2024-13-07", "month out of range at byte 5"),
    ("ours", "%F", "2024-00-07", "month out of range at byte 5"),
    ("ours", "%F", "2024-03-32", "day out of range at byte 8"),
    ("ours", "%F", "2024-03-00", "day out of range at byte 8"),
    ("ours", "%F", "2024-04-31", "day out of range for the month at byte 8"),
    ("ours", "%F %T", "2024-03-07 24:00:00", "hour out of range at byte 11"),
    ("ours", "%F %T", "2024-03-07 23:60:00", "minute out of range at byte 14"),
    ("ours", "%F %T", "2024-03-07 23:59:61", "second out of range at byte 17"),
    ("ours", "%F %I %p", "2024-03-07 13 PM", "hour out of range (12-hour clock) at byte 11"),
    ("ours", "%F %I %p", "2024-03-07 00 PM", "hour out of range (12-hour clock) at byte 11"),
    ("ours", "%F %I %p", "2024-03-07 01 XM", "expected AM or PM at byte 14"),
    ("ours", "%F %I %p", "2024-03-07 01 a.m", "expected '.' after a.m or p.m at byte 17"),
    ("ours", "%F", "2024/03/07", "expected '-' at byte 4"),
    ("ours", "%F", "2024-03-07\xff", "text left unread at byte 10"),
    ("ours", "%F\xff", "2024-03-07x", "expected byte 0xff at byte 10"),
    ("ours", "%Y-%b-%d", "2024-Mrz-07", "expected a month name at byte 5"),
    ("ours", "%a %F", "Thx 2024-03-07", "expected a weekday name at byte 0"),
    ("ours", "%Y %j", "2024 367", "day of the year out of range at byte 5"),
    ("ours", "%Y %j", "2024 000", "day of the year out of range at byte 5"),
    ("ours", "%G-W%V-%u", "2024-W54-1", "ISO week out of range at byte 6"),
    ("ours", "%G-W%V-%u", "2024-W10-8", "weekday out of range at byte 9"),
    ("ours", "%G-W%V-%u", "2020-W53-5", wall("2021 1 1 0 0 0 5"),
     "2021-01-01: ISO 2020 has 53 weeks"),
    ("ours", "%G-W%V-%u", "2021-W53-5", "ISO week out of range for the year at byte 6"),
    ("ours", "%G-W%V-%u", "2021-W53-1", "ISO week out of range for the year at byte 6"),
    ("ours", "%G-W%V", "2024-W10", "week number without a weekday at byte 6"),
    ("ours", "%Y-W%V-%u", "2024-W10-4", "ISO week without an ISO year at byte 6"),
    ("ours", "%Y %U", "2024 09", "week number without a weekday at byte 5"),
    ("ours", "%Y %U %a", "2024 53 Tue", "week number out of range for the year at byte 5"),
    ("ours", "%Y %U %a", "2023 53 Mon", "week number out of range for the year at byte 5"),
    ("ours", "%F %G", "2024-12-30 2024", "ISO year does not match the date at byte 11"),
    ("ours", "%F %j", "2024-03-07 068", "day of the year does not match the date at byte 11"),
    ("ours", "%F %q", "2024-03-07 2", "quarter does not match the date at byte 11"),
    ("ours", "%Y %C", "2024 19", "century does not match the date at byte 5"),
    ("ours", "%Y %y", "2024 23", "two-digit year does not match the date at byte 5"),
    ("ours", "%F %d", "2024-03-07 08", "day does not match the date at byte 11"),
    ("ours", "%F %T %H", "2024-03-07 09:05:03 10", "hour read twice, differently at byte 20"),
    ("ours", "%F %H %I %p", "2024-03-07 09 10 AM",
     "12-hour hour does not match the hour at byte 14"),
    ("ours", "%F %p", "2024-03-07 AM", "AM or PM without an hour at byte 11"),
    ("ours", "%F %z", "2024-03-07 +2400", "zone offset out of range at byte 11"),
    ("ours", "%F %z", "2024-03-07 +0160", "zone offset out of range at byte 11"),
    ("ours", "%F %z", "2024-03-07 +01:", "expected the minutes of the offset at byte 15"),
    ("ours", "%F %z", "2024-03-07 +01:00:30", "zone offset not in whole minutes at byte 11"),
    ("ours", "%F %z", "2024-03-07 0100", "expected a zone offset at byte 11"),
    ("ours", "%F %z", "2024-03-07 +1", "expected a zone offset at byte 11"),
    ("ours", "%F %Z", "2024-03-07 123", "expected a zone name at byte 11"),
    ("ours", "%F %Z", "2024-03-07 ABCDEFGHIJKLMNOP", "unknown zone name at byte 11"),
    ("ours", "%s", "253402300800", "Unix seconds outside years 0-9999 at byte 0"),
    ("ours", "%s", "-62167219201", "Unix seconds outside years 0-9999 at byte 0"),
    ("ours", "%s", "1234567890123", "Unix seconds outside years 0-9999 at byte 0"),
    ("ours", "%s", "-", "expected Unix seconds at byte 0"),
    ("ours", "%s %F", "0 1970-01-01", "date field beside Unix seconds at byte 2"),
    ("ours", "%F %T.%3N", "2024-03-07 09:05:03.12", "expected a fraction of a second at byte 20"),
    ("ours", "%F %T.%N", "2024-03-07 09:05:03.", "expected a fraction of a second at byte 20"),
    ("ours", "%F %T.%N", "2024-03-07 09:05:03.1234567891", "text left unread at byte 29"),
    ("ours", "%F %T%z", "9999-12-31 23:59:59-0100", "GMT reading outside years 0-9999 at byte 0"),
    ("ours", "%F %T%z", "0000-01-01 00:00:00+0100", "GMT reading outside years 0-9999 at byte 0"),
    ("ours", "%F %Q", "2024-03-07 x", "unknown conversion in the layout at byte 11"),
    ("ours", "%F %:Y", "2024-03-07 x", "unknown conversion in the layout at byte 11"),
    ("ours", "%F %::::z", "2024-03-07 +01", "unknown conversion in the layout at byte 11"),
    ("ours", "%F %", "2024-03-07 x", "layout ends inside a conversion at byte 11"),
    ("ours", "%d %m", "07 03", "layout names no year at byte 0"),
    ("ours", "%d %Y", "07 2024", "day without a month in the layout at byte 0"),
    ("ours", "", "x", "text left unread at byte 0"),
    ("ours", "%F", "", "expected a four-digit year at byte 0"),
    # Views that end inside a conversion or a field: every layout here meets
    # every text here in the tests, in blocks of exactly their size.
    ("ours", "%Y%", "2024", "layout ends inside a conversion at byte 4"),
    ("ours", "%Y-%m-%d%", "2024-03-07", "layout ends inside a conversion at byte 10"),
    ("ours", "%", "2024", "layout ends inside a conversion at byte 0"),
    ("ours", "%F %T%", "2024-03-07 09:05:03", "layout ends inside a conversion at byte 19"),
    ("ours", "%D%:", "03/07/24", "unknown conversion in the layout at byte 8"),
    ("ours", "%Y %b %e", "2024 Mar  ", "expected a day at byte 9"),
    ("ours", "%s", "17098", stated("1970 1 1 4 44 58 4")),
    ("ours", "%F %Z", "2024-03-07 CES", "unknown zone name at byte 11"),
    ("ours", "%F %z", "2024-03-07 +", "expected a zone offset at byte 11"),
    ("ours", "%c", "Thu Mar  7 09:05:03 202", "expected a four-digit year at byte 20"),
    ("ours", "%Y-%m-%dT%H:%M:%S%z", "2024-03-07T09:05:03+01", stated("2024 3 7 8 5 3 4")),
    # White space in the layout takes any run of it; a space past the
    # layout's own count, before a field written with space padding, is that field's.
    ("ours", "%Y %b %e", "2024 Mar  7", wall("2024 3 7 0 0 0 4")),
    ("ours", "%Y %b %e", "2024 Mar 17", wall("2024 3 17 0 0 0 0")),
    ("ours", "%Y %b %e", "2024 Mar\t\n 17", "text left unread at byte 12", "' 1' is %e's"),
    ("ours", "%Y %b %e", "2024 Mar   7", wall("2024 3 7 0 0 0 4")),
    ("ours", "%Y %b %e", "2024 Mar   17", "text left unread at byte 12"),
    ("ours", "%Y %b%n%t%e", "2024 Mar  7", wall("2024 3 7 0 0 0 4")),
    ("ours", "%Y %b%n%t%e", "2024 Mar   7", wall("2024 3 7 0 0 0 4")),
    ("ours", "%F\t%k%M%S", "2024-03-07\t 05711", wall("2024 3 7 0 57 11 4")),
    ("ours", "%F\t%k%M%S", "2024-03-07\t235711", wall("2024 3 7 23 57 11 4")),
    ("ours", "%F  %_m", "2024-10-07  10", wall("2024 10 7 0 0 0 1")),
    ("ours", "%F  %_m", "2024-03-07   3", wall("2024 3 7 0 0 0 4")),
    ("ours", "%F %T", "2024-03-07\r\n\v\f09:05:03", wall("2024 3 7 9 5 3 4")),
    ("ours", "%F %T", "2024-03-0709:05:03", "expected white space at byte 10"),
    ("ours", "%F%n", "2024-03-07", "expected white space at byte 10"),
    # A zero byte ends what is read; the text goes on past it, unread.
    ("ours", "%F", "2024-03-07\x00", "text left unread at byte 10"),
    ("ours", "%F", "2024-03\x00-07", "expected '-' at byte 7"),
    ("ours", "%F", "2024-03-0\x007", "day out of range at byte 8"),
    ("ours", "%F\x00%T", "2024-03-07", wall("2024 3 7 0 0 0 4"), "the layout ends there"),
    # What a reading stores: all but the carried flags.
    ("ours", "%F %T.%N %z", "2024-03-07 10:05:03.987 +0100", stated("2024 3 7 9 5 3 4", 987)),
    ("ours", "%F %T.%N", "2024-03-07 10:05:03.5", wall("2024 3 7 10 5 3 4", 500)),
    ("ours", "%F %T %z", "2024-03-07 10:05:03 -0000", wall("2024 3 7 10 5 3 4"),
     "-0000: zone unknown"),
    ("ours", "%s.%f", "1709802303.123456", stated("2024 3 7 9 5 3 4", 123)),
    ("ours", "%s", "-86401", stated("1969 12 30 23 59 59 2")),
    ("ours", "%F %Z %:z", "2024-03-07 IST +05:30", stated("2024 3 6 18 30 0 3"),
     "settled by the offset"),
    ("ours", "%F %R %Z", "2024-03-07 12:00 +0530", stated("2024 3 7 6 30 0 4"), "tzdata's +0530"),
]


def eight_bit_reads():
    # Every byte 128-255 where a digit, a name, a literal and the end belong.
    rows = []
    for x in map(chr, range(128, 256)):
        rows += [("ours", "%F", f"2024-{x}-07", "expected a month at byte 5"),
                 ("ours", "%d %b %Y", f"07 {x}ar 2024", "expected a month name at byte 3"),
                 ("ours", "%F", f"2024{x}03-07", "expected '-' at byte 4"),
                 ("ours", "%F %Z", f"2024-03-07 GMT{x}", "text left unread at byte 14")]
    return rows


# use: "strptime" where strftime writes the local clock and glibc's strptime
# and timegm read the instant; "strftime" where it writes every date of a
# range on the GMT clock (strptime computes nothing from %G %V %U %W);
# "instant" where zpFormatDate's text reads back to the instant, "wall" to
# the wall clock. Two-digit years only where glibc's pivot (69) and ours (50)
# agree, or in 1950-2049; glibc writes %Y and %G unpadded below 1000.
LAYOUTS = [
    ("strptime", "%Y-%m-%d %H:%M:%S", 1000, 9999),
    ("strptime", "%a, %d %b %Y %H:%M:%S %z", 1000, 9999),
    ("strptime", "%A %B %e %Y %I:%M:%S %p", 1000, 9999),
    ("strptime", "%c", 1000, 9999),
    ("strptime", "%D %T", 1970, 2049),
    ("strptime", "%x %X %z", 1970, 2049),
    ("strptime", "%Y %j %H:%M", 1000, 9999),
    ("strptime", "%C%y%m%d%H%M%S", 1000, 9999),
    ("strptime", "%b %d %Y %r", 1000, 9999),
    ("strptime", "%s", 1970, 9999),  # glibc's %s takes no sign
    ("strptime", "%Y %U %a %T", 1000, 9999),
    ("strptime", "%Y %W %u %k.%M.%S %z", 1000, 9999),
    ("strptime", "%d/%m/%y %l:%M %p", 1970, 2049),
    ("strftime", "%G-W%V-%u", 1000, 9999),
    ("strftime", "%4Y-%j", 0, 9999),
    ("strftime", "%4Y %U %w", 0, 9999),
    ("strftime", "%4Y %W %a", 0, 9999),
    ("strftime", "%g %V %A", 1951, 2048),
    ("strftime", "%C%g %V %u", 1951, 2048),
    ("strftime", "%b %d %4Y %A", 0, 9999),
    ("strftime", "%4Y-%m-%d", 0, 9999),
    ("strftime", "%-d %b %4Y", 0, 9999),
    ("instant", "%Y-%m-%dT%H:%M:%S%z", 1901, 2099),
    ("instant", "%Y-%m-%dT%H:%M:%S.%3N%:z", 1901, 2099, "ms"),
    ("instant", "%FT%T,%N%::z", 1901, 2099, "ms"),
    ("instant", "%a, %d %b %Y %H:%M:%S %z", 1901, 2099),
    ("instant", "%A %-d %B %Y %-I:%M:%S.%6N %p %:::z", 1901, 2099, "ms"),
    ("instant", "%c %z", 1901, 2099),
    ("instant", "%a %b %e %H:%M:%S %Z %Y", 1901, 2099),  # CET CEST EST EDT UTC +0530: all known
    ("instant", "%D %r %Z", 1950, 2049),
    ("instant", "%G-W%V-%u %T %z", 1901, 2099),
    ("instant", "%Y-%j %k:%M:%S %z", 1901, 2099),
    ("instant", "%Y %U %a %T%z", 1901, 2099),
    ("instant", "%Y %W %u %T%z", 1901, 2099),
    ("instant", "%_d.%_m.%Y %l:%M:%S%P %z", 1901, 2099),
    ("instant", "%^a %^b %d %Y %H%M%S %#Z", 1901, 2099),
    ("instant", "%s", 1901, 2099),
    ("instant", "%s.%3N", 1901, 2099, "ms"),
    ("instant", "%C%y%m%d%H%M%S%z", 1901, 2099),
    ("instant", "%4Y-%3m-%3d %3H:%3M:%3S %z", 1901, 2099),
    ("instant", "%Y%n%m%t%d  %H:%M:%S %z", 1901, 2099),
    ("wall", "%F %T", 1901, 2099),
    ("wall", "%c", 1901, 2099),
    ("wall", "%d/%m/%Y %I:%M:%S %p", 1901, 2099),
    ("wall", "%e %B %Y %k.%M.%S", 1901, 2099),
]


def write_table(name, header, rows):
    lines = ["# Generated by tests/data/gen_pattern_tables.py from its hand-written tables; "
             "do not edit.", "# " + header]
    lines += ["\t".join(str(x) for x in row) for row in rows]
    (HERE / name).write_text("\n".join(lines) + "\n")
    print(f"{name}: {len(rows)} rows")


def read_tables():
    rows = []
    for kind, layout, text, expected, *note in READS + eight_bit_reads():
        fields = [esc(layout.encode("latin-1")), esc(text.encode("latin-1"))]
        assert not any("\\*" in f for f in fields)
        rows.append([kind] + fields + [expected] + note)
    write_table("pattern_reads.tsv", "kind | layout | text | expected (stateOf, or the refusal) "
                "| note", rows)
    write_table("pattern_layouts.tsv", "use | layout | first year | last year | ms when the "
                "milliseconds read back", LAYOUTS)


def main():
    grammar_sweep()
    year_sweep()
    zone_sweep()
    nanosecond_sweep()
    instant_sweep()
    malformed_sweep()
    value_sweep()
    read_tables()
    version = subprocess.run(["date", "--version"], check=True, capture_output=True,
                             text=True).stdout.splitlines()[0]
    lines = [f"# Generated by tests/data/gen_pattern_tables.py from {version}; do not edit.",
             "# zone | seconds | milliseconds | layout | expected"]
    lines += ["\t".join(r) for r in ROWS]
    (HERE / "pattern_writes.tsv").write_text("\n".join(lines) + "\n")
    print(f"pattern_writes.tsv: {len(ROWS)} rows")


if __name__ == "__main__":
    main()
