// brevo-regtlb: registers a type library for the installers, or takes it out
// of the registry again. The module's own DllRegisterServer leaves the type
// library alone, so that one tool per architecture decides where it lives.
//
//   brevo-regtlb path\to\BrevoRecordList.tlb      register
//   brevo-regtlb /u path\to\BrevoRecordList.tlb   unregister
//
// Exit 0 on success; otherwise one line on stderr with the HRESULT, exit 1
// (2 for a wrong command line).
#include <windows.h>
#include <oleauto.h>

#include <cstdio>
#include <memory>
#include <new>
#include <string>

namespace {

struct Released {
  void operator()(IUnknown* p) const noexcept { p->Release(); }
};
using TypeLib = std::unique_ptr<ITypeLib, Released>;

struct Failure {
  const wchar_t* step;
  HRESULT hr;
};

// The registry keeps the path it is given: make it absolute.
std::wstring FullPath(const wchar_t* path) {
  const DWORD size = GetFullPathNameW(path, 0, nullptr, nullptr);
  if (size == 0) throw Failure{L"GetFullPathName", HRESULT_FROM_WIN32(GetLastError())};
  std::wstring full(size, L'\0');
  const DWORD length = GetFullPathNameW(path, size, full.data(), nullptr);
  if (length == 0 || length >= size) throw Failure{L"GetFullPathName", HRESULT_FROM_WIN32(GetLastError())};
  full.resize(length);
  return full;
}

TypeLib Load(const std::wstring& path, REGKIND kind) {
  ITypeLib* loaded = nullptr;
  const HRESULT hr = LoadTypeLibEx(path.c_str(), kind, &loaded);
  if (FAILED(hr)) throw Failure{L"LoadTypeLibEx", hr};
  return TypeLib(loaded);
}

void Unregister(const std::wstring& path) {
  const TypeLib library = Load(path, REGKIND_NONE);
  TLIBATTR* attributes = nullptr;
  HRESULT hr = library->GetLibAttr(&attributes);
  if (FAILED(hr)) throw Failure{L"GetLibAttr", hr};
  const auto release = [&](TLIBATTR* a) { library->ReleaseTLibAttr(a); };
  const std::unique_ptr<TLIBATTR, decltype(release)> held(attributes, release);
  hr = UnRegisterTypeLib(held->guid, held->wMajorVerNum, held->wMinorVerNum, held->lcid, held->syskind);
  if (FAILED(hr)) throw Failure{L"UnRegisterTypeLib", hr};
}

int Usage() {
  std::fputws(L"usage: brevo-regtlb [/u] file.tlb\n", stderr);
  return 2;
}

bool IsUnregisterSwitch(const wchar_t* arg) {
  return (arg[0] == L'/' || arg[0] == L'-') && (arg[1] == L'u' || arg[1] == L'U') && arg[2] == L'\0';
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  const bool unregister = argc == 3 && IsUnregisterSwitch(argv[1]);
  if (argc != 2 + (unregister ? 1 : 0) || IsUnregisterSwitch(argv[argc - 1])) return Usage();
  const wchar_t* const given = argv[argc - 1];
  try {
    const std::wstring path = FullPath(given);
    if (unregister)
      Unregister(path);
    else
      Load(path, REGKIND_REGISTER);
    return 0;
  } catch (const Failure& failure) {
    std::fwprintf(stderr, L"brevo-regtlb: cannot %ls %ls: %ls failed with 0x%08lX\n",
                  unregister ? L"unregister" : L"register", given, failure.step,
                  static_cast<unsigned long>(failure.hr));
  } catch (const std::bad_alloc&) {
    std::fwprintf(stderr, L"brevo-regtlb: out of memory (0x%08lX)\n", static_cast<unsigned long>(E_OUTOFMEMORY));
  }
  return 1;
}
