# The library's sources; the platform layer is the only part chosen per build.
set(BREVO_SOURCES
  COMDll/dispatch_tables.cpp
  COMDll/module.cpp
  COMDll/object_map.cpp
  COMDll/registration.cpp
  COMDll/registry_script.cpp
  COMDll/type_library.cpp
  columns/abstract_mutable_columns.cpp
  columns/column.cpp
  columns/column_compare.cpp
  columns/columns_view.cpp
  columns/mutable_column_impl.cpp
  core/bstr_t.cpp
  core/cell_conversions.cpp
  core/cell_value.cpp
  core/com_error.cpp
  core/dispatch.cpp
  core/error_reporting.cpp
  core/module_lock.cpp
  core/number_text.cpp
  core/script_call.cpp
  events/summaries.cpp
  factory/record_list_utils.cpp
  factory/records_factory.cpp
  grouping/group_iterator.cpp
  grouping/group_key.cpp
  grouping/group_mutable_columns.cpp
  grouping/group_mutable_record_list.cpp
  grouping/group_record.cpp
  grouping/group_record_core.cpp
  grouping/group_record_list.cpp
  grouping/list_source.cpp
  lists/abstract_mutable_record_list.cpp
  lists/const_iterator.cpp
  lists/mutable_iterator.cpp
  lists/mutable_record_list.cpp
  lists/record_list.cpp
  lists/row_sort.cpp
  lists/script_callback.cpp
  records/abstract_mutable_record.cpp
  records/abstract_record_read_only.cpp
  records/mutable_record_impl.cpp
  records/record.cpp
  records/record_compare.cpp
)

# The platform layer: on Windows part of the library, over the system's
# ole32/oleaut32; elsewhere a library of its own that stands in for them, so
# that the library, its hosts and the tests share one registry and one
# error-info slot as they would share the system's.
set(BREVO_PLATFORM_SOURCES
  platform/class_registry.cpp
  platform/invalid_parameter.cpp
)
if(WIN32)
  list(APPEND BREVO_PLATFORM_SOURCES
    platform/windows/allocation_failure.cpp
    platform/windows/ansi_text.cpp
    platform/windows/library_loader.cpp
    platform/windows/module_resources.cpp
    platform/windows/process_memory.cpp
    platform/windows/registry.cpp
    platform/windows/type_library.cpp
  )
else()
  list(APPEND BREVO_PLATFORM_SOURCES
    platform/native/allocation_failure.cpp
    platform/native/ansi_text.cpp
    platform/native/bstr.cpp
    platform/native/class_objects.cpp
    platform/native/error_info.cpp
    platform/native/guids.cpp
    platform/native/library_loader.cpp
    # (platform/native/module_resources.cpp joins the module's own objects:
    # cmake/BrevoModuleResources.cmake)
    platform/native/process_memory.cpp
    platform/native/registry.cpp
    platform/native/type_library.cpp
    platform/native/variant.cpp
    platform/native/variant_change_type.cpp
  )
endif()
