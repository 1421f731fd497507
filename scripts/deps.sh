#!/usr/bin/env bash
# Installs the Debian packages Gandrel needs to build, test or run, when any is
# missing. Usage: scripts/deps.sh [build|test|run|bench|fuzz]...
set -euo pipefail

packages=(g++ cmake ninja-build pkg-config qt6-base-dev libgl-dev)
for want in "$@"; do
  case "$want" in
    build|run) ;;
    test) packages+=(libgtest-dev libgmock-dev) ;;
    bench) packages+=(libbenchmark-dev) ;;
    fuzz) packages+=(clang libclang-rt-14-dev) ;;
    gui-check) packages+=(xvfb xauth xdotool xclip imagemagick) ;;
    *) echo "deps.sh: unknown need '$want'" >&2; exit 2 ;;
  esac
done

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
if [ "$(id -u)" -eq 0 ]; then
  as_root=()
elif command -v sudo >/dev/null 2>&1; then
  as_root=(sudo)
else
  echo "deps.sh: these packages are missing and neither root nor sudo is available: ${missing[*]}" >&2
  exit 1
fi
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" </dev/null
