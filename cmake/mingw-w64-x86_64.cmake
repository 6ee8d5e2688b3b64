# Toolchain file: cross-compile for 64-bit Windows with mingw-w64 and run the
# results under Wine (see mingw-w64.cmake).
#
#   cmake -S . -B build/windows -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(BREVO_MINGW_TRIPLE x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
