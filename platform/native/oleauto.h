// The slice of the component runtime and of OLE Automation the library uses:
// IUnknown, IDispatch, error info, BSTR and VARIANT, with Windows' layouts,
// values and observable semantics.
#pragma once

#include "platform/native/wintypes.h"

extern "C" {
extern const IID IID_IUnknown;
extern const IID IID_IDispatch;
extern const IID IID_IClassFactory;
extern const IID IID_IErrorInfo;
extern const IID IID_ICreateErrorInfo;
extern const IID IID_ISupportErrorInfo;
extern const IID IID_IProvideClassInfo;
extern const GUID GUID_NULL;
}

struct IUnknown {
  STDMETHOD(QueryInterface)(REFIID riid, void** ppvObject) = 0;
  STDMETHOD_(ULONG, AddRef)() = 0;
  STDMETHOD_(ULONG, Release)() = 0;

 protected:
  ~IUnknown() = default;
};

struct IClassFactory : IUnknown {
  STDMETHOD(CreateInstance)(IUnknown* pUnkOuter, REFIID riid, void** ppvObject) = 0;
  STDMETHOD(LockServer)(BOOL fLock) = 0;

 protected:
  ~IClassFactory() = default;
};

enum VARENUM : VARTYPE {
  VT_EMPTY = 0,
  VT_NULL = 1,
  VT_I2 = 2,
  VT_I4 = 3,
  VT_R4 = 4,
  VT_R8 = 5,
  VT_CY = 6,
  VT_DATE = 7,
  VT_BSTR = 8,
  VT_DISPATCH = 9,
  VT_ERROR = 10,
  VT_BOOL = 11,
  VT_VARIANT = 12,
  VT_UNKNOWN = 13,
  VT_DECIMAL = 14,
  VT_I1 = 16,
  VT_UI1 = 17,
  VT_UI2 = 18,
  VT_UI4 = 19,
  VT_I8 = 20,
  VT_UI8 = 21,
  VT_INT = 22,
  VT_UINT = 23,
  VT_VOID = 24,
  VT_HRESULT = 25,
  VT_RECORD = 36,
  VT_ARRAY = 0x2000,
  VT_BYREF = 0x4000,
  VT_TYPEMASK = 0xFFF,
};

union CY {
  struct {
    ULONG Lo;
    LONG Hi;
  };
  LONGLONG int64;
};

struct DECIMAL {
  USHORT wReserved;
  BYTE scale;
  BYTE sign;
  ULONG Hi32;
  ULONGLONG Lo64;
};

struct IDispatch;
struct ITypeInfo;
struct IRecordInfo;
struct SAFEARRAY;  // Arrays are only recognised and refused, never built.

struct VARIANT {
  union {
    struct {
      VARTYPE vt;
      WORD wReserved1;
      WORD wReserved2;
      WORD wReserved3;
      union {
        LONGLONG llVal;
        LONG lVal;
        BYTE bVal;
        SHORT iVal;
        FLOAT fltVal;
        DOUBLE dblVal;
        VARIANT_BOOL boolVal;
        SCODE scode;
        CY cyVal;
        DATE date;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        SAFEARRAY* parray;
        BYTE* pbVal;
        SHORT* piVal;
        LONG* plVal;
        LONGLONG* pllVal;
        FLOAT* pfltVal;
        DOUBLE* pdblVal;
        VARIANT_BOOL* pboolVal;
        SCODE* pscode;
        CY* pcyVal;
        DATE* pdate;
        BSTR* pbstrVal;
        IUnknown** ppunkVal;
        IDispatch** ppdispVal;
        SAFEARRAY** pparray;
        VARIANT* pvarVal;
        PVOID byref;
        CHAR cVal;
        USHORT uiVal;
        ULONG ulVal;
        ULONGLONG ullVal;
        INT intVal;
        UINT uintVal;
        DECIMAL* pdecVal;
        CHAR* pcVal;
        USHORT* puiVal;
        ULONG* pulVal;
        ULONGLONG* pullVal;
        INT* pintVal;
        UINT* puintVal;
        struct {
          PVOID pvRecord;
          IRecordInfo* pRecInfo;
        };
      };
    };
    DECIMAL decVal;
  };
};
using VARIANTARG = VARIANT;

#define V_VT(v) ((v)->vt)

struct DISPPARAMS {
  VARIANTARG* rgvarg;
  DISPID* rgdispidNamedArgs;
  UINT cArgs;
  UINT cNamedArgs;
};

struct EXCEPINFO {
  WORD wCode;
  WORD wReserved;
  BSTR bstrSource;
  BSTR bstrDescription;
  BSTR bstrHelpFile;
  DWORD dwHelpContext;
  PVOID pvReserved;
  HRESULT(STDMETHODCALLTYPE* pfnDeferredFillIn)(EXCEPINFO*);
  SCODE scode;
};

#define DISPATCH_METHOD 0x1
#define DISPATCH_PROPERTYGET 0x2
#define DISPATCH_PROPERTYPUT 0x4
#define DISPATCH_PROPERTYPUTREF 0x8
#define DISPID_UNKNOWN (-1)
#define DISPID_VALUE 0
#define DISPID_PROPERTYPUT (-3)

struct IDispatch : IUnknown {
  STDMETHOD(GetTypeInfoCount)(UINT* pctinfo) = 0;
  STDMETHOD(GetTypeInfo)(UINT iTInfo, LCID lcid, ITypeInfo** ppTInfo) = 0;
  STDMETHOD(GetIDsOfNames)(REFIID riid, LPOLESTR* rgszNames, UINT cNames, LCID lcid, DISPID* rgDispId) = 0;
  STDMETHOD(Invoke)(DISPID dispIdMember, REFIID riid, LCID lcid, WORD wFlags, DISPPARAMS* pDispParams,
                    VARIANT* pVarResult, EXCEPINFO* pExcepInfo, UINT* puArgErr) = 0;

 protected:
  ~IDispatch() = default;
};

// What script engines add to IDispatch; the library only looks names up and
// calls them.
struct IServiceProvider;
#define fdexNameCaseSensitive 0x1
#define fdexNameCaseInsensitive 0x8
#define LOCALE_USER_DEFAULT 0x0400

struct IDispatchEx : IDispatch {
  STDMETHOD(GetDispID)(BSTR bstrName, DWORD grfdex, DISPID* pid) = 0;
  STDMETHOD(InvokeEx)(DISPID id, LCID lcid, WORD wFlags, DISPPARAMS* pdp, VARIANT* pvarRes, EXCEPINFO* pei,
                      IServiceProvider* pspCaller) = 0;
  STDMETHOD(DeleteMemberByName)(BSTR bstrName, DWORD grfdex) = 0;
  STDMETHOD(DeleteMemberByDispID)(DISPID id) = 0;
  STDMETHOD(GetMemberProperties)(DISPID id, DWORD grfdexFetch, DWORD* pgrfdex) = 0;
  STDMETHOD(GetMemberName)(DISPID id, BSTR* pbstrName) = 0;
  STDMETHOD(GetNextDispID)(DWORD grfdex, DISPID id, DISPID* pid) = 0;
  STDMETHOD(GetNameSpaceParent)(IUnknown** ppunk) = 0;

 protected:
  ~IDispatchEx() = default;
};

struct IErrorInfo : IUnknown {
  STDMETHOD(GetGUID)(GUID* pGUID) = 0;
  STDMETHOD(GetSource)(BSTR* pBstrSource) = 0;
  STDMETHOD(GetDescription)(BSTR* pBstrDescription) = 0;
  STDMETHOD(GetHelpFile)(BSTR* pBstrHelpFile) = 0;
  STDMETHOD(GetHelpContext)(DWORD* pdwHelpContext) = 0;

 protected:
  ~IErrorInfo() = default;
};

struct ICreateErrorInfo : IUnknown {
  STDMETHOD(SetGUID)(REFGUID rguid) = 0;
  STDMETHOD(SetSource)(LPOLESTR szSource) = 0;
  STDMETHOD(SetDescription)(LPOLESTR szDescription) = 0;
  STDMETHOD(SetHelpFile)(LPOLESTR szHelpFile) = 0;
  STDMETHOD(SetHelpContext)(DWORD dwHelpContext) = 0;

 protected:
  ~ICreateErrorInfo() = default;
};

struct ISupportErrorInfo : IUnknown {
  STDMETHOD(InterfaceSupportsErrorInfo)(REFIID riid) = 0;

 protected:
  ~ISupportErrorInfo() = default;
};

// Only handed on: this build has no type libraries, so none is ever made.
struct ITypeInfo : IUnknown {
 protected:
  ~ITypeInfo() = default;
};

struct IProvideClassInfo : IUnknown {
  STDMETHOD(GetClassInfo)(ITypeInfo** ppTI) = 0;

 protected:
  ~IProvideClassInfo() = default;
};

#define VARIANT_NOVALUEPROP 0x1
#define VARIANT_ALPHABOOL 0x2
#define VARIANT_NOUSEROVERRIDE 0x4
#define VARIANT_LOCALBOOL 0x10

extern "C" {
BSTR SysAllocString(const OLECHAR* psz);
BSTR SysAllocStringLen(const OLECHAR* strIn, UINT ui);
BSTR SysAllocStringByteLen(const char* psz, UINT len);
void SysFreeString(BSTR bstrString);
UINT SysStringLen(BSTR pbstr);
UINT SysStringByteLen(BSTR bstr);

void VariantInit(VARIANTARG* pvarg);
HRESULT VariantClear(VARIANTARG* pvarg);
HRESULT VariantCopy(VARIANTARG* pvargDest, VARIANTARG* pvargSrc);
HRESULT VariantCopyInd(VARIANT* pvarDest, VARIANTARG* pvargSrc);
HRESULT VariantChangeType(VARIANTARG* pvargDest, VARIANTARG* pvarSrc, USHORT wFlags, VARTYPE vt);

HRESULT CreateErrorInfo(ICreateErrorInfo** pperrinfo);
HRESULT SetErrorInfo(ULONG dwReserved, IErrorInfo* perrinfo);
HRESULT GetErrorInfo(ULONG dwReserved, IErrorInfo** pperrinfo);

LPVOID CoTaskMemAlloc(std::size_t cb);
void CoTaskMemFree(LPVOID pv);
HRESULT ProgIDFromCLSID(REFCLSID clsid, LPOLESTR* lplpszProgID);
HRESULT CLSIDFromProgID(LPCOLESTR lpszProgID, CLSID* lpclsid);
int StringFromGUID2(REFGUID rguid, LPOLESTR lpsz, int cchMax);
HRESULT CLSIDFromString(LPCOLESTR lpsz, CLSID* pclsid);

HRESULT CoInitialize(LPVOID pvReserved);
void CoUninitialize();
HRESULT CoGetClassObject(REFCLSID rclsid, DWORD dwClsContext, LPVOID pvReserved, REFIID riid, LPVOID* ppv);
HRESULT CoCreateInstance(REFCLSID rclsid, IUnknown* pUnkOuter, DWORD dwClsContext, REFIID riid, LPVOID* ppv);
}

#define CLSCTX_INPROC_SERVER 0x1
