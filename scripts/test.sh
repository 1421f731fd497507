#!/usr/bin/env bash
# Sets everything up and runs the whole test suite twice: a release build, and
# a build with AddressSanitizer and UndefinedBehaviorSanitizer. Widget tests run
# headless. Build trees go to build/release and build/sanitize.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/deps.sh test

export QT_QPA_PLATFORM=offscreen
jobs=$(nproc 2>/dev/null || echo 2)

run_suite() {
  local dir=$1; shift
  cmake -S . -B "$dir" -G Ninja "$@" >/dev/null
  cmake --build "$dir" -j "$jobs"
  ctest --test-dir "$dir" --output-on-failure -j "$jobs" --timeout 300
}

echo "== Release build =="
run_suite build/release -DCMAKE_BUILD_TYPE=Release
echo "== Sanitizer build (ASan + UBSan) =="
run_suite build/sanitize -DCMAKE_BUILD_TYPE=RelWithDebInfo -DGANDREL_SANITIZE=ON
