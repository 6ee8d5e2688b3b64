# The body shared by the mingw-w64 toolchain files (mingw-w64-x86_64.cmake,
# mingw-w64-i686.cmake), which set CMAKE_SYSTEM_PROCESSOR and
# BREVO_MINGW_TRIPLE and include it: cross-compile with mingw-w64 (posix
# threading model) and run the results under Wine.
#
# Every .exe/.dll is linked fully static (libgcc, libstdc++, winpthread), so
# nothing from /usr/lib/gcc/<triple> has to be on the Wine PATH.
# Consequence: each module carries its own C++ runtime, so only plain C /
# COM interfaces may cross a DLL boundary (no std:: objects, no C++
# exceptions, no new/delete pairs split across modules).

set(CMAKE_SYSTEM_NAME Windows)
set(_brevo_triple ${BREVO_MINGW_TRIPLE})

# The "-posix" variants use the winpthreads threading model, which gives a
# working std::thread / std::mutex / std::condition_variable in gcc 12
# (the "-win32" variants do not have them in Debian 12).
find_program(CMAKE_C_COMPILER   NAMES ${_brevo_triple}-gcc-posix REQUIRED)
find_program(CMAKE_CXX_COMPILER NAMES ${_brevo_triple}-g++-posix REQUIRED)
find_program(CMAKE_RC_COMPILER  NAMES ${_brevo_triple}-windres REQUIRED)
find_program(BREVO_WIDL         NAMES ${_brevo_triple}-widl widl)

set(CMAKE_FIND_ROOT_PATH /usr/${_brevo_triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# No mingw runtime DLLs at run time.  "-static" also forces the static
# libwinpthread.a (otherwise libstdc++ pulls in libwinpthread-1.dll).
set(_brevo_static_link "-static -static-libgcc -static-libstdc++")
set(CMAKE_EXE_LINKER_FLAGS_INIT    "${_brevo_static_link}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${_brevo_static_link}")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "${_brevo_static_link}")

# add_test(), try_run() and custom commands that run a target executable go
# through this launcher.  The Wine prefix is picked by the script
# (WINEPREFIX from the environment, otherwise <build dir>/wineprefix), the
# loader by the program's machine type.
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/wine-run.sh")
