// The objects the callbacks helper makes, as COM objects: what they answer to
// QueryInterface (the marshaler and the library ask), and that each lives
// exactly as long as its last reference, the library's included.
#include <gtest/gtest.h>

#include <functional>

#include "table.h"

namespace sdk_test {
namespace {

// Captured by a callback, it counts the callbacks alive.
struct Probe {
  static inline int alive = 0;
  Probe() { ++alive; }
  Probe(const Probe&) { ++alive; }
  Probe& operator=(const Probe&) = default;
  ~Probe() { --alive; }
};

template <class I>
com_ptr<I> As(IUnknown* object) {
  return com_ptr<IUnknown>(object).as<I>();
}

struct Kind {
  const char* name;
  IID iid;
  std::function<com_ptr<IUnknown>(const Probe&)> make;
  // Gives the object to the table's objects, which keep it.
  std::function<HRESULT(Table&, IUnknown*)> hand;
};

const Kind kKinds[] = {
    {"IRecordChangeListener", IID_IRecordChangeListener,
     [](const Probe& p) {
       return MakeListener(On<&IRecordChangeListener::ValueAfterChange>([p](IRecordChangeEvent*) {})).as<IUnknown>();
     },
     [](Table& t, IUnknown* o) {
       return t.Add({L"Pear", 1})->AddRecordChangeListener(As<IRecordChangeListener>(o).get());
     }},
    {"IColumnsChangeListener", IID_IColumnsChangeListener,
     [](const Probe& p) {
       return MakeListener(On<&IColumnsChangeListener::ColumnAfterAdd>([p](IColumnsChangeEvent*) {})).as<IUnknown>();
     },
     [](Table& t, IUnknown* o) { return t.columns->AddColumnsChangeListener(As<IColumnsChangeListener>(o).get()); }},
    {"IRecordListChangeListener", IID_IRecordListChangeListener,
     [](const Probe& p) {
       return MakeListener(On<&IRecordListChangeListener::RecordAfterAdd>([p](IRecordListChangeEvent*) {}))
           .as<IUnknown>();
     },
     [](Table& t, IUnknown* o) { return t.list->AddRecordListChangeListener(As<IRecordListChangeListener>(o).get()); }},
    {"IRecordListValueChangeListener", IID_IRecordListValueChangeListener,
     [](const Probe& p) {
       return MakeListener(On<&IRecordListValueChangeListener::ValueAfterChange>([p](IRecordListValueChangeEvent*) {}))
           .as<IUnknown>();
     },
     [](Table& t, IUnknown* o) {
       return t.list->AddRecordListValueChangeListener(As<IRecordListValueChangeListener>(o).get());
     }},
    {"IPropertyChangeListener", IID_IPropertyChangeListener,
     [](const Probe& p) {
       return MakeListener(On<&IPropertyChangeListener::PropertyChange>([p](IPropertyChangeEvent*) {})).as<IUnknown>();
     },
     [](Table& t, IUnknown* o) {
       com_ptr<IMutableColumn> column;
       t.columns->get_MutableColumn(0, column.put());
       return column->AddPropertyChangeListener(As<IPropertyChangeListener>(o).get());
     }},
    {"IRecordCondition", IID_IRecordCondition,
     [](const Probe& p) { return MakeCondition([p](IMutableRecord*) { return true; }).as<IUnknown>(); },
     [](Table& t, IUnknown* o) {
       com_ptr<IRecordListIterator> rows;  // the list keeps its last condition
       return t.list->GetFilteredIterator(As<IRecordCondition>(o).get(), VARIANT_FALSE, rows.put());
     }},
    {"IRecordComparator", IID_IRecordComparator,
     [](const Probe& p) { return MakeComparator([p](IRecord*, IRecord*) { return 0; }).as<IUnknown>(); },
     [](Table& t, IUnknown* o) {
       com_ptr<IRecordListIterator> rows;  // and its last comparator
       return t.list->GetSortedIterator(As<IRecordComparator>(o).get(), VARIANT_FALSE, rows.put());
     }},
};

class HelperObject : public ::testing::TestWithParam<Kind> {};

TEST_P(HelperObject, AnswersItsInterfacesAndNoOthers) {
  const Probe probe;
  const auto object = GetParam().make(probe);
  const struct {
    IID iid;
    HRESULT expected;
  } queries[] = {{IID_IUnknown, S_OK},     {IID_IDispatch, S_OK},         {GetParam().iid, S_OK},
                 {IID_IMarshal, E_NOINTERFACE}, {IID_ISupportErrorInfo, E_NOINTERFACE},
                 {GetParam().iid == IID_IRecordCondition ? IID_IRecordComparator : IID_IRecordCondition, E_NOINTERFACE}};
  for (const auto& query : queries) {
    com_ptr<IUnknown> answer;
    EXPECT_EQ(object->QueryInterface(query.iid, answer.put_void()), query.expected);
    EXPECT_EQ(!!answer, query.expected == S_OK);
  }
  EXPECT_EQ(object.as<IUnknown>().get(), object.as<IDispatch>().as<IUnknown>().get()) << "one identity";
  EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_P(HelperObject, GoesWhenTheLibraryLetsGoOfIt) {
  ASSERT_EQ(Probe::alive, 0);
  {
    Table table({{L"Fig", 0.75}, {L"Kiwi", 0.3}});
    {
      const Probe probe;
      const auto object = GetParam().make(probe);
      ASSERT_EQ(GetParam().hand(table, object.get()), S_OK);
    }
    EXPECT_EQ(Probe::alive, 1) << "the library keeps the object it was given";
  }
  EXPECT_EQ(Probe::alive, 0) << "and releases it with the objects that held it";
}

INSTANTIATE_TEST_SUITE_P(AllKinds, HelperObject, ::testing::ValuesIn(kKinds),
                         [](const ::testing::TestParamInfo<Kind>& kind) { return std::string(kind.param.name); });

}  // namespace
}  // namespace sdk_test
