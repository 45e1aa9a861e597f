#!/usr/bin/env python3
"""Writes zpdate_cases.tsv: what the zpdate tool must print for each command.

Oracles, each a real program:
  * GNU date, under each TZ rule string the tool tests run with, for every
    form on the local clock (-R, -I, --rfc-3339, +FORMAT, the wall clock of
    DOS words, local texts read with --assume-local) and for the escaping of
    unreadable input in messages (run in C.UTF-8);
  * Python's datetime for the GMT forms and the counts (FILETIME, ticks),
    email.utils for RFC 822 in GMT, zipfile for the bits of DOS words, json
    for JSON strings (invalid UTF-8 decoded with replacement).
Messages of refusal are the tool's own words and are written here.

Row: zone ('*' any) | status | stdin | stdout | stderr | args...
Fields use C escapes (\\t \\n \\r \\\\ \\xHH); '-' is empty, \\x2d a dash. A stdout
of '*' is not compared; '!full' runs the tool with standard output on
/dev/full. A stdin of '@PATH' reads that file.

    python3 tests/data/gen_zpdate_tables.py
"""
import email.utils
import io
import json
import os
import struct
import subprocess
import zipfile
from datetime import datetime, timedelta, timezone
from zoneinfo import ZoneInfo
from pathlib import Path

HERE = Path(__file__).resolve().parent
UTC0, CET = "UTC0", "CET-1CEST,M3.5.0,M10.5.0/3"
ZONES = [UTC0, CET]
UTC = timezone.utc
EPOCH = datetime(1970, 1, 1, tzinfo=UTC)
MS = timedelta(milliseconds=1)
OUTSIDE = "outside the years 0001 to 9999"
# The date parser's reasons for the texts below that no reader takes.
NO_DATE = "not a date: expected a date at byte 0"
UNKNOWN_MONTH = "not a date: unknown month name at byte 0"
ROWS = []


# ---- Rows ------------------------------------------------------------------------------

def esc(value):
    data = value.encode() if isinstance(value, str) else value
    if not data:
        return "-"
    if data == b"-":
        return "\\x2d"
    out = []
    for b in data:
        c = chr(b)
        if c == "\\":
            out.append("\\\\")
        elif c in "\t\n\r":
            out.append({"\t": "\\t", "\n": "\\n", "\r": "\\r"}[c])
        elif b < 0x20 or b >= 0x7F:
            out.append(f"\\x{b:02x}")
        else:
            out.append(c)
    return "".join(out)


def row(zone, status, args, stdout="", stderr="", stdin=""):
    ROWS.append([zone, str(status), esc(stdin), esc(stdout), esc(stderr)] + [esc(a) for a in args])


def ok(zone, args, *lines, stdin=""):
    row(zone, 0, args, "".join(line + "\n" for line in lines), stdin=stdin)


def message(label, reason, where=""):
    return f"zpdate: {where}'{label}': {reason}\n"


def refused(zone, args, label, reason):
    row(zone, 1, args, stderr=message(label, reason))


# ---- Oracles ----------------------------------------------------------------------------

def gnu_date(zone, *args, text=None):
    """GNU date's output (stripped) under TZ=zone, or None when it refuses."""
    env = dict(os.environ, TZ=zone, LC_ALL="C")
    r = subprocess.run(["date", *args] if text is None else ["date", "-d", text, *args],
                       capture_output=True, env=env)
    return r.stdout.decode().rstrip("\n") if r.returncode == 0 else None


def gnu_quoted(data):
    """How GNU date shows bytes it cannot read, between its quotes ("@@" makes
    sure that it cannot)."""
    r = subprocess.run(["date", "-d", b"@@" + data], capture_output=True,
                       env=dict(os.environ, LC_ALL="C.UTF-8"))
    text = r.stderr.decode("utf-8")
    return text[text.index("\u2018") + 3:text.rindex("\u2019")]


def at(ms):
    return EPOCH + ms * MS


def at_text(ms):
    """GNU date's -d for an instant given in milliseconds."""
    return f"@{'-' if ms < 0 else ''}{abs(ms) // 1000}.{abs(ms) % 1000:03d}"


def rfc3339(d):
    frac = f".{d.microsecond // 1000:03d}" if d.microsecond else ""
    return f"{d.year:04d}-{d.month:02d}-{d.day:02d}T{d.hour:02d}:{d.minute:02d}:{d.second:02d}{frac}Z"


def iso_basic(d):
    return f"{d.year:04d}{d.month:02d}{d.day:02d}T{d.hour:02d}{d.minute:02d}{d.second:02d}Z"


def intervals(d, since):
    return (d - since) // timedelta(microseconds=1) * 10


def filetime(d):
    return intervals(d, datetime(1601, 1, 1, tzinfo=UTC))


def ticks(d):
    return intervals(d, datetime(1, 1, 1, tzinfo=UTC))


def dos_words(fields):
    """(date word, time word) as zipfile packs a local date_time."""
    info = zipfile.ZipInfo("x", date_time=tuple(fields))
    info.CRC = info.compress_size = info.file_size = 0
    time_word, date_word = struct.unpack_from("<HH", info.FileHeader(), 10)
    return f"0x{date_word:04X} 0x{time_word:04X}"


def dos_fields(date_word, time_word):
    """The date_time zipfile reads from the two words of a one-entry archive."""
    entry = struct.pack("<4s5H3L2H", b"PK\x03\x04", 20, 0, 0, time_word, date_word, 0, 0, 0, 1, 0)
    central = struct.pack("<4s6H3L5H2L", b"PK\x01\x02", 20, 20, 0, 0, time_word, date_word,
                          0, 0, 0, 1, 0, 0, 0, 0, 0, 0)
    end = struct.pack("<4s4H2LH", b"PK\x05\x06", 0, 0, 1, 1, len(central) + 1, len(entry) + 1, 0)
    with zipfile.ZipFile(io.BytesIO(entry + b"x" + central + b"x" + end)) as zf:
        return zf.infolist()[0].date_time


def local_fields(zone, ms):
    text = gnu_date(zone, "+%Y %m %d %H %M %S", text=at_text(ms))
    return [int(v) for v in text.split()]


LOCAL_OUTSIDE = "outside the years 0001 to 9999 on the local clock"
DOS_RANGE = "DOS words hold local times from 1980 to 2037-12-31 23:59:58"


# ---- Forms of one instant ----------------------------------------------------------------

INSTANTS = [  # milliseconds since 1970
    1709802303123,    # winter, with milliseconds
    1720000000000,    # summer
    1729989000000,    # 02:30 CEST, the first of the hour the clocks repeat
    1729992600000,    # 02:30 CET, the second
    1711846799000,    # 01:59:59 CET, a second before the clocks skip an hour
    1711846800000,    # 03:00:00 CEST
    -1,               # 1969-12-31T23:59:59.999Z
    -2208988800000,   # 1900-01-01
    -62135596800000,  # 0001-01-01T00:00:00Z, the first instant
    253402300799999,  # 9999-12-31T23:59:59.999Z, the last (the year 10000 at +01:00)
    2556143999000,    # 2050-12-31T23:59:59Z, past UTCTime
]
PATTERN = "+%a %A %b %B %c %d %e %H %I %j %k %l %m %M %p %S %u %U %V %w %W %y %Y %z %:z %::z %Z %s %N %3N %6N %% %Q"
LOCAL_FORMS = {  # our arguments -> GNU date's
    ("--to", "rfc3339-local"): None,
    ("-R",): ("-R",),
    ("--rfc-3339=ns",): ("--rfc-3339=ns",),
    ("-Iseconds",): ("-Iseconds",),
    ("-I",): ("-I",),
    (PATTERN,): (PATTERN,),
}


def gmt_forms(ms):
    d = at(ms)
    ms_arg = ["--unix-ms", str(ms)]
    ok("*", ms_arg + ["--to", "rfc3339"], rfc3339(d))
    ok("*", ms_arg + ["--to", "iso"], iso_basic(d))
    ok("*", ms_arg + ["--to", "rfc822"], email.utils.format_datetime(d, usegmt=True))
    ok("*", ms_arg + ["--to", "unix"], str(ms // 1000))
    ok("*", ms_arg + ["--to", "ticks"], str(ticks(d)))
    label = f"--unix-ms {ms}"
    if d.year >= 1601:
        ok("*", ms_arg + ["--to", "filetime"], str(filetime(d)))
    else:
        refused("*", ms_arg + ["--to", "filetime"], label, "FILETIME starts at 1601-01-01")
    if 1950 <= d.year <= 2049:
        ok("*", ms_arg + ["--to", "utctime"], f"{d.year % 100:02d}{iso_basic(d)[4:8]}{iso_basic(d)[9:]}")
    else:
        refused("*", ms_arg + ["--to", "utctime"], label, "UTCTime holds the years 1950 to 2049")


def local_forms(zone, ms):
    ms_arg = ["--unix-ms", str(ms)]
    label = f"--unix-ms {ms}"
    year = int(gnu_date(zone, "+%Y", text=at_text(ms)))
    for ours, theirs in LOCAL_FORMS.items():
        if not 1 <= year <= 9999:
            refused(zone, ms_arg + list(ours), label, LOCAL_OUTSIDE)
            continue
        if theirs is None:  # milliseconds only when there are some
            layout = "+%Y-%m-%dT%H:%M:%S" + (".%3N" if ms % 1000 else "") + "%:z"
            theirs = (layout,)
        ok(zone, ms_arg + list(ours), gnu_date(zone, *theirs, text=at_text(ms)))
    if ms % 2000 == 0:  # zipfile truncates an odd second, the module rounds it up
        fields = local_fields(zone, ms)
        if [1980, 1, 1, 0, 0, 0] <= fields <= [2037, 12, 31, 23, 59, 58]:
            ok(zone, ms_arg + ["--to", "dos"], dos_words(fields))
        else:
            refused(zone, ms_arg + ["--to", "dos"], label, DOS_RANGE if 1 <= year <= 9999 else LOCAL_OUTSIDE)


# ---- Inputs -----------------------------------------------------------------------------------

def numeric_inputs():
    # (arguments, milliseconds or the reason it is refused)
    cases = [
        (["--unix", "-62135596800"], -62135596800000),
        (["--unix", "-62135596801"], OUTSIDE),
        (["--unix", "253402300799"], 253402300799000),
        (["--unix", "253402300800"], OUTSIDE),
        (["--unix", "9223372036854775807"], OUTSIDE),
        (["--unix", "9223372036854775808"], OUTSIDE),
        (["--unix", "-9223372036854775809"], OUTSIDE),
        (["--unix=+1245073530"], 1245073530000),
        (["--unix", "12a"], "not a number of seconds"),
        (["--unix", ""], "not a number of seconds"),
        (["--unix-ms", "-62135596800000"], -62135596800000),
        (["--unix-ms", "-62135596800001"], OUTSIDE),
        (["--unix-ms", "253402300799999"], 253402300799999),
        (["--unix-ms", "253402300800000"], OUTSIDE),
        (["--unix-ms", "-9223372036854775808"], OUTSIDE),
        (["--filetime", "0"], filetime_ms(0)),
        (["--filetime", "0x019DB1DED53E8000"], 0),
        (["--filetime", "116444736000012345"], 1),
        (["--filetime", "2650467743999999999"], 253402300799999),
        (["--filetime", "2650467744000000000"], OUTSIDE),
        (["--filetime", "0xFFFFFFFFFFFFFFFF"], OUTSIDE),
        (["--filetime", "18446744073709551616"], OUTSIDE),
        (["--filetime", "-1"], "not a FILETIME count"),
        (["--filetime", "0x"], "not a FILETIME count"),
        (["--filetime", "0x0x10"], "not a FILETIME count"),
        (["--filetime", " 16"], "not a FILETIME count"),
        (["--filetime", "+16"], "not a FILETIME count"),
        (["--ticks", "0"], -62135596800000),
        (["--ticks", "3155378975999999999"], 253402300799999),
        (["--ticks", "3155378976000000000"], OUTSIDE),
        (["--ticks", "-1"], OUTSIDE),
        (["--ticks", "0x10"], "not a tick count"),
        (["--ticks", "+-1"], "not a tick count"),
        (["--unix", " 5"], "not a number of seconds"),
        (["--unix", "5 "], "not a number of seconds"),
        (["--ole", "-657434"], ole_ms(-657434)),
        (["--ole", "-657435"], "outside the OLE dates 0100-01-01 to 9999-12-31"),
        (["--ole", "2958465.99998842"], ole_ms(2958465) + 86399000),
        (["--ole", "2958466"], "outside the OLE dates 0100-01-01 to 9999-12-31"),
        (["--ole", "nan"], "outside the OLE dates 0100-01-01 to 9999-12-31"),
        (["--ole", "45358.5x"], "not a number of days"),
        (["--ole", " 5"], "not a number of days"),
        (["--ole", "5 "], "not a number of days"),
        (["--ole", "0x1p4"], "not a number of days"),
        (["--ole", "+5"], ole_ms(5)),
        (["--ole", "+-5"], "not a number of days"),
        (["--ole", "5e1"], ole_ms(50)),
    ]
    for args, expected in cases:
        label = " ".join(args).replace("=", " ", 1)
        if isinstance(expected, str):
            refused("*", args + ["--to", "rfc3339"], label, expected)
        else:
            ok("*", args + ["--to", "rfc3339"], rfc3339(at(expected)))


def filetime_ms(count):
    return (datetime(1601, 1, 1, tzinfo=UTC) + timedelta(microseconds=count // 10) - EPOCH) // MS


def ole_ms(days):
    return (datetime(1899, 12, 30, tzinfo=UTC) + timedelta(days=days) - EPOCH) // MS


def dos_inputs():
    # Words -> the wall clock zipfile reads from them, turned into an instant by GNU date.
    accepted = [(0x3ACF, 0x6DAF), (0x398F, 0x0000), (0x585D, 0xBF7D), (0xFF9F, 0xBF7D),
                (0x0021, 0x0000)]
    for zone in ZONES:
        for date_word, time_word in accepted:
            fields = dos_fields(date_word, time_word)
            wall = "{:04d}-{:02d}-{:02d} {:02d}:{:02d}:{:02d}".format(*fields)
            seconds = int(gnu_date(zone, "+%s", text=wall))
            ok(zone, ["--dos", f"0x{date_word:04X}", f"0x{time_word:04X}", "--to", "rfc3339"],
               rfc3339(at(seconds * 1000)))
    refusals = [
        ((0x0000, 0x0000), "impossible date: month 0"),
        ((0x01A1, 0x0000), "impossible date: month 13"),
        ((0x0020, 0x0000), "impossible date: day 0 of 1980-01"),
        ((0x009F, 0x0000), "impossible date: day 31 of 1980-04"),
        ((0x065D, 0x0000), "impossible date: day 29 of 1983-02"),
        ((0x0021, 0xC000), "impossible time: hour 24"),
        ((0x0021, 0x0780), "impossible time: minute 60"),
        ((0x0021, 0x001E), "impossible time: second 60"),
        ((0xFF9F, 0xFFFF), "impossible time: hour 31"),
    ]
    for (date_word, time_word), reason in refusals:
        args = ["--dos", f"0x{date_word:04X}", f"0x{time_word:04X}"]
        refused("*", args + ["--to", "iso"], " ".join(args), reason)
    refused("*", ["--dos", "0x10000", "0", "--to", "iso"], "--dos 0x10000 0", "not a pair of 16-bit DOS words")
    # 2024-03-31 02:30 does not exist in Berlin; GNU date refuses it too.
    assert gnu_date(CET, "+%s", text="2024-03-31 02:30:00") is None
    refused(CET, ["--dos", "0x587F", "0x13C0", "--to", "iso"], "--dos 0x587F 0x13C0",
            "no such time on the local clock (a clock change skips it)")


def text_inputs():
    strp = lambda layout: lambda t: datetime.strptime(t, layout).replace(tzinfo=UTC)
    loader_forms = [  # each loader form, and an independent reader of it
        ("/Date(1700000000123+0100)/", lambda t: at(1700000000123 - 3600000)),  # whole hours
        ("2024-03-07T09:05:03.123+01:00", datetime.fromisoformat),
        ("20240307090503.123Z", strp("%Y%m%d%H%M%S.%fZ")),
        ("1700000000", lambda t: at(int(t) * 1000)),
        ("240307090503Z", strp("%y%m%d%H%M%SZ")),
        ("20240307090503Z", strp("%Y%m%d%H%M%SZ")),
        ("Thu, 07 Mar 2024 09:05:03 GMT", email.utils.parsedate_to_datetime),
    ]
    loader_forms = [(text, (read(text) - EPOCH) // MS) for text, read in loader_forms]
    for text, ms in loader_forms:
        ok("*", ["--to", "rfc3339", text], rfc3339(at(ms)))
    crlf = "".join(text + "\r\n" for text, _ in loader_forms)
    ok("*", ["-f", "-", "--to=rfc3339"], *[rfc3339(at(ms)) for _, ms in loader_forms], stdin=crlf)
    ok("*", ["--to", "rfc3339"], rfc3339(at(1700000000000)), stdin="\ufeff1700000000\n")
    ok("*", ["--to", "iso", "4294967295"], iso_basic(at(4294967295000)))
    ok("*", ["--to", "rfc3339", "/Date(-1500)/"], rfc3339(at(-1500)))
    ok("*", ["--to", "rfc3339", "/Date(-62135596800000)/"], rfc3339(at(-62135596800000)))
    ok("*", ["--to", "rfc3339", " /Date(0000000000000001700000000000)/"], rfc3339(at(1700000000000)))
    ok("*", ["--to", "iso", "20161231235960Z"], "20161231T235960Z")  # a leap second stays as read
    # Our own readers' reasons, for texts refused before any peer is asked.
    too_big = "more than 32-bit Unix seconds; for milliseconds use --unix-ms"
    not_json = "JSON date: expected /Date(milliseconds[+hhmm])/ at byte 0"
    for text, reason in [
        ("1709802303123", too_big), ("4294967296", too_big), ("00000000001", too_big),
        ("/Date(abc)/", not_json), ("Date(2024/03/07)", not_json), ("\\/Date(1700000000000)\\/", not_json),
        ("/Date(1700000000000+01)/", not_json),
        ("/Date(253402300800000)/", "JSON date: GMT reading outside years 0-9999 at byte 6"),
        ("999999999999Z", "UTCTime: month out of range at byte 2"),
        ("240230000000Z", "UTCTime: day out of range for the month at byte 4"),
        ("20240307250000Z", "GeneralizedTime: hour out of range at byte 8"),
        ("240307096000Z", "UTCTime: minute out of range at byte 8"),
        ("20240307090561Z", "GeneralizedTime: second out of range at byte 12"),
        ("2403070905a3Z", "UTCTime: expected a digit at byte 10"),
        ("2024030709 503Z", "GeneralizedTime: expected a digit at byte 10"),
        ("20240307090503.1x3Z", "GeneralizedTime: expected a digit at byte 15"),
        ("Thu, 32 Mar 2024 09:05:03 GMT", "not a date: day out of range for the month at byte 5"),
    ]:
        refused("*", ["--to", "iso", text], gnu_quoted(text.encode()), reason)
    for zone in ZONES:  # a text without a zone, read as the local wall clock
        wall = "2024-07-03 09:05:03"
        seconds = int(gnu_date(zone, "+%s", text=wall))
        ok(zone, ["--assume-local", "--to", "rfc3339", wall], rfc3339(at(seconds * 1000)))
        ok(zone, ["--to", "rfc3339", wall], rfc3339(datetime.fromisoformat(wall).replace(tzinfo=UTC)))
        ok(zone, ["--assume-local", "--to", "unix", "1700000000"], "1700000000")
    refused(CET, ["--assume-local", "--to", "iso", "2024-03-31 02:30:00"], "2024-03-31 02:30:00",
            "no such time on the local clock (a clock change skips it)")


def bytes_and_json(zone, good_line):
    """Unreadable bytes: escaped in messages as GNU date does, valid in JSON."""
    if zone == UTC0:
        texts = [(b"a\x01\x1f \x7f\"\\z", UNKNOWN_MONTH), (b"\x08\x0c\n\r\t\x0b", NO_DATE),
                 (b"\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80", NO_DATE),
                 (b"\xff\xc3\x28\xe2\x82\\\xed\xa0\x80\xf4\x90\x80\x80\xc0\xaf\xf0\x9f\x98", NO_DATE)]
        for text, reason in texts:
            shown = gnu_quoted(text)
            refused("*", ["--to", "iso", text], shown, reason)
            row("*", 1, ["--json", text], json_error(text, reason), message(shown, reason))
    stdin = b"tomorrow-ish\n\xff\x01\n1700000000\nx\x00y\n"
    zero = "not a date: holds a zero byte at byte 1"
    out = (json_error(b"tomorrow-ish", UNKNOWN_MONTH) + json_error(b"\xff\x01", NO_DATE) + good_line
           + json_error(b"x\x00y", zero))
    err = (message("tomorrow-ish", UNKNOWN_MONTH, "line 1: ") + message(gnu_quoted(b"\xff\x01"), NO_DATE, "line 2: ")
           + message("x\\000y", zero, "line 4: "))
    row(zone, 1, ["--json", "-f", "-"], out, err, stdin)


def json_error(text, reason):
    decoded = json.dumps(text.decode("utf-8", "replace"), ensure_ascii=False)
    return ('{"input":' + decoded.replace("\ufffd", "\\ufffd") + f',"error":"{reason}"}}\n').encode()


def block_and_json(zone):
    """The whole block and JSON object of one instant, field by field from the oracles."""
    ms = 1700000000000
    d = at(ms)
    local = lambda fmt: gnu_date(zone, fmt, text=at_text(ms))
    fields = local_fields(zone, ms)
    ft = filetime(d)
    forms = [
        ("rfc3339", rfc3339(d)), ("rfc3339Local", local("+%Y-%m-%dT%H:%M:%S%:z")), ("zone", local("+%Z")),
        ("dayOfWeek", d.strftime("%A")), ("iso8601", iso_basic(d)),
        ("utcTime", iso_basic(d)[2:8] + iso_basic(d)[9:15] + "Z"),
        ("rfc822Gmt", email.utils.format_datetime(d, usegmt=True)), ("rfc822Local", local("-R")),
        ("unix", ms // 1000), ("fileTime", ft), ("fileTimeHigh", f"0x{ft >> 32:08X}"),
        ("fileTimeLow", f"0x{ft & 0xFFFFFFFF:08X}"), ("ticks", ticks(d)),
        ("dosDate", dos_words(fields)[:6]), ("dosTime", dos_words(fields)[7:]),
        ("ole", (d - datetime(1899, 12, 30, tzinfo=UTC)) / timedelta(days=1)),
    ]
    obj = {"input": "1700000000", "readAs": "GMT", **dict(forms)}
    line = json.dumps(obj, separators=(",", ":")) + "\n"
    ok(zone, ["--json", "1700000000"], line[:-1])
    f = dict(forms)
    block = [
        "1700000000", "  read as        GMT", f"  GMT            {f['rfc3339']}, {f['dayOfWeek']}",
        f"  local          {f['rfc3339Local']} {f['zone']}, {local('+%A')}",
        f"  ISO 8601       {f['iso8601']}", f"  UTCTime        {f['utcTime']}",
        f"  RFC 822 GMT    {f['rfc822Gmt']}", f"  RFC 822 local  {f['rfc822Local']}",
        f"  Unix seconds   {f['unix']}", f"  FILETIME       {ft} (high {f['fileTimeHigh']}, low {f['fileTimeLow']})",
        f"  .NET ticks     {f['ticks']}", f"  DOS local      date {f['dosDate']}, time {f['dosTime']}",
        f"  OLE date       {f['ole']!r}", "  log:", "    date:", "      gmtDateTime: 11/14/2023 22:13:20",
    ]
    ok(zone, ["--log", "1700000000"], *block)
    return line.encode()


def batch_and_usage():
    # A JSON date the loader would misread, among lines with no '(': the
    # batch looks for one per line only where its block holds one.
    lines = "Thu, 07 Mar 2024 09:05:03 GMT\r\ntomorrow-ish\n1700000000\n/Date(abc)/\n\n2024-03-07T09:05:03Z"
    out = "".join(x + "\n" for x in [iso_basic(at(1709802303000)), "", iso_basic(at(1700000000000)), "", "",
                                    iso_basic(at(1709802303000))])
    err = (message("tomorrow-ish", UNKNOWN_MONTH, "line 2: ")
           + message("/Date(abc)/", "JSON date: expected /Date(milliseconds[+hhmm])/ at byte 0", "line 4: ")
           + message("", NO_DATE, "line 5: "))
    row("*", 1, ["-f", "-"], out, err, lines)
    row("*", 1, [], out, err, lines)  # no input: standard input, as with -f -
    row("*", 1, ["--unix", "1", "--to", "iso"], "!full", "zpdate: write error: No space left on device\n")
    row("*", 1, ["-f", "-"], "!full", message("x", UNKNOWN_MONTH, "line 2: ") +
        "zpdate: write error: No space left on device\n", "1\nx\n")
    row("*", 1, ["--help"], "!full", "zpdate: write error: No space left on device\n")
    row("*", 1, ["-f", "/"], stderr="zpdate: /: Is a directory\n")
    row("*", 1, ["-f", "-"], stderr="zpdate: -: Is a directory\n", stdin="@/")
    row("*", 1, ["--file=/nonexistent/dates"], stderr="zpdate: /nonexistent/dates: No such file or directory\n")
    ok("*", ["--version"], "zpdate (zephal-time) 0.1.0")
    row("*", 0, ["--help"], "*")
    row("*", 0, ["--samples"], "*")  # every sample converts
    try_help = "Try 'zpdate --help' for more information.\n"
    for args, first in [
        (["--to", "bogus", "1"], "zpdate: invalid argument 'bogus' for '--to'; valid arguments: iso, rfc3339, "
         "rfc3339-local, utctime, rfc822, rfc822-local, unix, filetime, ticks, dos, ole\n"),
        (["--frobnicate"], "zpdate: unrecognized option '--frobnicate'\n"),
        (["--to"], "zpdate: option '--to' requires an argument\n"),
        (["--u", "1"], "zpdate: option '--u' is ambiguous; possibilities: '--utc' '--unix' '--unix-ms'\n"),
        (["--unix"], "zpdate: option '--unix' requires an argument\n"),
        (["--dos", "1"], "zpdate: option '--dos' needs a DATE and a TIME word\n"),
        (["--json", "--to", "iso", "1"], "zpdate: multiple output formats specified\n"),
        (["-R", "+%s", "1"], "zpdate: multiple output formats specified\n"),
        (["-f", "x", "1"], "zpdate: -f takes no TEXT or numeric input\n"),
        (["-Ifoo", "1"], "zpdate: invalid argument 'foo' for '--iso-8601'; valid arguments: date, hours, "
         "minutes, seconds, ns\n"),
        (["--log", "-R", "1"], "zpdate: --log adds to the block, which an output form replaces\n"),
    ]:
        row("*", 2, args, stderr=first + try_help)
    ok("*", ["--to=utc", "--unix", "0"], "700101000000Z")  # a unique abbreviation
    row("*", 2, ["--to=rfc3", "1"], stderr="zpdate: ambiguous argument 'rfc3' for '--to'; valid arguments: "
        "iso, rfc3339, rfc3339-local, utctime, rfc822, rfc822-local, unix, filetime, ticks, dos, ole\n" + try_help)
    ok("*", ["-d", "240307090503Z", "--date=1700000000", "--", "20240307090503Z", "+%s"],
       "1709802303", "1700000000", "1709802303")
    ok(CET, ["-u", "-R", "--unix", "0"], gnu_date(UTC0, "-R", text="@0"))


# Zones for --zone and --from-zone: both hemispheres, half and quarter
# hours, a negative summer time (Dublin), a zone that moved its day
# (Apia), and TZ rules.
ZONE_NAMES = ["America/New_York", "Europe/Berlin", "Asia/Kolkata", "Australia/Lord_Howe",
              "America/St_Johns", "Asia/Kathmandu", "Europe/Dublin", "Pacific/Apia"]
ZONE_RULES = ["CET-1CEST,M3.5.0,M10.5.0/3", "<+0530>-5:30"]
ZONE_INSTANTS = [0, 1709802303, 1711846799, 1711846800, 1729990799, 1729990800, 1325239200,
                 -1000000000, 2147483648, 4102444800]


def named_zones():
    """--zone against GNU date under TZ= the zone; --from-zone against
    Python's zoneinfo (fold=0: the first of a repeated reading)."""
    forms = [["-R"], ["--rfc-3339=seconds"], ["-Iseconds"], ["--to", "rfc3339-local"],
             ["+%a %b %e %H:%M:%S %Z %Y %z %:z %j %U %s"]]
    for zone in ZONE_NAMES + ZONE_RULES:
        # glibc reads a TZ rule's years before 1970 as it reads 1970's.
        for t in [t for t in ZONE_INSTANTS if t >= 0 or zone in ZONE_NAMES]:
            for form in forms:
                gnu = form if form[0] != "--to" else ["+%Y-%m-%dT%H:%M:%S%:z"]
                ok("*", ["--zone=" + zone, "--unix", str(t)] + form, gnu_date(zone, *gnu, text=f"@{t}"))
    # A batch on several threads, on the zone's clock.
    lines = [f"@{t}" for t in ZONE_INSTANTS]
    stdin = "".join(rfc3339(at(t * 1000)) + "\n" for t in ZONE_INSTANTS)
    want = [gnu_date("Asia/Kathmandu", "-R", text=line) for line in lines]
    ok("*", ["--zone=Asia/Kathmandu", "-j3", "-f", "-", "-R"], *want, stdin=stdin)
    for zone in ZONE_NAMES:
        tz = ZoneInfo(zone)
        for wall in ["2024-07-01 12:00:00", "2024-01-15 08:30:00", "2024-10-27 02:30:00",
                     "2024-11-03 01:30:00", "2024-04-07 02:30:00"]:
            d = datetime.fromisoformat(wall).replace(tzinfo=tz)
            back = datetime.fromtimestamp(d.timestamp(), tz).replace(tzinfo=None)
            if back != datetime.fromisoformat(wall):  # a reading the clock skips
                refused("*", ["--from-zone=" + zone, "--to", "unix", wall], wall,
                        f"no such time in {zone} (a clock change skips it)")
            else:
                ok("*", ["--from-zone=" + zone, "--to", "unix", wall], str(int(d.timestamp())))
    # Stated zones are not moved; an unknown zone is a usage error.
    ok("*", ["--from-zone=Asia/Tokyo", "--to", "unix", "Thu, 07 Mar 2024 09:05:03 GMT"], "1709802303")
    try_help = "Try 'zpdate --help' for more information.\n"
    row("*", 2, ["--zone=Nowhere/Else", "--unix", "0"],
        stderr="zpdate: unknown zone 'Nowhere/Else': unknown zone name at byte 0\n" + try_help)
    row("*", 2, ["--from-zone=Europe/Berlin", "--assume-local", "x"],
        stderr="zpdate: --assume-local and --from-zone both name the clock of a text without "
               "zone\n" + try_help)


def orders_and_layouts():
    """--date-order and -i, with instants from Python's strptime."""
    def at_wall(text, layout):
        return rfc3339(datetime.strptime(text, layout).replace(tzinfo=UTC))
    for text, order, layout in [("3/7/2024", "MDY", "%m/%d/%Y"), ("3/7/2024", "DMY", "%d/%m/%Y"),
                                ("3/7/24, 9:05 AM", "MDY", "%m/%d/%y, %I:%M %p"),
                                ("07-03-2024 14:05", "DMY", "%d-%m-%Y %H:%M"),
                                ("24/03/07", "YMD", "%y/%m/%d")]:
        ok("*", ["--date-order=" + order, "--to", "rfc3339", text], at_wall(text, layout))
    refused("*", ["--to", "rfc3339", "3/7/2024"], "3/7/2024",
            "not a date: day and month order unknown at byte 0")
    ok("*", ["--to", "rfc3339", "13/03/2024"], at_wall("13/03/2024", "%d/%m/%Y"))
    ok("*", ["-i", "%d/%m/%Y %H.%M", "-f", "-", "-j2", "--to", "rfc3339"],
       at_wall("07/03/2024 14.05", "%d/%m/%Y %H.%M"), at_wall("2024-03-07 09:05", "%Y-%m-%d %H:%M"),
       stdin="07/03/2024 14.05\n2024-03-07 09:05\n")
    ok("*", ["--input-format=%Y%j", "--input-format=%d.%m.%Y", "--to", "rfc3339", "2024067"],
       at_wall("2024067", "%Y%j"))


def main():
    for ms in INSTANTS:
        gmt_forms(ms)
        for zone in ZONES:
            local_forms(zone, ms)
    numeric_inputs()
    dos_inputs()
    text_inputs()
    for zone in ZONES:
        bytes_and_json(zone, block_and_json(zone))
    batch_and_usage()
    named_zones()
    orders_and_layouts()
    with open(HERE / "zpdate_cases.tsv", "w") as f:
        f.write("# Generated by gen_zpdate_tables.py; do not edit.\n")
        f.write("# zone | status | stdin | stdout | stderr | args...  (C escapes; '-' empty)\n")
        for r in ROWS:
            f.write("\t".join(r) + "\n")
    print(f"{len(ROWS)} rows")


if __name__ == "__main__":
    main()
