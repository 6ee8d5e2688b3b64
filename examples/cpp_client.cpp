// A C++ client of BrevoRecordList built from the SDK alone. From a directory
// holding include/ and examples/ (the release's layout), one of:
//
//   x86_64-w64-mingw32-g++ -std=c++17 -static -Iinclude examples/cpp_client.cpp include/BrevoRecordList_i.c -lole32 -loleaut32 -luuid -o cpp_client.exe
//   i686-w64-mingw32-g++ -std=c++17 -static -Iinclude examples/cpp_client.cpp include/BrevoRecordList_i.c -lole32 -loleaut32 -luuid -o cpp_client.exe
//   cl /EHsc /std:c++17 /Iinclude examples\cpp_client.cpp include\BrevoRecordList_i.c ole32.lib oleaut32.lib
//
// Before running it: regsvr32 BrevoRecordList.dll, and brevo-regtlb
// BrevoRecordList.tlb (a multithreaded apartment reaches the library's
// apartment-threaded objects through the type library's marshaler).
//
//   cpp_client [sta|mta]    one apartment, or by default both in turn
//
// It makes a table through CoCreateInstance by ProgID, listens to it, filters
// and sorts it with callbacks made from lambdas, and shows the text of refused
// changes. The output is the same in both apartments but for their header
// line; the first failure ends it with a non-zero exit.
#include <cstdio>
#include <iterator>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "BrevoRecordListCallbacks.h"

namespace {

using brevo::sdk::com_ptr;
using brevo::sdk::On;

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

// An owned BSTR.
class Text {
 public:
  Text() = default;
  explicit Text(const wchar_t* text) : bstr_(SysAllocString(text)) {
    if (bstr_ == nullptr) throw std::bad_alloc();
  }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  ~Text() { SysFreeString(bstr_); }
  BSTR get() const { return bstr_; }
  BSTR* put() {
    SysFreeString(bstr_);
    bstr_ = nullptr;
    return &bstr_;
  }
  std::string narrow() const {
    std::string result;
    for (const wchar_t* c = bstr_; c && *c; ++c) result += *c < 128 ? static_cast<char>(*c) : '?';
    return result;
  }

 private:
  BSTR bstr_ = nullptr;
};

// An owned VARIANT.
struct Variant : VARIANT {
  Variant() { VariantInit(this); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  ~Variant() { VariantClear(this); }
};

// What a late-bound call's failure carries back.
struct Exception : EXCEPINFO {
  Exception() : EXCEPINFO{} {}
  Exception(const Exception&) = delete;
  Exception& operator=(const Exception&) = delete;
  ~Exception() {
    SysFreeString(bstrSource);
    SysFreeString(bstrDescription);
    SysFreeString(bstrHelpFile);
  }
};

template <class I>
com_ptr<I> Create(const wchar_t* progId) {
  CLSID clsid{};
  Succeeded(CLSIDFromProgID(progId, &clsid), "CLSIDFromProgID");
  com_ptr<I> object;
  Succeeded(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(I), object.put_void()), "CoCreateInstance");
  return object;
}

// The library's message for a call it refuses, made late-bound: EXCEPINFO
// brings the description back from any apartment, where the thread's error
// object does not cross every proxy. Arguments in their written order.
std::string RefusalText(IUnknown* object, const wchar_t* method, Variant* args, UINT count) {
  const auto dispatch = com_ptr<IUnknown>(object).as<IDispatch>();
  Require(static_cast<bool>(dispatch), "the object is late-bound");
  std::wstring name(method);
  LPOLESTR names[] = {name.data()};
  DISPID id = DISPID_UNKNOWN;
  Succeeded(dispatch->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), "GetIDsOfNames");
  // DISPPARAMS lists the last argument first; the copies only lend the values.
  std::vector<VARIANT> reversed(std::make_reverse_iterator(args + count), std::make_reverse_iterator(args));
  DISPPARAMS params{reversed.data(), nullptr, count, 0};
  Variant result;
  Exception exception;
  const HRESULT hr = dispatch->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, &result,
                                      &exception, nullptr);
  Require(hr == DISP_E_EXCEPTION, "the library refuses with DISP_E_EXCEPTION");
  if (exception.pfnDeferredFillIn != nullptr) exception.pfnDeferredFillIn(&exception);
  Text description;
  *description.put() = std::exchange(exception.bstrDescription, nullptr);
  return description.narrow();
}

// The description of the error object the calling thread holds, if any.
std::string ThreadErrorText() {
  com_ptr<IErrorInfo> info;
  if (GetErrorInfo(0, info.put()) != S_OK || !info) return {};
  Text description;
  info->GetDescription(description.put());
  return description.narrow();
}

struct Fruit {
  const wchar_t* name;
  double price;
  LONG quantity;
};

void AddRow(IMutableRecordList* list, const Fruit& fruit) {
  com_ptr<IMutableRecord> record;
  Succeeded(list->AddRecord(record.put()), "AddRecord");
  Succeeded(record->SetValueAsString(0, Text(fruit.name).get()), "SetValueAsString");
  Succeeded(record->SetValueAsDouble(1, fruit.price), "SetValueAsDouble");
  Succeeded(record->SetValueAsInt32(2, fruit.quantity), "SetValueAsInt32");
}

// "Pear, 40 at 2.500000": the price as the library writes a real as text.
std::string Describe(IMutableRecord* record) {
  Text name, price;
  LONG quantity = 0;
  Succeeded(record->GetValueAsString(0, name.put()), "GetValueAsString");
  Succeeded(record->GetValueAsString(1, price.put()), "GetValueAsString");
  Succeeded(record->GetValueAsInt32(2, &quantity), "GetValueAsInt32");
  return name.narrow() + ", " + std::to_string(quantity) + " at " + price.narrow();
}

double Price(IMutableRecord* record) {
  double price = 0;
  Succeeded(record->GetValueAsDouble(1, &price), "GetValueAsDouble");
  return price;
}

std::string Walk(IRecordListIterator* rows) {
  std::string seen;
  for (VARIANT_BOOL more = VARIANT_FALSE; SUCCEEDED(rows->HasNext(&more)) && more;) {
    com_ptr<IDispatch> next;
    Succeeded(rows->Next(next.put()), "Next");
    const auto record = next.as<IMutableRecord>();
    Require(static_cast<bool>(record), "a row is a record");
    const std::string row = Describe(record.get());
    std::printf("  %s\n", row.c_str());
    seen += row + ";";
  }
  return seen;
}

void Run() {
  // A schema of three typed columns; names are unique.
  const auto columns = Create<IMutableColumns>(L"BrevoRecordList.MutableColumns");
  for (const auto& [name, type] : {std::pair{L"Name", kText}, {L"Price", kReal}, {L"Quantity", kInteger}}) {
    com_ptr<IMutableColumn> column;
    Succeeded(columns->AddColumn(Text(name).get(), type, column.put()), "AddColumn");
  }
  {
    Variant args[2];
    args[0].vt = VT_BSTR;
    args[0].bstrVal = SysAllocString(L"Name");
    args[1].vt = VT_I4;
    args[1].lVal = kInteger;
    const std::string text = RefusalText(columns.get(), L"AddColumn", args, 2);
    std::printf("a second Name column: %s\n", text.c_str());
    Require(text == "Name property must be unique.", "the uniqueness error's text");
  }

  // A table over the schema, with a listener that hears rows arrive.
  const auto list = Create<IMutableRecordList>(L"BrevoRecordList.MutableRecordList");
  Succeeded(list->Create(columns.get()), "Create");
  int added = 0;
  const auto rowsListener = brevo::sdk::MakeListener(On<&IRecordListChangeListener::RecordAfterAdd>(
      [&](IRecordListChangeEvent*) { std::printf("heard RecordAfterAdd %d\n", ++added); }));
  Succeeded(list->AddRecordListChangeListener(rowsListener.get()), "AddRecordListChangeListener");
  for (const Fruit& fruit : {Fruit{L"Pear", 2.5, 40}, {L"Fig", 0.75, 12}, {L"Plum", 1.2, 25}, {L"Kiwi", 0.3, 5}})
    AddRow(list.get(), fruit);
  Require(added == 4, "the listener heard every row");

  // A condition and a comparator from lambdas.
  const auto inStock = brevo::sdk::MakeCondition([](IMutableRecord* record) {
    LONG quantity = 0;
    Succeeded(record->GetValueAsInt32(2, &quantity), "GetValueAsInt32");
    return quantity > 10;
  });
  std::printf("Rows with more than 10 in stock:\n");
  com_ptr<IRecordListIterator> rows;
  Succeeded(list->GetFilteredIterator(inStock.get(), VARIANT_FALSE, rows.put()), "GetFilteredIterator");
  Require(Walk(rows.get()) == "Pear, 40 at 2.500000;Fig, 12 at 0.750000;Plum, 25 at 1.200000;", "the filtered rows");

  // A positive answer puts the first record first: dearest first.
  const auto dearestFirst = brevo::sdk::MakeComparator([](IMutableRecord* first, IMutableRecord* second) {
    const double a = Price(first), b = Price(second);
    return a > b ? 1 : a < b ? -1 : 0;
  });
  std::printf("All rows, dearest first:\n");
  Succeeded(list->GetSortedIterator(dearestFirst.get(), VARIANT_FALSE, rows.put()), "GetSortedIterator");
  Require(Walk(rows.get()) == "Pear, 40 at 2.500000;Plum, 25 at 1.200000;Fig, 12 at 0.750000;Kiwi, 5 at 0.300000;",
          "the sorted rows");

  // A record listener that fixes the first row's price: calling Stop in a
  // "Before" event refuses the change.
  Succeeded(list->GetIterator(VARIANT_TRUE, rows.put()), "GetIterator");
  com_ptr<IDispatch> first;
  Succeeded(rows->Next(first.put()), "Next");
  const auto pear = first.as<IMutableRecord>();
  const auto fixedPrice =
      brevo::sdk::MakeListener(On<&IRecordChangeListener::ValueBeforeChange>([](IRecordChangeEvent* e) {
        LONG column = -1;
        Succeeded(e->GetIndex(&column), "GetIndex");
        return column == 1 ? e->Stop() : S_OK;
      }));
  Succeeded(pear->AddRecordChangeListener(fixedPrice.get()), "AddRecordChangeListener");
  const HRESULT refused = pear->SetValueAsDouble(1, 9.99);
  Require(refused == DISP_E_EXCEPTION, "a fixed price is refused");
  const std::string early = ThreadErrorText();  // empty where the error object did not cross
  Variant args[2];
  args[0].vt = VT_I4;
  args[0].lVal = 1;
  args[1].vt = VT_R8;
  args[1].dblVal = 9.99;
  const std::string text = RefusalText(pear.get(), L"SetValueAsDouble", args, 2);
  std::printf("a new price for Pear: %s\n", text.c_str());
  Require(text == "Failed to change value.", "the refusal's text");
  Require(early.empty() || early == text, "the thread's error object says the same");
  Require(Price(pear.get()) == 2.5, "the price stays");

  Succeeded(list->RemoveRecordListChangeListener(rowsListener.get()), "RemoveRecordListChangeListener");
  Succeeded(pear->RemoveRecordChangeListener(fixedPrice.get()), "RemoveRecordChangeListener");
}

// Runs the example in an apartment of the given kind on the calling thread.
int RunIn(DWORD apartment) {
  std::printf("== %s apartment ==\n", apartment == COINIT_MULTITHREADED ? "multithreaded" : "single-threaded");
  if (FAILED(CoInitializeEx(nullptr, apartment))) {
    std::printf("FAILED CoInitializeEx\n");
    return 1;
  }
  int status = 0;
  try {
    Run();  // every object is released when it returns
    std::printf("done\n");
  } catch (const std::exception& e) {
    std::printf("FAILED %s\n", e.what());
    status = 1;
  }
  CoUninitialize();
  std::fflush(stdout);
  return status;
}

DWORD WINAPI MultithreadedWorker(void*) { return static_cast<DWORD>(RunIn(COINIT_MULTITHREADED)); }

int RunOnWorkerThread() {
  const HANDLE thread = CreateThread(nullptr, 0, MultithreadedWorker, nullptr, 0, nullptr);
  if (thread == nullptr) {
    std::printf("FAILED CreateThread\n");
    return 1;
  }
  WaitForSingleObject(thread, INFINITE);
  DWORD status = 1;
  GetExitCodeThread(thread, &status);
  CloseHandle(thread);
  return static_cast<int>(status);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string which = argc > 1 ? argv[1] : "both";
  if (which != "sta" && which != "mta" && which != "both") {
    std::printf("usage: cpp_client [sta|mta]\n");
    return 2;
  }
  int apartments = 0;
  if (which != "mta") {
    if (RunIn(COINIT_APARTMENTTHREADED) != 0) return 1;
    ++apartments;
  }
  if (which != "sta") {
    if (RunOnWorkerThread() != 0) return 1;
    ++apartments;
  }
  std::printf("cpp_client: every check passed in %d apartment%s\n", apartments, apartments == 1 ? "" : "s");
  return 0;
}
