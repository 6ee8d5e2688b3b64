#!/usr/bin/env bash
# Static checks of a built BrevoRecordList.dll, on the build host (binutils of
# mingw-w64, no Wine):
#
#   cmake/check-module.sh <module.dll> <x64|x86> [<version>]
#
#   - the file is a PE32+ x86-64 (x64) or PE32 i386 (x86) image;
#   - it exports exactly the names listed in COMDll/BrevoRecordList.def;
#   - it imports only Windows system DLLs: no mingw runtime DLL (libgcc*,
#     libstdc++*, libwinpthread*), whose absence the static link promises;
#   - with <version> (e.g. 1.0.0): a VERSIONINFO resource whose FILEVERSION
#     and PRODUCTVERSION are that version (padded to four numbers) and whose
#     "FileVersion" and "ProductVersion" strings are that version, as given
#     or padded.
#
# Prints one line per check; exits 0 when all pass, 1 when one fails, 2 on
# wrong usage or a missing tool.
set -uo pipefail

usage() {
  sed -n '4,5p' "$0" | sed 's/^# *//' >&2
  exit 2
}
(($# == 2 || $# == 3)) || usage
module=$1
arch=$2
version=${3:-}
case "$arch" in
  x64) triple=x86_64-w64-mingw32 format=pei-x86-64 magic='(PE32+)' ;;
  x86) triple=i686-w64-mingw32 format=pei-i386 magic='(PE32)' ;;
  *) usage ;;
esac
def="$(cd "$(dirname "$0")/.." && pwd)/COMDll/BrevoRecordList.def"
for tool in "$triple-objdump" "$triple-windres"; do
  command -v "$tool" >/dev/null || { echo "check-module.sh: $tool not found" >&2; exit 2; }
done
[[ -f "$module" ]] || { echo "check-module.sh: no file $module" >&2; exit 2; }

failed=0
check() {  # <status> <what> [detail]
  if [[ "$1" == 0 ]]; then
    echo "ok    $2"
  else
    echo "FAIL  $2${3:+: $3}"
    failed=1
  fi
}

# The objdump of the other architecture does not read the module at all.
if ! headers=$("$triple-objdump" -p "$module" 2>&1); then
  check 1 "$arch image ($format $magic)" "$headers"
  exit 1
fi
got_format=$(sed -n 's/.*file format \(.*\)$/\1/p' <<<"$headers" | head -n1)
got_magic=$(grep -oE '^Magic[[:space:]]+[0-9a-f]+[[:space:]]+\(PE32\+?\)' <<<"$headers" | grep -oE '\(PE32\+?\)')
[[ "$got_format" == "$format" && "$got_magic" == "$magic" ]]
status=$?
check $status "$arch image ($format $magic)" "found ${got_format:-no PE format} ${got_magic:-}"

# Names follow the "[Ordinal/Name Pointer] Table" heading, one per line.
exports=$(awk '/^\[Ordinal\/Name Pointer\] Table/ {table = 1; next}
               table && /^[[:space:]]*\[ *[0-9]+\]/ {print $NF; next}
               table {table = 0}' <<<"$headers" | sort)
expected=$(awk 'toupper($1) == "EXPORTS" {names = 1; next}
                names && NF {print $1}' "$def" | sort)
[[ -n "$exports" && "$exports" == "$expected" ]]
status=$?
check $status "exports exactly $(echo $expected)" "found $(echo ${exports:-nothing})"

# The system DLLs the module (and the mingw C runtime) may use.
system='^(kernel32|user32|gdi32|advapi32|ole32|oleaut32|rpcrt4|shell32|shlwapi|msvcrt|ucrtbase|api-ms-win-[a-z0-9-]+)\.dll$'
imports=$(sed -n 's/^[[:space:]]*DLL Name: //p' <<<"$headers")
foreign=$(grep -viE "$system" <<<"$imports")
[[ -n "$imports" && -z "$foreign" ]]
status=$?
check $status "imports only system DLLs ($(echo $imports))" "not a system DLL: $(echo $foreign)"

if [[ -n "$version" ]]; then
  four=$version
  while [[ $(tr -cd . <<<"$four" | wc -c) -lt 3 ]]; do four+=.0; done
  fixed=${four//./, }
  resources=$("$triple-windres" -i "$module" -O rc 2>&1)
  for field in FILEVERSION PRODUCTVERSION; do
    got=$(sed -n "s/^[[:space:]]*$field[[:space:]]\{1,\}//p" <<<"$resources" | head -n1)
    [[ "$got" == "$fixed" ]]
    status=$?
    check $status "VERSIONINFO $field $fixed" "found ${got:-none}"
  done
  for name in FileVersion ProductVersion; do
    got=$(sed -n "s/^[[:space:]]*VALUE \"$name\", \"\([^\"]*\)\".*/\1/p" <<<"$resources" | head -n1)
    got=${got%\\0}
    [[ "$got" == "$version" || "$got" == "$four" ]]
    status=$?
    check $status "VERSIONINFO \"$name\" $version" "found ${got:-none}"
  done
fi

exit $failed
