# GoogleTest for the build at hand, and one CTest test per test executable
# (under Wine on the windows build).
include(${CMAKE_CURRENT_LIST_DIR}/BrevoGTest.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/WineTesting.cmake)

# BREVO_ONE_TEST_PROCESS: for builds where every process start is costly
# (32-bit Wine under emulation), all suites build into the one executable
# unit_tests, run as one test with BREVO_TEST_FILTER as its gtest filter, and
# the client and SDK tests, which start processes of their own, are left out.
option(BREVO_ONE_TEST_PROCESS "Build the test suites into one executable run as one test" OFF)
set(BREVO_TEST_FILTER "" CACHE STRING "gtest filter of the one test executable (BREVO_ONE_TEST_PROCESS)")

# Builds every test source of tests/<folder> into one executable (with
# BREVO_ONE_TEST_PROCESS, into an object library <name> linked into unit_tests).
function(brevo_add_test_suite name folder)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  if(BREVO_ONE_TEST_PROCESS)
    add_library(${name} OBJECT ${sources})
    target_link_libraries(${name} PRIVATE brevo_test_support)
    if(NOT TARGET unit_tests)
      add_executable(unit_tests)
      target_link_libraries(unit_tests PRIVATE brevo_test_support)
      set(filter)
      if(BREVO_TEST_FILTER)
        set(filter "--gtest_filter=${BREVO_TEST_FILTER}")
      endif()
      # Measured under qemu: about 2.5 minutes, a minute of it the start.
      brevo_add_test(unit_tests ARGS ${filter} TIMEOUT 1200)
    endif()
    target_link_libraries(unit_tests PRIVATE ${name})
    return()
  endif()
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE brevo_test_support)
  brevo_add_test(${name})
endfunction()
