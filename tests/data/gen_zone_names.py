#!/usr/bin/env python3
"""Writes services/internal/ZoneAbbreviations.inc, the zone abbreviations the
date parser reads, and tests/data/zone_names.tsv, the evidence for each.

    /usr/bin/python3 tests/data/gen_zone_names.py   # rewrites both

Needs python3 and default-jdk-headless (javac, java). A name means what the
software that writes it means by it, so two sources are asked:
  - tzdata, through Python's zoneinfo over /usr/share/zoneinfo: every zone of
    zoneinfo.available_timezones() but the posix/ and right/ copies, sampled
    daily from 1970-01-01 to 2037-12-31 and hourly within a day where the
    name or offset changes, so a state that lasts hours is still seen;
  - Java, by tests/data/peers/ZoneShortNames.java (compiled in a temporary
    directory): TimeZone.getDisplayName(daylight, SHORT, Locale.US) of every
    zone ID, the names java.util.Date.toString and the 'z' pattern letter
    write. Java gives a zone one name at every date, so a name goes with the
    offset of the zone's present rules: the raw offset for the standard
    name, plus the daylight saving for the daylight name of a zone that
    keeps daylight time (the daylight name of one that does not is never
    written today). Names Java writes as "GMT+05:45" are offsets, not names.
A name both sources give one offset, or that only one source writes, reads
as that offset. A name with several (BDT: Bering Daylight Time, -10, in
tzdata; Bangladesh, +06, in Java) is kAmbiguousZone: the parser reads it
only with a numeric offset beside it. An offset that is not a whole number
of minutes counts as another offset.

RFC 5322's names (UT, UTC, GMT, EST ... PDT; Z is a military letter) are
read by the cursor before this table (services/DateCursor.cpp readZone), with
the RFC's offsets. Their rows hold what the two sources say, which differs
for CST (China, Cuba), CDT, PST and PDT (the Philippines), and say the RFC's
offset in a comment; UT, which neither source writes, has the RFC's.

zone_names.tsv: name, reading (minutes east or "ambiguous"), the offsets
tzdata gives it, the offsets Java gives it, the RFC 5322 offset ("-": none).
An offset list is "seconds:example zone" items, comma-separated; "-" for none.
"""
import os
import subprocess
import tempfile
from datetime import datetime, timedelta, timezone
from pathlib import Path
from zoneinfo import TZPATH, ZoneInfo, available_timezones

HERE = Path(__file__).resolve().parent
OUT = HERE.parent.parent / "services" / "internal" / "ZoneAbbreviations.inc"
EVIDENCE = HERE / "zone_names.tsv"
JAVA_PEER = HERE / "peers" / "ZoneShortNames.java"
ZONEINFO = "/usr/share/zoneinfo"
START = datetime(1970, 1, 1, tzinfo=timezone.utc)
END = datetime(2038, 1, 1, tzinfo=timezone.utc)
LONGEST = 7  # kLongestName in services/DateZoneNames.cpp

# RFC 5322 section 4.3 (and RFC 822 before it): minutes east of GMT.
RFC_NAMES = {"UT": 0, "UTC": 0, "GMT": 0, "EST": -300, "EDT": -240, "CST": -360,
             "CDT": -300, "MST": -420, "MDT": -360, "PST": -480, "PDT": -420}
AMBIGUOUS = None


def zone_keys():
    assert ZONEINFO in TZPATH, "zoneinfo does not read the system tzdata"
    return sorted(k for k in available_timezones()
                  if not k.startswith(("posix/", "right/"))
                  and os.path.isfile(os.path.join(ZONEINFO, k)))


def states(key):
    """(abbreviation, offset in seconds) pairs in force in [START, END)."""
    zone = ZoneInfo(key)

    def at(t):
        local = t.astimezone(zone)
        return local.tzname(), int(local.utcoffset().total_seconds())

    seen = set()
    day, hour = timedelta(days=1), timedelta(hours=1)
    t, last = START, at(START)
    seen.add(last)
    while t < END:
        now = at(t + day)
        if now != last:
            for h in range(1, 24):
                seen.add(at(t + h * hour))
            seen.add(now)
        t, last = t + day, now
    return seen


def canonical_zones():
    """The zones tzdata.zi defines (Asia/Kolkata), not its links (Asia/Calcutta)."""
    with open(os.path.join(ZONEINFO, "tzdata.zi")) as f:
        return {line.split()[1] for line in f if line.startswith("Z ")}


def example_first(zone, canonical):
    """Sort key: the example zone shown for an offset is a canonical one where any is."""
    return zone not in canonical, zone


def is_numeric(name):
    return name[:1] in "+-" or name.isdigit()


def tzdata_names():
    """Upper-case name -> {offset in seconds: first zone that writes it}."""
    canonical = canonical_zones()
    names = {}
    for key in sorted(zone_keys(), key=lambda k: example_first(k, canonical)):
        for name, seconds in states(key):
            if name and name != "LMT" and not is_numeric(name):
                names.setdefault(name.upper(), {}).setdefault(seconds, key)
    return names


def java_names():
    """Upper-case name -> {offset in seconds: first zone ID that writes it}."""
    with tempfile.TemporaryDirectory() as tmp:
        subprocess.run(["javac", "-d", tmp, str(JAVA_PEER)], check=True)
        out = subprocess.run(["java", "-cp", tmp, JAVA_PEER.stem], check=True,
                             capture_output=True, text=True).stdout
    canonical = canonical_zones()
    lines = sorted(out.splitlines(), key=lambda l: example_first(l.split("\t")[0], canonical))
    names = {}
    for line in lines:
        zone, *pairs = line.split("\t")
        for name, seconds in zip(pairs[0::2], pairs[1::2]):
            if name == "-" or name.startswith(("GMT+", "GMT-")):
                continue
            assert name.isalpha() and len(name) <= LONGEST, (zone, name)
            names.setdefault(name.upper(), {}).setdefault(int(seconds), zone)
    return names


def reading(offsets):
    """Minutes east for one whole-minute offset, else AMBIGUOUS."""
    if len(offsets) != 1:
        return AMBIGUOUS
    only = next(iter(offsets))
    return only // 60 if only % 60 == 0 else AMBIGUOUS


def zone_names():
    """[(name, reading, tzdata offsets, Java offsets)], sorted by name in byte order."""
    tz, java = tzdata_names(), java_names()
    rows = []
    for name in sorted(set(tz) | set(java) | set(RFC_NAMES), key=str.encode):
        a, b = tz.get(name, {}), java.get(name, {})
        value = reading(set(a) | set(b)) if a or b else RFC_NAMES[name]
        rows.append((name, value, a, b))
    return rows


def zone_offsets():
    """Upper-case name -> minutes east of GMT, or AMBIGUOUS, by what the
    software that writes it means (CST: ambiguous)."""
    return {name: value for name, value, _, _ in zone_names()}


def mail_zone_offsets():
    """zone_offsets() as the date parser reads a name: the RFC 5322 names
    with the RFC's offsets (CST: -360)."""
    return {**zone_offsets(), **RFC_NAMES}


def tzdata_version():
    with open(os.path.join(ZONEINFO, "tzdata.zi")) as f:
        version = f.readline().split()[-1]  # "# version 2026f"
    pkg = subprocess.run(["dpkg-query", "-W", "-f", "${Version}", "tzdata"],
                         capture_output=True, text=True).stdout.strip()
    return version + (f" (Debian tzdata {pkg})" if pkg else "")


def java_version():
    out = subprocess.run(["java", "-version"], capture_output=True, text=True).stderr
    return out.splitlines()[0].split('"')[1]


def listed(offsets):
    return ",".join(f"{s}:{z}" for s, z in sorted(offsets.items())) or "-"


def write(rows):
    lines = [
        f"// Generated by tests/data/gen_zone_names.py from the tzdata {tzdata_version()}"
        f" of /usr/share/zoneinfo and Java {java_version()}; do not edit.",
        "// Zone abbreviations read by the date parser: name (upper case), minutes east of GMT,",
        "// or kAmbiguousZone for a name that tzdata (1970-2037) and Java's short names",
        "// together give several offsets. An offset that is not a whole number of minutes",
        "// counts as ambiguous. The cursor reads the RFC 5322 names before this table, with",
        "// the RFC's offset noted beside them. Sorted by name in byte order, for a binary search.",
    ]
    for name, value, _, _ in rows:
        assert len(name) <= LONGEST, name
        line = f'{{"{name}", {"kAmbiguousZone" if value is AMBIGUOUS else value}}},'
        if name in RFC_NAMES:
            line += f"  // RFC 5322: {RFC_NAMES[name]}"
        lines.append(line)
    OUT.write_text("\n".join(lines) + "\n")

    with open(EVIDENCE, "w") as f:
        f.write("# Generated by tests/data/gen_zone_names.py; do not edit.\n"
                "# name\treading: minutes east of GMT, or ambiguous\ttzdata 1970-2037:"
                " seconds east:example zone, ...\tJava TimeZone.getDisplayName(SHORT, US):"
                " seconds east:example zone ID, ...\tRFC 5322 minutes east, or -\n")
        for name, value, tz, java in rows:
            f.write("\t".join([name, "ambiguous" if value is AMBIGUOUS else str(value),
                               listed(tz), listed(java), str(RFC_NAMES.get(name, "-"))]) + "\n")
    unique = sum(value is not AMBIGUOUS for _, value, _, _ in rows)
    print(f"{OUT.name}, {EVIDENCE.name}: {len(rows)} names, {unique} read,"
          f" {len(rows) - unique} ambiguous")


if __name__ == "__main__":
    write(zone_names())
