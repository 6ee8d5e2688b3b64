// Client code called from inside the library may change what is being
// changed, re-enter the library, or drop its last reference to the object
// that called it: the library neither touches freed memory nor loses track.
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "columns/mutable_columns.h"
#include "core/call_out.h"
#include "events/scripted_listener.h"
#include "factory/record_list_utils.h"
#include "grouping/group_interfaces.h"
#include "lists/mutable_record_list.h"
#include "lists/row_fixture.h"
#include "support/schema.h"

namespace brevo::testing {
namespace {

// The record of a list's first row.
com_ptr<IMutableRecord> FirstRow(IMutableRecordList* list) {
  com_ptr<IRecordListIterator> it;
  list->GetIterator(VARIANT_FALSE, it.put());
  return Records(it.get()).front();
}

std::vector<std::string> NamesOf(IMutableColumns* columns) {
  const auto raw = RawColumnsOf(columns);
  std::vector<std::string> names;
  for (ULONG i = 0; i < raw->Size(); ++i) names.push_back(Narrow(raw->MutableColumnAt(i).query<IColumnRaw>()->ColumnName()));
  return names;
}

// The removal erases the column its events announced, found again after the
// listeners ran; gone already, nothing more is erased, and the call succeeds.
TEST(Reentrancy, RemoveColumnErasesTheAnnouncedColumnWhateverItsListenersDid) {
  enum class Phase { kBefore, kAfter };
  struct Case {
    const char* what;
    Phase phase;
    std::function<void(IMutableColumns*, IColumnsChangeListener*)> act;
    std::vector<std::string> left;
  };
  const auto remove = [](ULONG index) {
    return [index](IMutableColumns* c, IColumnsChangeListener*) { c->RemoveColumn(index); };
  };
  const auto removeSelf = [](IMutableColumns* c, IColumnsChangeListener* self) { c->RemoveColumnsChangeListener(self); };
  const Case cases[] = {
      {"removes the announced column", Phase::kBefore, remove(1), {"a", "c"}},
      {"removes an earlier column", Phase::kBefore, remove(0), {"c"}},
      {"removes the last column", Phase::kAfter, remove(2), {"a"}},
      {"clears", Phase::kBefore, [](IMutableColumns* c, IColumnsChangeListener*) { c->Clear(); }, {}},
      {"clears after", Phase::kAfter, [](IMutableColumns* c, IColumnsChangeListener*) { c->Clear(); }, {}},
      {"removes itself", Phase::kBefore, removeSelf, {"a", "c"}},
      {"adds a column", Phase::kAfter,
       [](IMutableColumns* c, IColumnsChangeListener*) {
         com_ptr<IMutableColumn> added;
         c->AddColumn(_bstr_t(OLESTR("d")).GetBSTR(), 10, added.put());
       },
       {"a", "c", "d"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const auto columns = Schema({{OLESTR("a"), 10}, {OLESTR("b"), 10}, {OLESTR("c"), 10}});
    Transcript heard;
    const auto listener = MakeScripted(heard, "l");
    listener->stop = true;  // a column event goes on only past listeners that stop it
    bool acted = false;
    IColumnsChangeListener* self = listener.get();
    listener->during = [&] {
      const bool now = (c.phase == Phase::kBefore) == (heard.back() == "l.ColumnBeforeRemove");
      if (now && !acted) {
        acted = true;
        c.act(columns.get(), self);
      }
    };
    ASSERT_EQ(columns->AddColumnsChangeListener(listener.get()), S_OK);
    EXPECT_EQ(columns->RemoveColumn(1), S_OK);
    EXPECT_EQ(NamesOf(columns.get()), c.left);
    // The map still answers for every column that is left.
    const auto map = columns.query<IMutableColumnsManager>();
    for (ULONG i = 0; i < c.left.size(); ++i) EXPECT_LT(map->GetIndexOfColumn(i), 4u);
  }
}

// A client whose callback lets go of its last reference to the object that
// called it: the object finishes its work first.
TEST(Reentrancy, AnObjectReleasedInsideItsOwnNotificationFinishesFirst) {
  {  // a collection, through a rename heard on the collection and on its view
    for (const bool onView : {false, true}) {
      com_ptr<IMutableColumns> columns = Schema({{OLESTR("a"), 10}});
      com_ptr<IMutableColumn> column;
      columns->get_MutableColumn(0, column.put());
      Transcript heard;
      const auto listener = MakeScripted(heard, "l");
      listener->during = [&] { columns.reset(); };
      com_ptr<IColumns> view;
      columns->get_Columns(view.put());
      EXPECT_EQ(onView ? view->AddPropertyChangeListener(listener.get())
                       : columns->AddPropertyChangeListener(listener.get()),
                S_OK);
      view.reset();
      EXPECT_EQ(column->put_ColumnName(_bstr_t(OLESTR("b")).GetBSTR()), S_OK);
      EXPECT_EQ(heard.size(), 1u);
    }
  }
  {  // a list, through a value change of one of its records
    com_ptr<IMutableRecordList> list = ListOf({-1}, Schema({{OLESTR("a"), 10}}));
    const auto record = FirstRow(list.get());
    Transcript heard;
    const auto dropping = MakeScripted(heard, "record");
    dropping->during = [&] { list.reset(); };
    record->AddRecordChangeListener(dropping.get());
    EXPECT_EQ(record->SetValueAsInt32(0, 1), S_OK);
    EXPECT_FALSE(list);
  }
  {  // a grouped record and a record view, each through its own listener
    const auto list = ListOf({-1}, Schema({{OLESTR("G.a"), 10}}));
    const auto record = FirstRow(list.get());
    const com_ptr<IRecordListUtils> utils(make_object<RecordListUtils>().get());
    com_ptr<IMutableRecordList> grouped;
    ASSERT_EQ(utils->GetMutableRecordListByGroup(list.get(), _bstr_t(OLESTR("G")).GetBSTR(), grouped.put()), S_OK);
    com_ptr<IRecordListIterator> it;
    grouped->GetIterator(VARIANT_FALSE, it.put());
    com_ptr<IDispatch> groupedRecord;
    it->Next(groupedRecord.put());
    it.reset();
    com_ptr<IRecord> view;
    record->get_Record(view.put());
    Transcript heard;
    const auto dropView = MakeScripted(heard, "view");
    dropView->during = [&] { view.reset(); };
    view->AddRecordChangeListener(dropView.get());
    const auto dropGrouped = MakeScripted(heard, "grouped");
    dropGrouped->during = [&] { groupedRecord.reset(); };
    groupedRecord.query<IMutableRecord>()->AddRecordChangeListener(dropGrouped.get());
    EXPECT_EQ(record->SetValueAsInt32(0, 1), S_OK);
    EXPECT_EQ(record->SetValueAsInt32(0, 2), S_OK);
    // The grouped record goes as soon as its listener is done, leaving the
    // source's registry: the view after it is skipped for that pass, as any
    // listener after one that leaves. The record keeps its view.
    EXPECT_EQ(heard, (Transcript{"grouped.ValueBeforeChange(0)", "view.ValueAfterChange(0)", "view.ValueBeforeChange(0)",
                                 "view.ValueAfterChange(0)"}));
    grouped.query<IGroupRecordListRaw>()->Unregister();
  }
}

// Sorts from the client's comparator and filters from its condition, asked of
// a read-only view or a grouped list over one, while the callback lets go of
// the client's last reference to the list behind them.
class DroppingCallback : public implements<DroppingCallback, IRecordComparator, IRecordCondition> {
 public:
  static constexpr CLSID kClassId = {0x4E3F1A27, 0x90C2, 0x4B6D, {0xA1, 0x5E, 0x73, 0x0D, 0x2C, 0x88, 0x41, 0x9F}};
  explicit DroppingCallback(com_ptr<IMutableRecordList>& list) : list_(list) {}
  STDMETHODIMP Compare(VARIANT, VARIANT, LONG* result) override {
    list_.reset();
    *result = 0;
    return S_OK;
  }
  STDMETHODIMP Evaluate(IMutableRecord*, VARIANT_BOOL* result) override {
    list_.reset();
    *result = VARIANT_TRUE;
    return S_OK;
  }

 private:
  com_ptr<IMutableRecordList>& list_;
};

TEST(Reentrancy, ViewsSortAndFilterWhileTheCallbackDropsTheList) {
  const com_ptr<IRecordListUtils> utils(make_object<RecordListUtils>().get());
  for (const bool grouped : {false, true}) {
    for (const bool sort : {false, true}) {
      SCOPED_TRACE(std::string(grouped ? "grouped " : "view ") + (sort ? "sort" : "filter"));
      com_ptr<IMutableRecordList> list = ListOf({-1, -1, -1}, Schema({{OLESTR("G.a"), 10}}));
      com_ptr<IRecordList> target;
      list->get_RecordList(target.put());
      if (grouped) {
        com_ptr<IRecordList> over;
        ASSERT_EQ(utils->GetRecordListByGroup(target.get(), _bstr_t(OLESTR("G")).GetBSTR(), over.put()), S_OK);
        // The grouped list holds the view, not the list; the client lets the
        // grouped list out of the view's registries first.
        target->RemoveRecordListChangeListener(over.query<IRecordListChangeListener>().get());
        target->RemoveRecordListValueChangeListener(over.query<IRecordListValueChangeListener>().get());
        com_ptr<IColumns> columns;
        target->get_Columns(columns.put());
        columns->RemoveColumnsChangeListener(over.query<IColumnsChangeListener>().get());
        target = over;
      }
      const auto callback = make_object<DroppingCallback>(list);
      com_ptr<IRecordListIterator> it;
      const HRESULT hr = sort ? target->GetSortedIterator(callback.get(), VARIANT_FALSE, it.put())
                              : target->GetFilteredIterator(callback.get(), VARIANT_FALSE, it.put());
      EXPECT_EQ(hr, S_OK);
      EXPECT_FALSE(list);
      ULONG size = 0;
      EXPECT_EQ(target->get_Size(&size), E_POINTER) << "the list is gone";
      ClearErrorInfo();
    }
  }
}

// A comparator that asks the list it sorts for another sort: the nested call
// replaces the list's stored comparator and result, the running sort goes on
// with its own comparator; one that drops the client's last reference to the
// list: the list finishes the sort first.
class NestingComparator : public implements<NestingComparator, IRecordComparator> {
 public:
  static constexpr CLSID kClassId = {0x8D2E4B10, 0x3F6A, 0x4C91, {0xB7, 0x02, 0x5E, 0x1C, 0x9A, 0x33, 0x70, 0xD4}};
  explicit NestingComparator(com_ptr<IMutableRecordList>& list) : list_(list) {}
  int calls = 0;
  STDMETHODIMP Compare(VARIANT, VARIANT, LONG* result) override {
    if (++calls == 1 && list_) {
      const auto inner = make_object<NestingComparator>(list_);
      inner->calls = 1;  // sorts once without nesting again
      com_ptr<IRecordListIterator> nested;
      list_->GetSortedIterator(inner.get(), VARIANT_FALSE, nested.put());
    }
    *result = 0;
    return S_OK;
  }

 private:
  com_ptr<IMutableRecordList>& list_;
};

TEST(Reentrancy, AComparatorMaySortItsListAgainOrDropIt) {
  for (const bool drop : {false, true}) {
    SCOPED_TRACE(drop ? "drops the list" : "sorts again");
    com_ptr<IMutableRecordList> list = ListOf(std::vector<LONG>(20, -1), Schema({{OLESTR("a"), 10}}));
    com_ptr<IMutableRecordList> held = list;
    com_ptr<IRecordListIterator> it;
    if (drop) {
      const auto dropping = make_object<DroppingCallback>(list);
      EXPECT_EQ(held->GetSortedIterator(dropping.get(), VARIANT_FALSE, it.put()), S_OK);
    } else {
      const auto nesting = make_object<NestingComparator>(list);
      EXPECT_EQ(list->GetSortedIterator(nesting.get(), VARIANT_FALSE, it.put()), S_OK);
    }
    ULONG walked = 0;
    for (VARIANT_BOOL more = VARIANT_FALSE; it->HasNext(&more) == S_OK && more != VARIANT_FALSE; ++walked) {
      com_ptr<IDispatch> next;
      it->Next(next.put());
    }
    EXPECT_EQ(walked, 20u);
  }
}

// A listener that re-enters the library from its own notification nests one
// level deeper each time; the innermost call past the limit fails with the
// fixed message, the outer calls unwind, and every stored value stays.
TEST(Reentrancy, NestedCallOutsStopAtTheLimit) {
  const auto list = ListOf({-1}, Schema({{OLESTR("a"), 10}}));
  const auto record = FirstRow(list.get());
  Transcript heard;
  const auto listener = MakeScripted(heard, "l");
  LONG value = 0;
  int deepest = 0;
  std::vector<std::uintptr_t> frames;
  std::string innermost;
  listener->during = [&] {
    if (heard.back() != "l.ValueAfterChange(0)") return;
    const char here = 0;
    frames.push_back(reinterpret_cast<std::uintptr_t>(&here));
    deepest = std::max(deepest, CallOutLevel::Depth());
    if (record->SetValueAsInt32(0, ++value) != S_OK) innermost = TakeErrorInfo().description;
  };
  record->AddRecordChangeListener(listener.get());
  EXPECT_EQ(record->SetValueAsInt32(0, ++value), S_OK);
  EXPECT_EQ(deepest, kCallOutLimit);
  EXPECT_EQ(innermost, Narrow(kCallOutTooDeep));
  EXPECT_EQ(CallOutLevel::Depth(), 0) << "every level unwound";
  LONG stored = 0;
  EXPECT_EQ(record->GetValueAsInt32(0, &stored), S_OK);
  EXPECT_EQ(stored, value - 1) << "the refused innermost value is not stored";
  // The library's share of the stack per level, for the limit's documentation.
  ASSERT_GE(frames.size(), 2u);
  const auto perLevel = (frames.front() - frames.back()) / (frames.size() - 1);
  RecordProperty("stack_bytes_per_level", std::to_string(perLevel));
  std::printf("stack per nesting level: %zu bytes\n", static_cast<std::size_t>(perLevel));
}

TEST(Reentrancy, AColumnAddedFromItsOwnNotificationNestsToTheLimit) {
  const auto columns = Schema();
  Transcript heard;
  const auto listener = MakeScripted(heard, "l");
  int added = 0;
  listener->during = [&] {
    if (heard.back() != "l.ColumnAfterAdd") return;
    com_ptr<IMutableColumn> column;
    const std::wstring name = L"c" + std::to_wstring(++added);
    columns->AddColumn(_bstr_t(std::basic_string<OLECHAR>(name.begin(), name.end()).c_str()).GetBSTR(), 10,
                       column.put());
  };
  listener->stop = true;
  columns->AddColumnsChangeListener(listener.get());
  com_ptr<IMutableColumn> column;
  EXPECT_EQ(columns->AddColumn(_bstr_t(OLESTR("c0")).GetBSTR(), 10, column.put()), S_OK);
  LONG size = 0;
  columns->get_Size(&size);
  // Each addition nests two call-outs (Before and After); the innermost is refused.
  EXPECT_EQ(size, kCallOutLimit);
  EXPECT_EQ(CallOutLevel::Depth(), 0);
  ClearErrorInfo();
}

}  // namespace
}  // namespace brevo::testing
