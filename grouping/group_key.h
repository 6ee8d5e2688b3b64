// Column groups: a column belongs to group G when its name contains "G.".
#pragma once

#include "core/bstr_t.h"

namespace brevo {

// Empty for a null or empty group, else the group followed by ".".
_bstr_t GroupKey(const _bstr_t& group);

// Where key first occurs in name (case-sensitive), or -1. An empty key is in
// every name, at 0.
long FindKey(const _bstr_t& name, const _bstr_t& key);

// The part of name from the key's first occurrence on; name itself when the
// key is not in it.
_bstr_t CutAtKey(const _bstr_t& name, const _bstr_t& key);

}  // namespace brevo
