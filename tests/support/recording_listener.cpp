#include "support/recording_listener.h"

#include "columns/column_interfaces.h"

namespace brevo::testing {
namespace {

// The name of a column event's column, or "null".
std::string ColumnNameOf(IDispatch* column) {
  if (column == nullptr) return "null";
  const auto raw = com_ptr<IDispatch>(column).try_query<IColumnRaw>();
  return raw ? Narrow(raw->ColumnName()) : "?";
}

}  // namespace

STDMETHODIMP RecordingListener::PropertyChange(IPropertyChangeEvent* e) {
  BSTR name = nullptr, oldValue = nullptr, newValue = nullptr;
  e->GetPropertyName(&name);
  e->GetOldValue(&oldValue);
  e->GetNewValue(&newValue);
  const std::string line =
      "PropertyChange(" + Narrow(name) + ": " + Narrow(oldValue) + " -> " + Narrow(newValue) + ")";
  SysFreeString(name);
  SysFreeString(oldValue);
  SysFreeString(newValue);
  transcript_.push_back(name_ + "." + line);
  return result;
}

HRESULT RecordingListener::Columns(const char* method, IColumnsChangeEvent* event) {
  com_ptr<IDispatch> column;
  event->GetColumnChanged(column.put());
  return Finish(std::string(method) + "(" + ColumnNameOf(column.get()) + ")", event);
}

HRESULT RecordingListener::Records(const char* method, IRecordListChangeEvent* event) {
  com_ptr<IDispatch> record;
  event->GetRecordChanged(record.put());
  return Finish(std::string(method) + (record ? "(record)" : "(null)"), event);
}

}  // namespace brevo::testing
