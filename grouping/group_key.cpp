#include "grouping/group_key.h"

#include <string_view>

namespace brevo {
namespace {

std::basic_string_view<OLECHAR> View(const _bstr_t& text) {
  return text.is_null() ? std::basic_string_view<OLECHAR>() : std::basic_string_view<OLECHAR>(text, text.length());
}

}  // namespace

_bstr_t GroupKey(const _bstr_t& group) {
  if (group.length() == 0) return _bstr_t(OLESTR(""));
  std::basic_string<OLECHAR> key(View(group));
  key += OLECHAR('.');
  return _bstr_t(SysAllocStringLen(key.data(), static_cast<UINT>(key.size())), false);
}

long FindKey(const _bstr_t& name, const _bstr_t& key) {
  const auto at = View(name).find(View(key));
  return at == std::basic_string_view<OLECHAR>::npos ? -1 : static_cast<long>(at);
}

_bstr_t CutAtKey(const _bstr_t& name, const _bstr_t& key) {
  const long at = FindKey(name, key);
  if (at <= 0) return name;
  const auto rest = View(name).substr(static_cast<std::size_t>(at));
  return _bstr_t(SysAllocStringLen(rest.data(), static_cast<UINT>(rest.size())), false);
}

}  // namespace brevo
