#!/usr/bin/env python3
"""Writes the batch benchmark's date lines, fixed seed, random instants from
1990 to 2029:

  rfc1123  RFC 1123 dates in GMT, as HTTP writes them: the lines GNU date
           and dateutils' dconv (told the format) both read
  mixed    every form the loader tells apart and the shapes common software
           writes, in turn; OUT.gnu gets the lines of the shapes GNU date
           reads too (the same instants, in the same order)

With BAD (a fraction, 0.45 say) that share of the lines is broken the way
real logs break them (a day or hour out of range, an unknown month, a word
that is no date), for the cost of refusals and their messages.

    python3 bench/make_batch_lines.py KIND OUT [N [BAD]]
"""
import random
import sys
from datetime import datetime, timedelta, timezone

UTC = timezone.utc


def offset(rng):
    return timezone(timedelta(minutes=rng.choice([0, 60, -300, 330, -480, 120])))


def zone(d):
    """+0100, as %z writes it."""
    return d.strftime("%z")


def colon_zone(d):
    z = zone(d)
    return "Z" if z == "+0000" else z[:3] + ":" + z[3:]


# (shape, GNU date reads it) -> a line for the UTC instant d.
SHAPES = [
    # The loader's own forms.
    (lambda d, r: f"/Date({int(d.timestamp()) * 1000 + r.randrange(1000)})/", False),
    (lambda d, r: f"/Date({int(d.timestamp()) * 1000}+0000)/", False),
    (lambda d, r: d.strftime("%Y-%m-%dT%H:%M:%SZ"), True),
    (lambda d, r: (lambda l: l.strftime("%Y-%m-%dT%H:%M:%S.") + f"{r.randrange(1000):03d}" +
                   colon_zone(l))(d.astimezone(offset(r))), True),
    (lambda d, r: d.strftime("%Y%m%d%H%M%S.") + f"{r.randrange(1000):03d}Z", False),
    (lambda d, r: str(int(d.timestamp())), False),
    (lambda d, r: d.strftime("%y%m%d%H%M%SZ"), False),
    (lambda d, r: d.strftime("%Y%m%d%H%M%SZ"), False),
    (lambda d, r: d.strftime("%a, %d %b %Y %H:%M:%S GMT"), True),
    (lambda d, r: (lambda l: l.strftime("%a, %d %b %Y %H:%M:%S ") + zone(l))(d.astimezone(offset(r))),
     True),
    # Shapes software writes: date(1), asctime, Go's DateTime, Python's
    # logging, RFC 850, JavaScript's Date.toString, Go's log package, git,
    # access logs, Go's Time.String, Unix seconds with a fraction.
    (lambda d, r: d.strftime("%a %b ") + f"{d.day:2d}" + d.strftime(" %H:%M:%S UTC %Y"), True),
    (lambda d, r: d.strftime("%a %b ") + f"{d.day:2d}" + d.strftime(" %H:%M:%S %Y"), True),
    (lambda d, r: d.strftime("%Y-%m-%d %H:%M:%S"), True),
    (lambda d, r: d.strftime("%Y-%m-%d %H:%M:%S,") + f"{r.randrange(1000):03d}", True),
    (lambda d, r: d.strftime("%A, %d-%b-%y %H:%M:%S GMT"), True),
    (lambda d, r: (lambda l: l.strftime("%a %b %d %Y %H:%M:%S GMT") + zone(l) + " (Local Time)")(
        d.astimezone(offset(r))), True),
    (lambda d, r: d.strftime("%Y/%m/%d %H:%M:%S"), True),
    (lambda d, r: (lambda l: l.strftime("%a %b ") + str(l.day) + l.strftime(" %H:%M:%S %Y ") + zone(l))(
        d.astimezone(offset(r))), False),
    (lambda d, r: d.strftime("%d/%b/%Y:%H:%M:%S +0000"), False),
    (lambda d, r: (lambda l: l.strftime("%Y-%m-%d %H:%M:%S.") + f"{r.randrange(10**9):09d} " +
                   zone(l) + " m=+0.000123")(d.astimezone(offset(r))), False),
    (lambda d, r: f"{int(d.timestamp())}.{r.randrange(10**6):06d}", False),
]


def broken(rng, line):
    kind = rng.randrange(4)
    if kind == 0:
        return f"tomorrow-ish {rng.randrange(1000)}"
    if kind == 1:
        return line.replace(" 0", " 32", 1) if " 0" in line else "32 " + line
    if kind == 2:
        return line.replace("Jan", "Foo").replace("-01-", "-13-")
    return line + " junk"


def main():
    kind, out = sys.argv[1], sys.argv[2]
    count = int(sys.argv[3]) if len(sys.argv) > 3 else 1_000_000
    bad_share = float(sys.argv[4]) if len(sys.argv) > 4 else 0.0
    rng = random.Random(7)
    start = datetime(1990, 1, 1, tzinfo=UTC)
    gnu = open(out + ".gnu", "w") if kind == "mixed" else None
    with open(out, "w") as f:
        for i in range(count):
            d = start + timedelta(seconds=rng.randrange(40 * 365 * 86400))
            shape, gnu_reads = SHAPES[i % len(SHAPES)] if kind == "mixed" else SHAPES[8]
            line = shape(d, rng)
            if bad_share > 0 and rng.random() < bad_share:
                line = broken(rng, line)
            elif gnu is not None and gnu_reads:
                gnu.write(line + "\n")
            f.write(line + "\n")
    if gnu is not None:
        gnu.close()


if __name__ == "__main__":
    main()
