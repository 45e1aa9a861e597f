#!/usr/bin/env bash
# Builds the benchmarks and zpdate, runs everything once, and writes
# bench/RESULTS.md. Installs what it measures against when missing (Debian
# packages), as the README's Quick start does, and fails rather than leave a
# peer out.
#
#   bench/run_benchmarks.sh            # about 4 minutes on two cores
set -euo pipefail
cd "$(dirname "$0")/.."

peers=(cmake ninja-build g++ python3 libbenchmark-dev libabsl-dev libcurl4-openssl-dev
  libboost-date-time-dev libhowardhinnant-date-dev libfmt-dev libcctz-dev hyperfine dateutils)
dpkg -s "${peers[@]}" >/dev/null 2>&1 || { apt-get update && apt-get install -y "${peers[@]}"; }

cmake --preset bench -DZEPHAL_BENCH_ALL_PEERS=ON
cmake --build --preset bench
bin=build/bench/bench/zephal_bench
paths=build/bench/bench/zephal_bench_paths
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
json=(--benchmark_min_time=0.2 --benchmark_repetitions=3 --benchmark_report_aggregates_only=true
  --benchmark_out_format=json)
TZ='CET-1CEST,M3.5.0,M10.5.0/3' "$bin" "${json[@]}" --benchmark_out="$work/run.json" >/dev/null
env -u TZ "$bin" --benchmark_filter='BM_Local' "${json[@]}" --benchmark_out="$work/tz-unset.json" >/dev/null
"$paths" "${json[@]}" --benchmark_out="$work/paths.json" >/dev/null

# Batch: a million lines of each kind. Every command's output is compared
# first: a timing of different answers means nothing.
rfc="$work/rfc1123-1m.txt"
mixed="$work/mixed-1m.txt"
[ -f "$rfc" ] || python3 bench/make_batch_lines.py rfc1123 "$rfc"
[ -f "$mixed" ] || python3 bench/make_batch_lines.py mixed "$mixed"
# The most two cores can give, whatever -j does: two single-threaded runs at
# once, each on half of the lines.
half=$((($(wc -l <"$rfc") + 1) / 2))
head -n "$half" "$rfc" >"$work/rfc-half1.txt"
tail -n +"$((half + 1))" "$rfc" >"$work/rfc-half2.txt"
halves="$zpdate -j1 --to iso -f $work/rfc-half1.txt >/dev/null & $zpdate -j1 --to iso -f $work/rfc-half2.txt; wait"
iso=+%Y%m%dT%H%M%SZ
dconv="dateutils.dconv -i '%a, %d %b %Y %H:%M:%S GMT' -f '%Y%m%dT%H%M%SZ'"
"$zpdate" -j1 --to iso -f "$rfc" >"$work/rfc.out"
"$zpdate" -j2 --to iso -f "$rfc" | cmp - "$work/rfc.out"
date -u -f "$rfc" "$iso" | cmp - "$work/rfc.out"
eval "$dconv" <"$rfc" | cmp - "$work/rfc.out"
"$zpdate" -j1 --to iso -f "$mixed" >"$work/mixed.out"  # every line converts, or this stops
"$zpdate" -j2 --to iso -f "$mixed" | cmp - "$work/mixed.out"
"$zpdate" -j1 --to iso -f "$mixed.gnu" >"$work/mixed-gnu.out"
date -u -f "$mixed.gnu" "$iso" | cmp - "$work/mixed-gnu.out"

# Five rounds, each command once a round in turn, so that a busy spell on the
# machine falls on all of them alike; the sheet takes each one's median.
rounds=()
for round in 1 2 3 4 5; do
  hyperfine --runs 1 --style none --export-json "$work/batch-$round.json" \
    -n "rfc1123 zpdate -j1" "$zpdate -j1 --to iso -f $rfc" \
    -n "rfc1123 zpdate -j2" "$zpdate -j2 --to iso -f $rfc" \
    -n "rfc1123 two zpdate -j1 at once, each on half" "$halves" \
    -n "rfc1123 GNU date" "date -u -f $rfc $iso" \
    -n "rfc1123 dconv" "$dconv <$rfc" \
    -n "mixed zpdate -j1" "$zpdate -j1 --to iso -f $mixed" \
    -n "mixed zpdate -j2" "$zpdate -j2 --to iso -f $mixed" \
    -n "mixed-gnu zpdate -j1" "$zpdate -j1 --to iso -f $mixed.gnu" \
    -n "mixed-gnu zpdate -j2" "$zpdate -j2 --to iso -f $mixed.gnu" \
    -n "mixed-gnu GNU date" "date -u -f $mixed.gnu $iso" >/dev/null
  rounds+=("$work/batch-$round.json")
done
{
  wc -l <"$rfc"
  wc -l <"$mixed"
  wc -l <"$mixed.gnu"
} >"$work/batch-lines.txt"
echo "load average when the batch rounds ended: $(cut -d' ' -f1-3 /proc/loadavg)" >>"$work/machine.txt"

python3 bench/results_sheet.py "$work/run.json" "$work/tz-unset.json" "$work/paths.json" \
  "$work/machine.txt" "$work/batch-lines.txt" "${rounds[@]}" >bench/RESULTS.md
echo "wrote bench/RESULTS.md"
