#!/bin/sh
# regsvr32 and brevo-regtlb in the test prefix, checked against the classes root.
#   registration.sh register DLL     every class's entries must be there, the
#                                    type library's must not
#   registration.sh unregister DLL   the class and ProgID keys and the module's
#                                    AppID entries must be gone, the AppID root kept
#   registration.sh register-tlb TOOL TLB [win64|win32]
#                                    brevo-regtlb, given the path relative to the
#                                    working directory: the library's win64
#                                    (or win32) key must name the full path,
#                                    every interface of the idl must point at
#                                    the library
#   registration.sh unregister-tlb TOOL TLB
#                                    brevo-regtlb /u: the library's key and the
#                                    interfaces' keys must be gone
#   registration.sh refuse-tlb TOOL  a missing file and a wrong command line
#                                    fail with a one-line message
set -eu
here=$(cd "$(dirname "$0")" && pwd)
run="$here/../../../cmake/wine-run.sh"
idl="$here/../../../idl/BrevoRecordList.idl"
mode=${1:-}
dll="Z:$(printf %s "${2:-}" | tr / '\\')"

# Friendly name, version-independent ProgID, versioned ProgID.
classes="MutableColumns BrevoRecordList.MutableColumns BrevoRecordList.MutableColumns.1
MutableRecordList BrevoRecordList.MutableRecordList BrevoRecordList.MutableRecordList.1
GroupMutableRecordList GroupMutableRecordList.GroupMutable GroupMutableRecordList.GroupMutable.1.0
RecordChangeEvent BrevoRecordList.RecordChangeEvent BrevoRecordList.RecordChangeEvent.1
ColumnsChangeEvent BrevoRecordList.ColumnsChangeEvent BrevoRecordList.ColumnsChangeEvent.1
RecordListChangeEvent BrevoRecordList.RecordListChangeEvent BrevoRecordList.RecordListChangeEvent.1
RecordListValueChangeEvent RecordListValueChangeEvent.RecordLi RecordListValueChangeEvent.RecordLi.1.0
PropertyChangeEvent BrevoRecordList.PropertyChangeEvent BrevoRecordList.PropertyChangeEvent.1
RecordListUtils BrevoRecordList.RecordListUtils BrevoRecordList.RecordListUtils.1
RecordsFactory BrevoRecordList.RecordsFactory BrevoRecordList.RecordsFactory.1"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The classes root as lines "key" and "key|value name|data" ("@" names the
# default value) in file $1, from one "reg export" (not fifty reg queries).
classes_root() {
    "$run" reg export HKCR "Z:$(printf %s "$work/hkcr.reg" | tr / '\\')" /y >/dev/null 2>&1 ||
        { echo "reg export failed"; exit 1; }
    iconv -f UTF-16LE -t UTF-8 "$work/hkcr.reg" | tr -d '\r' | awk '
        /^\[HKEY_CLASSES_ROOT\\/ { key = substr($0, 20, length($0) - 20); print key; next }
        /^@=/ { name = "@"; data = substr($0, 3) }
        /^"[^"]*"=/ { match($0, /^"[^"]*"=/); name = substr($0, 2, RLENGTH - 3); data = substr($0, RLENGTH + 1) }
        /^(@|")/ { if (data ~ /^".*"$/) data = substr(data, 2, length(data) - 2); gsub(/\\\\/, "\\", data); print key "|" name "|" data }
    ' >"$1"
}

re() { printf %s "$1" | sed 's/[\\.]/\\&/g'; }  # $1 as a literal sed pattern
# data <listing> <key> <name>; key names ignore case, as the registry's do
# (a fresh prefix already has "Typelib").
data() { sed -n "s/^$(re "$2|$3|")//Ip" "$1" | head -n1; }

# The type library's identifier and its interfaces' keys, from the idl.
libid=$(sed -n '/^\[/,/^library/s/^ *uuid(\(.*\)),$/{\1}/p' "$idl")
interfaces() { sed -n 's/^ *\[object, uuid(\([^)]*\)).*/Interface\\{\1}/p' "$idl"; }

case "$mode" in
register)
    "$run" regsvr32 /s "$dll" || { echo "regsvr32 /s failed ($?)"; exit 1; }
    classes_root "$work/root"
    appid=$(data "$work/root" 'AppID\BrevoRecordList.DLL' AppID)
    expected="AppID\\$appid|@|BrevoRecordList"
    while read -r friendly plain versioned; do
        clsid=$(data "$work/root" "$plain\\CLSID" @)
        c="CLSID\\$clsid"
        echo "registered $plain $clsid"
        expected="$expected
$plain|@|$friendly Object
$plain\\CLSID|@|$clsid
$plain\\CurVer|@|$versioned
$versioned|@|$friendly Object
$versioned\\CLSID|@|$clsid
$c|@|$friendly Object
$c\\InprocServer32|@|$dll
$c\\InprocServer32|ThreadingModel|apartment
$c\\ProgID|@|$versioned
$c\\VersionIndependentProgID|@|$plain
$c\\Programmable"
    done <<EOF
$classes
EOF
    missing=$(printf '%s\n' "$expected" | grep -vxF -f "$work/root" || true)
    [ -z "$missing" ] || { printf 'MISSING %s\n' "$missing"; exit 1; }
    # The type library is the installer's to register, with brevo-regtlb.
    if grep -iqxF "TypeLib\\$libid" "$work/root"; then echo "regsvr32 registered the type library"; exit 1; fi
    echo "registration complete"
    ;;
unregister)
    classes_root "$work/before"
    "$run" regsvr32 /u /s "$dll" || { echo "regsvr32 /u /s failed ($?)"; exit 1; }
    classes_root "$work/after"
    # Every key that names the module's classes, their ProgIDs and its AppID.
    gone=$(sed -n "s/\\\\InprocServer32|@|$(re "$dll")\$//p" "$work/before")
    while read -r _ plain versioned; do
        gone="$gone
$plain
$versioned"
    done <<EOF
$classes
EOF
    appid=$(data "$work/before" 'AppID\BrevoRecordList.DLL' AppID)
    gone="$gone
AppID\\BrevoRecordList.DLL
AppID\\$appid"
    [ -n "$appid" ] && [ "$(printf '%s\n' "$gone" | wc -l)" -eq 32 ] ||
        { echo "NOT REGISTERED before unregistration"; exit 1; }
    left=$(printf '%s\n' "$gone" | grep -xF -f "$work/after" || true)
    [ -z "$left" ] || { printf 'STILL REGISTERED %s\n' "$left"; exit 1; }
    grep -qxF AppID "$work/after" || { echo "MISSING the AppID root"; exit 1; }
    echo "unregistration complete, AppID root kept"
    ;;
register-tlb)
    tool=$2 tlb=$3 platform=${4:-win64}
    # Relative to the working directory, which Wine maps to Z:.
    (cd "$(dirname "$tlb")" && "$run" "$tool" "$(basename "$tlb")") >"$work/out" 2>&1 ||
        { cat "$work/out"; echo "brevo-regtlb failed"; exit 1; }
    classes_root "$work/root"
    # Wine writes the path in its long form, \\?\Z:\...
    path=$(data "$work/root" "TypeLib\\$libid\\1.0\\0\\$platform" @)
    long='\\?\'
    [ "${path#"$long"}" = "Z:$(printf %s "$tlb" | tr / '\\')" ] || { echo "TypeLib $platform names '$path'"; exit 1; }
    missing=$(interfaces | sed "s/\$/\\\\TypeLib|@|$libid/" | grep -ivxF -f "$work/root" || true)
    [ -z "$missing" ] || { printf 'MISSING %s\n' "$missing"; exit 1; }
    printf "type library registered: %s, %s interfaces\n" "$path" "$(interfaces | wc -l)"
    ;;
unregister-tlb)
    tool=$2 tlb=$3
    "$run" "$tool" /u "Z:$(printf %s "$tlb" | tr / '\\')" >"$work/out" 2>&1 ||
        { cat "$work/out"; echo "brevo-regtlb /u failed"; exit 1; }
    classes_root "$work/after"
    left=$({ echo "TypeLib\\$libid"; interfaces; } | grep -ixF -f "$work/after" || true)
    [ -z "$left" ] || { printf 'STILL REGISTERED %s\n' "$left"; exit 1; }
    echo "type library unregistered"
    ;;
refuse-tlb)
    tool=$2
    # Arguments (split on blanks) and what the one line on stderr must say.
    while IFS='|' read -r args expected; do
        status=0
        # shellcheck disable=SC2086
        "$run" "$tool" $args >"$work/out" 2>"$work/err" || status=$?
        grep -v '^wine-run.sh: ' "$work/err" | tr -d '\r' >"$work/message"
        printf "brevo-regtlb %s: exit %s: %s\n" "$args" "$status" "$(cat "$work/message")"
        [ "$status" -ne 0 ] && [ "$(wc -l <"$work/message")" -eq 1 ] && grep -q "$expected" "$work/message" ||
            { echo "NOT REFUSED as expected: $expected"; exit 1; }
    done <<EOF
Z:\\no\\such\\file.tlb|^brevo-regtlb: cannot register .*file.tlb: LoadTypeLibEx failed with 0x8
/u Z:\\no\\such\\file.tlb|^brevo-regtlb: cannot unregister .*file.tlb: LoadTypeLibEx failed with 0x8
|^usage: brevo-regtlb
/u|^usage: brevo-regtlb
EOF
    ;;
*) echo "usage: $0 register|unregister DLL | register-tlb|unregister-tlb TOOL TLB | refuse-tlb TOOL" >&2; exit 2 ;;
esac
