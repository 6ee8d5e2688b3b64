// A C++ host of the registered BrevoRecordList.dll: it creates the classes
// by ProgID through the component runtime, calls them early-bound, reads a
// failure's text from IErrorInfo, and checks that the module may unload once
// the last object is released. Prints what it does; exits non-zero on the
// first failure.
//
// Only the interface declarations come from the library's headers: every
// object comes from the DLL that the registry names (regsvr32 it first).
#include <cstdio>
#include <stdexcept>
#include <string>

#include "columns/column_interfaces.h"
#include "factory/factory_interfaces.h"
#include "factory/record_list_utils.h"
#include "lists/list_interfaces.h"

namespace {

using brevo::_bstr_t;
using brevo::com_ptr;
using brevo::IMutableColumn;
using brevo::IMutableColumns;
using brevo::IMutableRecord;
using brevo::IMutableRecordList;
using brevo::iid_of;

// Column-type codes.
constexpr ULONG kText = 8;
constexpr ULONG kReal = 4;
constexpr ULONG kInteger = 10;

struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

void Require(bool condition, const std::string& what) {
  if (!condition) throw Failure(what);
}

void Succeeded(HRESULT hr, const char* what) {
  char code[16];
  std::snprintf(code, sizeof code, "0x%08lX", static_cast<unsigned long>(hr));
  Require(SUCCEEDED(hr), std::string(what) + " failed with " + code);
}

template <class I>
com_ptr<I> Create(const OLECHAR* progId) {
  CLSID clsid{};
  Succeeded(CLSIDFromProgID(progId, &clsid), "CLSIDFromProgID");
  com_ptr<I> object;
  Succeeded(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid_of<I>(), object.put_void()), "CoCreateInstance");
  return object;
}

// What a failed call left: its HRESULT, and the description from the error
// object when the interface says it reports one.
template <class I>
std::string ErrorText(HRESULT hr, I* object) {
  Require(hr == DISP_E_EXCEPTION, "a library failure is DISP_E_EXCEPTION");
  const auto support = com_ptr<I>(object).template query<ISupportErrorInfo>();
  Require(support->InterfaceSupportsErrorInfo(iid_of<I>()) == S_OK, "the interface reports error info");
  com_ptr<IErrorInfo> info;
  Require(GetErrorInfo(0, info.put()) == S_OK && info, "an error object is there");
  BSTR description = nullptr;
  Succeeded(info->GetDescription(&description), "IErrorInfo::GetDescription");
  return _bstr_t(description, false).narrow();
}

void AddRow(IMutableRecordList* list, const OLECHAR* name, double price, LONG quantity) {
  com_ptr<IMutableRecord> record;
  Succeeded(list->AddRecord(record.put()), "AddRecord");
  const _bstr_t text(name);
  Succeeded(record->SetValueAsString(0, text.GetBSTR()), "SetValueAsString");
  Succeeded(record->SetValueAsDouble(1, price), "SetValueAsDouble");
  Succeeded(record->SetValueAsInt32(2, quantity), "SetValueAsInt32");
}

// The values of a record, read back through the typed getters; the price
// also as text, which the library writes with six decimals.
std::string Describe(IMutableRecord* record) {
  BSTR name = nullptr, price = nullptr;
  LONG quantity = 0;
  Succeeded(record->GetValueAsString(0, &name), "GetValueAsString");
  const _bstr_t ownedName(name, false);
  Succeeded(record->GetValueAsString(1, &price), "GetValueAsString");
  const _bstr_t ownedPrice(price, false);
  Succeeded(record->GetValueAsInt32(2, &quantity), "GetValueAsInt32");
  return std::string(ownedName.narrow()) + " " + ownedPrice.narrow() + " x" + std::to_string(quantity);
}

using CanUnloadNow = HRESULT(STDAPICALLTYPE*)();

CanUnloadNow LoadedModuleEntry() {
  const HMODULE module = GetModuleHandleW(L"BrevoRecordList.dll");
  Require(module != nullptr, "BrevoRecordList.dll is loaded in this process");
  const auto entry = reinterpret_cast<CanUnloadNow>(reinterpret_cast<void*>(GetProcAddress(module, "DllCanUnloadNow")));
  Require(entry != nullptr, "DllCanUnloadNow is exported");
  return entry;
}

void Run() {
  // A schema of three typed columns; names must be unique.
  const auto columns = Create<IMutableColumns>(OLESTR("BrevoRecordList.MutableColumns"));
  for (const auto& [name, type] : {std::pair{OLESTR("Name"), kText}, {OLESTR("Price"), kReal},
                                   {OLESTR("Quantity"), kInteger}}) {
    com_ptr<IMutableColumn> column;
    Succeeded(columns->AddColumn(_bstr_t(name).GetBSTR(), type, column.put()), "AddColumn");
  }
  {
    com_ptr<IMutableColumn> duplicate;
    const HRESULT hr = columns->AddColumn(_bstr_t(OLESTR("Name")).GetBSTR(), kInteger, duplicate.put());
    const std::string text = ErrorText(hr, columns.get());
    std::printf("a second Name column: %s\n", text.c_str());
    Require(text == "Name property must be unique.", "the uniqueness error's text");
  }

  // A table over the schema.
  const auto list = Create<IMutableRecordList>(OLESTR("BrevoRecordList.MutableRecordList"));
  Succeeded(list->Create(columns.get()), "Create");
  AddRow(list.get(), OLESTR("Pear"), 2.5, 40);
  AddRow(list.get(), OLESTR("Fig"), 0.75, 12);
  ULONG size = 0;
  Succeeded(list->get_Size(&size), "Size");
  Require(size == 2, "two rows");
  Require(LoadedModuleEntry()() == S_FALSE, "the module stays while objects live");

  // Walk the rows in order of addition.
  com_ptr<brevo::IRecordListIterator> rows;
  Succeeded(list->GetIterator(VARIANT_TRUE, rows.put()), "GetIterator");
  std::string seen;
  for (VARIANT_BOOL more = VARIANT_FALSE; SUCCEEDED(rows->HasNext(&more)) && more;) {
    com_ptr<IDispatch> next;
    Succeeded(rows->Next(next.put()), "Next");
    const std::string row = Describe(next.query<IMutableRecord>().get());
    std::printf("row: %s\n", row.c_str());
    seen += row + ";";
  }
  Require(seen == "Pear 2.500000 x40;Fig 0.750000 x12;", "the rows read back: " + seen);

  // A value of the wrong kind is refused, with its message.
  {
    com_ptr<IMutableRecord> record;
    Succeeded(list->AddRecord(record.put()), "AddRecord");
    const std::string text = ErrorText(record->SetValueAsInt32(0, 5), record.get());
    std::printf("an integer into the Name column: %s\n", text.c_str());
    Require(text == "New value class type doesn't match the column type.", "the type error's text");
  }

  // A grouped view. Source and view hold each other through the source's
  // registries until the client takes the view out of them.
  const auto stock = Create<IMutableRecordList>(OLESTR("BrevoRecordList.MutableRecordList"));
  const auto stockColumns = Create<IMutableColumns>(OLESTR("BrevoRecordList.MutableColumns"));
  for (const OLECHAR* name : {OLESTR("Stock.Name"), OLESTR("Stock.Count")}) {
    com_ptr<IMutableColumn> column;
    Succeeded(stockColumns->AddColumn(_bstr_t(name).GetBSTR(), kText, column.put()), "AddColumn");
  }
  Succeeded(stock->Create(stockColumns.get()), "Create");
  const auto utils = Create<brevo::IRecordListUtils>(OLESTR("BrevoRecordList.RecordListUtils"));
  com_ptr<IMutableRecordList> grouped;
  Succeeded(utils->GetMutableRecordListByGroup(stock.get(), _bstr_t(OLESTR("Stock")).GetBSTR(), grouped.put()),
            "GetMutableRecordListByGroup");
  com_ptr<IMutableRecord> added;
  Succeeded(grouped->AddRecord(added.put()), "AddRecord through the grouped list");
  Succeeded(stock->get_Size(&size), "Size");
  Require(size == 1, "a record added through the grouped list lands in the source");
  Succeeded(stock->RemoveRecordListChangeListener(grouped.query<brevo::IRecordListChangeListener>().get()),
            "RemoveRecordListChangeListener");
  Succeeded(stock->RemoveRecordListValueChangeListener(grouped.query<brevo::IRecordListValueChangeListener>().get()),
            "RemoveRecordListValueChangeListener");
  Succeeded(stockColumns->RemoveColumnsChangeListener(grouped.query<brevo::IColumnsChangeListener>().get()),
            "RemoveColumnsChangeListener");
}

}  // namespace

int main() {
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
    std::printf("FAILED CoInitializeEx\n");
    return 1;
  }
  int status = 0;
  try {
    Run();  // every object is released when it returns
    Require(LoadedModuleEntry()() == S_OK, "DllCanUnloadNow is S_OK after the last release");
    std::printf("released everything; the module may unload\n");
  } catch (const std::exception& e) {
    std::printf("FAILED %s\n", e.what());
    status = 1;
  } catch (...) {  // a missing interface, raised by com_ptr::query
    std::printf("FAILED with a runtime error\n");
    status = 1;
  }
  CoUninitialize();
  return status;
}
