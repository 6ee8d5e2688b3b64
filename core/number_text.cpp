#include "core/number_text.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

namespace brevo {
namespace {

bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

const char* SkipBlanks(const char* text) {
  while (IsBlank(*text)) ++text;
  return text;
}

}  // namespace

double ParseDouble(const char* text) noexcept {
  if (text == nullptr) return 0;
  const char* start = SkipBlanks(text);
  const char* p = start;
  const bool negative = *p == '-';
  if (*p == '+' || *p == '-') ++p;
  const char* digits = p;
  bool any = false;
  while (IsDigit(*p)) ++p, any = true;
  if (*p == '.') {
    ++p;
    while (IsDigit(*p)) ++p, any = true;
  }
  if (!any) return 0;
  if (*p == 'e' || *p == 'E') {
    const char* e = p + 1;
    if (*e == '+' || *e == '-') ++e;
    if (IsDigit(*e)) {
      while (IsDigit(*e)) ++e;
      p = e;
    }
  }
  double value = 0;
  const auto result = std::from_chars(digits, p, value, std::chars_format::general);
  if (result.ec == std::errc::result_out_of_range) {
    // Out of range: past the largest double for a positive exponent, below the
    // smallest one for a negative exponent.
    const std::string_view exponent(digits, static_cast<std::size_t>(p - digits));
    const auto mark = exponent.find_first_of("eE");
    value = mark != std::string_view::npos && exponent.find('-', mark) != std::string_view::npos ? 0.0 : HUGE_VAL;
  }
  return negative ? -value : value;
}

std::int32_t ParseInt32(const char* text) noexcept {
  if (text == nullptr) return 0;
  const char* p = SkipBlanks(text);
  const bool negative = *p == '-';
  if (*p == '+' || *p == '-') ++p;
  std::int64_t magnitude = 0;
  constexpr std::int64_t kLimit = std::int64_t{1} << 31;
  while (IsDigit(*p)) {
    magnitude = magnitude * 10 + (*p++ - '0');
    if (magnitude > kLimit) magnitude = kLimit + 1;
  }
  const std::int64_t value = negative ? -magnitude : magnitude;
  if (value > std::numeric_limits<std::int32_t>::max()) return std::numeric_limits<std::int32_t>::max();
  if (value < std::numeric_limits<std::int32_t>::min()) return std::numeric_limits<std::int32_t>::min();
  return static_cast<std::int32_t>(value);
}

std::string FormatFixed(double value) {
  if (std::isnan(value)) return std::signbit(value) ? "-nan" : "nan";
  char buffer[400];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 6);
  return std::string(buffer, result.ptr);
}

std::string FormatInteger(std::int64_t value) {
  char buffer[24];
  return std::string(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
}

std::string FormatUnsigned(std::uint64_t value) {
  char buffer[24];
  return std::string(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
}

std::int32_t TruncateToInt32(double value) noexcept {
  if (!(value > -2147483649.0 && value < 2147483648.0)) return std::numeric_limits<std::int32_t>::min();
  return static_cast<std::int32_t>(value);
}

std::int64_t TruncateToInt64(double value) noexcept {
  if (!(value >= -9223372036854775808.0 && value < 9223372036854775808.0)) {
    return std::numeric_limits<std::int64_t>::min();
  }
  return static_cast<std::int64_t>(value);
}

}  // namespace brevo
