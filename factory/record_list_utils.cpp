#include "factory/record_list_utils.h"

#include <cstring>
#include <string_view>
#include <vector>

#include "grouping/group_mutable_record_list.h"

namespace brevo {
namespace {

com_ptr<IColumns> ColumnsOf(IRecordList* list) {
  if (list == nullptr) _com_issue_error(E_POINTER);
  com_ptr<IColumns> columns;
  ThrowIfFailed(list->get_Columns(columns.put()));
  if (!columns) _com_issue_error(E_POINTER);
  return columns;
}

com_ptr<IColumns> ColumnsOf(IMutableRecordList* list) {
  if (list == nullptr) _com_issue_error(E_POINTER);
  com_ptr<IMutableColumns> columns;
  ThrowIfFailed(list->get_Columns(columns.put()));
  if (!columns) _com_issue_error(E_POINTER);
  com_ptr<IColumns> view;
  ThrowIfFailed(columns->get_Columns(view.put()));
  return view;
}

// Walks the column names, asking the collection's size again at every step,
// and hands each name that contains "." to visit until it returns true.
template <class Visit>
void ForEachDottedName(IColumns* columns, Visit&& visit) {
  for (ULONG i = 0;; ++i) {
    LONG size = 0;
    ThrowIfFailed(columns->get_Size(&size));
    if (i >= static_cast<ULONG>(size)) return;
    com_ptr<IColumn> column;
    ThrowIfFailed(columns->get_Column(i, column.put()));
    BSTR text = nullptr;
    ThrowIfFailed(column->get_ColumnName(&text));
    const _bstr_t name(text, false);
    const std::basic_string_view<OLECHAR> view(name.is_null() ? OLESTR("") : static_cast<const OLECHAR*>(name),
                                               name.length());
    const auto dot = view.find(OLECHAR('.'));
    if (dot != std::basic_string_view<OLECHAR>::npos && visit(name, view.substr(0, dot))) return;
  }
}

ULONG CountGroups(IColumns* columns) {
  std::vector<std::basic_string<OLECHAR>> groups;
  ForEachDottedName(columns, [&](const _bstr_t&, std::basic_string_view<OLECHAR> group) {
    bool known = false;
    for (const auto& seen : groups) known = known || seen == group;
    if (!known) groups.emplace_back(group);
    return false;
  });
  return static_cast<ULONG>(groups.size());
}

// The first token of the narrow name, leading dots skipped.
std::string FirstToken(const _bstr_t& name) {
  const char* narrow = name.narrow();
  std::string text = narrow != nullptr ? narrow : "";
  const auto start = text.find_first_not_of('.');
  if (start == std::string::npos) return {};
  const auto end = text.find('.', start);
  return text.substr(start, end == std::string::npos ? std::string::npos : end - start);
}

_bstr_t NameGroup(IColumns* columns, ULONG index) {
  std::vector<std::string> groups;
  _bstr_t result(OLESTR(""));
  ForEachDottedName(columns, [&](const _bstr_t& name, std::basic_string_view<OLECHAR>) {
    const std::string group = FirstToken(name);
    for (const auto& seen : groups) {
      if (seen == group) return false;
    }
    groups.push_back(group);
    if (groups.size() - 1 != index) return false;
    result = _bstr_t(group.c_str());
    return true;
  });
  return result;
}

}  // namespace

com_ptr<IRecordList> RecordListUtilsImpl::GetRecordListByGroup(IRecordList* list, const _bstr_t& group) {
  // A refused Create leaves its registrations on the source: the half-built
  // list and the source keep each other, as the contract has it.
  auto grouped = make_object<GroupRecordList>();
  grouped->GroupRecordListImpl::Create(list, group);
  return com_ptr<IRecordList>(grouped.get());
}

com_ptr<IMutableRecordList> RecordListUtilsImpl::GetMutableRecordListByGroup(IMutableRecordList* list,
                                                                             const _bstr_t& group) {
  auto grouped = make_object<GroupMutableRecordList>();
  grouped->GroupRecordListImpl::Create(list, group);
  return com_ptr<IMutableRecordList>(grouped.get());
}

void RecordListUtilsImpl::SaveToFile() { throw EBvException(OLESTR("Method SaveToFile not yet implemented.")); }

ULONG RecordListUtilsImpl::GetGroupCount(IRecordList* list) { return CountGroups(ColumnsOf(list).get()); }

ULONG RecordListUtilsImpl::GetMutableGroupCount(IMutableRecordList* list) { return CountGroups(ColumnsOf(list).get()); }

_bstr_t RecordListUtilsImpl::GetGroupName(IRecordList* list, ULONG index) {
  return NameGroup(ColumnsOf(list).get(), index);
}

_bstr_t RecordListUtilsImpl::GetMutableGroupName(IMutableRecordList* list, ULONG index) {
  return NameGroup(ColumnsOf(list).get(), index);
}

}  // namespace brevo
