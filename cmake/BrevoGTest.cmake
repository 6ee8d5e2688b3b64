# Provides GTest::gtest, GTest::gtest_main, GTest::gmock for both builds.
#   native:  the distribution's libgtest-dev (find_package)
#   Windows: googletest built from source (BREVO_GTEST_SOURCE_DIR, default
#            /usr/src/googletest) with the cross compiler.
include_guard(GLOBAL)

if(CMAKE_CROSSCOMPILING)
  set(BREVO_GTEST_SOURCE_DIR /usr/src/googletest CACHE PATH
      "googletest source tree used for the cross build")
  # Only meaningful for MSVC (/MD vs /MT); harmless for mingw.
  set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
  add_subdirectory(${BREVO_GTEST_SOURCE_DIR}
                   ${CMAKE_BINARY_DIR}/_deps/googletest EXCLUDE_FROM_ALL SYSTEM)
  # googletest 1.12 defines no GTest:: aliases when used via add_subdirectory.
  foreach(_t gtest gtest_main gmock gmock_main)
    if(TARGET ${_t} AND NOT TARGET GTest::${_t})
      add_library(GTest::${_t} ALIAS ${_t})
    endif()
  endforeach()
else()
  find_package(GTest 1.10 REQUIRED CONFIG)
endif()
