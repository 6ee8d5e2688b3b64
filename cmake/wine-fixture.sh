#!/bin/sh
# CTest fixture helper for the Windows build.
#
#   wine-fixture.sh setup   PREFIX [wow64]  create PREFIX if needed, start
#                                           ONE persistent wineserver for it
#   wine-fixture.sh cleanup PREFIX          stop that wineserver and wait for it
#
# wow64: the tests run 32-bit programs, so the (64-bit) prefix must have its
# 32-bit half (syswow64), which only a prefix made with wine32 installed has.
set -eu
action=$1
wow64=${3:-}
mkdir -p "$2"
WINEPREFIX=$(cd "$2" && pwd)
export WINEPREFIX
# Wine settings (WINEDEBUG, WINEDLLOVERRIDES, locale, no DISPLAY) are made by
# wine-run.sh; wineserver itself needs only WINEPREFIX.

WINESERVER=${WINESERVER:-wineserver}
here=$(cd "$(dirname "$0")" && pwd)

case "$action" in
setup)
    # Everything started here (the daemonized wineserver, and the Wine
    # system processes wineboot starts: services.exe, winedevice.exe,
    # explorer.exe, plugplay.exe, ...) outlives this script.  They must not
    # inherit CTest's output pipe, or CTest waits for them until the test
    # times out.  Hence all output goes to a log file that is printed at
    # the end.
    log="$WINEPREFIX.setup.log"
    : >"$log"
    # The log is the only output; show it however the setup ends.
    trap 'cat "$log"' EXIT
    # A server left by an interrupted run would make "-p" fail (silently,
    # status 2): stop it first.
    "$WINESERVER" -k >>"$log" 2>&1 || true
    "$WINESERVER" -w >>"$log" 2>&1 || true
    # Persistent server first (it daemonizes); everything after, including
    # wineboot, attaches to it.
    "$WINESERVER" -p </dev/null >>"$log" 2>&1
    init=
    [ -f "$WINEPREFIX/system.reg" ] || init=-i
    if [ -n "$wow64" ]; then
        if [ ! -x /usr/lib/wine/wine ]; then
            echo "32-bit Wine (wine32) is missing: run cmake/install-deps.sh all" >>"$log"
            exit 1
        fi
        if ! /lib/i386-linux-gnu/ld-linux.so.2 --version >/dev/null 2>&1; then
            echo "this machine cannot run 32-bit programs (after a reboot the i386 emulator needs registering again): run cmake/install-deps.sh all" >>"$log"
            exit 1
        fi
        # A prefix made before wine32 was installed lacks its 32-bit half.
        [ -n "$init" ] || [ -f "$WINEPREFIX/drive_c/windows/syswow64/kernel32.dll" ] || init=-u
    fi
    if [ -n "$init" ]; then
        # -i: initialise the prefix, -u: update it.  A message about
        # syswow64\rundll32.exe is expected on a 64-bit-only Wine (no wine32
        # installed).  With wine32 the 32-bit half runs emulated on some
        # machines: minutes.
        "$here/wine-run.sh" wineboot $init </dev/null >>"$log" 2>&1 || true
        # A fresh prefix is left with a stalled service manager (RpcSs never
        # starts, so every later program waits about 10 s for it): start over
        # on the initialised prefix.
        "$WINESERVER" -k >>"$log" 2>&1 || true
        "$WINESERVER" -w >>"$log" 2>&1 || true
        "$WINESERVER" -p </dev/null >>"$log" 2>&1
    fi
    # Warm-up: proves the prefix works, finishes any pending "configuration
    # has been updated" step and leaves the system processes running.
    status=0
    "$here/wine-run.sh" cmd /c exit 0 </dev/null >>"$log" 2>&1 || status=$?
    exit $status
    ;;
cleanup)
    "$WINESERVER" -k 2>/dev/null || true
    "$WINESERVER" -w 2>/dev/null || true
    ;;
*)
    echo "usage: $0 setup PREFIX [wow64] | cleanup PREFIX" >&2
    exit 2
    ;;
esac
