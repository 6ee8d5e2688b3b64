// Shows how a cell of each kind reads through every typed getter, the loose
// conversions included (a string reads as false, a byte is the first
// character of the value's text).
#include <cstdio>
#include <functional>
#include <string>

#include "columns/mutable_columns.h"
#include "examples/table_demo.h"
#include "core/bv_exception.h"
#include "records/abstract_mutable_record.h"

namespace {

using brevo::_bstr_t;
using brevo::unique_variant;

// A record of one cell, enough to show the conversions on their own.
class OneCell final : public brevo::AbstractMutableRecord {
 public:
  unique_variant GetValue(ULONG) override { return cell; }
  void SetValue(ULONG, const VARIANT& value) override { cell = unique_variant(value); }
  unique_variant cell;
};

std::string Reading(const std::function<std::string()>& read) {
  try {
    return read();
  } catch (const brevo::EBvException& e) {
    return std::string("! ") + static_cast<const char*>(_bstr_t(e.GetDescription()));
  }
}

std::string Quoted(const _bstr_t& text) {
  return text.is_null() ? "(null)" : "\"" + std::string(static_cast<const char*>(text)) + "\"";
}

// Prints every schema notification it hears, and lets additions go on (a
// columns "Before" notification is a veto unless the listener calls Stop).
class PrintingListener : public brevo::implements<PrintingListener, brevo::IColumnsChangeListener,
                                                  brevo::IPropertyChangeListener> {
 public:
  static constexpr CLSID kClassId = {0x3F0C2B6A, 0x77E1, 0x4C55, {0x9B, 0x0D, 0x2E, 0x61, 0x5A, 0x18, 0xC4, 0x01}};

  STDMETHODIMP ColumnBeforeAdd(brevo::IColumnsChangeEvent* e) override { return Column("ColumnBeforeAdd", e, true); }
  STDMETHODIMP ColumnAfterAdd(brevo::IColumnsChangeEvent* e) override { return Column("ColumnAfterAdd", e, false); }
  STDMETHODIMP ColumnBeforeRemove(brevo::IColumnsChangeEvent* e) override {
    return Column("ColumnBeforeRemove", e, true);
  }
  STDMETHODIMP ColumnAfterRemove(brevo::IColumnsChangeEvent* e) override {
    return Column("ColumnAfterRemove", e, false);
  }
  STDMETHODIMP PropertyChange(brevo::IPropertyChangeEvent* e) override {
    BSTR name = nullptr, oldValue = nullptr, newValue = nullptr;
    e->GetPropertyName(&name);
    e->GetOldValue(&oldValue);
    e->GetNewValue(&newValue);
    std::printf("  %-18s property %s: %s -> %s\n", "PropertyChange", Quoted(_bstr_t(name, false)).c_str(),
                Quoted(_bstr_t(oldValue, false)).c_str(), Quoted(_bstr_t(newValue, false)).c_str());
    return S_OK;
  }

 private:
  HRESULT Column(const char* what, brevo::IColumnsChangeEvent* e, bool allow) {
    brevo::com_ptr<IDispatch> column;
    e->GetColumnChanged(column.put());
    BSTR name = nullptr;
    if (column) column.query<brevo::IMutableColumn>()->get_ColumnName(&name);
    std::printf("  %-18s %s\n", what, Quoted(_bstr_t(name, false)).c_str());
    if (allow) e->Stop();
    return S_OK;
  }
};

void ShowSchemaEvents() {
  std::printf("Schema notifications\n");
  const auto columns = brevo::make_object<brevo::MutableColumns>();
  const auto listener = brevo::make_object<PrintingListener>();
  columns->AddColumnsChangeListener(listener.get());
  columns->AddPropertyChangeListener(listener.get());
  brevo::com_ptr<brevo::IMutableColumn> city;
  brevo::com_ptr<brevo::IMutableColumn> other;
  columns->AddColumn(_bstr_t(OLESTR("Address.City")).GetBSTR(), 1, city.put());
  columns->AddColumn(_bstr_t(OLESTR("Address.Zip")).GetBSTR(), 10, other.put());
  city->put_ColumnName(_bstr_t(OLESTR("Address.Town")).GetBSTR());
  city->put_DisplayName(_bstr_t(OLESTR("Town")).GetBSTR());
  columns->RemoveColumn(1);
  std::printf("\n");
}

}  // namespace

int main() {
  ShowSchemaEvents();
  ShowTable();
  struct Sample {
    const char* label;
    std::function<void(OneCell&)> store;
  };
  const Sample samples[] = {
      {"empty", [](OneCell&) {}},
      {"Int32 70000", [](OneCell& r) { r.SetValueAsInt32(0, 70000); }},
      {"Double -2.9", [](OneCell& r) { r.SetValueAsDouble(0, -2.9); }},
      {"String \"12abc\"", [](OneCell& r) { r.SetValueAsString(0, _bstr_t(OLESTR("12abc")).GetBSTR()); }},
      {"Boolean true", [](OneCell& r) { r.SetValueAsBoolean(0, VARIANT_TRUE); }},
      {"Boolean 1", [](OneCell& r) { r.SetValueAsBoolean(0, 1); }},
      {"Byte 200", [](OneCell& r) { r.SetValueAsByte(0, 200); }},
      {"Int16 -5", [](OneCell& r) { r.SetValueAsInt16(0, -5); }},
      {"Int64 5 (stores nothing)", [](OneCell& r) { r.SetValueAsInt64(0, 5); }},
      {"Float 1.5", [](OneCell& r) { r.SetValueAsFloat(0, 1.5f); }},
  };

  std::printf("Typed readings of one cell\n");
  std::printf("%-26s %-29s %-12s %-10s %-12s %-10s %-12s %-8s %s\n", "cell", "Boolean", "Double", "Float",
              "Int32", "Int16", "Int64", "Byte", "String");
  for (const Sample& sample : samples) {
    OneCell record;
    sample.store(record);
    const auto number = [](auto value) { return std::to_string(value); };
    std::printf("%-26s %-29s %-12s %-10s %-12s %-10s %-12s %-8s %s\n", sample.label,
                Reading([&] { return number(record.GetValueAsBoolean(0)); }).c_str(),
                Reading([&] { return number(record.GetValueAsDouble(0)); }).c_str(),
                Reading([&] { return number(record.GetValueAsFloat(0)); }).c_str(),
                Reading([&] { return number(record.GetValueAsInt32(0)); }).c_str(),
                Reading([&] { return number(record.GetValueAsInt16(0)); }).c_str(),
                Reading([&] { return number(record.GetValueAsInt64(0)); }).c_str(),
                Reading([&] { return number(record.GetValueAsByte(0)); }).c_str(),
                Reading([&] { return Quoted(_bstr_t(record.GetValueAsString(0).release(), false)); }).c_str());
  }
  std::printf("\n! marks a refusal, with the getter's own message.\n");
  return 0;
}
