#!/usr/bin/env python3
"""Writes N RFC 822 date lines (default 1,000,000) for the batch benchmark:
random instants from 1990 to 2029 with a mix of zone forms, fixed seed.
With BAD (a fraction, 0.45 say) that share of the lines is broken the way
real logs break them (a day or hour out of range, an unknown month or zone,
a word that is no date), for the cost of refusals and their messages.

    python3 bench/make_rfc822_lines.py OUT [N [BAD]]
"""
import random
import sys
from datetime import datetime, timedelta

DAYS = ["Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"]
MONTHS = ["Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"]
ZONES = ["GMT", "+0000", "+0100", "-0500", "+0530", "-0800", "UT", "EST", "PDT"]


def line(rng, d, bad):
    day, month, hour, zone = f"{d.day:02d}", MONTHS[d.month - 1], f"{d.hour:02d}", rng.choice(ZONES)
    if bad:
        kind = rng.randrange(5)
        if kind == 0:
            return f"tomorrow-ish {rng.randrange(1000)}"
        day = "32" if kind == 1 else day
        month = "Foo" if kind == 2 else month
        hour = "25" if kind == 3 else hour
        zone = "XYZ" if kind == 4 else zone
    return f"{DAYS[d.weekday()]}, {day} {month} {d.year} {hour}:{d:%M:%S} {zone}"


def main():
    out = sys.argv[1]
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 1_000_000
    bad_share = float(sys.argv[3]) if len(sys.argv) > 3 else 0.0
    rng = random.Random(7)
    start = datetime(1990, 1, 1)
    with open(out, "w") as f:
        for _ in range(count):
            d = start + timedelta(seconds=rng.randrange(40 * 365 * 86400))
            f.write(line(rng, d, bad_share > 0 and rng.random() < bad_share) + "\n")


if __name__ == "__main__":
    main()
