// The column collection: unique names, the index map through additions and
// removals, the inverted veto of column events, the events switch and its
// summaries, errors as callers see them, and lifetimes.
#include "columns/column_helpers.h"
#include "columns/mutable_columns.h"
#include "support/recording_listener.h"
#include "support/schema.h"

namespace brevo::testing {
namespace {

class ColumnCollection : public ::testing::Test {
 protected:
  HRESULT Add(const OLECHAR* name) {
    com_ptr<IMutableColumn> column;
    return columns->AddColumn(_bstr_t(name).GetBSTR(), 10, column.put());
  }
  void AddAll(std::initializer_list<const OLECHAR*> names) {
    for (const OLECHAR* name : names) EXPECT_EQ(Add(name), S_OK);
  }
  LONG Size() {
    LONG size = -1;
    columns->get_Size(&size);
    return size;
  }
  std::vector<ULONG> IndexMap() {
    std::vector<ULONG> map;
    // The map is at least as long as the collection ever was; read what exists.
    ScopedThrowingInvalidParameter guard;
    try {
      for (ULONG i = 0;; ++i) map.push_back(manager->GetIndexOfColumn(i));
    } catch (const InvalidParameterRaised&) {
    }
    return map;
  }
  com_ptr<CComObject<RecordingListener>> Listen(const std::string& name, bool stop) {
    auto listener = MakeRecorder(name, transcript);
    listener->stop = stop;
    columns->AddColumnsChangeListener(listener.get());
    return listener;
  }

  com_ptr<IMutableColumns> columns{make_object<MutableColumns>().get()};
  com_ptr<IMutableColumnsManager> manager{columns.query<IMutableColumnsManager>()};
  Transcript transcript;
};

TEST_F(ColumnCollection, NamesAreUniqueAndCaseSensitive) {
  AddAll({OLESTR("a"), OLESTR("A")});
  ExpectFailure(Add(OLESTR("a")), "Name property must be unique.");
  EXPECT_EQ(Size(), 2);
  LONG index = 0;
  columns->IndexOf(_bstr_t(OLESTR("A")).GetBSTR(), &index);
  EXPECT_EQ(index, 1);
}

TEST_F(ColumnCollection, IndexMapFollowsAdditionsAndRemovalsAndTheGroupTestReadsThroughIt) {
  AddAll({OLESTR("G.a"), OLESTR("b"), OLESTR("c")});
  EXPECT_EQ(IndexMap(), (std::vector<ULONG>{0, 1, 2}));
  EXPECT_EQ(columns->RemoveColumn(1), S_OK);
  EXPECT_EQ(IndexMap(), (std::vector<ULONG>{0, 2, 2})) << "shifted down, length kept";
  AddAll({OLESTR("G.d")});
  EXPECT_EQ(IndexMap(), (std::vector<ULONG>{0, 2, 2, 2})) << "room made at position 2";
  EXPECT_EQ(manager->GetTrueIndexOfColumn(2), 1) << "the first position holding 2";
  EXPECT_EQ(manager->GetTrueIndexOfColumn(1), -1);

  // Columns G.a, c, G.d: the group test looks at the column at the position
  // mapped to the index, and answers with the index.
  const _bstr_t key(OLESTR("G."));
  EXPECT_EQ(manager->GetCloumnIndicesByGroup(key, 2), -1) << "position 1 holds c";
  manager->SetTrueIndexOfColumn(2, 7);
  EXPECT_EQ(manager->GetCloumnIndicesByGroup(key, 7), 7) << "position 2 holds G.d";
}

// A column event starts stopped: a "Before" pass goes on past a listener only
// when that listener calls Stop; once one has, the flag stays clear.
TEST_F(ColumnCollection, BeforeEventsGoOnOnlyPastListenersThatStop) {
  const auto first = Listen("first", true);
  Listen("second", false);
  EXPECT_EQ(Add(OLESTR("a")), S_OK);
  first->stop = false;
  ExpectFailure(columns->RemoveColumn(0), "Failed to remove column.");
  EXPECT_EQ(Size(), 1);
  first->stop = true;
  EXPECT_EQ(columns->RemoveColumn(0), S_OK);
  EXPECT_EQ(transcript,
            (Transcript{"first.ColumnBeforeAdd(a)", "second.ColumnBeforeAdd(a)", "first.ColumnAfterAdd(a)",
                        "second.ColumnAfterAdd(a)", "first.ColumnBeforeRemove(a)", "first.ColumnBeforeRemove(a)",
                        "second.ColumnBeforeRemove(a)", "first.ColumnAfterRemove(a)", "second.ColumnAfterRemove(a)"}));
}

TEST_F(ColumnCollection, SwitchedOffEventsSummariseOnceWhenSwitchedOn) {
  const auto listener = Listen("l", true);
  columns->AddPropertyChangeListener(listener.get());
  EXPECT_EQ(columns->EnableMutableColumnsEvents(VARIANT_FALSE), S_OK);
  AddAll({OLESTR("a"), OLESTR("b"), OLESTR("c")});
  columns->RemoveColumn(0);
  com_ptr<IMutableColumn> column;
  columns->get_MutableColumn(0, column.put());
  column->put_DisplayName(_bstr_t(OLESTR("Bee")).GetBSTR());
  EXPECT_TRUE(transcript.empty());
  columns->EnableMutableColumnsEvents(VARIANT_TRUE);
  column->put_ColumnName(_bstr_t(OLESTR("B")).GetBSTR());
  // The property summary is swallowed by design; renames are relayed.
  EXPECT_EQ(transcript, (Transcript{"l.ColumnAfterAdd(null)", "l.ColumnAfterRemove(null)",
                                    "l.PropertyChange(Display Name: b -> B)"}));
}

TEST_F(ColumnCollection, MutableColumnChecksTheIndexWithGreaterThan) {
  AddAll({OLESTR("a"), OLESTR("b")});
  com_ptr<IMutableColumn> column;
  ExpectFailure(columns->get_MutableColumn(5, column.put()), "There is no such index : 5");
  EXPECT_DEATH(columns->get_MutableColumn(2, column.put()), "") << "equal to the size reaches the bounds check";
  ScopedThrowingInvalidParameter guard;
  EXPECT_THROW(columns.query<IMutableColumnsRaw>()->RemoveColumnAt(2), InvalidParameterRaised);
}

TEST_F(ColumnCollection, ComparesPairwiseAndByCountAnsweringZeroOrMinusOne) {
  const auto other = Schema({{OLESTR("a"), 10}, {OLESTR("b"), 10}, {OLESTR("c"), 10}});
  AddAll({OLESTR("a"), OLESTR("b")});
  LONG result = 5;
  EXPECT_EQ(columns->CompareTo(other.get(), &result), S_OK);
  EXPECT_EQ(result, -1);
  AddAll({OLESTR("c")});
  com_ptr<IColumns> view;
  other->get_Columns(view.put());
  columns->CompareTo(view.get(), &result);
  EXPECT_EQ(result, 0) << "a view compares as its collection";
  columns->CompareTo(Schema({{OLESTR("a"), 10}, {OLESTR("b"), 10}, {OLESTR("c"), 12}}).get(), &result);
  EXPECT_EQ(result, -1) << "a column of another type; never 1";
}

TEST_F(ColumnCollection, ViewIsKeptUntilClearForwardsAndOutlivesItsCollectionSafely) {
  AddAll({OLESTR("Address.City")});
  com_ptr<IColumns> view, again;
  columns->get_Columns(view.put());
  columns->get_Columns(again.put());
  EXPECT_EQ(view.get(), again.get());
  com_ptr<IColumn> column;
  ASSERT_EQ(view->get_Column(0, column.put()), S_OK);
  EXPECT_EQ(Read(column.get(), &IColumn::get_ColumnName), "Address.City");
  const auto listener = MakeRecorder("l", transcript);
  listener->stop = true;
  EXPECT_EQ(view->AddColumnsChangeListener(listener.get()), S_OK);
  AddAll({OLESTR("b")});
  // A refusal of the collection reaches the view's caller with its message.
  const auto stranger = MakeRecorder("stranger", transcript);
  ExpectFailure(view->RemoveColumnsChangeListener(stranger.get()), "Cannot remove columns change listener.");
  ExpectFailure(view->RemovePropertyChangeListener(stranger.get()), "Cannot remove property change listener.");

  // Clear drops the columns and the view, silently, and keeps the map.
  EXPECT_EQ(columns->Clear(), S_OK);
  EXPECT_EQ(IndexMap(), (std::vector<ULONG>{0, 1}));
  EXPECT_EQ(transcript, (Transcript{"l.ColumnBeforeAdd(b)", "l.ColumnAfterAdd(b)"})) << "heard through the view";
  columns->get_Columns(again.put());
  EXPECT_NE(again.get(), view.get());
  LONG size = -1;
  view->get_Size(&size);
  EXPECT_EQ(size, 0) << "a dropped view still shows its collection";
  AddAll({OLESTR("a"), OLESTR("b"), OLESTR("c")});
  columns.query<IMutableColumnsRaw>()->Clone()->get_Size(&size);
  EXPECT_EQ(size, 0) << "a clone is empty";

  columns.reset();
  manager.reset();
  EXPECT_EQ(view->get_Size(&size), E_POINTER);
  ClearErrorInfo();
}

}  // namespace
}  // namespace brevo::testing
