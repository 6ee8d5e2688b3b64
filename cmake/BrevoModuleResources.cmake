# brevo_add_module_resources(<module target> <object library>)
#
# The module's resources, made from one registration script, the project's
# name and its version: on Windows the configured COMDll/BrevoRecordList.rc is
# compiled into the module; elsewhere, with no PE resources, a table generated
# from the same files (less the version) joins the module's objects, with the
# lookup that reads it.
include_guard(GLOBAL)

function(brevo_add_module_resources module objects)
  set(BREVO_APPID_SCRIPT "${PROJECT_SOURCE_DIR}/COMDll/${PROJECT_NAME}.rgs")
  if(WIN32)
    set(BREVO_COMPANY "The BrevoRecordList developers")
    set(BREVO_COPYRIGHT_YEAR 2026)
    # Debug builds say so in their version resource.
    set(BREVO_FILE_FLAGS 0)
    if(CMAKE_BUILD_TYPE STREQUAL "Debug")
      set(BREVO_FILE_FLAGS VS_FF_DEBUG)
    endif()
    set(rc "${CMAKE_CURRENT_BINARY_DIR}/${PROJECT_NAME}.rc")
    configure_file("${PROJECT_SOURCE_DIR}/COMDll/${PROJECT_NAME}.rc.in" "${rc}" @ONLY)
    # The script is read by the resource compiler, not included.
    set_source_files_properties("${rc}" PROPERTIES OBJECT_DEPENDS "${BREVO_APPID_SCRIPT}")
    target_sources(${module} PRIVATE "${rc}")
    target_include_directories(${module} PRIVATE "${PROJECT_SOURCE_DIR}")
  else()
    file(READ "${BREVO_APPID_SCRIPT}" BREVO_APPID_SCRIPT_TEXT)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${BREVO_APPID_SCRIPT}")
    set(table "${CMAKE_CURRENT_BINARY_DIR}/resource_table.cpp")
    configure_file("${PROJECT_SOURCE_DIR}/COMDll/resource_table.cpp.in" "${table}" @ONLY)
    target_sources(${objects} PRIVATE "${table}" "${PROJECT_SOURCE_DIR}/platform/native/module_resources.cpp")
  endif()
endfunction()
