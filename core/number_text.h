// Number <-> narrow text, one routine for every build so that the C runtimes'
// differences cannot leak into results:
// - Text to number reads the longest decimal prefix after blanks ("12abc" is
//   12, "abc" is 0). Hexadecimal, "inf" and "nan" text are not numbers here
//   and read as their decimal prefix (0).
// - Integer parsing is 32-bit and saturates at the int32 limits.
// - Real parsing rounds correctly; overflow gives +-infinity, underflow +-0.
// - "%f" formatting is exact with six decimals; NaN is "nan" or "-nan",
//   infinities "inf" and "-inf".
// - Reals cast to an integer width truncate toward zero; NaN and values
//   outside the width give the width's minimum, as the x86 conversion does.
#pragma once

#include <cstdint>
#include <string>

namespace brevo {

double ParseDouble(const char* text) noexcept;
std::int32_t ParseInt32(const char* text) noexcept;

std::string FormatFixed(double value);
std::string FormatInteger(std::int64_t value);
std::string FormatUnsigned(std::uint64_t value);

std::int32_t TruncateToInt32(double value) noexcept;
std::int64_t TruncateToInt64(double value) noexcept;

}  // namespace brevo
