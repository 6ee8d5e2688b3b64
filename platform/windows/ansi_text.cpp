// The ANSI code page through the system's own converters, as the runtime's
// string classes use them.
#include "platform/ansi_text.h"

#include <windows.h>
#include <oleauto.h>

namespace brevo::platform {

std::string WideToAnsi(const OLECHAR* text, std::size_t length) {
  if (length == 0) return {};
  const int wideLength = static_cast<int>(length);
  const int size = WideCharToMultiByte(CP_ACP, 0, text, wideLength, nullptr, 0, nullptr, nullptr);
  std::string result(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_ACP, 0, text, wideLength, result.data(), size, nullptr, nullptr);
  return result;
}

BSTR AnsiToBstr(const char* text, std::size_t length) {
  const int narrowLength = static_cast<int>(length);
  const int size = length == 0 ? 0 : MultiByteToWideChar(CP_ACP, 0, text, narrowLength, nullptr, 0);
  BSTR result = SysAllocStringLen(nullptr, static_cast<UINT>(size));
  if (result != nullptr && size > 0) MultiByteToWideChar(CP_ACP, 0, text, narrowLength, result, size);
  return result;
}

}  // namespace brevo::platform
