#!/usr/bin/env bash
# Installs the Debian packages Gandrel needs to build, test or run, when any is
# missing. Usage: scripts/deps.sh [build|test|run|bench|fuzz]...
set -euo pipefail

# libedit-dev: line editing and history at gandrel-cli's prompt.
packages=(g++ cmake ninja-build pkg-config qt6-base-dev libgl-dev libedit-dev)
comma_locale=no
for want in "$@"; do
  case "$want" in
    build|run) ;;
    # The number tests switch to a locale whose decimal point is a comma.
    test) packages+=(libgtest-dev libgmock-dev locales); comma_locale=yes ;;
    bench) packages+=(libbenchmark-dev) ;;
    fuzz) packages+=(clang libclang-rt-14-dev) ;;
    gui-check) packages+=(xvfb xauth xdotool xclip imagemagick twm tmux) ;;
    *) echo "deps.sh: unknown need '$want'" >&2; exit 2 ;;
  esac
done

# Runs a command as root: directly, or through sudo.
as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo >/dev/null 2>&1; then
    sudo "$@"
  else
    echo "deps.sh: neither root nor sudo is available to run: $*" >&2
    exit 1
  fi
}

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  as_root apt-get update -qq
  as_root apt-get install -y -qq --no-install-recommends "${missing[@]}" </dev/null
fi

# The package brings the locale sources only; de_DE.UTF-8 is compiled once.
if [ "$comma_locale" = yes ] && ! locale -a 2>/dev/null | grep -qix 'de_DE\.utf-\?8'; then
  echo "Generating the locale de_DE.UTF-8"
  as_root localedef -i de_DE -c -f UTF-8 de_DE.UTF-8 || true
  if ! locale -a 2>/dev/null | grep -qix 'de_DE\.utf-\?8'; then
    echo "deps.sh: could not generate the locale de_DE.UTF-8" >&2
    exit 1
  fi
fi
