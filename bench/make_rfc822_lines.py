#!/usr/bin/env python3
"""Writes N RFC 822 date lines (default 1,000,000) for the batch benchmark:
random instants from 1990 to 2029 with a mix of zone forms, fixed seed.

    python3 bench/make_rfc822_lines.py OUT [N]
"""
import random
import sys
from datetime import datetime, timedelta

DAYS = ["Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"]
MONTHS = ["Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"]
ZONES = ["GMT", "+0000", "+0100", "-0500", "+0530", "-0800", "UT", "EST", "PDT"]


def main():
    out, count = sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 1_000_000
    rng = random.Random(7)
    start = datetime(1990, 1, 1)
    with open(out, "w") as f:
        for _ in range(count):
            d = start + timedelta(seconds=rng.randrange(40 * 365 * 86400))
            f.write(f"{DAYS[d.weekday()]}, {d.day:02d} {MONTHS[d.month - 1]} {d.year} "
                    f"{d:%H:%M:%S} {rng.choice(ZONES)}\n")


if __name__ == "__main__":
    main()
