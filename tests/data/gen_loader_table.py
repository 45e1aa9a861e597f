#!/usr/bin/env python3
"""Writes loader_cases.tsv: date texts of every form the free-form loader
tells apart, with the value each must leave, computed by Python.

Instants come from datetime (JSON milliseconds, Unix seconds, ISO texts) and
email.utils (RFC 822 texts); weekdays from datetime. Which fields a form keeps
from the value it is loaded into is the loader's contract, written out per
form below.

    python3 tests/data/gen_loader_table.py
"""
from datetime import datetime, timedelta, timezone
from email.utils import parsedate_to_datetime
from pathlib import Path

from gen_parser_tables import esc  # the tables' C escapes

HERE = Path(__file__).resolve().parent
UTC = timezone.utc
EPOCH = datetime(1970, 1, 1)

# The value a row is loaded into: "fresh" is a new value; "marked" is local,
# 250 ms, m_isDst 1, wDayOfWeek 6, m_bFlagA false, from an unknown zone.
FRESH = dict(ms=0, local=0, unknown=0, isdst=-1, flag_a=1)
MARKED = dict(ms=250, local=1, unknown=1, isdst=1, flag_a=0)


def wday(d):
    return (d.weekday() + 1) % 7


def json_case(text, ms, hhmm=0):
    """The loader's JSON reading: whole hours of the suffix, milliseconds dropped."""
    hours = int(hhmm / 100)  # truncates toward zero, as the suffix rule does
    seconds = int(ms / 1000)
    d = EPOCH + timedelta(seconds=seconds - hours * 3600)
    return text, d, 0, dict(FRESH)


def rows():
    cases = []  # (text, local flag, prior, result, datetime or None, wday override, after)

    def add(text, d, prior="fresh", local_flag=0, result=1, after=None, wd=None):
        base = dict(FRESH) if after is None else after
        cases.append((text, local_flag, prior, result, d, wd, base))

    # 1. JSON milliseconds, with and without a zone suffix.
    for text, ms, hhmm in [
        ("/Date(1700000000000)/", 1700000000000, 0),
        ("/Date(1700000000000+0100)/", 1700000000000, 100),
        ("/Date(1700000000000-0500)/", 1700000000000, -500),
        ("/Date(1700000000999)/", 1700000000999, 0),
        ("/Date(1700000000000+0530)/", 1700000000000, 530),
        ("/Date(1700000000000-0530)/", 1700000000000, -530),
        ("Date(2024/03/07)", 20240307, 0),
        ("  /Date( 1700000000000 )/  ", 1700000000000, 0),
        ("/Date(0)/", 0, 0),
        ("/Date(4294967295000)/", 4294967295000, 0),
        ("/Date(-86400000)/", -86400000, 0),
        ("/Date(-1500)/", -1500, 0),
        ("/Date(-86400000+0100)/", -86400000, 100),
        ("/Date(253402300799000)/", 253402300799000, 0),
        ("/Date()/", 0, 0),
    ]:
        _, d, _, _ = json_case(text, ms, hhmm)
        add(text, d, prior="marked")
    # An escaped JSON text keeps its backslashes, so no number is read.
    add("\\/Date(1700000000000)\\/", EPOCH, prior="marked")

    # 2. Atom: taken by the Atom reader, stored as GMT with milliseconds.
    for text in ["2024-03-07T09:05:03Z", "2024-03-07T09:05:03.123Z", "1999-12-31T23:59:59.9999Z",
                 "2024-03-07T09:05:03+0530", "2024-03-07T09:05:03-05"]:
        iso = text.replace("Z", "+00:00")
        if iso[-5] in "+-" and ":" not in iso[-5:]:
            iso = iso[:-2] + ":" + iso[-2:]
        if iso[-3] in "+-":
            iso += ":00"
        d = datetime.fromisoformat(iso).astimezone(UTC).replace(tzinfo=None)
        ms = d.microsecond // 1000
        add(text, d.replace(microsecond=0), prior="marked", after=dict(FRESH, ms=ms, flag_a=0))

    # Texts that look like Atom to the counts but go to the RFC 822 parser:
    # three ':' (an offset with a colon), no 'T', a lower-case 't'.
    for text, d, unknown in [
        ("2024-03-07T09:05:03+05:30", datetime(2024, 3, 7, 3, 35, 3), 0),
        ("2024-03-07 09:05:03", datetime(2024, 3, 7, 9, 5, 3), 1),
        ("2024-03-07t09:05:03Z", datetime(2024, 3, 7, 9, 5, 3), 0),
    ]:
        add(text, d, prior="marked", after=dict(FRESH, unknown=unknown, flag_a=0))
    # Passes the Atom counts, is refused there, and ends with the RFC 822 parser.
    rfc850 = "Thu, 07-Mar-2024 09:05:03 GMT"
    add(rfc850, parsedate_to_datetime(rfc850).astimezone(UTC).replace(tzinfo=None),
        prior="marked", after=dict(FRESH, flag_a=0))

    # 3. GeneralizedTime with a fraction: no weekday, milliseconds 0.
    add("20240307090503.123Z", datetime(2024, 3, 7, 9, 5, 3), prior="marked", wd=0)
    add("20241307090503.123Z", None, prior="marked", wd=0)  # stored unchecked: month 13
    # 19 bytes ending in Z but '.' elsewhere, or a failed scan: the RFC 822 parser refuses.
    add("20240307090503,123Z", None, prior="marked", result=0)
    add("202403070905ab.123Z", None, prior="marked", result=0)

    # 4. Unix seconds; the local flag marks them local without shifting.
    for text in ["1700000000", "0", "4294967295", "20240307"]:
        add(text, EPOCH + timedelta(seconds=int(text)), prior="marked")
    add("1700000000", EPOCH + timedelta(seconds=1700000000), local_flag=1,
        after=dict(FRESH, local=1))
    add("99999999999", EPOCH + timedelta(seconds=2**32 - 1))  # saturates at the 32-bit end

    # 5 and 6. UTCTime and GeneralizedTime keep zone flag, m_isDst, ms and carried flags.
    for text, d in [("240307090503Z", datetime(2024, 3, 7, 9, 5, 3)),
                    ("990307090503Z", datetime(1999, 3, 7, 9, 5, 3)),
                    ("491231235959Z", datetime(2049, 12, 31, 23, 59, 59)),
                    ("500101000000Z", datetime(1950, 1, 1, 0, 0, 0)),
                    ("20240307090503Z", datetime(2024, 3, 7, 9, 5, 3)),
                    ("19500101000000Z", datetime(1950, 1, 1, 0, 0, 0))]:
        add(text, d, prior="marked", after=dict(MARKED))
        add(text, d, prior="fresh", after=dict(FRESH))
    # A non-digit in the year: zpUIntValueN over the four year bytes stops at
    # it, so "20 4" is the year 20.
    add("20 40307090503Z", datetime(20, 3, 7, 9, 5, 3), prior="marked", after=dict(MARKED))
    # A zero byte inside the 15: the fields are still stored, the minute
    # field stopping at the zero (0), and no byte past the 15 is read.
    add("2024030709\x00503Z", datetime(2024, 3, 7, 9, 0, 3), prior="marked",
        after=dict(MARKED))
    # 13 bytes with a zero inside: fromX509 refuses the short text, and the
    # loader, which does not look at its result, keeps the value as it was.
    add("24030709\x00503Z", datetime(2001, 2, 3, 4, 5, 6), prior="marked", after=dict(MARKED),
        wd=6)
    # 13 bytes but with '-': the RFC 822 parser decides.
    add("24-03-070905Z", None, prior="marked", result=0)

    # 7. RFC 822 and the rest.
    for text in ["Thu, 07 Mar 2024 09:05:03 GMT", "7 Mar 2024 10:05 +0100",
                 "Thu, 07 Mar 2024 09:05:03 -0800 GMT",
                 "Sun, 06 Nov 1994 08:49:37 GMT", "Sunday, 06-Nov-94 08:49:37 GMT",
                 "Sun Nov  6 08:49:37 1994"]:
        d = parsedate_to_datetime(text)
        unknown = 1 if d.tzinfo is None else 0  # asctime states no zone
        d = d.astimezone(UTC).replace(tzinfo=None) if d.tzinfo else d
        add(text, d, prior="marked", after=dict(FRESH, unknown=unknown, flag_a=0))
    for text in ["garbage", "", "Thu, 32 Mar 2024 09:05:03 GMT", "12345678901234567890x",
                 "Mar  7 09:05:03"]:
        add(text, None, prior="marked", result=0)
    # Shapes only the date parser reads, as common software writes them.
    for text, d, unknown, ms in [
        ("2024-03-07T10:05:03.123+01:00[Europe/Berlin]", datetime(2024, 3, 7, 9, 5, 3), 0, 123),
        ("2024-03-07T10:05+01:00[Europe/Berlin]", datetime(2024, 3, 7, 9, 5), 0, 0),
        ("2024-03-07 10:05:03.123456789 +0100 CET", datetime(2024, 3, 7, 9, 5, 3), 0, 123),
        ("1709802303.123456", EPOCH + timedelta(seconds=1709802303), 0, 123),
        ("2024-03-07", datetime(2024, 3, 7), 1, 0),
        ("07/Mar/2024:09:05:03 +0000", datetime(2024, 3, 7, 9, 5, 3), 0, 0),
    ]:
        add(text, d, prior="marked", after=dict(FRESH, unknown=unknown, flag_a=0, ms=ms))

    out = []
    for text, local_flag, prior, result, d, wd, after in cases:
        if result and d is not None:
            f = [d.year, d.month, d.day, d.hour, d.minute, d.second, wday(d) if wd is None else wd]
        elif result:  # month 13 row: fields as written in the text
            f = [2024, 13, 7, 9, 5, 3, wd]
        else:
            f = ["-"] * 7  # refused: the fields are not checked
        out.append([text, local_flag, prior, result] + f +
                   [after["ms"], after["local"], after["unknown"], after["isdst"], after["flag_a"]])
    return out


def main():
    with open(HERE / "loader_cases.tsv", "w") as f:
        f.write("# Generated by gen_loader_table.py; do not edit. Texts in C escapes.\n")
        f.write("# text local_flag prior result | Y M D h m s wday | ms bLocal unknownTz isDst flagA\n")
        for r in rows():
            f.write("\t".join([esc(r[0].encode("latin-1"))] + [str(x) for x in r[1:]]) + "\n")


if __name__ == "__main__":
    main()
