#!/usr/bin/env python3
"""Writes the expected tables of zephal::zones' tests: Python's zoneinfo as
the peer, for zones of the system's tzdata and for TZ rule strings.

A rule string is handed to zoneinfo as the zone file RFC 8536 makes of it:
no changes, one type, the rule as the footer, which zoneinfo then applies
to every year (the C library computes years before 1970 as 1970, so only
a peer covers them).

    python3 tests/data/gen_named_zone_tables.py
    # rewrites named_zone_instants.tsv and named_zone_readings.tsv

named_zone_instants.tsv: zone, Unix seconds, the wall clock there
(Y M D h m s, weekday 0 = Sunday), offset east in seconds, abbreviation,
summer time (dst() not zero).
named_zone_readings.tsv: zone, wall clock (Y M D h m s), kind (unique,
skipped, repeated), then pre, trans, post in Unix seconds: fold=0 gives
pre, fold=1 post, and trans is the first instant of the later offset.
"""
import io
import random
import struct
from datetime import datetime, timedelta, timezone
from pathlib import Path
from zoneinfo import ZoneInfo

HERE = Path(__file__).resolve().parent
UTC = timezone.utc
EPOCH = datetime(1970, 1, 1, tzinfo=UTC)

# Zones whose history tests something: both hemispheres, half-hour and
# 45-minute offsets, a skipped day, negative summer time (Dublin), a
# two-hour summer time (Troll), a 30-minute one (Lord Howe), permanent
# changes of offset, rules with times past 24 h and before midnight.
NAMED = [
    "America/New_York", "Europe/Berlin", "Europe/London", "Europe/Dublin", "Europe/Moscow",
    "Australia/Sydney", "Australia/Lord_Howe", "Asia/Kolkata", "Asia/Kathmandu", "Asia/Tehran",
    "Asia/Jerusalem", "Pacific/Apia", "Pacific/Chatham", "Pacific/Kiritimati", "America/St_Johns",
    "America/Sao_Paulo", "America/Santiago", "America/Nuuk", "Africa/Casablanca",
    "Antarctica/Troll", "Etc/GMT+5", "UTC",
]
RULES = [
    "UTC0", "CET-1CEST,M3.5.0,M10.5.0/3", "EST5EDT,M3.2.0,M11.1.0", "<+0530>-5:30",
    "AEST-10AEDT,M10.1.0,M4.1.0/3", "<-02>2<-01>,M3.5.0/-1,M10.5.0/0", "IST-2IDT,M3.4.4/26,M10.5.0",
    "NZST-12:00NZDT-13:00:00,M9.5.0,M4.1.0/3", "XXX3YYY,J60/2,J300", "EST5EDT4,0/0,J365/25",
]
# Not here, as zoneinfo (3.11) reads them: a zero-based day n after 0
# (XXX3YYY,59/2,300), which it takes a day early (the C library and POSIX
# agree on it, so the every-zone walk checks it from 1970 on); and summer
# time that ends an hour before it starts again at the new year
# (<+05>-5<+06>-6,J1/0,J365/24), whose first hours of a year it writes with
# one offset and reports with the other.
SCAN_YEARS = {"named": (1900, 2040), "rule": (1968, 1974)}
MOST_CHANGES = 24  # a zone's, spread over the years scanned
RULE_YEARS = [2, 1600, 1899, 2024, 2100, 4000, 9000]


def rule_zone(rule):
    """The zone file of a rule: version 2, no changes, one type, the rule as footer."""
    def block(time_size):
        del time_size  # no changes, so no times of either size
        # isutcnt isstdcnt leapcnt timecnt typecnt charcnt, one type, one name byte
        return b"TZif2" + bytes(15) + struct.pack(">6l", 0, 0, 0, 0, 1, 1) + struct.pack(">lBB", 0, 0, 0) + b"\0"
    data = block(4) + block(8) + b"\n" + rule.encode() + b"\n"
    return ZoneInfo.from_file(io.BytesIO(data), key=rule)


def at(seconds, zone):
    return (EPOCH + timedelta(seconds=seconds)).astimezone(zone)


def state(seconds, zone):
    d = at(seconds, zone)
    return (d.utcoffset(), d.dst() != timedelta(0), d.tzname())


def changes(zone, first_year, last_year):
    """Instants where offset, summer time or abbreviation changes: daily probes, then bisection."""
    found = []
    t = int((datetime(first_year, 1, 1, tzinfo=UTC) - EPOCH).total_seconds())
    end = int((datetime(last_year, 1, 1, tzinfo=UTC) - EPOCH).total_seconds())
    while t < end:
        nxt = t + 86400
        if state(t, zone) != state(nxt, zone):
            lo, hi = t, nxt
            while hi - lo > 1:
                mid = (lo + hi) // 2
                lo, hi = (mid, hi) if state(mid, zone) == state(lo, zone) else (lo, mid)
            found.append(hi)
            t = hi
        else:
            t = nxt
    return found


def instant_row(name, zone, seconds):
    d = at(seconds, zone)
    wday = (d.weekday() + 1) % 7
    off = int(d.utcoffset().total_seconds())
    return [name, seconds, d.year, d.month, d.day, d.hour, d.minute, d.second, wday, off, d.tzname(),
            int(d.dst() != timedelta(0))]


def reading_row(name, zone, wall):
    first = wall.replace(tzinfo=zone, fold=0)
    second = wall.replace(tzinfo=zone, fold=1)
    pre = int((first - EPOCH).total_seconds())
    post = int((second - EPOCH).total_seconds())
    if pre == post:
        kind, trans = "unique", pre
    else:
        back = at(pre, zone).replace(tzinfo=None)
        kind = "repeated" if back == wall else "skipped"
        lo, hi = min(pre, post), max(pre, post)
        before = at(lo, zone).utcoffset()
        while hi - lo > 1:  # the first instant of the later offset
            mid = (lo + hi) // 2
            lo, hi = (mid, hi) if at(mid, zone).utcoffset() == before else (lo, mid)
        trans = hi
    return [name, wall.year, wall.month, wall.day, wall.hour, wall.minute, wall.second, kind, pre, trans,
            post]


def spread(items, most):
    """At most `most` of the items, evenly spread, first and last kept."""
    if len(items) <= most:
        return items
    return [items[i * (len(items) - 1) // (most - 1)] for i in range(most)]


def rows_for(name, zone, years, rng, samples=12):
    instants, readings = [], []
    for change in spread(changes(zone, *years), MOST_CHANGES):
        for s in (change - 1, change, change + 1):
            instants.append(instant_row(name, zone, s))
        before = at(change - 1, zone).utcoffset()
        after = at(change, zone).utcoffset()
        wall = (EPOCH + timedelta(seconds=change) + before).replace(tzinfo=None)
        gap = after - before  # > 0: skipped readings from `wall` on; < 0: repeated before it
        for delta in (gap / 2, -gap / 2, timedelta(seconds=-1), timedelta(0)):
            readings.append(reading_row(name, zone, wall + timedelta(seconds=int(delta.total_seconds()))))
    for year in (1900, 1971, 2100) if samples else ():  # where zephal's table of offsets ends
        s = int((datetime(year, 1, 1, tzinfo=UTC) - EPOCH).total_seconds())
        instants += [instant_row(name, zone, s - 1), instant_row(name, zone, s)]
    for first, last in [(1, 1900), (1900, 2100), (2100, 9999)]:
        lo = int((datetime(first, 1, 2, tzinfo=UTC) - EPOCH).total_seconds())
        hi = int((datetime(last, 12, 30, tzinfo=UTC) - EPOCH).total_seconds())
        for _ in range(samples):
            s = rng.randrange(lo, hi)
            instants.append(instant_row(name, zone, s))
            readings.append(reading_row(name, zone, at(s, zone).replace(tzinfo=None)))
    return instants, readings


def rule_rows(rule, rng):
    zone = rule_zone(rule)
    instants, readings = rows_for(rule, zone, SCAN_YEARS["rule"], rng)
    for year in RULE_YEARS:  # changes far from 1970, which cctz reaches by 400-year cycles
        more_i, more_r = rows_for(rule, zone, (year, year + 1), rng, samples=0)
        instants += more_i
        readings += more_r
    return instants, readings


def write(path, header, rows):
    with open(path, "w") as f:
        f.write(f"# Generated by gen_named_zone_tables.py; do not edit.\n# {header}\n")
        for row in rows:
            f.write("\t".join(str(v) for v in row) + "\n")


def main():
    rng = random.Random(20240307)
    instants, readings = [], []
    for name in NAMED:
        i, r = rows_for(name, ZoneInfo(name), SCAN_YEARS["named"], rng)
        instants += i
        readings += r
    for rule in RULES:
        i, r = rule_rows(rule, rng)
        instants += i
        readings += r
    write(HERE / "named_zone_instants.tsv",
          "zone unix | Y M D h m s wday | offset abbreviation dst", instants)
    write(HERE / "named_zone_readings.tsv", "zone | Y M D h m s | kind pre trans post", readings)


if __name__ == "__main__":
    main()
