# brevo_add_type_library(<module target> <idl file>)
#
# Windows build: compiles the interface definition with widl into
# <base name of the idl>.tlb in the runtime output directory, beside the
# module, where the library looks for its type information when the type
# library is not registered. The standard IDL files it imports come from
# Wine's development headers (libwine-dev), stdole2.tlb from Wine itself.
include_guard(GLOBAL)

function(brevo_add_type_library target idl)
  find_program(BREVO_WIDL NAMES x86_64-w64-mingw32-widl widl REQUIRED)
  find_path(BREVO_WINE_IDL_DIR oaidl.idl
            PATHS /usr/include/wine/wine/windows /usr/include/wine/windows
            NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
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
