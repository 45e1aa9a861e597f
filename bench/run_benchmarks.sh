#!/usr/bin/env bash
# Builds the benchmarks and zpdate, runs everything once, and writes
# bench/RESULTS.md. Installs what it measures against when missing (Debian
# packages), as the README's Quick start does, and fails rather than leave a
# peer out.
#
#   bench/run_benchmarks.sh            # about 20 minutes on two cores
#   bench/run_benchmarks.sh batch      # the batch rows alone, printed
set -euo pipefail
only=${1:-all}
cd "$(dirname "$0")/.."

peers=(cmake ninja-build g++ python3 libbenchmark-dev libabsl-dev libcurl4-openssl-dev
  libboost-date-time-dev libhowardhinnant-date-dev libfmt-dev libcctz-dev hyperfine dateutils)
dpkg -s "${peers[@]}" >/dev/null 2>&1 || { apt-get update && apt-get install -y "${peers[@]}"; }

cmake --preset bench -DZEPHAL_BENCH_ALL_PEERS=ON
cmake --build --preset bench
bin=build/bench/bench/zephal_bench
paths=build/bench/bench/zephal_bench_paths
zpdate=build/bench/tools/zpdate
zserial=build/bench/bench/zpdate_serial
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
if [ "$only" != batch ]; then
  TZ='CET-1CEST,M3.5.0,M10.5.0/3' "$bin" "${json[@]}" --benchmark_out="$work/run.json" >/dev/null
  env -u TZ "$bin" --benchmark_filter='BM_Local' "${json[@]}" --benchmark_out="$work/tz-unset.json" >/dev/null
  "$paths" "${json[@]}" --benchmark_out="$work/paths.json" >/dev/null
fi

# Batch: three million lines of each kind. Every command's output is
# compared first: a timing of different answers means nothing.
rfc="$work/rfc1123-3m.txt"
mixed="$work/mixed-3m.txt"
[ -f "$rfc" ] || python3 bench/make_batch_lines.py rfc1123 "$rfc" 3000000
[ -f "$mixed" ] || python3 bench/make_batch_lines.py mixed "$mixed" 3000000
: >"$work/empty.txt"
# The most two cores can give, whatever -j does: two single-threaded runs at
# once, each on half of the lines.
for kind in rfc mixed; do
  file=${!kind}
  half=$((($(wc -l <"$file") + 1) / 2))
  head -n "$half" "$file" >"$work/$kind-half1.txt"
  tail -n +"$((half + 1))" "$file" >"$work/$kind-half2.txt"
done
halves() {
  echo "$zpdate -j1 --to iso -f $work/$1-half1.txt >/dev/null & $zpdate -j1 --to iso -f $work/$1-half2.txt; wait"
}
iso=+%Y%m%dT%H%M%SZ
dconv="dateutils.dconv -i '%a, %d %b %Y %H:%M:%S GMT' -f '%Y%m%dT%H%M%SZ'"
"$zpdate" -j1 --to iso -f "$rfc" >"$work/rfc.out"
"$zpdate" -j2 --to iso -f "$rfc" | cmp - "$work/rfc.out"
cat "$rfc" | "$zpdate" -j2 --to iso -f - | cmp - "$work/rfc.out"
cat "$work"/rfc-half[12].txt | cmp - "$rfc"
date -u -f "$rfc" "$iso" | cmp - "$work/rfc.out"
eval "$dconv" <"$rfc" | cmp - "$work/rfc.out"
"$zpdate" -j1 --to iso -f "$mixed" >"$work/mixed.out"  # every line converts, or this stops
"$zpdate" -j2 --to iso -f "$mixed" | cmp - "$work/mixed.out"
cat "$work"/mixed-half[12].txt | cmp - "$mixed"
"$zpdate" -j1 --to iso -f "$mixed.gnu" >"$work/mixed-gnu.out"
date -u -f "$mixed.gnu" "$iso" | cmp - "$work/mixed-gnu.out"

# Five rounds, each command once a round in turn, so that a busy spell on the
# machine falls on all of them alike; the sheet takes each one's median.
# Each round also times what -j2 spends where one thread at a time can be
# (zpdate_serial, tools/SerialClock.h), on a file and on a pipe.
rounds=()
: >"$work/serial.txt"
for round in 1 2 3 4 5; do
  hyperfine --runs 1 --style none --export-json "$work/batch-$round.json" \
    -n "rfc1123 zpdate -j1" "$zpdate -j1 --to iso -f $rfc" \
    -n "rfc1123 zpdate -j2" "$zpdate -j2 --to iso -f $rfc" \
    -n "rfc1123 two zpdate -j1 at once, each on half" "$(halves rfc)" \
    -n "rfc1123 zpdate -j1 on a pipe" "cat $rfc | $zpdate -j1 --to iso -f -" \
    -n "rfc1123 zpdate -j2 on a pipe" "cat $rfc | $zpdate -j2 --to iso -f -" \
    -n "rfc1123 GNU date" "date -u -f $rfc $iso" \
    -n "rfc1123 dconv" "$dconv <$rfc" \
    -n "mixed zpdate -j1" "$zpdate -j1 --to iso -f $mixed" \
    -n "mixed zpdate -j2" "$zpdate -j2 --to iso -f $mixed" \
    -n "mixed two zpdate -j1 at once, each on half" "$(halves mixed)" \
    -n "mixed-gnu zpdate -j1" "$zpdate -j1 --to iso -f $mixed.gnu" \
    -n "mixed-gnu zpdate -j2" "$zpdate -j2 --to iso -f $mixed.gnu" \
    -n "mixed-gnu GNU date" "date -u -f $mixed.gnu $iso" >/dev/null
  rounds+=("$work/batch-$round.json")
  for kind in rfc mixed; do
    name=$([ $kind = rfc ] && echo rfc1123 || echo mixed)
    file=${!kind}
    rm -f "$work/serial-run.txt"
    export ZPDATE_SERIAL_REPORT="$work/serial-run.txt"
    "$zserial" -j2 --to iso -f "$file" >/dev/null
    sed "s/^/$name file /" "$work/serial-run.txt" >>"$work/serial.txt"
    rm "$work/serial-run.txt"
    cat "$file" | "$zserial" -j2 --to iso -f - >/dev/null
    sed "s/^/$name pipe /" "$work/serial-run.txt" >>"$work/serial.txt"
    unset ZPDATE_SERIAL_REPORT
  done
done
# A run's start and exit, a fixed cost that no thread shares: -j2 on an empty
# file, without a shell (too short for hyperfine to take the shell's away).
hyperfine -N --warmup 3 --runs 40 --style none --export-json "$work/start.json" \
  -n "empty zpdate -j2" "$zpdate -j2 --to iso -f $work/empty.txt" >/dev/null
{
  wc -l <"$rfc"
  wc -l <"$mixed"
  wc -l <"$mixed.gnu"
} >"$work/batch-lines.txt"
echo "load average when the batch rounds ended: $(cut -d' ' -f1-3 /proc/loadavg)" >>"$work/machine.txt"

if [ "$only" = batch ]; then
  python3 bench/results_sheet.py --batch "$work/machine.txt" "$work/batch-lines.txt" \
    "$work/serial.txt" "$work/start.json" "${rounds[@]}"
  exit
fi
python3 bench/results_sheet.py "$work/run.json" "$work/tz-unset.json" "$work/paths.json" \
  "$work/machine.txt" "$work/batch-lines.txt" "$work/serial.txt" "$work/start.json" "${rounds[@]}" \
  >bench/RESULTS.md
echo "wrote bench/RESULTS.md"
