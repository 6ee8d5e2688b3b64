# brevo_add_test(<target> [NAME <name>] [ARGS ...] [LABELS ...])
#
# Registers the test executable <target> as ONE CTest test (a gtest binary
# runs all of its cases in that single process).
#
# Native build: plain add_test().
# Windows build (CMAKE_CROSSCOMPILING with the mingw toolchain): the test
# runs through CMAKE_CROSSCOMPILING_EMULATOR (wine-run.sh) in the throwaway
# prefix ${CMAKE_BINARY_DIR}/wineprefix, and requires the "wine" fixture: a
# setup test that creates the prefix and starts one persistent wineserver,
# and a cleanup test that stops it.
#
# brevo_add_wine_command_test(<name> [HOST] COMMAND <windows program> [args...])
#   Windows build only: runs an arbitrary program inside the prefix (e.g.
#   cscript, regsvr32) under the same fixture. HOST: the command is a host
#   program (a shell script that calls wine-run.sh itself) run with the
#   prefix in WINEPREFIX.

include_guard(GLOBAL)

# brevo_wine_path(<out-var> <absolute unix path>): Z:\... form of the path,
# for Windows programs that do not accept Unix paths (cscript, regsvr32).
function(brevo_wine_path out path)
  string(REPLACE "/" "\\" _p "${path}")
  set(${out} "Z:${_p}" PARENT_SCOPE)
endfunction()

set(BREVO_WINE_PREFIX "${CMAKE_BINARY_DIR}/wineprefix" CACHE PATH
    "Throwaway Wine prefix used by the tests of the Windows build")
set(_brevo_wine_dir "${CMAKE_CURRENT_LIST_DIR}")

function(_brevo_wine_fixture)
  get_property(_done GLOBAL PROPERTY _BREVO_WINE_FIXTURE_DONE)
  if(_done)
    return()
  endif()
  set_property(GLOBAL PROPERTY _BREVO_WINE_FIXTURE_DONE TRUE)
  find_program(BREVO_WINESERVER NAMES wineserver REQUIRED)
  # A 32-bit build's programs need the prefix's 32-bit half.
  set(_wow64)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(_wow64 wow64)
  endif()
  add_test(NAME wine.setup
           COMMAND "${_brevo_wine_dir}/wine-fixture.sh" setup "${BREVO_WINE_PREFIX}" ${_wow64})
  add_test(NAME wine.cleanup
           COMMAND "${_brevo_wine_dir}/wine-fixture.sh" cleanup "${BREVO_WINE_PREFIX}")
  set_tests_properties(wine.setup PROPERTIES
    FIXTURES_SETUP wine
    ENVIRONMENT "WINESERVER=${BREVO_WINESERVER}"
    # A new prefix takes minutes where wine32 is installed and emulated.
    TIMEOUT 600)
  set_tests_properties(wine.cleanup PROPERTIES
    FIXTURES_CLEANUP wine
    ENVIRONMENT "WINESERVER=${BREVO_WINESERVER}"
    TIMEOUT 60)
endfunction()

function(_brevo_wine_test_properties name)
  _brevo_wine_fixture()
  set_tests_properties(${name} PROPERTIES
    FIXTURES_REQUIRED wine
    ENVIRONMENT "WINEPREFIX=${BREVO_WINE_PREFIX}")
endfunction()

function(brevo_add_test target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "NAME;TIMEOUT" "ARGS;LABELS")
  if(NOT arg_NAME)
    set(arg_NAME ${target})
  endif()
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  # COMMAND <target> is resolved to the built file and, when cross
  # compiling, prefixed with the target's CROSSCOMPILING_EMULATOR.
  add_test(NAME ${arg_NAME} COMMAND ${target} ${arg_ARGS})
  set_tests_properties(${arg_NAME} PROPERTIES TIMEOUT ${arg_TIMEOUT})
  if(arg_LABELS)
    set_tests_properties(${arg_NAME} PROPERTIES LABELS "${arg_LABELS}")
  endif()
  if(CMAKE_CROSSCOMPILING AND WIN32)
    _brevo_wine_test_properties(${arg_NAME})
  endif()
endfunction()

function(brevo_add_wine_command_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "HOST" "TIMEOUT" "COMMAND")
  if(NOT (CMAKE_CROSSCOMPILING AND WIN32))
    return()
  endif()
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  set(_runner "${_brevo_wine_dir}/wine-run.sh")
  if(arg_HOST)
    set(_runner)
  endif()
  add_test(NAME ${name} COMMAND ${_runner} ${arg_COMMAND})
  set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT})
  _brevo_wine_test_properties(${name})
endfunction()

# brevo_add_cscript_test(<name> FILE <script.js|script.vbs> [ARGS ...]
#                        [PASS_REGEX <re>] [FAIL_REGEX <re>])
#   Windows build only: "cscript //nologo <script> args..." in the prefix;
#   the extension picks JScript or VBScript.
#   Wine 8's cscript exits 0 and prints nothing on an uncaught script error,
#   and WScript.StdOut/StdErr are not implemented, so success is judged by
#   output alone: the test passes only if stdout matches PASS_REGEX (default:
#   a summary line "N passed, 0 failed") and fails if it matches FAIL_REGEX
#   (default: a summary with failures). Scripts catch their own errors and
#   WScript.Echo them.
function(brevo_add_cscript_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "FILE;PASS_REGEX;FAIL_REGEX;TIMEOUT" "ARGS")
  if(NOT (CMAKE_CROSSCOMPILING AND WIN32))
    return()
  endif()
  if(NOT arg_PASS_REGEX)
    set(arg_PASS_REGEX "(^|\n)[0-9]+ passed, 0 failed")
  endif()
  if(NOT arg_FAIL_REGEX)
    set(arg_FAIL_REGEX " [1-9][0-9]* failed")
  endif()
  get_filename_component(_script "${arg_FILE}" ABSOLUTE)
  brevo_wine_path(_script "${_script}")
  brevo_add_wine_command_test(${name}
    COMMAND cscript //nologo "${_script}" ${arg_ARGS} TIMEOUT ${arg_TIMEOUT})
  set_tests_properties(${name} PROPERTIES
    PASS_REGULAR_EXPRESSION "${arg_PASS_REGEX}"
    FAIL_REGULAR_EXPRESSION "${arg_FAIL_REGEX}")
endfunction()
