#!/usr/bin/env python3
"""Writes the expected tables for FILETIME, .NET ticks, MS-DOS date and time
words and OLE Automation dates.

Oracles:
  * Python's datetime (proleptic Gregorian, exact integer arithmetic) for
    100-ns counts since 1601-01-01 and 0001-01-01 and for calendar breakdowns;
  * a ZIP made by the Info-ZIP `zip` tool (legacy_dos.zip) and read back with
    zipfile for DOS words: zip rounds an odd second up, as the library does;
  * zoneinfo for the wall clock of the TZ rule strings the tests run under
    (paired with IANA zones as in gen_zone_tables.py).

    python3 tests/data/gen_legacy_tables.py                # reads the committed zip
    python3 tests/data/gen_legacy_tables.py --rebuild-zip  # touch -d + zip first
"""
import calendar
import os
import struct
import subprocess
import sys
import tempfile
import zipfile
from datetime import datetime, timedelta, timezone
from pathlib import Path
from zoneinfo import ZoneInfo

HERE = Path(__file__).resolve().parent
ZIP = HERE / "legacy_dos.zip"
UTC = timezone.utc
EPOCH = datetime(1970, 1, 1)
US = timedelta(microseconds=1)
ZONES = {
    "UTC0": "UTC",
    "CET-1CEST,M3.5.0,M10.5.0/3": "Europe/Berlin",
    "EST5EDT,M3.2.0,M11.1.0": "America/New_York",
    "<+0530>-5:30": "Asia/Kolkata",
}


def sunday0(d):
    return (d.weekday() + 1) % 7


def fields(d):
    return [d.year, d.month, d.day, d.hour, d.minute, d.second]


def intervals(dt, since):
    """100-ns intervals from `since` to `dt` (exact: datetime works in microseconds)."""
    return (dt - since) // US * 10


def truncated_seconds(count_since_1970):
    """Whole seconds of a 100-ns count, truncated toward zero."""
    s = abs(count_since_1970) // 10**7
    return s if count_since_1970 >= 0 else -s


# ---- FILETIME and ticks -------------------------------------------------------------

# Published constants anchor the arithmetic: .NET's DateTime.cs (UnixEpochTicks,
# FileTimeOffset = ticks at 1601-01-01, MaxTicks = 9999-12-31 23:59:59.9999999)
# and Microsoft's time_t-to-FILETIME recipe (adds 116444736000000000).
assert intervals(EPOCH, datetime(1, 1, 1)) == 621355968000000000
assert intervals(datetime(1601, 1, 1), datetime(1, 1, 1)) == 504911232000000000
assert intervals(datetime(9999, 12, 31, 23, 59, 59, 999999), datetime(1, 1, 1)) + 9 == 3155378975999999999
assert intervals(EPOCH, datetime(1601, 1, 1)) == 116444736000000000

SECONDS = [
    datetime(1970, 1, 1), datetime(1970, 1, 1, 0, 0, 1), datetime(1969, 12, 31, 23, 59, 59),
    datetime(2009, 6, 15, 13, 45, 30), datetime(2000, 3, 1), datetime(2024, 3, 7, 9, 5, 3),
    EPOCH + timedelta(seconds=2**31 - 1), EPOCH + timedelta(seconds=2**31),
    EPOCH + timedelta(seconds=2**32 - 1), EPOCH + timedelta(seconds=2**32),
    EPOCH - timedelta(seconds=2**31), datetime(1601, 1, 1), datetime(1600, 12, 31, 23, 59, 59),
    datetime(1582, 10, 15), datetime(1, 1, 1), datetime(9999, 12, 31, 23, 59, 59),
    datetime(1900, 1, 1), datetime(2100, 2, 28, 12, 0, 0),
]


def instant_rows():
    rows = []
    for dt in SECONDS:
        ft = intervals(dt, datetime(1601, 1, 1))
        ticks = intervals(dt, datetime(1, 1, 1))
        unix = (dt - EPOCH) // timedelta(seconds=1)
        rows.append([unix, (ft >> 32) & 0xFFFFFFFF, ft & 0xFFFFFFFF, ticks] + fields(dt) + [sunday0(dt)])
    return rows


# Instants, each read at a few 100-ns distances: truncation must head for 1970.
READ_AROUND = [
    (datetime(1970, 1, 1), [-10000001, -10000000, -9999999, -5000000, -1, 0, 1, 9999999, 10000000]),
    (datetime(1601, 1, 1), [-1, 0, 1]),
    (datetime(1, 1, 1), [0, 1]),
    (datetime(1969, 12, 31, 23, 59, 58), [-1, 1, 5000000]),
    (EPOCH + timedelta(seconds=2**32 - 1), [-1, 9999999, 10000000]),
    (EPOCH + timedelta(seconds=2**31), [-1, 0]),
    (datetime(9999, 12, 31, 23, 59, 59), [9999999]),
    (datetime(2009, 6, 15, 13, 45, 30), [4999999]),
]


def read_rows():
    rows = []
    for dt, offsets in READ_AROUND:
        since_1970 = intervals(dt, EPOCH)
        for k in offsets:
            seconds = truncated_seconds(since_1970 + k)
            ft = intervals(dt, datetime(1601, 1, 1)) + k
            ticks = intervals(dt, datetime(1, 1, 1)) + k
            rows.append(["filetime", (ft >> 32) & 0xFFFFFFFF, ft & 0xFFFFFFFF, seconds])
            if ticks >= 0:
                rows.append(["ticks", 0, ticks, seconds])
    # The halves of 1970-01-01 swapped: a count about 9,800 years before 1601.
    swapped = (0xD53E8000 << 32) | 0x019DB1DE
    signed = swapped - 2**64
    rows.append(["filetime", 0xD53E8000, 0x019DB1DE,
                 truncated_seconds(signed - intervals(EPOCH, datetime(1601, 1, 1)))])
    return rows


# ---- DOS words from a real ZIP ---------------------------------------------------------

# Entry name -> mtime, set with touch -d under TZ=UTC0 so zip's local time is UTC.
ZIP_ENTRIES = {
    "even.txt": "2009-06-15 13:45:30",
    "odd.txt": "2009-06-15 13:45:31",
    "sec01.txt": "2024-03-07 09:05:01",
    "sec58.txt": "2024-03-07 12:34:58",
    "sec59.txt": "2024-03-07 12:34:59",
    "leapfeb.txt": "2024-02-29 23:59:59",
    "feb.txt": "2023-02-28 23:59:59",
    "june.txt": "2009-06-30 23:59:59",
    "newyear.txt": "2009-12-31 23:59:59",
    "first.txt": "1980-01-01 00:00:00",
    "may1980.txt": "1980-05-15 12:00:00",
    "odd2037.txt": "2037-06-15 12:00:01",
    "jan2037.txt": "2037-01-01 00:00:00",
    "mar2037.txt": "2037-03-01 10:00:00",
    "dec2037.txt": "2037-12-31 23:59:58",
    "feb2100.txt": "2100-02-28 23:59:59",
    "wrap.txt": "2106-02-07 06:28:16",
    "last.txt": "2107-12-31 23:59:58",
}

# Records the library writes differently from zip: its year clamp keeps month,
# day and time. Each is expected to give the words of the named zip entry.
CLAMPED = [
    ((1975, 5, 15, 12, 0, 0), "may1980.txt"),
    ((2040, 3, 1, 10, 0, 0), "mar2037.txt"),
    ((2037, 12, 31, 23, 59, 59), "jan2037.txt"),  # carries into 2038, clamped back
]


def rebuild_zip():
    env = dict(os.environ, TZ="UTC0")
    with tempfile.TemporaryDirectory() as tmp:
        for name, mtime in ZIP_ENTRIES.items():
            (Path(tmp) / name).write_text(name + "\n")
            subprocess.run(["touch", "-d", mtime, name], cwd=tmp, env=env, check=True)
        ZIP.unlink(missing_ok=True)
        subprocess.run(["zip", "-0", "-q", "-D", str(ZIP)] + list(ZIP_ENTRIES),
                       cwd=tmp, env=env, check=True)


def header_words(zf, info):
    """(date word, time word) from the entry's local header, and the mtime of
    its extended timestamp field (0x5455), a signed 32-bit count."""
    raw = zf.fp
    raw.seek(info.header_offset)
    (sig, _, _, _, time_word, date_word, _, _, _, name_len,
     extra_len) = struct.unpack("<IHHHHHIIIHH", raw.read(30))
    assert sig == 0x04034B50
    raw.seek(info.header_offset + 30 + name_len)
    extra = raw.read(extra_len)
    mtime = None
    while len(extra) >= 4:
        tag, size = struct.unpack("<HH", extra[:4])
        if tag == 0x5455 and extra[4] & 1:
            mtime = struct.unpack("<i", extra[5:9])[0]
        extra = extra[4 + size:]
    return date_word, time_word, mtime


def dos_rows():
    rows = []
    read_back = {}
    words = {}
    with zipfile.ZipFile(ZIP) as zf:
        for info in zf.infolist():
            date_word, time_word, mtime = header_words(zf, info)
            read_back[info.filename] = info.date_time
            words[info.filename] = [date_word, time_word]
            written = datetime.fromisoformat(ZIP_ENTRIES[info.filename])
            if written.year < 2038:  # the field is signed 32-bit
                assert EPOCH + timedelta(seconds=mtime) == written
            unix32 = calendar.timegm(info.date_time) & 0xFFFFFFFF
            # Beyond 2037 the library clamps what it writes; zip does not.
            kind = "zip" if written.year <= 2037 else "zipread"
            rows.append([kind, info.filename] + fields(written) + [date_word, time_word] +
                        list(info.date_time) + [sunday0(datetime(*info.date_time)), unix32])
    for record, source in CLAMPED:
        rows.append(["clamped", source] + list(record) + words[source] + list(read_back[source]) +
                    [sunday0(datetime(*read_back[source])), 0])
    return rows


# ---- OLE dates and day arithmetic under each zone ---------------------------------

def ole(dt):
    """The OLE Automation date: whole days name the day, the fraction counts
    forward from its midnight even before 1899-12-30 (-1.25 is 1899-12-29 06:00)."""
    d = dt - datetime(1899, 12, 30)
    fraction = d.seconds / 86400
    return d.days + fraction if d.days >= 0 else d.days - fraction


def transitions(zone, year):
    found = []
    t = datetime(year, 1, 1, tzinfo=UTC)
    while t.year == year:
        nxt = t + timedelta(hours=1)
        if t.astimezone(zone).utcoffset() != nxt.astimezone(zone).utcoffset():
            found.append(nxt)
        t = nxt
    return found


def unique_wall(zone, wall):
    return wall.replace(tzinfo=zone, fold=0).utcoffset() == wall.replace(tzinfo=zone, fold=1).utcoffset()


def zone_rows(tz, zone):
    rows = []
    # Days across each change of summer time (none in UTC0 or +0530), plus
    # month, leap-day and year ends everywhere.
    walls = [(datetime(2024, 2, 28, 10), 1), (datetime(2024, 3, 1, 10), -1),
             (datetime(2023, 12, 31, 23, 30), 1), (datetime(2024, 1, 15, 12), 366)]
    instants = [0, 2**31 - 1, 2**31, 2**32 - 1, 1709802303]
    for year in (2024, 2037):
        for change in transitions(zone, year):
            day = change.astimezone(zone).replace(tzinfo=None, hour=0, minute=0)
            walls += [(day - timedelta(days=1) + timedelta(hours=12), 1),
                      (day - timedelta(days=1) + timedelta(hours=4), 1),
                      (day + timedelta(days=1, minutes=30), -1),
                      (day - timedelta(days=3, hours=-8), 7)]
            instants += [int(change.timestamp()) + 60 * m for m in (-61, -1, 0, 59, 61)]
    for wall, n in walls:
        after = wall + timedelta(days=n)
        assert unique_wall(zone, after)
        utc = int(after.replace(tzinfo=zone).timestamp())
        rows.append([tz, "days"] + fields(wall) + [n] + fields(after) + [sunday0(after), utc])
    for u in instants:
        g = datetime.fromtimestamp(u, UTC).replace(tzinfo=None)
        local = datetime.fromtimestamp(u, zone).replace(tzinfo=None)
        if unique_wall(zone, local):
            rows.append([tz, "ole", u] + fields(g) + fields(local) + [repr(ole(g)), repr(ole(local))])
    return rows


def write(name, header, rows):
    with open(HERE / name, "w") as f:
        f.write(f"# Generated by gen_legacy_tables.py; do not edit.\n# {header}\n")
        for r in rows:
            f.write("\t".join(str(x) for x in r) + "\n")


def main():
    if "--rebuild-zip" in sys.argv:
        rebuild_zip()
    write("filetime_instants.tsv",
          "unix | filetime high low | ticks | Y M D h m s wday", instant_rows())
    write("filetime_reads.tsv", "kind high low | seconds (ticks: low holds the count)", read_rows())
    write("dos_words.tsv",
          "kind entry | record Y M D h m s | date time words (the entry's raw header) | "
          "zipfile date_time Y M D h m s | wday | UTC seconds low 32 bits", dos_rows())
    rows = []
    for tz, name in ZONES.items():
        rows += zone_rows(tz, ZoneInfo(name))
    write("ole_zone_days.tsv",
          "tz days: Y M D h m s n | Y M D h m s wday utc  ||  "
          "tz ole: utc | gmt Y M D h m s | local Y M D h m s | ole of gmt, of local", rows)


if __name__ == "__main__":
    main()
