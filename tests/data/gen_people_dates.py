#!/usr/bin/env python3
"""Writes people_dates.tsv: dates as people, office software, spreadsheets and
databases write them, each with what it says, and what python-dateutil and
GNU date read from it.

    /usr/bin/python3 tests/data/gen_people_dates.py   # rewrites people_dates.tsv

Needs Debian's python3 with python3-dateutil, nodejs (with its full ICU),
default-jdk-headless and coreutils. Every text comes from running its writer:
  - Node's Intl (tests/data/peers/write_people_dates.js): toLocaleString,
    toLocaleDateString, Intl.DateTimeFormat's dateStyle / timeStyle and
    timeZoneName, in en-US, en-GB, de-DE and ja-JP, and fr-FR's offsets;
    V8 writes a plain space where ICU has U+202F, so the text joined from
    formatToParts' values is a writer too ("... formatToParts");
  - Java 17 (tests/data/peers/WritePeopleDates.java, compiled with javac in a
    temporary directory): DateTimeFormatter.ofLocalizedDate and
    ofLocalizedDateTime, DateFormat.getDateTimeInstance and new
    SimpleDateFormat(), in the same locales;
  - Python's strftime in the C locale, with the layouts spreadsheets and
    databases write (upper-cased where a database writes DD-MON-RR).
java.util.Date.toString, a mail-like form, is in software_dates.tsv.
Each writes a fixed set of instants (below: the wall clock in an IANA zone),
the three that give the examples every writer, the others each a fixed
quarter of the writers. The bytes are kept: U+202F before AM/PM, U+2212 in
offsets, Japanese labels.

What a text says comes from its writer's own statement of its layout, never
from reading the text: Node's formatToParts, Java's localized pattern
(DateTimeFormatterBuilder.getLocalizedDateTimePattern, SimpleDateFormat
.toPattern) and its zone field written alone, the strftime layout.

Columns (text C-escaped: \\t \\r \\n \\\\ \\xHH over UTF-8):
  text         what the writer wrote
  writer       program and call: "node dateStyle=medium timeStyle=short",
               "java ofLocalizedDateTime(MEDIUM,SHORT)", "python %d-%b-%Y"
               ("python %d-%b-%y upper": the text upper-cased)
  locale       en-US, en-GB, de-DE, ja-JP, fr-FR; C for Python
  zone         the IANA zone the writer wrote in
  order        the writer's field order for a numeric date: MDY, DMY, YMD; "-"
               where the text names its month or labels its fields (2026年1月25日)
  numeric      ambiguous: two of MDY, DMY and YMD read different valid dates
               (03/04/2026); settled: one date whichever reads (13/03/2024,
               2026/1/25, 1/1/2026); "-" for a text whose order is "-"
  readable as  the orders that read a valid date (MDY,DMY), "-" as above;
               a one- or two-digit year reads with the pivot at 50 (26: 2026)
  zone as written
               "-" none; offset (GMT-5, GMT+05:30, UTC−5); name (an
               abbreviation with one offset: EST, JST, GMT); ambiguous (one
               with several: IST, BDT, BST, CST); unknown (an abbreviation no
               source writes: MEZ); words (Eastern Standard Time, インド標準時)
  expected     the reading: "@<Unix seconds>.<ms>" where the text states its
               offset or a name with one offset (gen_zone_names.py's
               zone_offsets, what software means by the name: CST is
               ambiguous outside mail); "local YYYY-MM-DDTHH:MM:SS.mmm", the
               wall clock as written, the zone unknown, where it states none;
               "refuse" where its zone is ambiguous, unknown or words. Fields
               the text leaves out (seconds, the time) are zero.
  meant        the instant the writer was asked for, "@<s>.<ms>", its wall
               clock cut to what the text holds (a date alone: its midnight at
               the offset of the instant)
  dateutil     dateutil.parser.parse(text), default settings: ok (the
               instant meant, or for a text without zone the fields as
               written), wrong (another reading; a result without zone for a
               text with one counts as UTC), refused (an exception)
  gnu date     TZ=UTC0 LC_ALL=C date -d TEXT +%s: ok, wrong or refused alike
A text with a zone is judged against "meant", one without against the
wall clock, whatever "expected" says.

Left out: texts whose zone name has one offset, but not the one the writer's
zone had then (Java writes GMT for London's +01:00 of 1968-1971: the name of
the zone's rules today), which no reader can tell from the text; texts with
a two-digit year before 1990, since dateutil reads a two-digit year within
50 years of today and its verdict on them would change as years pass (GNU
date and the pivot at 50 read 1990 to 2037 alike).
Repeats: a text with the same order and reading as an earlier row.
"""
import json
import os
import random
import re
import subprocess
import sys
import tempfile
import warnings
from calendar import monthrange
from datetime import datetime, timedelta, timezone
from zoneinfo import ZoneInfo

from gen_parser_tables import esc
from gen_zone_names import AMBIGUOUS, zone_offsets

HERE = os.path.dirname(os.path.abspath(__file__))
PEERS = os.path.join(HERE, "peers")
OUT = os.path.join(HERE, "people_dates.tsv")
SEED = 20260125
UTC = timezone.utc
EPOCH = datetime(1970, 1, 1, tzinfo=UTC)
ZONES = ["America/New_York", "Europe/Berlin", "Asia/Kolkata", "Asia/Tokyo", "UTC",
         "Europe/London", "Asia/Dhaka", "America/Sao_Paulo", "Asia/Shanghai"]
SHARE = 4  # an instant beyond the examples goes to one writer in SHARE
DATEUTIL_STABLE_FROM = 1990

# Wall clocks every writer writes; they give the examples below.
EXAMPLE_INSTANTS = [
    ((2026, 1, 25, 0, 32, 1), "America/New_York"),
    ((2015, 12, 16, 3, 4, 27), "Europe/Berlin"),
    ((2034, 10, 21, 12, 0, 0), "Asia/Tokyo"),
]
# Texts the reader is to read, each with its writer and meaning; the
# generator fails unless a writer wrote each.
EXAMPLES = {
    "January 25, 2026": "Node and Java long date, en-US: 2026-01-25",
    "Jan 25, 2026, 12:32:01 AM": "Java MEDIUM and Node medium, en-US: 2026-01-25 00:32:01",
    "25 Jan 2026, 00:32": "Java MEDIUM,SHORT and Node medium/short, en-GB: 2026-01-25 00:32",
    "Sunday, January 25, 2026 at 12:32:01 AM EST":
        "Java FULL,LONG, en-US, New York: 2026-01-25 05:32:01 UTC",
    "Dec 16, 2015 03:04 AM": "strftime %b %d, %Y %I:%M %p: 2015-12-16 03:04",
    "21-Oct-2034": "strftime %d-%b-%Y: 2034-10-21",
    "25-JAN-26": "strftime %d-%b-%y upper-cased, a database's DD-MON-RR: 2026-01-25",
    "25.1.2026, 00:32:01": "Node toLocaleString, de-DE: 2026-01-25 00:32:01",
    "2026/1/25 0:32:01": "Node toLocaleString, ja-JP: 2026-01-25 00:32:01",
    "2015.12.16 03:04": "strftime %Y.%m.%d %H:%M: 2015-12-16 03:04",
}
EXTRA_INSTANTS = 20

# strftime layouts; "upper": the text upper-cased.
PY_LAYOUTS = [
    "%d-%b-%Y", "%d-%b-%y upper", "%d-%b-%Y %H:%M:%S", "%d-%b-%y %H:%M:%S upper",
    "%m/%d/%Y", "%m/%d/%y", "%m/%d/%Y %I:%M %p", "%m/%d/%Y %H:%M:%S", "%-m/%-d/%Y",
    "%-m/%-d/%y", "%-m/%-d/%Y %-I:%M %p", "%-m/%-d/%Y %-H:%M", "%m-%d-%Y",
    "%d/%m/%Y", "%d/%m/%y", "%d/%m/%Y %H:%M", "%d/%m/%Y %H:%M:%S", "%-d/%-m/%Y", "%d-%m-%Y",
    "%d.%m.%Y", "%d.%m.%y", "%d.%m.%Y %H:%M:%S", "%-d.%-m.%Y %-H:%M",
    "%Y/%m/%d %H:%M:%S", "%Y/%-m/%-d %-H:%M:%S", "%Y.%m.%d %H:%M", "%Y/%m/%d",
    "%B %d, %Y", "%B %-d, %Y", "%b %d, %Y %I:%M %p", "%A, %B %d, %Y %I:%M:%S %p",
    "%d %B %Y", "%-d %b %Y", "%d %b %Y, %H:%M", "%a %d %b %Y %H:%M",
]

SECOND, MINUTE, HOUR, DAY = 1, 60, 3600, 86400  # what a text holds, in seconds


# ---- Instants -----------------------------------------------------------------

def instant_of(wall, zone):
    """The UTC instant of a wall clock in a zone; None when the clock skips it."""
    local = datetime(*wall, tzinfo=ZoneInfo(zone))
    utc = local.astimezone(UTC)
    return utc if utc.astimezone(ZoneInfo(zone)).replace(tzinfo=None) == datetime(*wall) else None


def instants():
    """[(UTC instant, zone)]: the examples' first, then a fixed draw over
    1970-2037 with days up to 12 and past it, midnight and noon hours."""
    rng = random.Random(SEED)
    out = [(instant_of(w, z), z) for w, z in EXAMPLE_INSTANTS]
    fixed = [((1970, 1, 1, 0, 0, 0), "UTC"), ((2000, 2, 29, 12, 0, 0), "Europe/London"),
             ((2037, 12, 31, 23, 59, 59), "Asia/Tokyo"), ((1999, 12, 31, 12, 30, 0), "Asia/Kolkata")]
    out += [(instant_of(w, z), z) for w, z in fixed]
    while len(out) < len(EXAMPLE_INSTANTS) + len(fixed) + EXTRA_INSTANTS:
        n = len(out)
        year = rng.randrange(1970, 2038)
        month = rng.randrange(1, 13)
        day = rng.randrange(1, 13) if n % 2 else rng.randrange(13, monthrange(year, month)[1] + 1)
        hour = [0, 12, rng.randrange(24)][n % 3]
        zone = ZONES[n % len(ZONES)]
        utc = instant_of((year, month, day, hour, rng.randrange(60), rng.randrange(60)), zone)
        if utc is not None and utc >= EPOCH:
            out.append((utc, zone))
    return out


# ---- Writers: each gives records {i, writer, locale, text, meta} ---------------------
# meta: order ("MDY", "-" ...), year digits, unit (seconds the text is cut to),
# zone text (None: none).

def unit_of(has):
    return SECOND if has("s") else MINUTE if has("m") else HOUR if has("h") else DAY


def node_records(points):
    stdin = json.dumps([[int((t - EPOCH) / timedelta(milliseconds=1)), z] for t, z in points])
    out = subprocess.run(["node", os.path.join(PEERS, "write_people_dates.js")], input=stdin,
                         capture_output=True, text=True, check=True).stdout
    records = []
    for line in out.splitlines():
        r = json.loads(line)
        parts = r.pop("parts")
        # V8's format() writes U+202F as a plain space; the parts keep it.
        assert "".join(v for _, v in parts).replace("\u202f", " ") == r["text"].replace("\u202f", " "), r
        types = [t for t, _ in parts]
        value = dict(parts)
        ymd = [t for t in types if t in ("year", "month", "day")]
        after_year = parts[types.index("year") + 1][1] if types.index("year") + 1 < len(parts) else ""
        named = not value["month"].isdigit() or after_year.startswith("年")
        kinds = {"second": "s", "minute": "m", "hour": "h"}
        r["meta"] = {
            "order": "-" if named else "".join(t[0].upper() for t in ymd),
            "year_digits": len(value["year"]),
            "unit": unit_of(lambda k: any(kinds.get(t) == k for t in types)),
            "zone": value.get("timeZoneName"),
        }
        records.append(r)
    return records


PATTERN_TOKEN = re.compile(r"'[^']*'|([A-Za-z])\1*")


def java_meta(pattern, zone_text):
    """What Java's pattern says: the order of y, M and d, and so on."""
    tokens, literal_after = [], {}
    for m in PATTERN_TOKEN.finditer(pattern):
        if m[1]:
            tokens.append(m[0])
        elif tokens:
            literal_after.setdefault(tokens[-1], m[0])
    rest = PATTERN_TOKEN.sub(lambda m: "" if m[1] else m[0], pattern)
    fields = [t for t in tokens if t[0] in "yMLd"]
    month = next(t for t in fields if t[0] in "ML")
    year = next(t for t in fields if t[0] == "y")
    labelled = "年" in rest
    named = len(month) >= 3 or labelled
    letters = "".join(t[0] for t in tokens)
    return {
        "order": "-" if named else "".join({"y": "Y", "M": "M", "L": "M", "d": "D"}[t[0]] for t in fields),
        "year_digits": 2 if len(year) == 2 else 4,
        "unit": unit_of(lambda k: {"s": "s" in letters, "m": "m" in letters,
                                   "h": any(c in letters for c in "HhkK")}[k]),
        "zone": None if zone_text == "-" else zone_text,
    }


def java_records(points):
    with tempfile.TemporaryDirectory() as tmp:
        subprocess.run(["javac", "-encoding", "UTF-8", "-d", tmp,
                        os.path.join(PEERS, "WritePeopleDates.java")], check=True)
        stdin = "".join(f"{int((t - EPOCH).total_seconds())} {z}\n" for t, z in points)
        out = subprocess.run(["java", "-Dfile.encoding=UTF-8", "-Dstdout.encoding=UTF-8",
                              "-cp", tmp, "WritePeopleDates"], input=stdin.encode(),
                             capture_output=True, check=True).stdout.decode("utf-8")
    records = []
    for line in out.splitlines():
        i, writer, locale, pattern, zone_text, text = line.split("\t")
        records.append({"i": int(i), "writer": writer, "locale": locale, "text": text,
                        "meta": java_meta(pattern, zone_text)})
    return records


def python_meta(layout):
    codes = re.findall(r"%-?([A-Za-z])", layout)
    order = "".join({"Y": "Y", "y": "Y", "m": "M", "d": "D"}[c] for c in codes if c in "Yymd")
    return {
        "order": "-" if "b" in codes or "B" in codes else order,
        "year_digits": 2 if "y" in codes else 4,
        "unit": unit_of(lambda k: {"s": "S" in codes, "m": "M" in codes,
                                   "h": "H" in codes or "I" in codes}[k]),
        "zone": None,
    }


def python_records(points):
    records = []
    for i, (t, zone) in enumerate(points):
        wall = t.astimezone(ZoneInfo(zone))
        for entry in PY_LAYOUTS:
            layout, upper = entry.removesuffix(" upper"), entry.endswith(" upper")
            text = wall.strftime(layout).upper() if upper else wall.strftime(layout)
            records.append({"i": i, "writer": f"python {entry}", "locale": "C", "text": text,
                            "meta": python_meta(layout)})
    return records


# ---- What a text says -----------------------------------------------------------

OFFSET = re.compile(r"(?:GMT|UTC)([+\-\u2212])(\d{1,2})(?::?(\d\d))?")


def pivot(year):
    return year if year >= 100 else year + (2000 if year < 50 else 1900)


def readings(order, year, month, day, year_digits):
    """{order: date} for each of MDY, DMY, YMD that reads the numbers as written."""
    written = {"Y": year % 100 if year_digits == 2 else year, "M": month, "D": day}
    values = [written[c] for c in order]
    out = {}
    for o in ("MDY", "DMY", "YMD"):
        f = dict(zip(o, values))
        y = pivot(f["Y"])
        if 1 <= f["M"] <= 12 and 1 <= f["D"] <= monthrange(y, f["M"])[1]:
            out[o] = (y, f["M"], f["D"])
    return out


def zone_kind(text, true_offset, names):
    """How the text states its zone, checked against the zone's offset then."""
    if text is None:
        return "-"
    if m := OFFSET.fullmatch(text):
        sign = -1 if m[1] != "+" else 1
        minutes = sign * (int(m[2]) * 60 + int(m[3] or 0))
        assert timedelta(minutes=minutes) == true_offset, text
        return "offset"
    if text.isascii() and text.isalpha():
        if text.upper() not in names:
            return "unknown"
        value = names[text.upper()]
        if value is AMBIGUOUS:
            return "ambiguous"
        return "name" if timedelta(minutes=value) == true_offset else "misnamed"
    return "words"


def cut(wall, unit):
    """A wall clock cut to what a text holds: its seconds, minutes, hours or day."""
    return wall - timedelta(seconds=(wall.hour * 3600 + wall.minute * 60 + wall.second) % unit,
                            microseconds=wall.microsecond)


def instant_field(t):
    ms = (t - EPOCH) // timedelta(milliseconds=1)
    return f"@{ms // 1000}.{ms % 1000:03d}"


def wall_field(w):
    return "local " + w.strftime("%Y-%m-%dT%H:%M:%S.") + f"{w.microsecond // 1000:03d}"


def describe(record, points, names):
    t, zone = points[record["i"]]
    meta = record["meta"]
    wall = cut(t.astimezone(ZoneInfo(zone)), meta["unit"])  # the zone's offset kept
    meant = wall.astimezone(UTC)
    kind = zone_kind(meta["zone"], wall.utcoffset(), names)
    expected = {"-": wall_field(wall.replace(tzinfo=None)), "offset": instant_field(meant),
                "name": instant_field(meant)}.get(kind, "refuse")
    if meta["order"] == "-":
        numeric, readable = "-", "-"
    else:
        r = readings(meta["order"], wall.year, wall.month, wall.day, meta["year_digits"])
        assert meta["order"] in r, record
        numeric = "ambiguous" if len(set(r.values())) > 1 else "settled"
        readable = ",".join(r)
    return {"order": meta["order"], "numeric": numeric, "readable": readable, "zone_kind": kind,
            "expected": expected, "meant": meant, "wall": wall.replace(tzinfo=None),
            "year": wall.year, "year_digits": meta["year_digits"]}


# ---- Peers --------------------------------------------------------------------------

def judge(got, row):
    """ok / wrong for a reading: an aware datetime, or naive fields."""
    if row["zone_kind"] == "-":
        return "ok" if got.replace(tzinfo=None) == row["wall"] else "wrong"
    if got.tzinfo is None:
        got = got.replace(tzinfo=UTC)
    return "ok" if got == row["meant"] else "wrong"


def dateutil_verdict(text, row):
    from dateutil import parser
    with warnings.catch_warnings():
        warnings.simplefilter("ignore")  # unknown zone names
        try:
            got = parser.parse(text)
        except Exception:  # any failure to read is a refusal
            return "refused"
    return judge(got, row)


def gnu_date_verdict(text, row):
    res = subprocess.run(["date", "-d", text, "+%s"], capture_output=True, text=True,
                         env=dict(os.environ, TZ="UTC0", LC_ALL="C"))
    if res.returncode != 0:
        return "refused"
    return judge(EPOCH + timedelta(seconds=int(res.stdout)), row)


def versions():
    import dateutil
    date = subprocess.run(["date", "--version"], capture_output=True, text=True).stdout
    node = subprocess.run(["node", "-p", "process.version + ' ICU ' + process.versions.icu"],
                          capture_output=True, text=True).stdout.strip()
    java = subprocess.run(["java", "-version"], capture_output=True, text=True).stderr
    return (f"Node {node}, Java {java.splitlines()[0].split(chr(34))[1]},"
            f" Python {sys.version.split()[0]}, python-dateutil {dateutil.__version__},"
            f" {date.splitlines()[0]}")


# ---- Table --------------------------------------------------------------------------

def main():
    os.environ["TZ"] = "UTC"  # dateutil knows the local zone's names; make them UTC's
    points = instants()
    names = zone_offsets()
    records = node_records(points) + java_records(points) + python_records(points)
    writers = list(dict.fromkeys((r["writer"], r["locale"]) for r in records))
    rank = {w: n for n, w in enumerate(writers)}
    rows, seen, misnamed = [], set(), 0
    for r in sorted(records, key=lambda r: (r["i"], rank[(r["writer"], r["locale"])])):
        w = rank[(r["writer"], r["locale"])]
        if r["i"] >= len(EXAMPLE_INSTANTS) and (w + r["i"]) % SHARE:
            continue
        row = describe(r, points, names)
        if row["zone_kind"] == "misnamed":
            misnamed += 1
            continue
        if row["year_digits"] == 2 and row["year"] < DATEUTIL_STABLE_FROM:
            continue
        key = (r["text"], row["order"], row["expected"])
        if key in seen:
            continue
        seen.add(key)
        row.update(text=r["text"], writer=r["writer"], locale=r["locale"], zone=points[r["i"]][1])
        rows.append(row)
    missing = set(EXAMPLES) - {r["text"] for r in rows}
    assert not missing, missing

    counts = {}
    for row in rows:
        row["dateutil"] = dateutil_verdict(row["text"], row)
        row["gnu date"] = gnu_date_verdict(row["text"], row)
        for peer in ("dateutil", "gnu date"):
            counts.setdefault(peer, {"ok": 0, "wrong": 0, "refused": 0})[row[peer]] += 1
    summary = "; ".join(f"{p}: " + ", ".join(f"{n} {k}" for k, n in c.items())
                        for p, c in counts.items())
    with open(OUT, "w", encoding="utf-8") as f:
        f.write("# Generated by tests/data/gen_people_dates.py; do not edit.\n")
        for line in __doc__[__doc__.index("Columns ("):].rstrip().splitlines():
            f.write(f"# {line}".rstrip() + "\n")
        f.write(f"# writers and peers: {versions()}\n")
        f.write(f"# {len(rows)} rows; {summary}; {misnamed} misnamed texts left out\n")
        f.write("# Examples, each also a row:\n")
        for text, meaning in EXAMPLES.items():
            f.write(f"#   {text}  --  {meaning}\n")
        f.write("# text\twriter\tlocale\tzone\torder\tnumeric\treadable as\tzone as written"
                "\texpected\tmeant\tdateutil\tgnu date\n")
        for row in rows:
            f.write("\t".join([esc(row["text"]), row["writer"], row["locale"], row["zone"],
                               row["order"], row["numeric"], row["readable"], row["zone_kind"],
                               row["expected"], instant_field(row["meant"]), row["dateutil"],
                               row["gnu date"]]) + "\n")
    print(f"people_dates.tsv: {len(rows)} rows; {summary}")


if __name__ == "__main__":
    main()
