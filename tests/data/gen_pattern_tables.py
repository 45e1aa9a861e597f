#!/usr/bin/env python3
"""Writes pattern_writes.tsv: what GNU date's +FORMAT writes for each layout.

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


def main():
    grammar_sweep()
    year_sweep()
    zone_sweep()
    nanosecond_sweep()
    instant_sweep()
    malformed_sweep()
    version = subprocess.run(["date", "--version"], check=True, capture_output=True,
                             text=True).stdout.splitlines()[0]
    lines = [f"# Generated by tests/data/gen_pattern_tables.py from {version}; do not edit.",
             "# zone | seconds | milliseconds | layout | expected"]
    lines += ["\t".join(r) for r in ROWS]
    (HERE / "pattern_writes.tsv").write_text("\n".join(lines) + "\n")
    print(f"pattern_writes.tsv: {len(ROWS)} rows")


if __name__ == "__main__":
    main()
