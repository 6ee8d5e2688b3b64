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

  // The grouped view of source for group, or null when the call fails (a
  // failed grouping stays alive for good: callers ask only for groups that
  // pass the group check).
  com_ptr<IMutableRecordList> Group(IRecordListUtils* utils, IMutableRecordList* source, const _bstr_t& group = "g");
  com_ptr<IRecordList> Group(IRecordListUtils* utils, IRecordList* source, const _bstr_t& group = "g");

  // Takes one grouped list out of its source's registries now.
  void Release(IUnknown* grouped);

 private:
  struct Made {
    com_ptr<IUnknown> grouped;
    com_ptr<IMutableRecordList> mutableSource;
    com_ptr<IRecordList> source;
    com_ptr<IMutableColumns> mutableColumns;
    com_ptr<IColumns> columns;
  };
  static void Unregister(const Made& made) noexcept;

  std::vector<Made> made_;
};

}  // namespace brevo::fuzz
