# The Windows release (configure with BREVO_RELEASE=ON, preset "release").
#
# Builds the module for each architecture in Release, in its own tree under
# this one, with the same sources and the mingw-w64 toolchain of that
# architecture; then CPack gathers, in one run, each tree's runtime into x64/
# and x86/, the SDK from the x64 tree, and this project's own files (install
# and uninstall scripts, examples, docs, README.txt) into
#   BrevoRecordList-<version>-windows.zip   and   ...-windows.exe (NSIS)
# The "package" target makes both; the release test unpacks and installs them
# under Wine.
include_guard(GLOBAL)
include(ExternalProject)

set(BREVO_RELEASE_ARCHITECTURES x64 x86 CACHE STRING "Architectures in the release")
set(_toolchain_x64 "${PROJECT_SOURCE_DIR}/cmake/mingw-w64-x86_64.cmake")
set(_toolchain_x86 "${PROJECT_SOURCE_DIR}/cmake/mingw-w64-i686.cmake")

set(_projects)
foreach(arch IN LISTS BREVO_RELEASE_ARCHITECTURES)
  ExternalProject_Add(release_${arch}
    SOURCE_DIR "${PROJECT_SOURCE_DIR}"
    BINARY_DIR "${CMAKE_BINARY_DIR}/${arch}"
    PREFIX "${CMAKE_BINARY_DIR}/external/${arch}"
    CMAKE_ARGS "-DCMAKE_TOOLCHAIN_FILE=${_toolchain_${arch}}" -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF
    INSTALL_COMMAND ""
    BUILD_ALWAYS ON)
  list(APPEND _projects "${CMAKE_BINARY_DIR}/${arch}" ${PROJECT_NAME} runtime "/${arch}")
endforeach()
list(GET BREVO_RELEASE_ARCHITECTURES 0 _sdk_arch)
list(APPEND _projects "${CMAKE_BINARY_DIR}/${_sdk_arch}" ${PROJECT_NAME} sdk "/"
                      "${CMAKE_BINARY_DIR}" ${PROJECT_NAME} release "/")

# This project's own part of the package.
set(_release "${PROJECT_SOURCE_DIR}/cmake/release")
configure_file("${_release}/README.txt.in" "${CMAKE_BINARY_DIR}/README.txt" @ONLY)
install(FILES "${_release}/install.cmd" "${_release}/uninstall.cmd" "${CMAKE_BINARY_DIR}/README.txt"
        DESTINATION . COMPONENT release)
install(FILES "${PROJECT_SOURCE_DIR}/examples/cpp_client.cpp" DESTINATION examples COMPONENT release)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/scripts/" DESTINATION examples/scripts COMPONENT release
        PATTERN "*.expected" EXCLUDE)
install(FILES "${PROJECT_SOURCE_DIR}/docs/USAGE.md" DESTINATION docs COMPONENT release)

set(CPACK_PACKAGE_NAME ${PROJECT_NAME})
set(CPACK_PACKAGE_VENDOR "The BrevoRecordList developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_FILE_NAME "${PROJECT_NAME}-${PROJECT_VERSION}-windows")
set(CPACK_PACKAGE_INSTALL_DIRECTORY ${PROJECT_NAME})
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}")
set(CPACK_GENERATOR ZIP NSIS)
set(CPACK_INSTALL_CMAKE_PROJECTS ${_projects})

# The installer is a 64-bit program (32-bit Windows takes the zip and
# install.cmd): it installs into the 64-bit Program Files and its commands see
# the 64-bit system folder. The target must precede every other line of the
# script, so CPack gets its own template with that line first.
set(_nsis "${CMAKE_ROOT}/Modules/Internal/CPack/NSIS.template.in")
file(READ "${_nsis}" _bom LIMIT 3 HEX)
set(_offset 0)
if(_bom STREQUAL "efbbbf")  # a byte-order mark; the rest is ASCII
  set(_offset 3)
endif()
file(READ "${_nsis}" _template OFFSET ${_offset})
file(WRITE "${CMAKE_BINARY_DIR}/nsis/NSIS.template.in" "Target amd64-unicode\n${_template}")
set(CPACK_MODULE_PATH "${CMAKE_BINARY_DIR}/nsis")
set(CPACK_NSIS_INSTALL_ROOT "$PROGRAMFILES64")
set(CPACK_NSIS_DISPLAY_NAME "${PROJECT_NAME} ${PROJECT_VERSION}")
set(CPACK_NSIS_PACKAGE_NAME "${PROJECT_NAME} ${PROJECT_VERSION}")
set(CPACK_NSIS_ENABLE_UNINSTALL_BEFORE_INSTALL ON)
# The same registration as the zip's: install.cmd after the files are in
# place, uninstall.cmd before any is deleted. A failed registration fails the
# installation (the message box is skipped in silent mode).
set(_run "nsExec::ExecToLog '\\\"$SYSDIR\\\\cmd.exe\\\" /c \\\"$INSTDIR\\\\")
set(CPACK_NSIS_EXTRA_INSTALL_COMMANDS "
  ${_run}install.cmd\\\"'
  Pop $0
  StrCmp $0 0 +3
    MessageBox MB_OK|MB_ICONSTOP 'Registering ${PROJECT_NAME} failed (install.cmd: $0).' /SD IDOK
    Abort")
set(CPACK_NSIS_EXTRA_UNINSTALL_COMMANDS "
  ${_run}uninstall.cmd\\\"'
  Pop $0")
include(CPack)

# The end-to-end test of the packages under Wine.
enable_testing()
add_test(NAME release.packages
         COMMAND "${PROJECT_SOURCE_DIR}/tests/release/release_test.sh" "${CMAKE_BINARY_DIR}" "${PROJECT_VERSION}"
                 ${BREVO_RELEASE_ARCHITECTURES})
set_tests_properties(release.packages PROPERTIES TIMEOUT 2400)
