#!/usr/bin/env python3
"""Writes the date texts that common software writes, each with the instant
it was asked to write.

    python3 tests/data/gen_software_dates.py   # rewrites software_dates.tsv

Needs python3, golang-go, nodejs, default-jdk-headless, git, coreutils and
postgresql (a throwaway server is started in a temporary directory, as the
postgres user when run as root, and stopped again). Every text comes from
running the writer itself, with TZ set to the zone and the C locale; the
programs in tests/data/peers/ hold the Go, Node and Java calls.

Expected column, derived from the instant asked for and never from the text:
  @<seconds>.<ms>   the text states its zone: Unix seconds and milliseconds
                    (floored), down to what the text holds;
  local <fields>    the text states no zone: the zone's wall clock at that
                    instant (Python's zoneinfo), down to what the text holds;
  refuse            the text names no one instant: no year, or a zone
                    abbreviation that gen_zone_names.py gives no single offset
                    (as the parser reads it: RFC 5322's names with the RFC's
                    offsets), with no numeric offset beside it.
Left out, since their writers cannot write the instant meant: Java's zone
names where the zone's offset then was not today's (Java writes NPT, +05:45,
for Kathmandu in 1965, +05:30 then; LHST, +10:30, for Lord Howe at +10:00),
which no reader can tell from the text; git before
1970 (it stores no negative time); and Unix seconds with a fraction before
1970, where date's "%s.%N" writes -135.500000000 for -134.5 s and Python
writes -134.5, so the shape has no one reading; logging's asctime before
1970 (it writes a negative millisecond).
"""
import email.utils
import glob
import logging
import os
import re
import shutil
import subprocess
import tempfile
import time
from datetime import datetime, timedelta, timezone
from zoneinfo import ZoneInfo

from gen_parser_tables import esc
from gen_zone_names import AMBIGUOUS, mail_zone_offsets

HERE = os.path.dirname(os.path.abspath(__file__))
PEERS = os.path.join(HERE, "peers")
UTC = timezone.utc
EPOCH = datetime(1970, 1, 1, tzinfo=UTC)

# Unix seconds and nanoseconds of the instants written.
INSTANTS = [
    (1709802303, 123456789),  # 2024-03-07 09:05:03.123456789 UTC, winter
    (1721053845, 987654321),  # 2024-07-15 14:30:45.987654321 UTC, summer
    (1699164420, 0),          # 2023-11-05 06:07:00 UTC: no seconds, no fraction
    (-133847070, 250000000),  # 1965-10-04 20:15:30.25 UTC
    (2214085506, 750000000),  # 2040-02-29 23:45:06.75 UTC
]
ZONES = ["UTC", "Europe/Berlin", "America/New_York", "Asia/Kolkata", "Asia/Kathmandu",
         "America/Sao_Paulo", "Australia/Lord_Howe", "America/St_Johns", "Asia/Tokyo",
         "Pacific/Auckland", "Europe/Moscow"]

US, MS, SEC, MIN, DAY = 1, 1000, 10**6, 60 * 10**6, 86400 * 10**6  # in microseconds
# Writer label -> (what states the zone, the finest unit the text holds).
# "offset": a numeric offset, Z or GMT; "name": only an abbreviation, taken
# from the text by the writer's pattern below; "none": nothing; "unix": Unix
# seconds; "yearless": no year.
WRITERS = {
    "go.String": ("offset", US), "go.UnixDate": ("name", SEC), "go.RubyDate": ("offset", SEC),
    "go.ANSIC": ("none", SEC), "go.RFC822": ("name", MIN), "go.RFC822Z": ("offset", MIN),
    "go.RFC850": ("name", SEC), "go.RFC1123": ("name", SEC), "go.RFC1123Z": ("offset", SEC),
    "go.RFC3339": ("offset", SEC), "go.RFC3339Nano": ("offset", US),
    "go.DateTime": ("none", SEC), "go.DateOnly": ("none", DAY), "go.log": ("none", SEC),
    "js.toString": ("offset", SEC), "js.toUTCString": ("offset", SEC),
    "js.toISOString": ("offset", MS),
    "java.Date": ("name", SEC), "java.ZonedDateTime": ("offset", US),
    "java.OffsetDateTime": ("offset", US), "java.Instant": ("offset", US),
    "java.RFC_1123_DATE_TIME": ("offset", SEC),
    "git.default": ("offset", SEC), "git.rfc": ("offset", SEC), "git.iso": ("offset", SEC),
    "git.iso-strict": ("offset", SEC),
    "date.default": ("name", SEC), "date.R": ("offset", SEC), "date.I": ("none", DAY),
    "date.Iseconds": ("offset", SEC), "date.rfc-3339=date": ("none", DAY),
    "date.rfc-3339=seconds": ("offset", SEC), "date.rfc-3339=ns": ("offset", US),
    "date.access-log": ("offset", SEC), "date.epoch": ("unix", US),
    "py.str": ("offset", US), "py.isoformat": ("offset", US), "py.asctime": ("none", MS),
    "py.format_datetime": ("offset", SEC), "py.time": ("unix", MS),
    "pg.timestamptz": ("offset", US),
    "syslog": ("yearless", SEC),
}
# The abbreviation of a "name" writer: the word after the time, or at the end.
NAME_AFTER_TIME = re.compile(r"\d\d:\d\d(?::\d\d)? (\S+)")
DATE_FORMATS = {
    "date.default": [], "date.R": ["-R"], "date.I": ["-I"], "date.Iseconds": ["-Iseconds"],
    "date.rfc-3339=date": ["--rfc-3339=date"], "date.rfc-3339=seconds": ["--rfc-3339=seconds"],
    "date.rfc-3339=ns": ["--rfc-3339=ns"], "date.access-log": ["+%d/%b/%Y:%H:%M:%S %z"],
    "date.epoch": ["+%s.%N"], "syslog": ["+%b %e %H:%M:%S"],
}
GIT_FORMATS = ["default", "rfc", "iso", "iso-strict"]


def env(zone):
    return dict(os.environ, TZ=zone, LC_ALL="C", LANG="C")


def as_datetime(sec, nsec):
    return EPOCH + timedelta(seconds=sec, microseconds=nsec // 1000)


def decimal(sec, nsec):
    """The instant as a decimal number of seconds: -133847069.750000000."""
    total = sec * 10**9 + nsec
    sign = "-" if total < 0 else ""
    return f"{sign}{abs(total) // 10**9}.{abs(total) % 10**9:09d}"


def lines_of(output):
    """(label, instant index, text) of a writer's "label<TAB>index<TAB>text" lines."""
    return [(l, int(i), t) for l, i, t in (line.split("\t") for line in output.splitlines())]


# ---- Writers: each gives (label, instant index, text) for one zone ----------

def go_texts(zone, exe):
    stdin = "".join(f"{s} {n}\n" for s, n in INSTANTS)
    return lines_of(subprocess.run([exe], input=stdin, env=env(zone), capture_output=True,
                                   text=True, check=True).stdout)


def node_texts(zone):
    ms = [str(s * 1000 + n // 10**6) for s, n in INSTANTS]
    return lines_of(subprocess.run(["node", os.path.join(PEERS, "write_dates.js")] + ms,
                                   env=env(zone), capture_output=True, text=True,
                                   check=True).stdout)


def java_texts(zone):
    args = [f"{s}.{n:09d}" for s, n in INSTANTS]
    return lines_of(subprocess.run(["java", os.path.join(PEERS, "WriteDates.java")] + args,
                                   env=env(zone), capture_output=True, text=True,
                                   check=True).stdout)


def date_texts(zone):
    out = []
    for i, (s, n) in enumerate(INSTANTS):
        for label, args in DATE_FORMATS.items():
            if label == "date.epoch" and s < 0:
                continue
            text = subprocess.run(["date", "-d", "@" + decimal(s, n)] + args, env=env(zone),
                                  capture_output=True, text=True, check=True).stdout
            out.append((label, i, text.rstrip("\n")))
    return out


def git_texts(zone, repo):
    """Commits dated at each instant with the zone's offset, then git's formats."""
    commits = {}
    tree = subprocess.run(["git", "mktree"], cwd=repo, input="", capture_output=True,
                          text=True, check=True).stdout.strip()
    for i, (s, n) in enumerate(INSTANTS):
        if s < 0:
            continue
        offset = as_datetime(s, 0).astimezone(ZoneInfo(zone)).strftime("%z")
        stamp = f"{s} {offset}"
        commits[i] = subprocess.run(
            ["git", "commit-tree", tree, "-m", "at"], cwd=repo, capture_output=True,
            text=True, check=True,
            env=dict(env(zone), GIT_AUTHOR_DATE=stamp, GIT_COMMITTER_DATE=stamp)).stdout.strip()
    out = []
    for fmt in GIT_FORMATS:
        shown = subprocess.run(["git", "show", "-s", "--format=%ad", f"--date={fmt}"]
                               + list(commits.values()), cwd=repo, env=env(zone),
                               capture_output=True, text=True, check=True).stdout.splitlines()
        out += [(f"git.{fmt}", i, text) for i, text in zip(commits, shown)]
    return out


def python_texts(zone):
    """Python's own writers, with TZ set in this process for logging's localtime."""
    os.environ["TZ"] = zone
    time.tzset()
    formatter = logging.Formatter("%(asctime)s")
    real_time, real_time_ns = time.time, time.time_ns
    out = []
    try:
        for i, (s, n) in enumerate(INSTANTS):
            aware = as_datetime(s, n).astimezone(ZoneInfo(zone))
            seconds = (s * 10**9 + n) / 10**9  # as time.time() gives it
            out += [("py.str", i, str(aware)), ("py.isoformat", i, aware.isoformat()),
                    ("py.format_datetime", i, email.utils.format_datetime(aware))]
            if s >= 0:
                # The record takes its time from one of these (time_ns from 3.13 on).
                time.time, time.time_ns = (lambda: seconds), (lambda: s * 10**9 + n)
                record = logging.LogRecord("x", logging.INFO, "x", 0, "x", None, None)
                time.time, time.time_ns = real_time, real_time_ns
                out += [("py.asctime", i, formatter.format(record)),
                        ("py.time", i, repr(seconds))]
    finally:
        time.time, time.time_ns = real_time, real_time_ns
    return out


class Postgres:
    """A throwaway PostgreSQL server on a Unix socket in a temporary directory."""

    def __enter__(self):
        bindirs = sorted(glob.glob("/usr/lib/postgresql/*/bin"))
        if not bindirs:
            raise SystemExit("needs the Debian package postgresql")
        self.bin = bindirs[-1]
        self.dir = tempfile.mkdtemp(prefix="zp-pg-")
        self.as_user = []
        if os.geteuid() == 0:  # the server refuses to run as root
            shutil.chown(self.dir, "postgres", "postgres")
            self.as_user = ["runuser", "-u", "postgres", "--"]
        data = os.path.join(self.dir, "data")
        self.run("initdb", "-D", data, "-A", "trust", "-U", "postgres", "--no-sync")
        self.run("pg_ctl", "-D", data, "-w", "-l", os.path.join(self.dir, "log"), "-o",
                 f"-c listen_addresses='' -k {self.dir} -c fsync=off", "start")
        return self

    def run(self, tool, *args, **kw):
        return subprocess.run(self.as_user + [os.path.join(self.bin, tool), *args],
                              cwd=self.dir, capture_output=True, text=True, check=True, **kw)

    def texts(self, zone):
        query = f"SET TimeZone = '{zone}';" + "".join(
            f"SELECT {i}, (to_timestamp({s}) + interval '{n // 1000} microseconds')::text;"
            for i, (s, n) in enumerate(INSTANTS))
        rows = self.run("psql", "-h", self.dir, "-U", "postgres", "-At", "-F", "\t",
                        "-c", query, env=env(zone)).stdout.splitlines()
        return [("pg.timestamptz", int(i), t) for i, t in (r.split("\t") for r in rows if "\t" in r)]

    def __exit__(self, *exc):
        self.run("pg_ctl", "-D", os.path.join(self.dir, "data"), "-w", "-m", "fast", "stop")
        shutil.rmtree(self.dir)


# ---- Expectations ------------------------------------------------------------

def floor_to(delta, unit_us):
    return delta - delta % timedelta(microseconds=unit_us)


def expected(label, zone, text, sec, nsec, names):
    kind, unit = WRITERS[label]
    instant = as_datetime(sec, nsec)
    if kind == "yearless":
        return "refuse"
    if kind == "none":
        wall = instant.astimezone(ZoneInfo(zone)).replace(tzinfo=None)
        base = datetime(1900, 1, 1)
        wall = base + floor_to(wall - base, unit)
        return "local " + wall.strftime("%Y-%m-%dT%H:%M:%S.") + f"{wall.microsecond // 1000:03d}"
    if kind == "name":
        name = NAME_AFTER_TIME.search(text).group(1)
        if not re.fullmatch(r"[+-]\d{2,4}", name):  # a numeric abbreviation is an offset
            offset = names.get(name.upper(), AMBIGUOUS)
            if offset is AMBIGUOUS:
                return "refuse"
            true_offset = instant.astimezone(ZoneInfo(zone)).utcoffset()
            if timedelta(minutes=offset) != true_offset:
                assert label == "java.Date", (label, zone, text)
                return None  # Java's name for a zone as its rules are today
    ms = floor_to(instant - EPOCH, max(unit, MS)) // timedelta(milliseconds=1)
    return f"@{ms // 1000}.{ms % 1000:03d}"


def main():
    names = mail_zone_offsets()
    rows, seen = [], set()
    with tempfile.TemporaryDirectory() as tmp, Postgres() as pg:
        go_exe = os.path.join(tmp, "write_dates")
        subprocess.run(["go", "build", "-o", go_exe, os.path.join(PEERS, "write_dates.go")],
                       check=True, env=dict(os.environ, GOCACHE=os.path.join(tmp, "cache"),
                                            GO111MODULE="off"))
        repo = os.path.join(tmp, "repo")
        subprocess.run(["git", "init", "-q", repo], check=True)
        for key in ("NAME", "EMAIL"):
            for who in ("AUTHOR", "COMMITTER"):
                os.environ[f"GIT_{who}_{key}"] = "zephal" if key == "NAME" else "z@example.org"
        for zone in ZONES:
            texts = (go_texts(zone, go_exe) + node_texts(zone) + java_texts(zone)
                     + git_texts(zone, repo) + date_texts(zone) + python_texts(zone)
                     + pg.texts(zone))
            for label, i, text in texts:
                if (label, text) in seen:
                    continue  # a zone-free writer says the same in every zone
                seen.add((label, text))
                want = expected(label, zone, text, *INSTANTS[i], names)
                if want is not None:
                    rows.append((label, zone, esc(text), want))
    order = {label: n for n, label in enumerate(WRITERS)}
    rows.sort(key=lambda r: order[r[0]])  # stable: zones and instants keep their order
    with open(os.path.join(HERE, "software_dates.tsv"), "w") as f:
        f.write("# Generated by tests/data/gen_software_dates.py; do not edit.\n"
                "# writer\tIANA zone\ttext (C escapes)\texpected: @<Unix seconds>.<ms>,"
                " local <wall clock fields>, or refuse\n")
        for r in rows:
            f.write("\t".join(r) + "\n")
    print(f"software_dates.tsv: {len(rows)} rows")


if __name__ == "__main__":
    main()
