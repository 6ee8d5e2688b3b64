// The callbacks helper through the real library: each of the seven kinds is
// called by the DLL and hears, refuses, filters or sorts as it should.
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "table.h"

namespace sdk_test {
namespace {

using Heard = std::vector<std::wstring>;

template <class Event>
LONG IndexOf(Event* e) {
  LONG index = -2;
  e->GetIndex(&index);
  return index;
}

std::wstring ColumnName(IColumnsChangeEvent* e) {
  com_ptr<IDispatch> changed;
  e->GetColumnChanged(changed.put());
  const auto column = changed.as<IMutableColumn>();
  return column ? ReadText([&](BSTR* out) { return column->get_ColumnName(out); }) : L"?";
}

TEST(RecordChangeListener, HearsChangesAndRefusesOne) {
  Table table;
  const auto record = table.Add({L"Pear", 2.5});
  Heard heard;
  const auto listener = MakeListener(
      On<&IRecordChangeListener::ValueBeforeChange>([&](IRecordChangeEvent* e) {
        heard.push_back(L"before " + std::to_wstring(IndexOf(e)));
        return IndexOf(e) == 1 ? e->Stop() : S_OK;  // prices are fixed
      }),
      On<&IRecordChangeListener::ValueAfterChange>(
          [&](IRecordChangeEvent* e) { heard.push_back(L"after " + std::to_wstring(IndexOf(e))); }));
  ASSERT_EQ(record->AddRecordChangeListener(listener.get()), S_OK);

  EXPECT_EQ(record->SetValueAsString(0, Bstr(L"Fig").get()), S_OK);
  EXPECT_EQ(record->SetValueAsDouble(1, 9.0), DISP_E_EXCEPTION);
  EXPECT_EQ(LastErrorText(), L"Failed to change value.");
  EXPECT_EQ(heard, (Heard{L"before 0", L"after 0", L"before 1"}));
  double price = 0;
  record->GetValueAsDouble(1, &price);
  EXPECT_EQ(price, 2.5);
  EXPECT_EQ(record->RemoveRecordChangeListener(listener.get()), S_OK);
}

// Column events refuse unless a listener calls Stop: the helper calls it for
// the Before methods it has no handler for, and a handler decides for itself.
TEST(ColumnsChangeListener, LeftOutBeforeMethodsLetChangesGoOn) {
  Table table;
  Heard heard;
  const auto listener = MakeListener(
      On<&IColumnsChangeListener::ColumnAfterAdd>([&](IColumnsChangeEvent* e) { heard.push_back(L"added " + ColumnName(e)); }),
      On<&IColumnsChangeListener::ColumnAfterRemove>([&](IColumnsChangeEvent*) { heard.push_back(L"removed"); }));
  ASSERT_EQ(table.columns->AddColumnsChangeListener(listener.get()), S_OK);
  com_ptr<IMutableColumn> column;
  EXPECT_EQ(table.columns->AddColumn(Bstr(L"Stock").get(), 10, column.put()), S_OK);
  EXPECT_EQ(table.columns->RemoveColumn(2), S_OK);
  EXPECT_EQ(heard, (Heard{L"added Stock", L"removed"}));
  EXPECT_EQ(table.columns->RemoveColumnsChangeListener(listener.get()), S_OK);
}

TEST(ColumnsChangeListener, ABeforeHandlerDecides) {
  Table table;
  Heard heard;
  const auto listener = MakeListener(On<&IColumnsChangeListener::ColumnBeforeAdd>([&](IColumnsChangeEvent* e) {
    heard.push_back(L"adding " + ColumnName(e));
    return ColumnName(e) == L"Stock" ? e->Stop() : S_OK;  // Stop lets it go on
  }));
  ASSERT_EQ(table.columns->AddColumnsChangeListener(listener.get()), S_OK);
  com_ptr<IMutableColumn> column;
  EXPECT_EQ(table.columns->AddColumn(Bstr(L"Stock").get(), 10, column.put()), S_OK);
  EXPECT_TRUE(FAILED(table.columns->AddColumn(Bstr(L"Notes").get(), 8, column.put())));
  LONG size = 0;
  table.columns->get_Size(&size);
  EXPECT_EQ(size, 3);
  EXPECT_EQ(heard, (Heard{L"adding Stock", L"adding Notes"}));
  EXPECT_EQ(table.columns->RemoveColumnsChangeListener(listener.get()), S_OK);
}

TEST(RecordListChangeListener, HearsAdditionsAndRefusesOne) {
  Table table;
  Heard heard;
  bool full = false;
  const auto listener = MakeListener(
      On<&IRecordListChangeListener::RecordBeforeAdd>([&](IRecordListChangeEvent* e) {
        heard.push_back(L"before add");
        return full ? e->Stop() : S_OK;
      }),
      On<&IRecordListChangeListener::RecordAfterAdd>([&](IRecordListChangeEvent*) { heard.push_back(L"after add"); }));
  ASSERT_EQ(table.list->AddRecordListChangeListener(listener.get()), S_OK);
  com_ptr<IMutableRecord> record;
  EXPECT_EQ(table.list->AddRecord(record.put()), S_OK);
  full = true;
  EXPECT_EQ(table.list->AddRecord(record.put()), DISP_E_EXCEPTION);
  EXPECT_EQ(LastErrorText(), L"Failed to add record.");
  EXPECT_EQ(heard, (Heard{L"before add", L"after add", L"before add"}));
  EXPECT_EQ(table.list->RemoveRecordListChangeListener(listener.get()), S_OK);
}

// The list passes each row's value events on with the column's index: Before
// while the old value is in place, After with the new one.
TEST(RecordListValueChangeListener, HearsTheRowsChanges) {
  Table table({{L"Pear", 2.5}, {L"Kiwi", 0.3}});
  Heard heard;
  const auto note = [&](const wchar_t* when, IRecordListValueChangeEvent* e) {
    com_ptr<IDispatch> record;
    e->GetRecordChanged(record.put());
    heard.push_back(when + Table::Name(record.as<IMutableRecord>().get()) + L" " + std::to_wstring(IndexOf(e)));
  };
  const auto listener = MakeListener(
      On<&IRecordListValueChangeListener::ValueBeforeChange>([&](IRecordListValueChangeEvent* e) { note(L"before ", e); }),
      On<&IRecordListValueChangeListener::ValueAfterChange>([&](IRecordListValueChangeEvent* e) { note(L"after ", e); }));
  ASSERT_EQ(table.list->AddRecordListValueChangeListener(listener.get()), S_OK);
  com_ptr<IRecordListIterator> rows;
  ASSERT_EQ(table.list->GetIterator(VARIANT_TRUE, rows.put()), S_OK);
  com_ptr<IDispatch> first;
  ASSERT_EQ(rows->Next(first.put()), S_OK);
  EXPECT_EQ(first.as<IMutableRecord>()->SetValueAsString(0, Bstr(L"Lime").get()), S_OK);
  EXPECT_EQ(heard, (Heard{L"before Pear 0", L"after Lime 0"}));
  EXPECT_EQ(table.list->RemoveRecordListValueChangeListener(listener.get()), S_OK);
}

TEST(PropertyChangeListener, HearsARename) {
  Table table;
  com_ptr<IMutableColumn> column;
  ASSERT_EQ(table.columns->get_MutableColumn(0, column.put()), S_OK);
  Heard heard;
  const auto listener = MakeListener(On<&IPropertyChangeListener::PropertyChange>([&](IPropertyChangeEvent* e) {
    heard.push_back(ReadText([&](BSTR* out) { return e->GetPropertyName(out); }) + L": " +
                    ReadText([&](BSTR* out) { return e->GetOldValue(out); }) + L" -> " +
                    ReadText([&](BSTR* out) { return e->GetNewValue(out); }));
  }));
  ASSERT_EQ(column->AddPropertyChangeListener(listener.get()), S_OK);
  EXPECT_EQ(column->put_ColumnName(Bstr(L"Fruit").get()), S_OK);
  EXPECT_EQ(heard, (Heard{L"Display Name: Name -> Fruit"}));
  EXPECT_EQ(column->RemovePropertyChangeListener(listener.get()), S_OK);
}

TEST(Condition, FiltersTheRows) {
  Table table({{L"Pear", 2.5}, {L"Fig", 0.75}, {L"Plum", 1.2}});
  const auto startsWithP = MakeCondition([](IMutableRecord* r) { return Table::Name(r).front() == L'P'; });
  com_ptr<IRecordListIterator> rows;
  ASSERT_EQ(table.list->GetFilteredIterator(startsWithP.get(), VARIANT_FALSE, rows.put()), S_OK);
  EXPECT_EQ(Table::Names(rows.get()), (std::vector<std::wstring>{L"Pear", L"Plum"}));

  // Find matches only on exactly VARIANT_TRUE, which the helper answers.
  ASSERT_EQ(table.list->GetIterator(VARIANT_TRUE, rows.put()), S_OK);
  const auto fig = MakeCondition([](IMutableRecord* r) { return Table::Name(r) == L"Fig"; });
  VARIANT_BOOL found = VARIANT_FALSE;
  EXPECT_EQ(rows->Find(fig.get(), &found), S_OK);
  EXPECT_EQ(found, VARIANT_TRUE);
}

// The records as each typed form of the comparator declares them; a positive
// answer puts the first record first.
TEST(Comparator, SortsInEveryTypedForm) {
  const auto byPrice = [](IRecord* a, IRecord* b) {
    double x = 0, y = 0;
    a->GetValueAsDouble(1, &x);
    b->GetValueAsDouble(1, &y);
    return x < y ? 1 : x > y ? -1 : 0;
  };
  struct Case {
    const char* form;
    com_ptr<IRecordComparator> comparator;
  };
  const Case cases[] = {
      {"IMutableRecord*", MakeComparator([](IMutableRecord* a, IMutableRecord* b) {
         return Table::Name(b).compare(Table::Name(a));
       })},
      {"IRecord*", MakeComparator(byPrice)},
      {"VARIANT", MakeComparator([](const VARIANT& a, const VARIANT& b) {
         const auto x = com_ptr<IUnknown>(a.punkVal).as<IMutableRecord>();
         const auto y = com_ptr<IUnknown>(b.punkVal).as<IMutableRecord>();
         return static_cast<LONG>(Table::Name(y.get()).compare(Table::Name(x.get())));
       })},
  };
  const std::vector<std::wstring> byName{L"Fig", L"Kiwi", L"Pear", L"Plum"};
  const std::vector<std::wstring> cheapestFirst{L"Kiwi", L"Fig", L"Plum", L"Pear"};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.form);
    Table table({{L"Pear", 2.5}, {L"Fig", 0.75}, {L"Plum", 1.2}, {L"Kiwi", 0.3}});
    com_ptr<IRecordListIterator> rows;
    ASSERT_EQ(table.list->GetSortedIterator(c.comparator.get(), VARIANT_FALSE, rows.put()), S_OK);
    EXPECT_EQ(Table::Names(rows.get()), std::string(c.form) == "IRecord*" ? cheapestFirst : byName);
  }
}

// What a callback's failure becomes at the interface: thrown exceptions
// never leave it, and an HRESULT a handler returns is passed on.
TEST(Callbacks, FailuresBecomeResults) {
  struct Case {
    const char* what;
    std::function<void()> fail;
    HRESULT expected;
  };
  const Case cases[] = {
      {"std::bad_alloc", [] { throw std::bad_alloc(); }, E_OUTOFMEMORY},
      {"another exception", [] { throw std::runtime_error("no"); }, E_FAIL},
      {"a foreign object", [] { throw 42; }, E_FAIL},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const auto listener = MakeListener(On<&IPropertyChangeListener::PropertyChange>([&](IPropertyChangeEvent*) { c.fail(); }));
    EXPECT_EQ(listener->PropertyChange(nullptr), c.expected);
    const auto condition = MakeCondition([&](IMutableRecord*) -> bool {
      c.fail();
      return true;
    });
    VARIANT_BOOL accepted = VARIANT_TRUE;
    EXPECT_EQ(condition->Evaluate(nullptr, &accepted), c.expected);
    EXPECT_EQ(accepted, VARIANT_FALSE);
    VARIANT none;
    VariantInit(&none);
    const auto comparator = MakeComparator([&](const VARIANT&, const VARIANT&) -> int {
      c.fail();
      return 1;
    });
    LONG order = 7;
    EXPECT_EQ(comparator->Compare(none, none, &order), c.expected);
    EXPECT_EQ(order, 0);
  }
  const auto returns = MakeListener(On<&IRecordListChangeListener::RecordAfterAdd>([](IRecordListChangeEvent*) { return E_ACCESSDENIED; }));
  EXPECT_EQ(returns->RecordAfterAdd(nullptr), E_ACCESSDENIED);
  EXPECT_EQ(returns->RecordBeforeRemove(nullptr), S_OK);  // no handler

  const auto typed = MakeComparator([](IMutableRecord*, IMutableRecord*) { return 0; });
  VARIANT notARecord;
  VariantInit(&notARecord);
  LONG order = 0;
  EXPECT_EQ(typed->Compare(notARecord, notARecord, &order), E_INVALIDARG);
  EXPECT_EQ(typed->Compare(notARecord, notARecord, nullptr), E_POINTER);
}

TEST(Callbacks, AConditionThatThrowsFailsTheFilter) {
  Table table({{L"Pear", 2.5}});
  const auto broken = MakeCondition([](IMutableRecord*) -> bool { throw std::runtime_error("broken"); });
  com_ptr<IRecordListIterator> rows;
  EXPECT_TRUE(FAILED(table.list->GetFilteredIterator(broken.get(), VARIANT_FALSE, rows.put())));
}

}  // namespace
}  // namespace sdk_test
