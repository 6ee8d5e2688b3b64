#!/usr/bin/env bash
# Installs the Debian packages a build needs, only those that are missing.
#   cmake/install-deps.sh native   compiler, CMake, GoogleTest
#   cmake/install-deps.sh all      the above plus mingw-w64 (x64 and x86), widl,
#                                  Wine with its 32-bit half, NSIS, and a way to
#                                  run 32-bit programs
#   cmake/install-deps.sh fuzz     compiler, CMake, clang and its libFuzzer runtime
# Run it as root or with sudo. With nothing missing it only asks dpkg (and, for
# "all", runs the 32-bit loader once): no apt-get.
set -euo pipefail

mode=${1:-all}
packages=(cmake make g++ libgtest-dev)
case "$mode" in
  all) packages+=(googletest g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix mingw-w64-tools
                  wine wine64 libwine-dev nsis) ;;
  fuzz) packages+=(clang libclang-rt-14-dev) ;;
esac

installed() {
  dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q "install ok installed"
}

missing=()
for package in "${packages[@]}"; do
  installed "$package" || missing+=("$package")
done
need_wine32=0
[[ "$mode" == all ]] && ! installed wine32:i386 && need_wine32=1

sudo=()
[[ "$(id -u)" -ne 0 ]] && sudo=(sudo)
apt_get() { DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get "$@"; }

updated=0
update() {
  ((updated)) && return 0
  updated=1
  # With i386 added, the security suite's i386 index can fail to download
  # (exit 100) while every other index is fine: what counts is whether the
  # packages can be found, which the installs below find out.
  apt_get update -qq || echo "apt-get update reported errors; going on"
}

# wine32 comes from the i386 architecture, known to apt before its one update.
if ((need_wine32)) && ! dpkg --print-foreign-architectures | grep -qx i386; then
  "${sudo[@]}" dpkg --add-architecture i386
fi

if ((${#missing[@]})); then
  echo "Installing: ${missing[*]}"
  update
  apt_get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

if ((need_wine32)); then
  echo "Installing: wine32"
  update
  # Without the security suite's i386 index, amd64 libraries installed from
  # that suite have no i386 twin of the same version: take both from the main
  # suites, which may downgrade one of them.
  pin=$(mktemp)
  trap 'rm -f "$pin"' EXIT
  cat >"$pin" <<'EOF'
Package: *
Pin: release l=Debian-Security
Pin-Priority: -1

Package: *
Pin: release o=Debian
Pin-Priority: 1001
EOF
  chmod 644 "$pin"
  apt_get -o Dir::Etc::Preferences="$pin" install -y -qq --allow-downgrades --no-install-recommends wine32 >/dev/null
  if [[ ! -x /usr/lib/wine/wine ]]; then
    echo "install-deps.sh: wine32 did not install the 32-bit loader /usr/lib/wine/wine" >&2
    exit 1
  fi
fi

# 32-bit programs: some kernels run only 64-bit user code. There qemu's user
# mode emulator, registered with binfmt_misc, runs them; the registration
# lives in the kernel and is gone after a reboot, so this is checked on every
# run.
runs_i386() { /lib/i386-linux-gnu/ld-linux.so.2 --version >/dev/null 2>&1; }
if [[ "$mode" == all ]] && ! runs_i386; then
  if ! installed qemu-user; then
    echo "Installing: qemu-user"
    update
    apt_get install -y -qq --no-install-recommends qemu-user >/dev/null
  fi
  binfmt=/proc/sys/fs/binfmt_misc
  mountpoint -q "$binfmt" || "${sudo[@]}" mount -t binfmt_misc binfmt_misc "$binfmt"
  if [[ ! -e "$binfmt/qemu-i386" ]]; then
    echo "Registering qemu-i386 for 32-bit programs"
    # ELF class 32, little-endian, executable or shared object, machine i386.
    echo ':qemu-i386:M::\x7fELF\x01\x01\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x02\x00\x03\x00:\xff\xff\xff\xff\xff\xfe\xfe\x00\xff\xff\xff\xff\xff\xff\xff\xff\xfe\xff\xff\xff:/usr/bin/qemu-i386:F' |
      "${sudo[@]}" tee "$binfmt/register" >/dev/null
  fi
  if ! runs_i386; then
    echo "install-deps.sh: 32-bit programs still do not run (/lib/i386-linux-gnu/ld-linux.so.2 --version)" >&2
    exit 1
  fi
fi
