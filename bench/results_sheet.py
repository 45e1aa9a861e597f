#!/usr/bin/env python3
"""Turns one zephal_bench JSON run (plus the TZ-unset run and the batch
timings) into bench/RESULTS.md: for each operation, ours and each peer in
ns/op and the ratio, from that one run.

Rows are named BM_<Operation>_<Implementation>. Where a peer reads only
some of the texts, BM_<Operation>_Ours_On<Peer>Texts times ours on the same
texts, and the ratio uses it. The ratio is peer time / our time: above 1
means ours is faster. Floor and Baseline rows are hand-written code doing
the bare minimum of the same work.

    results_sheet.py RUN.json TZ_UNSET.json BATCH.json MACHINE.txt > RESULTS.md
"""
import json
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


def goal_lines(rows, batch):
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
        if op.startswith("Write") or (op.startswith("Load") and op != "LoadRfc822"):
            p = fastest_peer(rows, op)
            if p:
                add(f"{op}: >= 3x the fastest peer", f"{p[1] / p[2]:.1f}x ({p[0]})", p[1] / p[2] >= 3)
    ours, p = rows.get("BM_LoadRfc822_Ours"), fastest_peer(rows, "ParseRfc1123")
    if ours and p:
        add("LoadRfc822: >= 5x the fastest peer's RFC 1123 parse", f"{p[1] / ours:.1f}x ({p[0]})",
            p[1] / ours >= 5)
    for op in sorted({split(n)[0] for n in rows}):
        base = rows.get(f"BM_{op}_Baseline")
        if base and f"BM_{op}_Ours" in rows:
            r = rows[f"BM_{op}_Ours"] / base
            add(f"{op}: within 3x of the bare arithmetic", f"{r:.1f}x the baseline", r <= 3)
    if batch:
        add("batch: >= 20x GNU date", f"{batch['ratio']:.1f}x", batch["ratio"] >= 20)
        add("batch: >= 2 million lines/s", f"{batch['lines_per_second'] / 1e6:.2f} M lines/s",
            batch["lines_per_second"] >= 2e6)
    return "\n".join(lines) + "\n"


def main():
    rows, notes = load_rows(sys.argv[1])
    unset_rows, _ = load_rows(sys.argv[2])
    batch = json.load(open(sys.argv[3]))
    machine = open(sys.argv[4]).read().strip()
    print(f"# Performance sheet\n\nMeasured on {date.today().isoformat()} by `bench/run_benchmarks.sh`, "
          "the median of three repetitions of each benchmark in one run.\n")
    print(f"Machine:\n\n```\n{machine}\n```\n")
    print("Times are CPU time per operation (per text where a row reads several texts). "
          "Run with TZ set to a rule string, except the second local-path table.\n")
    print("## Goals\n")
    print(goal_lines(rows, batch))
    print("## Batch conversion: 1,000,000 RFC 822 lines to ISO 8601\n")
    print(f"| command | mean wall time | lines/s |\n|---|---:|---:|")
    for cmd in batch["commands"]:
        print(f"| `{cmd['command']}` | {cmd['mean']:.3f} s | {1e6 / cmd['mean'] / 1e6:.2f} M |")
    print(f"\nzpdate is {batch['ratio']:.1f}x faster than GNU date on the same file; both outputs are identical.\n")
    print("## Benchmarks\n")
    print(table(rows, notes, "Parsing", lambda op: op.startswith("Parse")))
    print(table(rows, notes, "The free-form loader, each form", lambda op: op.startswith("Load")))
    print(table(rows, notes, "Writing", lambda op: op.startswith("Write")))
    print(table(rows, notes, "Legacy formats", lambda op: not op.startswith(("Parse", "Load", "Write", "Local"))))
    print(table(rows, notes, "Local paths, TZ set", lambda op: op.startswith("Local")))
    print(table(unset_rows, {}, "Local paths, TZ unset (glibc checks the zone file on every call)",
                lambda op: op.startswith("Local")))


if __name__ == "__main__":
    main()
