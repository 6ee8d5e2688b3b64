#!/usr/bin/env bash
# Runs one fuzz target for BREVO_FUZZ_SECONDS (default 60) from a copy of its
# committed corpus, so that a run never changes the tree; crash inputs land in
# the work folder. Prints "<target>: <n> execs" and fails on any crash.
#   run_target.sh <fuzzer> <corpus> <work folder>
set -uo pipefail
fuzzer=$1 corpus=$2 work=$3
name=$(basename "$corpus")
rm -rf "$work/corpus" "$work/artifacts" && mkdir -p "$work/corpus" "$work/artifacts" && cp "$corpus"/* "$work/corpus/"
# Leaks are judged by the targets' own oracle (the module lock count): an
# input that ends in a contract abort may leave objects behind by design.
ASAN_OPTIONS="${ASAN_OPTIONS:+$ASAN_OPTIONS:}detect_leaks=0" "$fuzzer" -max_total_time="${BREVO_FUZZ_SECONDS:-60}" -timeout=20 -rss_limit_mb=2048 -detect_leaks=0 -print_final_stats=1 \
  -artifact_prefix="$work/artifacts/" "$work/corpus" 2>"$work/log"
status=$?
execs=$(grep -oE '^stat::number_of_executed_units: *[0-9]+' "$work/log" | grep -oE '[0-9]+$')
echo "$name: ${execs:-0} execs"
if ((status != 0)); then
  tail -n 60 "$work/log"
  echo "$name: crashed, input in $work/artifacts/"
fi
exit $status
