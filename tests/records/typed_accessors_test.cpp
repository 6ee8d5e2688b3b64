// The typed getters and setters over a one-cell record: the whole conversion
// matrix with the getters' own failure messages, and the values the setters build.
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/bv_exception.h"
#include "core/cell_value.h"
#include "records/abstract_mutable_record.h"
#include "support/test_support.h"

namespace brevo::testing {
namespace {

// One cell, whatever the index.
class OneCellRecord final : public AbstractMutableRecord {
 public:
  unique_variant cell;
  unique_variant stored;

  unique_variant GetValue(ULONG) override { return unique_variant(cell.get()); }
  void SetValue(ULONG, const VARIANT& newVal) override { stored = unique_variant(newVal); }
};

constexpr std::nullopt_t kNo = std::nullopt;  // the getter refuses the kind

struct MatrixRow {
  const char* source;
  unique_variant value;
  std::optional<VARIANT_BOOL> boolean;
  std::optional<double> real;
  std::optional<float> single;
  std::optional<LONG> int32;
  std::optional<SHORT> int16;
  std::optional<LONGLONG> int64;
  std::optional<BYTE> byte;
  std::optional<std::string> text;  // "<null>": the null string
};

// A value of any kind, its payload given in any type that converts.
template <class T, class P>
unique_variant V(VARTYPE vt, T VARIANT::*field, P payload) {
  return MakeValue(vt, field, static_cast<T>(payload));
}

// The getter's reading, or its own failure message with code 0.
template <class T, class Read>
void Expect(const std::optional<T>& expected, const char* message, Read read) {
  try {
    EXPECT_EQ(std::optional<T>(read()), expected) << message;  // reals too: exactly these bits
  } catch (const EBvException& e) {
    EXPECT_FALSE(expected.has_value()) << message;
    EXPECT_EQ(Narrow(e.GetDescription()), message);
    EXPECT_EQ(e.GetCode(), 0);
  }
}

TEST(TypedGetters, EveryGetterReadsOrRefusesEachKindWithItsOwnMessage) {
  CountedObject object;
  constexpr LONGLONG kMin64 = std::numeric_limits<LONGLONG>::min(), kMax32 = 0x7FFFFFFF;
  constexpr double k2p32 = 0x1p32, k2p63 = 0x1p63;
  std::vector<MatrixRow> rows = {
      {"empty", MakeValue(VT_EMPTY), 0, 0.0, 0.0f, 0, 0, 0, 0, "<null>"},
      {"unknown", V(VT_UNKNOWN, &VARIANT::punkVal, &object), 0, 0.0, 0.0f, 0, 0, 0, 0, "<null>"},
      {"I2 -5", V(VT_I2, &VARIANT::iVal, -5), -5, -5.0, -5.0f, -5, -5, -5, '-', "-5"},
      {"I4 70000", V(VT_I4, &VARIANT::lVal, 70000), 4464, 70000.0, 70000.0f, 70000, 4464, 70000, '7', "70000"},
      {"R4 1.5", V(VT_R4, &VARIANT::fltVal, 1.5f), 1, 1.5, 1.5f, 1, 1, 1, '1', "1.500000"},
      {"R8 -2.9", V(VT_R8, &VARIANT::dblVal, -2.9), -2, -2.9, -2.9f, -2, -2, -2, '-', "-2.900000"},
      {"BSTR 12abc", MakeString(OLESTR(" 12abc")), 0, 12.0, 12.0f, 12, 12, 12, ' ', " 12abc"},
      // atoi saturates, and the 64-bit getter parses with the 32-bit atol.
      {"BSTR big", MakeString(OLESTR("99999999999")), 0, 1e11 - 1, float(1e11 - 1), kMax32, -1, kMax32, '9', "99999999999"},
      // The record hands out a copy, and copying a null string makes an empty one.
      {"BSTR null", V(VT_BSTR, &VARIANT::bstrVal, nullptr), 0, 0.0, 0.0f, 0, 0, 0, 0, ""},
      {"BOOL true", V(VT_BOOL, &VARIANT::boolVal, VARIANT_TRUE), -1, -1.0, -1.0f, -1, -1, -1, '-', kNo},
      {"UI1 200", V(VT_UI1, &VARIANT::bVal, 200), kNo, 200.0, 200.0f, 200, 200, 200, 200, "200"},
      {"UI2 65535", V(VT_UI2, &VARIANT::uiVal, 65535), -1, 65535.0, 65535.0f, 65535, -1, 65535, '6', "65535"},
      {"UI4", V(VT_UI4, &VARIANT::ulVal, 0xFFFFFFFF), -1, k2p32 - 1, 0x1p32f, -1, -1, 0xFFFFFFFF, '4', "4294967295"},
      {"I8", V(VT_I8, &VARIANT::llVal, 0x100000005), 5, k2p32 + 5, 0x1p32f, 5, 5, 0x100000005, kNo, kNo},
      {"UI8", V(VT_UI8, &VARIANT::ullVal, 1ULL << 63 | 1), 1, k2p63, float(k2p63), 1, 1, kMin64 + 1, kNo, kNo},
      {"INT -7", V(VT_INT, &VARIANT::intVal, -7), -7, -7.0, -7.0f, -7, -7, -7, kNo, "-7"},
      {"UINT", V(VT_UINT, &VARIANT::uintVal, 3e9), 24064, 3e9, 3e9f, -1294967296, 24064, 3000000000, kNo, "3000000000"},
  };
  for (unique_variant& value : std::vector<unique_variant>{
           V(VT_DATE, &VARIANT::date, 1.0), V(VT_CY, &VARIANT::llVal, 10000), V(VT_ERROR, &VARIANT::scode, 5),
           V(VT_DISPATCH, &VARIANT::pdispVal, nullptr), V(VT_I1, &VARIANT::cVal, 'x'),
           V(VT_BYREF | VT_I4, &VARIANT::plVal, nullptr), V(VT_ARRAY | VT_I4, &VARIANT::parray, nullptr)}) {
    rows.push_back({"unconvertible", std::move(value), kNo, kNo, kNo, kNo, kNo, kNo, kNo, kNo});
  }
  OneCellRecord r;
  for (const MatrixRow& row : rows) {
    r.cell = row.value;
    SCOPED_TRACE(std::string(row.source) + " vt " + std::to_string(r.cell.vt()));
    const ULONG objectRefs = object.refs;
    Expect(row.boolean, "Cannot convert to boolean.", [&] { return r.GetValueAsBoolean(0); });
    Expect(row.real, "Cannot convert to double.", [&] { return r.GetValueAsDouble(0); });
    Expect(row.single, "Cannot convert to float.", [&] { return r.GetValueAsFloat(0); });
    Expect(row.int32, "Cannot convert to int.", [&] { return r.GetValueAsInt32(0); });
    Expect(row.int16, "Cannot convert to short.", [&] { return r.GetValueAsInt16(0); });
    Expect(row.int64, "Cannot convert to long.", [&] { return r.GetValueAsInt64(0); });
    Expect(row.byte, "Cannot convert to byte.", [&] { return r.GetValueAsByte(0); });
    Expect(row.text, "Cannot convert to string.", [&] { return Narrow(r.GetValueAsString(0).get()); });
    EXPECT_EQ(object.refs, objectRefs) << "every copy a getter took has been cleared again";
  }
}

TEST(TypedSetters, BuildAValueOfTheirFixedKind) {
  using R = AbstractMutableRecord;
  static const _bstr_t odd(SysAllocStringByteLen("abc", 3), false);  // an odd byte length must survive the copy
  const std::pair<void (*)(R&), unique_variant> cases[] = {
      {[](R& r) { r.SetValueAsBoolean(0, 1); }, V(VT_BOOL, &VARIANT::boolVal, 1)},  // 1 stays 1
      {[](R& r) { r.SetValueAsByte(0, 200); }, V(VT_UI1, &VARIANT::bVal, 200)},
      {[](R& r) { r.SetValueAsInt32(0, -70000); }, V(VT_I4, &VARIANT::lVal, -70000)},
      {[](R& r) { r.SetValueAsInt16(0, -2); }, V(VT_I2, &VARIANT::iVal, -2)},
      {[](R& r) { r.SetValueAsInt64(0, 5); }, unique_variant()},  // the value is lost
      {[](R& r) { r.SetValueAsDouble(0, -2.5); }, V(VT_R8, &VARIANT::dblVal, -2.5)},
      {[](R& r) { r.SetValueAsFloat(0, 0.25f); }, V(VT_R4, &VARIANT::fltVal, 0.25f)},
      {[](R& r) { r.SetValueAsString(0, odd.GetBSTR()); }, V(VT_BSTR, &VARIANT::bstrVal, odd.copy())},
      {[](R& r) { r.SetValueAsString(0, nullptr); }, MakeString(OLESTR(""))},  // null arrives empty
  };
  for (const auto& [set, expected] : cases) {
    SCOPED_TRACE(expected.vt());
    OneCellRecord record;
    record.stored = V(VT_R8, &VARIANT::dblVal, 99);  // so that storing nothing shows
    set(record);
    ASSERT_EQ(record.stored.vt(), expected.vt());
    EXPECT_TRUE(CellValuesEqual(record.stored.get(), &expected.get())) << "kind-exact, strings byte for byte";
  }
}

}  // namespace
}  // namespace brevo::testing
