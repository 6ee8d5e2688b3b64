# GoogleTest for the build at hand, and one CTest test per test executable
# (under Wine on the windows build).
include(${CMAKE_CURRENT_LIST_DIR}/BrevoGTest.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/WineTesting.cmake)

# Builds every test source of tests/<folder> into one executable.
function(brevo_add_test_suite name folder)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE brevo_test_support)
  brevo_add_test(${name})
endfunction()
