#!/usr/bin/env bash
# Builds the benchmarks and zpdate, runs everything once, and writes
# bench/RESULTS.md. Needs the bench preset's packages (Google Benchmark; the
# peer libraries are optional), python3 and hyperfine.
#
#   bench/run_benchmarks.sh            # about 10 minutes on two cores
set -euo pipefail
cd "$(dirname "$0")/.."

cmake --workflow --preset bench
bin=build/bench/bench/zephal_bench
zpdate=build/bench/tools/zpdate
work=build/bench/results
mkdir -p "$work"
{
  grep -m1 'model name' /proc/cpuinfo | sed 's/.*: //'
  echo "$(nproc) cores, $(uname -sr), $(g++ --version | head -1)"
  echo "load average when the run started: $(cut -d' ' -f1-3 /proc/loadavg)"
} >"$work/machine.txt"

# Medians of three repetitions: the machines this runs on are shared.
# Local paths go through mktime: measured once with TZ set, once unset.
TZ='CET-1CEST,M3.5.0,M10.5.0/3' "$bin" --benchmark_min_time=0.2 --benchmark_repetitions=3 \
  --benchmark_report_aggregates_only=true \
  --benchmark_format=json --benchmark_out="$work/run.json" --benchmark_out_format=json >/dev/null
env -u TZ "$bin" --benchmark_filter='BM_Local' --benchmark_min_time=0.2 --benchmark_repetitions=3 \
  --benchmark_report_aggregates_only=true \
  --benchmark_out="$work/tz-unset.json" --benchmark_out_format=json >/dev/null

# Batch: 1,000,000 RFC 822 lines to ISO 8601, zpdate against GNU date.
lines="$work/rfc822-1m.txt"
[ -f "$lines" ] || python3 bench/make_rfc822_lines.py "$lines" 1000000
"$zpdate" --to iso -f "$lines" >"$work/zpdate.out"
date -u -f "$lines" +%Y%m%dT%H%M%SZ >"$work/date.out"
cmp "$work/zpdate.out" "$work/date.out"  # the same answers, or the timing means nothing
hyperfine --warmup 1 --runs 5 --export-json "$work/hyperfine.json" \
  "$zpdate --to iso -f $lines" "date -u -f $lines +%Y%m%dT%H%M%SZ" >/dev/null
python3 - "$work/hyperfine.json" >"$work/batch.json" <<'PY'
import json, sys
r = json.load(open(sys.argv[1]))["results"]
ours, gnu = r[0]["mean"], r[1]["mean"]
print(json.dumps({"commands": [{"command": x["command"].replace("build/bench/results/", ""),
                                "mean": x["mean"]} for x in r],
                  "ratio": gnu / ours, "lines_per_second": 1e6 / ours}))
PY

python3 bench/results_sheet.py "$work/run.json" "$work/tz-unset.json" "$work/batch.json" \
  "$work/machine.txt" >bench/RESULTS.md
echo "wrote bench/RESULTS.md"
