# The library's sources; the platform layer is the only part chosen per build.
set(BREVO_SOURCES
  columns/abstract_mutable_columns.cpp
  columns/column.cpp
  columns/column_compare.cpp
  columns/columns_view.cpp
  columns/mutable_column_impl.cpp
  core/bstr_t.cpp
  core/cell_conversions.cpp
  core/cell_value.cpp
  core/com_error.cpp
  core/error_reporting.cpp
  core/module_lock.cpp
  core/number_text.cpp
  events/summaries.cpp
  platform/invalid_parameter.cpp
  records/abstract_mutable_record.cpp
  records/abstract_record_read_only.cpp
  records/mutable_record_impl.cpp
  records/record.cpp
)

if(WIN32)
  list(APPEND BREVO_SOURCES
    platform/windows/ansi_text.cpp
    platform/windows/class_registry.cpp
  )
else()
  list(APPEND BREVO_SOURCES
    platform/native/ansi_text.cpp
    platform/native/bstr.cpp
    platform/native/class_registry.cpp
    platform/native/error_info.cpp
    platform/native/guids.cpp
    platform/native/variant.cpp
    platform/native/variant_change_type.cpp
  )
endif()
