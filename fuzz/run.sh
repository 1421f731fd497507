#!/usr/bin/env bash
# Builds the fuzz targets and runs one of them for a while.
#
#   fuzz/run.sh TARGET [SECONDS]   fuzz TARGET (fuzz_calc, fuzz_evaluate,
#                                  fuzz_replacevars, fuzz_tokenize,
#                                  fuzz_runscript, fuzz_distribution) for
#                                  SECONDS (default 180)
#   fuzz/run.sh merge TARGET       fold what the runs found into the committed
#                                  corpus, keeping only inputs that add coverage
#
# A run starts from the committed corpus fuzz/corpus/TARGET and from the
# scratch corpus fuzz/corpus-TARGET/ that earlier runs left (git ignores it);
# new inputs go to the scratch corpus only. Crashes, timeouts and leaks are
# written to fuzz/ as crash-*, timeout-*, leak-* and oom-*. The build tree is
# build/fuzz, or $GANDREL_FUZZ_BUILD.
set -euo pipefail
cd "$(dirname "$0")/.."

usage() {
  echo "usage: fuzz/run.sh TARGET [SECONDS] | fuzz/run.sh merge TARGET" >&2
  exit 2
}
[ $# -ge 1 ] || usage

build=${GANDREL_FUZZ_BUILD:-build/fuzz}
scripts/deps.sh fuzz
cmake -S . -B "$build" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DGANDREL_FUZZ=ON \
  -DGANDREL_GUI=OFF -DGANDREL_TESTS=OFF -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j2

mode=run
if [ "$1" = merge ]; then
  [ $# -eq 2 ] || usage
  mode=merge
  shift
fi
target=$1
[ -x "$build/fuzz/$target" ] || { echo "no fuzz target $target in $build/fuzz" >&2; exit 2; }

if [ $mode = merge ]; then
  mkdir -p "fuzz/corpus-$target"
  before=$(ls "fuzz/corpus/$target" | wc -l)
  # Edges only, not hit counts: the committed corpus stays a few hundred small
  # files, and the scratch corpus keeps the rest for the next runs.
  "$build/fuzz/$target" -merge=1 -use_counters=0 -timeout=5 -rss_limit_mb=2048 \
    "fuzz/corpus/$target" "fuzz/corpus-$target" 2>&1 | grep -E '^MERGE-OUTER: [0-9]+ new files' || true
  echo "$target: committed corpus $before -> $(ls "fuzz/corpus/$target" | wc -l) files"
  exit 0
fi

seconds=${2:-180}
mkdir -p "fuzz/corpus-$target"
log="$build/$target.log"
started=$(date +%s)

# A roll or a substitution is broken off after about 20 ms, so one input
# takes milliseconds, about a second at the very worst; 5 s is a hang. Runs of
# a few minutes peak at 130 to 730 MB (mostly the sanitizer's caches), so
# 2 GB is a runaway text. fuzz_calc reads no input longer than 200 bytes.
limits=(-timeout=5 -rss_limit_mb=2048)
[ "$target" = fuzz_calc ] && limits+=(-max_len=200)
case "$target" in
  fuzz_tokenize|fuzz_runscript) limits+=(-dict=fuzz/script.dict) ;;
  # A die value is worked out exactly and estimated within about a quarter of a second.
  fuzz_distribution) limits+=(-dict=fuzz/dice.dict -max_len=200) ;;
esac
status=0
"$build/fuzz/$target" -max_total_time="$seconds" "${limits[@]}" \
  -artifact_prefix=fuzz/ -print_final_stats=1 \
  "fuzz/corpus-$target" "fuzz/corpus/$target" >"$log" 2>&1 || status=$?

echo "$target: $seconds s, exit status $status (log: $log)"
grep -E '^stat::(number_of_executed_units|average_exec_per_sec|new_units_added|peak_rss_mb)' "$log" || true
echo "scratch corpus: $(ls "fuzz/corpus-$target" | wc -l) files"
findings=$(find fuzz -maxdepth 1 -type f \( -name 'crash-*' -o -name 'timeout-*' \
  -o -name 'leak-*' -o -name 'oom-*' \) -newermt "@$started")
if [ -n "$findings" ]; then
  echo "findings:"
  echo "$findings"
  grep -E '^(==[0-9]+==ERROR|SUMMARY|.*runtime error)' "$log" | head -5 || true
else
  echo "findings: none"
fi
exit "$status"
