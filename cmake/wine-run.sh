#!/bin/sh
# Run a Windows executable under Wine, headless, in a throwaway prefix, and
# return its exit code.
#
#   wine-run.sh [--prefix DIR] program.exe [args...]
#
# Prefix selection: --prefix DIR, else $WINEPREFIX, else "wineprefix" next to
# the CMakeCache.txt found by walking up from the program's directory.
# Loader: /usr/lib/wine/wine (32-bit) for a 32-bit x86 PE file, else wine64 /
# /usr/lib/wine/wine64 / wine.
# Environment overrides: WINE (loader for every program), WINEDEBUG (default -all), WINEDLLOVERRIDES (replaces the defaults
# below), BREVO_WINE_BACKTRACE=1 (winedbg backtrace on crashes).
set -eu

if [ "${1:-}" = "--prefix" ]; then
    WINEPREFIX=$2
    shift 2
fi
if [ $# -lt 1 ]; then
    echo "usage: $0 [--prefix DIR] program.exe [args...]" >&2
    exit 2
fi

if [ -z "${WINEPREFIX:-}" ]; then
    d=$(cd "$(dirname "$1")" 2>/dev/null && pwd || pwd)
    while [ "$d" != "/" ] && [ ! -f "$d/CMakeCache.txt" ]; do
        d=$(dirname "$d")
    done
    if [ ! -f "$d/CMakeCache.txt" ]; then
        echo "wine-run.sh: no WINEPREFIX and no build tree above $1" >&2
        exit 2
    fi
    WINEPREFIX=$d/wineprefix
fi
mkdir -p "$WINEPREFIX"
WINEPREFIX=$(cd "$WINEPREFIX" && pwd)   # Wine insists on an absolute path
export WINEPREFIX

# True when $1 is a 32-bit x86 PE file: "PE\0\0" and machine 0x014c at the
# offset the DOS header gives.
is_pe_i386() {
    [ -f "$1" ] || return 1
    _pe=$(od -An -tu4 -j60 -N4 "$1" 2>/dev/null | tr -d ' ')
    [ -n "$_pe" ] || return 1
    [ "$(od -An -tx1 -j"$_pe" -N6 "$1" 2>/dev/null | tr -d ' ')" = 504500004c01 ]
}

if [ -z "${WINE:-}" ]; then
    if is_pe_i386 "$1"; then
        # A 32-bit program needs the 32-bit loader (wine32); the prefix
        # stays the same 64-bit one.
        WINE=/usr/lib/wine/wine
    elif command -v wine64 >/dev/null 2>&1; then WINE=wine64
    elif [ -x /usr/lib/wine/wine64 ]; then WINE=/usr/lib/wine/wine64
    else WINE=wine
    fi
fi
# The Debian /usr/bin/wine wrapper exports WINELOADER itself; when calling a
# loader directly, do the same so that child processes (death tests,
# CreateProcess) find the loaders (Wine adds or drops "64" for a child of
# the other width).
case "$WINE" in
    */wine64|wine64|/usr/lib/wine/wine) export WINELOADER=${WINELOADER:-$(command -v "$WINE")} ;;
esac

export WINEARCH=win64
export WINEDEBUG=${WINEDEBUG:--all}
# mscoree/mshtml disabled: no Mono/Gecko download prompt.
# winemenubuilder disabled: no desktop integration work in the prefix.
# winedbg disabled: an unhandled exception ends the process at once (exit
# status = low byte of the exception code, e.g. 5 for c0000005) instead of
# attaching winedbg.  BREVO_WINE_BACKTRACE=1 keeps winedbg, which then
# prints registers and a backtrace to stderr and exits (~1 s extra).
_overrides="mscoree,mshtml=;winemenubuilder.exe=d"
if [ "${BREVO_WINE_BACKTRACE:-0}" != 1 ]; then
    _overrides="$_overrides;winedbg.exe=d"
fi
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-$_overrides}
# Headless: never talk to an X server.
unset DISPLAY WAYLAND_DISPLAY
# Pinned locale -> Wine locale en-US, ANSI code page 1252, OEM 437.
export LANG=C.UTF-8 LC_ALL=C.UTF-8
unset LANGUAGE

# Wine returns the Windows process's exit status.  A process that dies
# before it prints anything (a loader or wineserver hiccup) would otherwise
# leave no trace in the test log.
status=0
"$WINE" "$@" || status=$?
if [ "$status" -ne 0 ]; then
    echo "wine-run.sh: $1 exited with status $status" >&2
fi
exit "$status"
