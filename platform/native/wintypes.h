// Base types, result codes and GUIDs of the component runtime, laid out and
// valued as on Windows so that code above the platform layer reads the same.
#pragma once

#include <cstddef>
#include <cstdint>

using BYTE = std::uint8_t;
using CHAR = char;
using WORD = std::uint16_t;
using USHORT = std::uint16_t;
using SHORT = std::int16_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using INT = int;
using UINT = unsigned int;
using BOOL = int;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using FLOAT = float;
using DOUBLE = double;
using PVOID = void*;
using HINSTANCE = void*;
using LPVOID = void*;
using HRESULT = LONG;
using SCODE = LONG;
using LCID = DWORD;
using DISPID = LONG;
using MEMBERID = DISPID;
using VARTYPE = std::uint16_t;
using VARIANT_BOOL = SHORT;
using DATE = double;

// Wide text is UTF-16 on every build.
using WCHAR = char16_t;
using OLECHAR = char16_t;
using LPOLESTR = OLECHAR*;
using LPCOLESTR = const OLECHAR*;
using LPWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;
using BSTR = OLECHAR*;
#define OLESTR(str) u##str

#define TRUE 1
#define FALSE 0
#define VARIANT_TRUE ((VARIANT_BOOL)-1)
#define VARIANT_FALSE ((VARIANT_BOOL)0)

#define WINAPI
#define STDMETHODCALLTYPE
#define STDAPICALLTYPE
#define STDMETHOD(method) virtual HRESULT STDMETHODCALLTYPE method
#define STDMETHOD_(type, method) virtual type STDMETHODCALLTYPE method
#define STDMETHODIMP HRESULT STDMETHODCALLTYPE
#define STDMETHODIMP_(type) type STDMETHODCALLTYPE
#define STDAPI extern "C" HRESULT STDAPICALLTYPE
#define STDAPI_(type) extern "C" type STDAPICALLTYPE

#define SUCCEEDED(hr) (((HRESULT)(hr)) >= 0)
#define FAILED(hr) (((HRESULT)(hr)) < 0)
#define MAKE_HRESULT(sev, fac, code) \
  ((HRESULT)(((unsigned long)(sev) << 31) | ((unsigned long)(fac) << 16) | ((unsigned long)(code))))
#define HRESULT_CODE(hr) ((hr) & 0xFFFF)
#define SEVERITY_ERROR 1
#define FACILITY_ITF 4
#define FACILITY_WIN32 7
#define HRESULT_FROM_WIN32(x) \
  ((HRESULT)(x) <= 0 ? (HRESULT)(x) : (HRESULT)(((unsigned long)(x) & 0x0000FFFF) | (FACILITY_WIN32 << 16) | 0x80000000))
#define ERROR_BADKEY 1010L
#define ERROR_RESOURCE_NAME_NOT_FOUND 1814L

#define S_OK ((HRESULT)0)
#define S_FALSE ((HRESULT)1)
#define E_NOTIMPL ((HRESULT)0x80004001)
#define E_NOINTERFACE ((HRESULT)0x80004002)
#define E_POINTER ((HRESULT)0x80004003)
#define E_FAIL ((HRESULT)0x80004005)
#define E_UNEXPECTED ((HRESULT)0x8000FFFF)
#define E_ACCESSDENIED ((HRESULT)0x80070005)
#define E_OUTOFMEMORY ((HRESULT)0x8007000E)
#define E_INVALIDARG ((HRESULT)0x80070057)
#define DISP_E_UNKNOWNINTERFACE ((HRESULT)0x80020001)
#define DISP_E_MEMBERNOTFOUND ((HRESULT)0x80020003)
#define DISP_E_PARAMNOTFOUND ((HRESULT)0x80020004)
#define DISP_E_TYPEMISMATCH ((HRESULT)0x80020005)
#define DISP_E_UNKNOWNNAME ((HRESULT)0x80020006)
#define DISP_E_NONAMEDARGS ((HRESULT)0x80020007)
#define DISP_E_BADVARTYPE ((HRESULT)0x80020008)
#define DISP_E_EXCEPTION ((HRESULT)0x80020009)
#define DISP_E_OVERFLOW ((HRESULT)0x8002000A)
#define DISP_E_BADINDEX ((HRESULT)0x8002000B)
#define DISP_E_BADPARAMCOUNT ((HRESULT)0x8002000E)
#define DISP_E_PARAMNOTOPTIONAL ((HRESULT)0x8002000F)
#define CLASS_E_NOAGGREGATION ((HRESULT)0x80040110)
#define CLASS_E_CLASSNOTAVAILABLE ((HRESULT)0x80040111)
#define REGDB_E_CLASSNOTREG ((HRESULT)0x80040154)
#define CO_E_CLASSSTRING ((HRESULT)0x800401F3)
#define CO_E_DLLNOTFOUND ((HRESULT)0x800401F8)
#define CO_E_ERRORINDLL ((HRESULT)0x800401F9)
#define SELFREG_E_CLASS ((HRESULT)0x80040201)

struct GUID {
  std::uint32_t Data1;
  std::uint16_t Data2;
  std::uint16_t Data3;
  std::uint8_t Data4[8];
};
using IID = GUID;
using CLSID = GUID;
using REFGUID = const GUID&;
using REFIID = const IID&;
using REFCLSID = const CLSID&;

inline bool IsEqualGUID(REFGUID a, REFGUID b) {
  const auto* x = reinterpret_cast<const std::uint32_t*>(&a);
  const auto* y = reinterpret_cast<const std::uint32_t*>(&b);
  return x[0] == y[0] && x[1] == y[1] && x[2] == y[2] && x[3] == y[3];
}
inline bool IsEqualIID(REFIID a, REFIID b) { return IsEqualGUID(a, b); }
inline bool IsEqualCLSID(REFCLSID a, REFCLSID b) { return IsEqualGUID(a, b); }
inline bool operator==(REFGUID a, REFGUID b) { return IsEqualGUID(a, b); }
inline bool operator!=(REFGUID a, REFGUID b) { return !IsEqualGUID(a, b); }
