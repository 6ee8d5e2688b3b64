# Toolchain file: cross-compile for 32-bit Windows with mingw-w64 and run the
# results under 32-bit Wine (see mingw-w64.cmake).
#
#   cmake -S . -B build/windows-x86 -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-i686.cmake
set(CMAKE_SYSTEM_PROCESSOR i686)
set(BREVO_MINGW_TRIPLE i686-w64-mingw32)
# gcc's i686 default is x87 arithmetic, whose 80-bit intermediates round
# differently from the x64 build: doubles compared or converted to integers
# would give other results. SSE2 keeps every double a double.
set(CMAKE_C_FLAGS_INIT   "-msse2 -mfpmath=sse")
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
