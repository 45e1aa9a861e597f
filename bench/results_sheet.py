#!/usr/bin/env python3
"""Turns one zephal_bench JSON run (plus the TZ-unset run, the fast-path run
and the batch rounds) into bench/RESULTS.md: for each operation, ours and
each peer in ns/op and the ratio, from that one run.

Rows are named BM_<Operation>_<Implementation>. Where a peer reads only
some of the texts, BM_<Operation>_Ours_On<Peer>Texts times ours on the same
texts, and the ratio uses it. The ratio is peer time / our time: above 1
means ours is faster. Floor and Baseline rows are hand-written code doing
the bare minimum of the same work. BM_Path<Name>_On/_Off time one fast path
on and off. Each batch round is a hyperfine JSON run with one time per
command; the sheet takes each command's median over the rounds. SERIAL.txt holds
zpdate_serial's report of each round (the serial part of -j N), START.json
the time of a run on an empty file.

    results_sheet.py RUN.json TZ_UNSET.json PATHS.json MACHINE.txt LINES.txt SERIAL.txt START.json ROUND.json... > RESULTS.md
    results_sheet.py --batch MACHINE.txt LINES.txt SERIAL.txt START.json ROUND.json...  # batch rows
"""
import json
import statistics
import sys
from collections import OrderedDict
from datetime import date

UNIT = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}


def load_rows(path):
    rows, notes = OrderedDict(), {}
    for b in json.load(open(path))["benchmarks"]:
        if b.get("run_type") == "aggregate" and b.get("aggregate_name") != "median":
            continue
        name = b.get("run_name", b["name"])
        if b.get("error_occurred"):
            notes[name] = b.get("error_message", "error")
            continue
        ns = b["per_text"] * 1e9 if "per_text" in b else b["cpu_time"] * UNIT[b["time_unit"]]
        rows[name] = ns
        if b.get("label"):
            notes[name] = b["label"]
    return rows, notes


def split(name):
    _, op, impl = name.split("_", 2)
    return op, impl


def operations(rows):
    ops = OrderedDict()
    for name in rows:
        op, impl = split(name)
        if not impl.startswith("Ours_On"):
            ops.setdefault(op, []).append(impl)
    return ops


def table(rows, notes, title, select):
    out = [f"### {title}", "", "| operation | implementation | ns/op | ratio (theirs / ours) | note |",
           "|---|---|---:|---:|---|"]
    for op, impls in operations(rows).items():
        if not select(op):
            continue
        ours = rows.get(f"BM_{op}_Ours")
        for impl in impls:
            t = rows[f"BM_{op}_{impl}"]
            same = rows.get(f"BM_{op}_Ours_On{impl}Texts", ours)
            ratio = "" if impl == "Ours" or same is None else f"{t / same:.2f}"
            note = notes.get(f"BM_{op}_{impl}", "")
            if same is not ours and same is not None and impl != "Ours":
                note = (note + "; " if note else "") + f"ours on the same texts: {same:.1f} ns"
            out.append(f"| {op} | {impl} | {t:.1f} | {ratio} | {note} |")
    return "\n".join(out) + "\n"


def fastest_peer(rows, op, exclude=("Ours", "Floor", "Baseline")):
    best = None
    for name, t in rows.items():
        o, impl = split(name)
        if o != op or impl.startswith("Ours") or impl in exclude:
            continue
        same = rows.get(f"BM_{op}_Ours_On{impl}Texts", rows.get(f"BM_{op}_Ours"))
        if best is None or t < best[1]:
            best = (impl, t, same)
    return best


# Loader rows measured against our own RFC 1123 parse, not against peers.
PEERLESS_LOADS = {"LoadRfc822", "LoadProse", "LoadGerman"}


def goal_lines(rows, batch, serial):
    lines = ["| goal | measured | met |", "|---|---|---|"]

    def add(goal, measured, ok):
        lines.append(f"| {goal} | {measured} | {'yes' if ok else 'no'} |")

    for op, need in [("ParseRfc1123", 8), ("ParseRfc822", 8), ("ParseAtom", 3)]:
        p = fastest_peer(rows, op)
        if p:
            add(f"{op}: >= {need}x the fastest peer", f"{p[1] / p[2]:.1f}x ({p[0]})", p[1] / p[2] >= need)
    for op in ["ParseRfc1123", "ParseRfc822"]:
        floor = rows.get(f"BM_{op}_Floor")
        same = rows.get(f"BM_{op}_Ours_OnFloorTexts", rows.get(f"BM_{op}_Ours"))
        if floor and same:
            add(f"{op}: within 3x of the hand-written floor", f"{same / floor:.1f}x the floor",
                same / floor <= 3)
    for op in sorted({split(n)[0] for n in rows}):
        floor = rows.get(f"BM_{op}_Floor")
        if op.startswith("Load") and floor and f"BM_{op}_Ours" in rows:
            r = rows[f"BM_{op}_Ours"] / floor
            add(f"{op}: within 3x of the fair floor", f"{r:.1f}x the floor", r <= 3)
        elif op.startswith("Write") or (op.startswith("Load") and op not in PEERLESS_LOADS):
            p = fastest_peer(rows, op)
            if p:
                add(f"{op}: >= 3x the fastest peer", f"{p[1] / p[2]:.1f}x ({p[0]})", p[1] / p[2] >= 3)
    for op in ["PatternRead", "PatternReadIso"]:
        ours, strptime, absl = (rows.get(f"BM_{op}_{i}") for i in ("Ours", "Strptime", "Absl"))
        if ours and strptime:
            add(f"{op}: >= 3x strptime + timegm", f"{strptime / ours:.1f}x", strptime / ours >= 3)
        if ours and absl:
            add(f"{op}: faster than absl::ParseTime", f"{absl / ours:.1f}x", absl / ours > 1)
    rfc1123 = rows.get("BM_ParseRfc1123_Ours")
    for op in ["LoadProse", "LoadGerman"]:
        ours = rows.get(f"BM_{op}_Ours")
        if ours and rfc1123:
            add(f"{op}: within 2x of the RFC 1123 parse", f"{ours / rfc1123:.2f}x", ours / rfc1123 <= 2)
    ours, p = rows.get("BM_LoadRfc822_Ours"), fastest_peer(rows, "ParseRfc1123")
    if ours and p:
        add("LoadRfc822: >= 5x the fastest peer's RFC 1123 parse", f"{p[1] / ours:.1f}x ({p[0]})",
            p[1] / ours >= 5)
    for op in sorted({split(n)[0] for n in rows}):
        base = rows.get(f"BM_{op}_Baseline")
        if base and f"BM_{op}_Ours" in rows:
            r = rows[f"BM_{op}_Ours"] / base
            need = 2 if op.startswith("Chrono") else 3
            add(f"{op}: within {need}x of the bare arithmetic", f"{r:.1f}x the baseline", r <= need)
    for op in sorted({split(n)[0] for n in rows if split(n)[0].startswith("ZoneWallClock")}):
        ours, cctz, libc = (rows.get(f"BM_{op}_{impl}") for impl in ("Ours", "Cctz", "Localtime"))
        if ours and cctz:
            add(f"{op}: within 2x of cctz's convert", f"{ours / cctz:.2f}x cctz", ours / cctz <= 2)
        if ours and libc:
            add(f"{op}: >= 2x localtime_r, TZ set", f"{libc / ours:.1f}x", libc / ours >= 2)
            add(f"{op}: within 3x of the bare arithmetic", f"{r:.1f}x the baseline", r <= 3)
    for row in batch_goal_rows(batch, serial):
        add(*row)
    return "\n".join(lines) + "\n"


def batch_goal_rows(batch, serial):
    """(goal, measured, met) for the batch rows: one core against the peers,
    -j2 against two single-threaded runs on halves, and the serial part."""
    rows = []
    one = batch.get("rfc1123 zpdate -j1")
    for peer, need in [("GNU date", 30), ("dconv", 5)]:
        theirs = batch.get(f"rfc1123 {peer}")
        if one and theirs:
            rows.append((f"RFC 1123 batch, one core: >= {need}x {peer}", f"{theirs / one:.1f}x",
                         theirs / one >= need))
    for kind, title in [("rfc1123", "RFC 1123"), ("mixed", "Mixed")]:
        two = batch.get(f"{kind} zpdate -j2")
        halves = batch.get(f"{kind} two zpdate -j1 at once, each on half")
        if two and halves:
            rows.append((f"{title} batch: -j2 >= 0.9x two -j1 at once on halves",
                         f"{halves / two:.2f}x ({batch[f'{kind} zpdate -j1'] / two:.2f}x -j1)",
                         halves / two >= 0.9))
    for (kind, way), part in serial.items():
        if way == "file":
            share = serial_share(batch, kind, part)
            rows.append((f"{kind} batch from a file: serial part of -j N < 3% of -j1",
                         f"{100 * share:.1f}% (16 cores: {amdahl(share, 16):.1f}x)", share < 0.03))
    return rows


def serial_parts(path):
    """Each input's serial part, from lines such as "rfc1123 file serial
    lock=S read=S read-cpu=S write=S": each part's median over the rounds."""
    runs = OrderedDict()
    for line in open(path):
        kind, way, _, *fields = line.split()
        runs.setdefault((kind, way), []).append({k: float(v) for k, v in (f.split("=") for f in fields)})
    return OrderedDict((key, {k: statistics.median(r[k] for r in rs) for k in rs[0]})
                       for key, rs in runs.items())


def serial_seconds(batch, part):
    """What runs on one thread only: the lock, a stream's reads (processor
    time: their wall time holds the wait for the writing program), the
    writes, and the process's start and exit (-j2 on an empty file)."""
    return part["lock"] + part["read-cpu"] + part["write"] + batch.get("empty zpdate -j2", 0)


def serial_share(batch, kind, part):
    return serial_seconds(batch, part) / batch[f"{kind} zpdate -j1"]


def amdahl(share, cores):
    return 1 / (share + (1 - share) / cores)


def serial_table(batch, serial):
    out = ["### The serial part of -j N", "",
           "What `zpdate -j2` spends where one thread at a time can be, timed by `zpdate_serial` "
           "(zpdate built with `tools/SerialClock.h` on): the lock held, a pipe's reads (processor "
           "time; their wall time, waiting for `cat`, in brackets), the ordered writes, and the "
           "process's start and exit (`-j2` on an empty file). Its share is of the `-j1` time on a "
           "file; Amdahl's law gives the speed-up that share allows on N cores.", "",
           "| input | lock | reads | writes | start and exit | serial part | share of -j1 "
           "| 4 cores | 8 cores | 16 cores |", "|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|"]
    ms = lambda t: f"{1000 * t:.2f} ms"
    for (kind, way), p in serial.items():
        share = serial_share(batch, kind, p)
        reads = f"{ms(p['read-cpu'])} ({ms(p['read'])})" if way == "pipe" else ms(p["read-cpu"])
        out.append(f"| {kind}, {'a file' if way == 'file' else 'a pipe'} | {ms(p['lock'])} | {reads} "
                   f"| {ms(p['write'])} | {ms(batch.get('empty zpdate -j2', 0))} "
                   f"| {ms(serial_seconds(batch, p))} | {100 * share:.1f}% | "
                   + " | ".join(f"{amdahl(share, n):.1f}x" for n in (4, 8, 16)) + " |")
    return "\n".join(out) + "\n"


def batch_section(batch, counts, serial, rounds):
    print(f"## Batch conversion: {counts['rfc1123']:,} lines to ISO 8601\n")
    print(f"Wall time, the median of {rounds} rounds in which the commands took turns. "
          "Every command's output was compared before timing: byte for byte the same.\n")
    print(batch_table(batch, "rfc1123", counts, "RFC 1123 dates in GMT (HTTP's form)",
                      "`zpdate --to iso -f FILE`, `date -u -f FILE +%Y%m%dT%H%M%SZ`, "
                      "`dateutils.dconv -i '%a, %d %b %Y %H:%M:%S GMT' -f '%Y%m%dT%H%M%SZ'`; "
                      "on a pipe, `cat FILE | zpdate -f -`."))
    print(batch_table(batch, "mixed", counts, "Mixed: every loader form and the shapes software writes",
                      "The loader's seven forms and date(1), asctime, RFC 850, JavaScript, Go, "
                      "Python, git and access-log shapes in turn (`bench/make_batch_lines.py`); "
                      "mixed-gnu holds the lines of the shapes GNU date reads too."))
    print(serial_table(batch, serial))


def batch_medians(paths):
    times = OrderedDict()
    for path in paths:
        for r in json.load(open(path))["results"]:
            times.setdefault(r["command"], []).extend(r["times"])
    return OrderedDict((name, statistics.median(t)) for name, t in times.items())


def batch_table(batch, kind, counts, title, note):
    out = [f"### {title}", "", note, "", "| command | lines | median wall time | lines/s |",
           "|---|---:|---:|---:|"]
    for name, t in batch.items():
        file_kind, command = name.split(" ", 1)
        if file_kind.split("-")[0] != kind:
            continue
        n = counts[file_kind]
        out.append(f"| {command} ({file_kind}) | {n:,} | {t:.3f} s | {n / t / 1e6:.2f} M |")
    return "\n".join(out) + "\n"


def paths_table(rows):
    out = ["| fast path | on, ns/op | off, ns/op | gain |", "|---|---:|---:|---:|"]
    for name, on in rows.items():
        if not name.endswith("_On"):
            continue
        path = name[len("BM_Path"):-len("_On")]
        off = rows.get(f"BM_Path{path}_Off")
        if off:
            out.append(f"| {path} | {on:.1f} | {off:.1f} | {off - on:+.1f} ns ({off / on:.2f}x) |")
    return "\n".join(out) + "\n"


def main():
    if sys.argv[1] == "--batch":  # run_benchmarks.sh batch: the batch goals and section alone
        machine, lines, serial_path, start_path, *round_paths = sys.argv[2:]
    else:
        machine, lines, serial_path, start_path, *round_paths = sys.argv[4:]
    rfc_lines, mixed_lines, gnu_lines = (int(x) for x in open(lines).read().split())
    counts = {"rfc1123": rfc_lines, "mixed": mixed_lines, "mixed-gnu": gnu_lines}
    batch = batch_medians(round_paths + [start_path])
    serial = serial_parts(serial_path)
    if sys.argv[1] == "--batch":
        print(f"Machine:\n\n```\n{open(machine).read().strip()}\n```\n")
        print("| goal | measured | met |\n|---|---|---|")
        for goal, measured, ok in batch_goal_rows(batch, serial):
            print(f"| {goal} | {measured} | {'yes' if ok else 'no'} |")
        print()
        batch_section(batch, counts, serial, len(round_paths))
        return
    rows, notes = load_rows(sys.argv[1])
    unset_rows, _ = load_rows(sys.argv[2])
    path_rows, _ = load_rows(sys.argv[3])
    print(f"# Performance sheet\n\nMeasured on {date.today().isoformat()} by `bench/run_benchmarks.sh`, "
          "the median of three repetitions of each benchmark in one run.\n")
    print(f"Machine:\n\n```\n{open(machine).read().strip()}\n```\n")
    print("Times are CPU time per operation (per text where a row reads several texts). "
          "Run with TZ set to a rule string, except the second local-path table.\n")
    print("## Goals\n")
    print(goal_lines(rows, batch, serial))
    batch_section(batch, counts, serial, len(round_paths))
    print("## Fast paths, each switched off\n")
    print("The operation each path serves, from a build of the library in which the benchmark "
          "switches one path off at a time (`bench/PathSwitches.cpp`).\n")
    print(paths_table(path_rows))
    print("## Benchmarks\n")
    print(table(rows, notes, "Parsing", lambda op: op.startswith("Parse")))
    print(table(rows, notes, "The free-form loader, each form", lambda op: op.startswith("Load")))
    print(table(rows, notes, "Writing", lambda op: op.startswith("Write")))
    print(table(rows, notes, "Pattern layouts (zpParseDate, zpFormatDate)",
                lambda op: op.startswith("Pattern")))
    print(table(rows, notes, "Legacy formats and std::chrono",
                lambda op: not op.startswith(("Parse", "Load", "Write", "Local", "Zone", "Pattern"))))
    print(table(rows, notes, "Named zones (zephal::zones)", lambda op: op.startswith("Zone")))
    print(table(rows, notes, "Local paths, TZ set", lambda op: op.startswith("Local")))
    print(table(unset_rows, {}, "Local paths, TZ unset (glibc checks the zone file on every call)",
                lambda op: op.startswith("Local")))


if __name__ == "__main__":
    main()
