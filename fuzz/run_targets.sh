#!/usr/bin/env bash
# Runs fuzz targets of the fuzz preset's build for a while each, from a
# scratch copy of their committed corpora, and prints one line per target:
# executions, coverage (cov:) and features (ft:) at the end of the run.
# Any crash, leak, timeout or failed check fails the run; its input lands in
# build/fuzz/artifacts/.
#
#   fuzz/run_targets.sh                    # every target, 30 s each (CI)
#   fuzz/run_targets.sh 600                # every target, 10 minutes each
#   fuzz/run_targets.sh 60 ole_date atom   # some targets
#   MERGE=1 fuzz/run_targets.sh 60 atom    # then minimise what was found into
#                                          # fuzz/corpus/atom (-merge=1)
#
# Build first: cmake --workflow --preset fuzz
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-30}
shift || true
targets=("$@")
if ((${#targets[@]} == 0)); then
  for corpus in fuzz/corpus/*/; do targets+=("$(basename "$corpus")"); done
fi

# Targets that read bytes as numbers get short inputs and no text dictionary;
# the text readers get room for long texts.
numeric=" unix_time file_time dos_date_time ole_date writers "

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir -p build/fuzz/artifacts
failed=()
summary=()
for name in "${targets[@]}"; do
  if [[ ! -x build/fuzz/fuzz/zephal_fuzz_"$name" ]]; then
    echo "no $name target in this build (zone_rule needs cctz): skipped"
    continue
  fi
  cp -r "fuzz/corpus/$name" "$scratch/$name"
  options=(-max_total_time="$seconds" -timeout=10 -print_final_stats=1
           -artifact_prefix=build/fuzz/artifacts/"$name"-)
  if [[ $numeric == *" $name "* ]]; then
    options+=(-max_len=128)
  else
    dict=fuzz/dates.dict
    [[ -f fuzz/$name.dict ]] && dict=fuzz/$name.dict
    options+=(-max_len=4096 -dict="$dict")
  fi
  echo "fuzzing $name for $seconds s"
  log="$scratch/$name.log"
  if ! build/fuzz/fuzz/zephal_fuzz_"$name" "${options[@]}" "$scratch/$name" 2>"$log"; then
    failed+=("$name")
    tail -n 30 "$log" >&2
  fi
  execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  last=$(grep -E '^#[0-9]+' "$log" | tail -n 1 || true)
  cov=$(sed -n 's/.* cov: \([0-9]*\).*/\1/p' <<<"$last")
  ft=$(sed -n 's/.* ft: \([0-9]*\).*/\1/p' <<<"$last")
  summary+=("$(printf '%-16s %12s execs  cov %5s  ft %6s' "$name" "${execs:-?}" "${cov:-?}" "${ft:-?}")")
  if [[ ${MERGE:-0} == 1 ]]; then
    build/fuzz/fuzz/zephal_fuzz_"$name" -merge=1 "${options[@]:3}" "fuzz/corpus/$name" "$scratch/$name" \
      2>>"$log" >/dev/null
  fi
done
printf '%s\n' "${summary[@]}"
if ((${#failed[@]})); then
  echo "fuzz targets that failed: ${failed[*]}" >&2
  exit 1
fi
