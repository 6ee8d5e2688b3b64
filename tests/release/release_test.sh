#!/usr/bin/env bash
# The Windows release as a user meets it, under Wine, in a fresh prefix:
# unpack the zip, install.cmd, the example clients under the 64-bit and the
# 32-bit script host, the C++ example built from the zip's include/ alone for
# each architecture (single-threaded and multithreaded apartment), then
# uninstall.cmd, after which no class, interface or type library key is left
# in either registry view. The silent installer gets one run of its own on
# x64: install, one client, uninstall.
#
#   release_test.sh BUILD_DIR VERSION ARCH...     (ARCH: x64, x86)
#
# 32-bit programs run under qemu here, about 90 s per process start: they are
# few, and those that can run side by side do.
set -uo pipefail
build=$(cd "$1" && pwd)
version=$2
shift 2
archs=("$@")
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
run="$source_dir/cmake/wine-run.sh"
loader32=/usr/lib/wine/wine
name="BrevoRecordList-$version-windows"
idl="$source_dir/idl/BrevoRecordList.idl"
has() { [[ " ${archs[*]} " == *" $1 "* ]]; }

work="$build/release-test"
rm -rf "$work"
mkdir -p "$work/logs"
export WINEPREFIX="$work/prefix"
export WINESERVER=${WINESERVER:-$(command -v wineserver || echo /usr/lib/wine/wineserver)}
"$source_dir/cmake/wine-fixture.sh" setup "$WINEPREFIX" $(has x86 && echo wow64) >"$work/logs/setup" 2>&1 ||
  { cat "$work/logs/setup"; echo "FAIL the Wine prefix"; exit 1; }
trap '"$source_dir/cmake/wine-fixture.sh" cleanup "$WINEPREFIX"' EXIT

failures=0
pass() { echo "ok   $1"; }
fail() { echo "FAIL $1"; failures=$((failures + 1)); }
# check <what> <command...>: the command's status decides.
check() { if "${@:2}"; then pass "$1"; else fail "$1"; fi; }
not() { ! "$@"; }
# wine <log> <program> [args...]: a 64-bit program; output to <log> only (a
# pipe would be held open by Wine's server).
wine() { local log="$work/logs/$1"; shift; "$run" "$@" >"$log" 2>"$log.err"; }
wine32() { local log="$work/logs/$1"; shift; WINE=$loader32 "$run" "$@" >"$log" 2>"$log.err"; }
windows_path() { printf 'C:%s' "${1#"$WINEPREFIX/drive_c"}" | tr / '\\'; }
# same_output <log> <expected file>: the log, without carriage returns, is the file.
same_output() {
  if diff <(tr -d '\r' <"$work/logs/$1") "$2" >"$work/logs/$1.diff"; then return 0; fi
  cat "$work/logs/$1.diff" "$work/logs/$1.err"
  return 1
}

# Identifiers from the IDL: classes, interfaces, the type library.
uuids() { grep -oE "uuid\([0-9A-Fa-f-]{36}\)$1" "$idl" | cut -c6-41; }
classes=$(uuids ', helpstring\("[A-Za-z]+ Object"\)')
interfaces=$(grep -E '\[object, uuid' "$idl" | grep -oE '[0-9A-Fa-f-]{36}')
typelib=$(grep -B2 'version(1.0)' "$idl" | grep -oE '[0-9A-Fa-f-]{36}' | head -n1)
[[ $(wc -l <<<"$classes") -eq 10 && -n "$interfaces" && -n "$typelib" ]] || { echo "FAIL reading the IDL"; exit 1; }

# keys <view 32|64> <out>: the class and interface keys of one registry view
# and the type library's key, one process each.
keys() {
  : >"$2"
  for root in CLSID Interface; do
    wine "query" reg query "HKLM\\Software\\Classes\\$root" "/reg:$1" && tr -d '\r' <"$work/logs/query" >>"$2"
  done
  wine "query" reg query "HKCR\\TypeLib\\{$typelib}" /s && tr -d '\r' <"$work/logs/query" >>"$2"
  return 0
}
# registered <view> <count of ours expected>: classes and interfaces in the view
registered() {
  keys "$1" "$work/keys$1"
  local found
  found=$( (printf '%s\n' $classes $interfaces) | while read -r id; do grep -qi "\\\\{$id}\$" "$work/keys$1" && echo "$id"; done | wc -l)
  [[ $found -eq $2 ]] || { echo "  $found of our class and interface keys in the $1-bit view, expected $2"; return 1; }
}
ours=$(( $(wc -l <<<"$classes") + $(wc -l <<<"$interfaces") ))
typelib_kinds() { grep -ioE '\\1\.0\\0\\win(32|64)$' "$work/keys64" | grep -oE 'win(32|64)' | sort | tr -d '\n'; }

echo "== the packages"
zip="$build/$name.zip"
installer="$build/$name.exe"
check "the zip and the installer exist" test -f "$zip" -a -f "$installer"
check "the README names this release" grep -q "build/release/$name.zip" "$source_dir/README.md"
mkdir -p "$work/zip"
(cd "$work/zip" && cmake -E tar xf "$zip")
for arch in "${archs[@]}"; do
  echo "     $arch/BrevoRecordList.dll: $(stat -c %s "$work/zip/$name/$arch/BrevoRecordList.dll") bytes"
  if [[ -x "$source_dir/cmake/check-module.sh" ]]; then
    check "$arch module: format, exports, imports, version" \
      "$source_dir/cmake/check-module.sh" "$work/zip/$name/$arch/BrevoRecordList.dll" "$arch" "$version"
  fi
done

echo "== the zip: install.cmd"
programs="$WINEPREFIX/drive_c/Program Files"
mkdir -p "$programs"
cp -r "$work/zip/$name" "$programs/"
release="$programs/$name"
release_win=$(windows_path "$release")
check "install.cmd succeeds" wine install cmd /c "$release_win\\install.cmd"
check "install.cmd says so" grep -q "BrevoRecordList is registered." "$work/logs/install"
check "the 64-bit view has every class and interface" registered 64 "$ours"
if has x86; then
  check "the 32-bit view has every class and interface" registered 32 "$ours"
  check "the type library is registered for win32 and win64" test "$(typelib_kinds)" = win32win64
fi

echo "== clients"
expected="$source_dir/examples"
scripts_win="$release_win\\examples\\scripts"
# Built from the zip's include/ alone, with the command the example names.
compile_client() {
  local triple=$1 out=$2 command
  command=$(sed -n "s|^//   \($triple-g++ .*\) -o cpp_client.exe\$|\1|p" "$release/examples/cpp_client.cpp")
  [[ -n "$command" ]] || { echo "  no $triple command in the example"; return 1; }
  (cd "$release" && $command -o "$out") >"$work/logs/compile.$triple" 2>&1 || { cat "$work/logs/compile.$triple"; return 1; }
}
# The 32-bit clients start at once and run side by side.
pids=()
if has x86; then
  check "the C++ client builds for x86 from the zip" compile_client i686-w64-mingw32 "$work/cpp_client32.exe"
  wine32 cscript32.filter_sort.js cscript //nologo "$scripts_win\\filter_sort.js" & pids+=($!)
  wine32 cscript32.listen.vbs cscript //nologo "$scripts_win\\listen.vbs" & pids+=($!)
  wine32 cpp_client32 "$work/cpp_client32.exe" & pids+=($!)
fi
for example in filter_sort listen; do
  for language in js vbs; do
    wine "cscript64.$example.$language" cscript //nologo "$scripts_win\\$example.$language"
    check "64-bit cscript: $example.$language" same_output "cscript64.$example.$language" "$expected/scripts/$example.expected"
  done
done
if has x64; then
  check "the C++ client builds for x64 from the zip" compile_client x86_64-w64-mingw32 "$work/cpp_client64.exe"
  wine cpp_client64 "$work/cpp_client64.exe"
  check "x64 C++ client, STA and MTA" same_output cpp_client64 "$expected/cpp_client.expected"
fi
if has x86; then
  wait "${pids[@]}"
  check "32-bit cscript: filter_sort.js" same_output cscript32.filter_sort.js "$expected/scripts/filter_sort.expected"
  check "32-bit cscript: listen.vbs" same_output cscript32.listen.vbs "$expected/scripts/listen.expected"
  check "x86 C++ client, STA and MTA" same_output cpp_client32 "$expected/cpp_client.expected"
fi

echo "== the zip: uninstall.cmd"
check "uninstall.cmd succeeds" wine uninstall cmd /c "$release_win\\uninstall.cmd"
check "no class or interface key is left in the 64-bit view" registered 64 0
check "no class or interface key is left in the 32-bit view" registered 32 0
check "the type library key is gone" test -z "$(grep -i "{$typelib}" "$work/keys64")"
# Failures are reported, without starting anything of the missing architecture.
broken="$programs/broken"
mkdir -p "$broken" && cp "$release"/*.cmd "$broken/"
check "install.cmd without the DLLs fails" not wine broken.install cmd /c "$(windows_path "$broken")\\install.cmd"
check "it says why" grep -q "BrevoRecordList.dll is missing" "$work/logs/broken.install.err"
check "uninstall.cmd without the DLLs fails" not wine broken.uninstall cmd /c "$(windows_path "$broken")\\uninstall.cmd"

echo "== the installer, silent, on x64"
cp "$installer" "$WINEPREFIX/drive_c/"
# /D= and _?= take the rest of the command line unquoted, so a folder without
# spaces (Wine quotes an argument that has one).
installed="$WINEPREFIX/drive_c/Brevo/RecordList"
installed_win=$(windows_path "$installed")
check "the installer succeeds" wine installer "C:\\$name.exe" /S "/D=$installed_win"
check "it installed the files" test -f "$installed/x64/BrevoRecordList.dll" -a -f "$installed/install.cmd"
check "it registered every class and interface" registered 64 "$ours"
if has x86; then check "in the 32-bit view too" registered 32 "$ours"; fi
wine installed.filter_sort.js cscript //nologo "$installed_win\\examples\\scripts\\filter_sort.js"
check "a client of the installed library" same_output installed.filter_sort.js "$expected/scripts/filter_sort.expected"
# _? keeps the uninstaller in place and makes it finish before returning.
check "the uninstaller succeeds" wine uninstaller "$installed_win\\Uninstall.exe" /S "_?=$installed_win"
check "it unregistered everything" registered 64 0
if has x86; then check "in the 32-bit view too" registered 32 0; fi
check "it removed the files" test ! -e "$installed/x64/BrevoRecordList.dll" -a ! -e "$installed/include"

echo "release test: $failures failed"
exit $((failures > 0))
