// Grouped lists made through RecordListUtils. A grouped list and its source
// hold each other until the grouped list leaves the source's three
// registries; this does that for every grouped list it made when it goes.
#pragma once

#include <vector>

#include "factory/record_list_utils.h"

namespace brevo::fuzz {

class GroupedLists {
 public:
  GroupedLists() = default;
  GroupedLists(const GroupedLists&) = delete;
  GroupedLists& operator=(const GroupedLists&) = delete;
  ~GroupedLists();

  // The grouped view of source (an IMutableRecordList or an IRecordList), or
  // null when the call fails. A failed grouping stays alive for good: callers
  // ask only for groups that pass the group check.
  template <class List>
  com_ptr<List> Group(IRecordListUtils* utils, List* source, const _bstr_t& group = "g");

  // Takes one grouped list out of its source's registries now.
  void Release(IUnknown* grouped);

 private:
  struct Made {
    com_ptr<IUnknown> grouped;
    com_ptr<IUnknown> source;
    com_ptr<IUnknown> columns;  // the source's columns when the grouping was made
  };
  static void Unregister(const Made& made) noexcept;

  std::vector<Made> made_;
};

}  // namespace brevo::fuzz
