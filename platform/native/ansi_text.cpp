// Windows-1252, the ANSI code page of every build we ship.
#include "platform/ansi_text.h"

#include <array>

#include "platform/native/oleauto.h"

namespace {

// 0x80-0x9F; bytes that 1252 leaves undefined map to the same code point.
constexpr std::array<char16_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char16_t ToWide(unsigned char byte) {
  return byte >= 0x80 && byte <= 0x9F ? kHighControls[byte - 0x80] : static_cast<char16_t>(byte);
}

char ToAnsi(char16_t wide) {
  if (wide < 0x80 || (wide >= 0xA0 && wide <= 0xFF)) return static_cast<char>(wide);
  for (std::size_t i = 0; i < kHighControls.size(); ++i) {
    if (kHighControls[i] == wide) return static_cast<char>(0x80 + i);
  }
  return '?';
}

}  // namespace

namespace brevo::platform {

std::string WideToAnsi(const OLECHAR* text, std::size_t length) {
  std::string result(length, '\0');
  for (std::size_t i = 0; i < length; ++i) result[i] = ToAnsi(text[i]);
  return result;
}

BSTR AnsiToBstr(const char* text, std::size_t length) {
  BSTR result = SysAllocStringLen(nullptr, static_cast<UINT>(length));
  if (result == nullptr) return nullptr;
  for (std::size_t i = 0; i < length; ++i) result[i] = ToWide(static_cast<unsigned char>(text[i]));
  return result;
}

}  // namespace brevo::platform
