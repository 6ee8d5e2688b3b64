#!/usr/bin/env bash
# Installs the Debian packages a build needs, only those that are missing.
#   cmake/install-deps.sh native   compiler, CMake, GoogleTest
#   cmake/install-deps.sh all      the above plus mingw-w64, widl and Wine
#   cmake/install-deps.sh fuzz     compiler, CMake, clang and its libFuzzer runtime
set -euo pipefail

packages=(cmake make g++ libgtest-dev)
case "${1:-all}" in
  all) packages+=(googletest g++-mingw-w64-x86-64-posix mingw-w64-tools wine wine64 libwine-dev) ;;
  fuzz) packages+=(clang libclang-rt-14-dev) ;;
esac

missing=()
for package in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$package")
  fi
done
((${#missing[@]} == 0)) && exit 0

sudo=()
[[ "$(id -u)" -ne 0 ]] && sudo=(sudo)
echo "Installing: ${missing[*]}"
"${sudo[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
