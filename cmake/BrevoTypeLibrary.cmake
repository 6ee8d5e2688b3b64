# brevo_add_type_library(<module target> <idl file>)
#
# Windows build: compiles the interface definition with widl into
# <base name of the idl>.tlb in the runtime output directory, beside the
# module, where the library looks for its type information when the type
# library is not registered. The standard IDL files it imports come from
# Wine's development headers (libwine-dev), stdole2.tlb from Wine itself.
#
# brevo_add_sdk_headers(<idl file> [COPY <header>...])
#
# Windows build: the headers a client compiles against, made at build time
# into ${CMAKE_BINARY_DIR}/include: <base>.h (widl -h: every interface, the
# coclasses and their CLSID_, the IID_ and LIBID_ declarations, for C and C++)
# and <base>_i.c (widl -u: the identifiers' definitions, compiled once into a
# client). COPY headers (the callbacks helper) are copied beside them, so the
# folder is the SDK's whole include directory. Sets:
#   BREVO_SDK_INCLUDE_DIR  that folder (a global property of the same name too)
#   brevo_sdk_headers      the custom target that makes it
#   brevo_sdk              an INTERFACE library for clients: the folder as
#                          include directory, <base>_i.c as a source, and the
#                          system libraries a client links
include_guard(GLOBAL)

macro(_brevo_find_widl)
  find_program(BREVO_WIDL NAMES x86_64-w64-mingw32-widl widl REQUIRED)
  find_path(BREVO_WINE_IDL_DIR oaidl.idl
            PATHS /usr/include/wine/wine/windows /usr/include/wine/windows
            NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
endmacro()

function(brevo_add_type_library target idl)
  _brevo_find_widl()
  # Each architecture has its own type library layout, and the stdole2.tlb
  # of the matching Wine.
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(arch --win32)
    set(wine_tlb_dirs /usr/lib/i386-linux-gnu/wine/i386-windows /usr/lib/wine/i386-windows)
  else()
    set(arch --win64)
    set(wine_tlb_dirs /usr/lib/x86_64-linux-gnu/wine/x86_64-windows /usr/lib/wine/x86_64-windows
                      /usr/lib64/wine/x86_64-windows)
  endif()
  find_path(BREVO_WINE_TLB_DIR stdole2.tlb PATHS ${wine_tlb_dirs}
            NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)

  get_filename_component(idl "${idl}" ABSOLUTE)
  get_filename_component(base "${idl}" NAME_WE)
  set(tlb "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${base}.tlb")
  add_custom_command(
    OUTPUT "${tlb}"
    COMMAND "${BREVO_WIDL}" ${arch} -t -I "${BREVO_WINE_IDL_DIR}" -L "${BREVO_WINE_TLB_DIR}" -o "${tlb}" "${idl}"
    DEPENDS "${idl}"
    COMMENT "Generating type library ${base}.tlb"
    VERBATIM)
  add_custom_target(${target}_type_library DEPENDS "${tlb}")
  add_dependencies(${target} ${target}_type_library)
endfunction()

function(brevo_add_sdk_headers idl)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "COPY")
  _brevo_find_widl()
  get_filename_component(idl "${idl}" ABSOLUTE)
  get_filename_component(base "${idl}" NAME_WE)
  set(dir "${CMAKE_BINARY_DIR}/include")
  set(header "${dir}/${base}.h")
  set(ids "${dir}/${base}_i.c")
  # Run from the source tree with a relative path: the banner widl writes
  # names the idl as the sources know it, not this machine's checkout.
  file(RELATIVE_PATH idl_rel "${PROJECT_SOURCE_DIR}" "${idl}")
  add_custom_command(
    OUTPUT "${header}" "${ids}"
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${dir}"
    COMMAND "${BREVO_WIDL}" -h -I "${BREVO_WINE_IDL_DIR}" -o "${header}" "${idl_rel}"
    COMMAND "${BREVO_WIDL}" -u -I "${BREVO_WINE_IDL_DIR}" -o "${ids}" "${idl_rel}"
    DEPENDS "${idl}"
    WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
    COMMENT "Generating SDK headers ${base}.h and ${base}_i.c"
    VERBATIM)
  set(outputs "${header}" "${ids}")
  foreach(file IN LISTS arg_COPY)
    get_filename_component(file "${file}" ABSOLUTE)
    get_filename_component(name "${file}" NAME)
    add_custom_command(
      OUTPUT "${dir}/${name}"
      COMMAND "${CMAKE_COMMAND}" -E copy "${file}" "${dir}/${name}"
      DEPENDS "${file}"
      VERBATIM)
    list(APPEND outputs "${dir}/${name}")
  endforeach()
  add_custom_target(brevo_sdk_headers ALL DEPENDS ${outputs})

  add_library(brevo_sdk INTERFACE)
  target_include_directories(brevo_sdk INTERFACE "${dir}")
  target_sources(brevo_sdk INTERFACE "${ids}")
  target_link_libraries(brevo_sdk INTERFACE ole32 oleaut32 uuid)
  add_dependencies(brevo_sdk brevo_sdk_headers)

  set(BREVO_SDK_INCLUDE_DIR "${dir}" PARENT_SCOPE)
  set_property(GLOBAL PROPERTY BREVO_SDK_INCLUDE_DIR "${dir}")
endfunction()
