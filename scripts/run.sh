#!/usr/bin/env bash
# Sets everything up, builds Gandrel and starts its window.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/deps.sh run
cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build/release -j "$(nproc 2>/dev/null || echo 2)" --target gandrel
exec build/release/src/app/gandrel "$@"
