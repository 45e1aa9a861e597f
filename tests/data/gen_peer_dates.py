#!/usr/bin/env python3
"""Writes the mail and HTTP date texts on which three independent readers agree.

    python3 tests/data/gen_peer_dates.py   # rewrites rfc822_peers.tsv, rfc822_peer_splits.tsv

Needs python3, Debian's libcurl4 and golang-go (go 1.19). The texts are real
shapes (every Debian changelog trailer date on this machine and a hand-picked
list of mail and HTTP forms) and mutations of them drawn with a fixed seed.
Each text goes to three peers, each run as itself:
  - Python's email.utils.parsedate_to_datetime (a result without a zone, as
    from "-0000", counts as its fields read as UTC; an exception refuses);
  - libcurl's curl_getdate through ctypes (-1 refuses);
  - Go's net/mail.ParseDate, by tests/data/peers/netmail_date.go.
A verdict is Unix seconds or a refusal.

rfc822_peers.tsv holds the texts all three read to the same second and the
texts all three refuse; the unit tests read it. rfc822_peer_splits.tsv holds
texts where they differ, with each verdict, for deciding by RFC 5322 and
RFC 9110; nothing reads it.

RFC 5322's obsolete syntax lets comments stand wherever white space may,
white space and comments stand around the time's colons ("09 : 55 : 06",
obs-hour, obs-minute, obs-second), and a year have three digits (obs-year,
plus 1900); it governs over the peers, which refuse the first two and read
three-digit years their own ways. So a text that all three refuse but any
of them reads once its comments and the white space around its colons are
taken out, and a three-digit year of the space-separated form is written
with four, is no agreed refusal: it goes with the splits, noted with the
verdicts on the plain text.

The peers know few zone names beyond RFC 5322's; the parser reads every
name tzdata and Java's short names give one offset (gen_zone_names.py). So
a kept refusal that a peer reads once each such name in it is written as
its offset ("GaMT" as -0900, Gambier time) is no agreed refusal either: it
goes with the splits, noted with the verdicts on the rewritten text.

Texts are written with C-style escapes (\\t \\r \\n \\\\ \\xHH).
"""
import ctypes
import glob
import gzip
import os
import platform
import random
import re
import subprocess
import tempfile
from datetime import datetime, timedelta, timezone
from email.utils import parsedate_to_datetime

from gen_parser_tables import esc
from gen_zone_names import AMBIGUOUS, RFC_NAMES, zone_offsets

HERE = os.path.dirname(os.path.abspath(__file__))
SEED = 20240307
MUTANTS = 30000          # mutated texts drawn
REAL_KEPT = 1500         # unmutated changelog dates asked about
AGREED_ROWS = 5500       # cap of agreed-instant rows written
REFUSED_ROWS = 2200      # cap of all-refuse rows written
SPLIT_ROWS = 2500        # cap of split rows written
EPOCH = datetime(1970, 1, 1, tzinfo=timezone.utc)

# Mail and HTTP shapes beyond what changelogs hold.
HAND_SHAPES = [
    "Thu, 07 Mar 2024 09:05:03 +0100",
    "7 Mar 2024 09:05:03 -0500",
    "07 Mar 2024 09:05 +0000",
    "Thu, 7 Mar 2024 9:05:03 -0800",
    "Thursday, 07 March 2024 09:05:03 +0100",
    "Thu, 07 Mar 2024 09:05:03 GMT",
    "Thu, 07 Mar 2024 09:05:03 UT",
    "Thu, 07 Mar 2024 09:05:03 UTC",
    "Thu, 07 Mar 2024 09:05:03 EST",
    "Thu, 07 Mar 2024 09:05:03 EDT",
    "Thu, 07 Mar 2024 09:05:03 CST",
    "Thu, 07 Mar 2024 09:05:03 CDT",
    "Thu, 07 Mar 2024 09:05:03 MST",
    "Thu, 07 Mar 2024 09:05:03 MDT",
    "Thu, 07 Mar 2024 09:05:03 PST",
    "Thu, 07 Mar 2024 09:05:03 PDT",
    "Thu, 07 Mar 2024 09:05:03 Z",
    "Thu, 07 Mar 2024 09:05:03 A",
    "Thu, 07 Mar 2024 09:05:03 N",
    "Thu, 07 Mar 2024 09:05:03 Y",
    "Thu, 07 Mar 2024 09:05:03 -0000",
    "Thu, 07 Mar 2024 09:05:03 +0530",
    "Thu, 07 Mar 2024 09:05:03 -0330",
    "Thu, 07 Mar 2024 09:05:03 +1245",
    "Thu, 07 Mar 2024 09:05:03 +1400",
    "Thu, 07 Mar 2024 09:05:03 -1200",
    "Thu, 07 Mar 24 09:05:03 +0100",
    "Tue, 07 Mar 95 09:05:03 -0500",
    "Thu, 07 Mar 124 09:05:03 +0100",
    "Thu, 07 Mar 2024 09:05:03 +0100 (CET)",
    "Thu, 07 Mar 2024 01:05:03 -0800 (PST)",
    "Thu, 07 Mar 2024 09:05:03 +0000 (UTC)",
    "Thu, 07 Mar 2024 09:05:03 +0000 (Coordinated Universal Time)",
    "Thu, 07 Mar 2024 09:05:03 +0200 (GMT+02:00)",
    "(Thursday) 07 Mar 2024 09:05:03 +0100",
    "Thu,\r\n 07 Mar 2024 09:05:03\r\n +0100",
    "Thu,  07  Mar  2024  09:05:03  +0100",
    "Thu,\t07 Mar 2024\t09:05:03 +0100",
    "  Thu, 07 Mar 2024 09:05:03 +0100  ",
    "Thursday, 07-Mar-24 09:05:03 GMT",
    "Sunday, 06-Nov-94 08:49:37 GMT",
    "Thu Mar  7 09:05:03 2024",
    "Sun Nov  6 08:49:37 1994",
    "Sun, 06 Nov 1994 08:49:37 GMT",
    "Thu, 07-Mar-2024 09:05:03 GMT",
    "Wed, 21-Oct-2015 07:28:00 GMT",
    "Thu Mar 07 2024 10:05:03 GMT+0100 (Central European Standard Time)",
    "Thu Mar 07 2024 04:05:03 GMT-0500 (Eastern Standard Time)",
    "thu, 07 mar 2024 09:05:03 gmt",
    "THU, 07 MAR 2024 09:05:03 +0100",
    "Fri, 07 Mar 2024 09:05:03 +0100",
    "Thu, 01 Jan 1970 00:00:00 GMT",
    "Wed, 31 Dec 1969 23:59:58 GMT",
    "Mon, 01 Jan 1900 00:00:00 +0000",
    "Fri, 31 Dec 1999 23:59:59 -0000",
    "Tue, 29 Feb 2000 12:00:00 +0900",
    "Tue, 19 Jan 2038 03:14:08 +0000",
    "Sun, 07 Feb 2106 06:28:16 +0000",
    "Fri, 31 Dec 9999 23:59:59 +0000",
    "Sat, 31 Dec 2016 23:59:60 +0000",
    "Thu, 30 Feb 2024 09:05:03 +0100",
    "Thu, 07 Mar 2024 24:00:00 +0100",
    "Sat, 01 Jun 2024 12:34:56 +0200",
    "Mon, 30 Sep 2024 23:45:00 -0700",
    "Tue, 31 Dec 2024 00:00:00 +1300",
]

# Words that follow a complete date and zone in real headers.
TRAILERS = [" GMT", " -0800 GMT", " (UTC) +0100", " junk", " +0100", " UTC",
            " (CET)", " GMT GMT", " x", " 2024", " (Central European Time)",
            " +0000 (UTC) +0100", " ()", " EST", " -", " 12:00"]
DAY_NAME = re.compile(rb"^\s*\(?[A-Za-z]{3,9}")


def changelog_dates():
    """Every date of a ' -- Name <mail>  date' trailer, each once, sorted."""
    trailer = re.compile(rb"^ -- .*?>  (.*?)\s*$")
    found = set()
    for path in sorted(glob.glob("/usr/share/doc/*/changelog.Debian.gz")):
        with gzip.open(path) as f:
            for line in f:
                m = trailer.match(line)
                if m and b"\0" not in m.group(1):
                    found.add(m.group(1))
    return sorted(found)


# ---- Mutations: each takes the text and the random source -----------------

def at(rng, text):
    return rng.randrange(len(text) + 1)


def drop(rng, t):
    i = rng.randrange(len(t))
    return t[:i] + t[i + 1:]


def double(rng, t):
    i = rng.randrange(len(t))
    return t[:i + 1] + t[i:]


def insert(rng, t):
    i = at(rng, t)
    return t[:i] + bytes([rng.choice(b" \t,:+-()0123456789aZxMT./")]) + t[i:]


def change_case(rng, t):
    how = rng.randrange(3)
    if how == 0:
        return t.upper()
    if how == 1:
        return t.lower()
    i = rng.randrange(len(t))
    return t[:i] + t[i:i + 1].swapcase() + t[i + 1:]


def trailing_word(rng, t):
    return t + rng.choice(TRAILERS).encode()


def comment(rng, t):
    spaces = [m.start() for m in re.finditer(rb" ", t)] or [len(t)]
    i = rng.choice(spaces)
    return t[:i] + b" (" + rng.choice([b"c", b"x (y) z", b"Thu", b"+0100", b""]) + b")" + t[i:]


def tab(rng, t):
    spaces = [m.start() for m in re.finditer(rb" ", t)]
    if not spaces or rng.random() < 0.3:
        i = at(rng, t)
        return t[:i] + b"\t" + t[i:]
    i = rng.choice(spaces)
    return t[:i] + b"\t" + t[i + 1:]


def high_byte(rng, t):
    i = rng.randrange(len(t))
    b = bytes([rng.randrange(128, 256)])
    return t[:i] + b + t[i + (rng.random() < 0.5):]


def one_digit_time(rng, t):  # the first field, or all (count 0)
    return re.sub(rb":0(\d)", rb":\1", t, count=rng.choice([0, 1]))


def stray_after_day_name(rng, t):
    m = DAY_NAME.match(t)
    i = m.end() if m else 0
    return t[:i] + bytes([rng.choice(b"x.;:-_'0Z\x80\xe9")]) + t[i:]


MUTATIONS = [drop, double, insert, change_case, trailing_word, comment, tab,
             high_byte, one_digit_time, stray_after_day_name]


def mutants(rng, real, hand):
    out = []
    for _ in range(MUTANTS):
        base = rng.choice(real) if rng.random() < 0.6 else rng.choice(hand)
        for _ in range(1 if rng.random() < 0.7 else 2):
            base = rng.choice(MUTATIONS)(rng, base)
        if base and b"\0" not in base:
            out.append(base)
    return out


# ---- Peers -----------------------------------------------------------------

def python_verdicts(texts):
    out = []
    for t in texts:
        try:
            dt = parsedate_to_datetime(t.decode("ascii", "surrogateescape"))
            if dt.tzinfo is None:
                dt = dt.replace(tzinfo=timezone.utc)
            out.append((dt - EPOCH) // timedelta(seconds=1))
        except Exception:  # any failure to read is a refusal
            out.append(None)
    return out


def curl_verdicts(texts):
    curl = ctypes.CDLL("libcurl.so.4")
    curl.curl_getdate.restype = ctypes.c_int64
    curl.curl_getdate.argtypes = [ctypes.c_char_p, ctypes.c_void_p]
    # On a 64-bit time_t nothing is clamped but years before 1583 are
    # refused; 1969-12-31 23:59:59 comes back as 0 so that -1 stays the refusal.
    return [None if (v := curl.curl_getdate(t, None)) == -1 else v for t in texts]


def go_verdicts(texts):
    with tempfile.TemporaryDirectory() as tmp:
        exe = os.path.join(tmp, "netmail_date")
        subprocess.run(["go", "build", "-o", exe,
                        os.path.join(HERE, "peers", "netmail_date.go")],
                       check=True, env=dict(os.environ, GOCACHE=os.path.join(tmp, "cache"),
                                            GOFLAGS="-mod=mod", GO111MODULE="off"))
        lines = "".join(t.hex() + "\n" for t in texts)
        res = subprocess.run([exe], input=lines, capture_output=True, text=True, check=True)
    return [None if v == "-" else int(v) for v in res.stdout.split("\n")[:len(texts)]]


def versions():
    curl = ctypes.CDLL("libcurl.so.4")
    curl.curl_version.restype = ctypes.c_char_p
    go = subprocess.run(["go", "version"], capture_output=True, text=True).stdout.split()[2]
    return f"Python {platform.python_version()}, {curl.curl_version().decode().split()[0]}, {go}"


def ask_all(texts):
    return list(zip(python_verdicts(texts), curl_verdicts(texts), go_verdicts(texts)))


COMMENT = re.compile(rb"\([^()]*\)")
COLON_SPACE = re.compile(rb"(\d)[ \t\r\n]*:[ \t\r\n]*(?=\d)")
# day, month name, a three-digit year: the space-separated form only.
OBS_YEAR = re.compile(rb"(\d[ \t\r\n]+[A-Za-z]{3,9}[ \t\r\n]+)(\d{3})(?=[ \t\r\n])")


def without_comments(text):
    while (bare := COMMENT.sub(b" ", text)) != text:
        text = bare
    return text


def plain(text):
    """The text without RFC 5322's obsolete syntax that no peer reads, and
    what was taken out."""
    bare = without_comments(text)
    taken = ["comments"] if bare != text else []
    tight = COLON_SPACE.sub(rb"\1:", bare)
    if tight != bare:
        taken.append("white space around the time's colons")
    wide = OBS_YEAR.sub(lambda m: m[1] + b"%d" % (int(m[2]) + 1900), tight)
    if wide != tight:
        taken.append("a three-digit year")
    return wide, ", ".join(taken)


def settle_obsolete_syntax(refused):
    """A refused text that any peer reads once its obsolete syntax is taken
    out (see the module's docstring) is no agreed refusal: it goes with the
    splits, with the verdicts on the plain text as its note."""
    kept, moved = [], []
    bare = [plain(t) for t, _ in refused]
    asked = [i for i, (t, _) in enumerate(refused) if bare[i][1]]
    answers = dict(zip(asked, ask_all([bare[i][0] for i in asked])))
    for i, row in enumerate(refused):
        again = answers.get(i, (None, None, None))
        if again == (None, None, None):
            kept.append(row)
        else:
            note = f"without {bare[i][1]}: " + " ".join(map(verdict, again))
            moved.append((row[0], "-", "-", "-", note))
    return kept, moved


WORD = re.compile(rb"[A-Za-z]+")


def settle_zone_names(refused):
    """Kept refusals split into those that stay and those a peer reads with
    the zone names the peers do not know written as offsets (see the
    module's docstring), the latter as split rows."""
    names = {n.encode(): v for n, v in zone_offsets().items()
             if v is not AMBIGUOUS and n not in RFC_NAMES}

    def as_offset(m):
        minutes = names.get(m[0].upper())
        if minutes is None:
            return m[0]
        sign = b"-" if minutes < 0 else b"+"
        return sign + b"%02d%02d" % divmod(abs(minutes), 60)

    rewritten = [WORD.sub(as_offset, unescape_text(t)) for t, _ in refused]
    asked = [i for i, (t, _) in enumerate(refused) if rewritten[i] != unescape_text(t)]
    answers = dict(zip(asked, ask_all([rewritten[i] for i in asked])))
    kept, moved = [], []
    for i, row in enumerate(refused):
        again = answers.get(i, (None, None, None))
        if again == (None, None, None):
            kept.append(row)
        else:
            note = "zone names as offsets: " + " ".join(map(verdict, again))
            moved.append((row[0], "-", "-", "-", note))
    return kept, moved


def unescape_text(escaped):
    return escaped.encode().decode("unicode_escape").encode("latin-1")


# ---- Tables ----------------------------------------------------------------

def verdict(v):
    return "-" if v is None else str(v)


def write(name, header, rows):
    with open(os.path.join(HERE, name), "w") as f:
        f.write("\n".join("# " + h for h in header) + "\n")
        for r in rows:
            f.write("\t".join(r) + "\n")


def main():
    rng = random.Random(SEED)
    real = changelog_dates()
    hand = [s.encode() for s in HAND_SHAPES]
    texts = hand + rng.sample(real, min(REAL_KEPT, len(real))) + mutants(rng, real, hand)
    hand = set(hand)
    texts = list(dict.fromkeys(texts))  # each text once, first drawn first
    agreed, refused, split = [], [], []
    for t, (p, c, g) in zip(texts, ask_all(texts)):
        if c == 0 and p == g == -1:
            c = -1  # curl's answer for the second before 1970
        if p == c == g:
            (refused if p is None else agreed).append((t, verdict(p)))
        else:
            split.append((t, verdict(p), verdict(c), verdict(g)))
    refused, obsolete = settle_obsolete_syntax(refused)
    split += obsolete
    counts = (f"{len(texts)} texts: {len(agreed)} agreed, {len(refused)} all refused,"
              f" {len(split)} split or read only without obsolete syntax")
    print(counts)

    def keep(rows, cap):
        """Every hand-picked shape, then a fixed draw of the rest, in drawn order."""
        chosen = [i for i, r in enumerate(rows) if r[0] in hand]
        rest = [i for i, r in enumerate(rows) if r[0] not in hand]
        chosen += rng.sample(rest, max(0, min(cap - len(chosen), len(rest))))
        return [(esc(rows[i][0]),) + rows[i][1:] for i in sorted(chosen)]

    kept_agreed = keep(agreed, AGREED_ROWS)  # drawn in this order
    kept_refused, named = settle_zone_names(keep(refused, REFUSED_ROWS))
    peers = f"peers: {versions()}"
    write("rfc822_peers.tsv",
          ["Generated by tests/data/gen_peer_dates.py; do not edit.",
           peers, counts + "; a fixed draw of them follows.",
           "text (C escapes)\tUnix seconds, or - when all three refuse"],
          kept_agreed + kept_refused)
    write("rfc822_peer_splits.tsv",
          ["Generated by tests/data/gen_peer_dates.py; do not edit. Read by no test.",
           peers, counts + "; a fixed draw of the splits follows.",
           "text (C escapes)\tPython email.utils\tlibcurl curl_getdate\tGo net/mail"
           "\t[note]  (Unix seconds, - refuses)"],
          keep(split, SPLIT_ROWS) + named)


if __name__ == "__main__":
    main()
