// The column collection: unique names, the index map through additions and
// removals, the inverted veto of column events, the events switch and its
// summaries, errors as callers see them, and lifetimes.
#include "columns/mutable_columns.h"
#include "support/recording_listener.h"

namespace brevo::testing {
namespace {

class ColumnCollection : public ::testing::Test {
 protected:
  com_ptr<IMutableColumns> columns{make_object<MutableColumns>().get()};
  Transcript transcript;

  HRESULT Add(const OLECHAR* name, ULONG type = 10) {
    com_ptr<IMutableColumn> column;
    return columns->AddColumn(_bstr_t(name).GetBSTR(), type, column.put());
  }
  LONG Size() {
    LONG size = -1;
    columns->get_Size(&size);
    return size;
  }
  std::vector<ULONG> IndexMap() {
    const auto manager = columns.query<IMutableColumnsManager>();
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
};

TEST_F(ColumnCollection, NamesAreUniqueAndCaseSensitive) {
  LONG index = 0;
  EXPECT_EQ(columns->IndexOf(_bstr_t(OLESTR("a")).GetBSTR(), &index), S_OK);
  EXPECT_EQ(index, -1);
  EXPECT_EQ(Size(), 0);

  EXPECT_EQ(Add(OLESTR("a")), S_OK);
  EXPECT_EQ(Add(OLESTR("A")), S_OK);
  ClearErrorInfo();
  EXPECT_EQ(Add(OLESTR("a")), DISP_E_EXCEPTION);
  const ErrorSnapshot error = TakeErrorInfo();
  EXPECT_EQ(error.description, "Name property must be unique.");
  EXPECT_TRUE(IsEqualGUID(error.guid, iid_of<IMutableColumns>()));
  EXPECT_EQ(Size(), 2);
  columns->IndexOf(_bstr_t(OLESTR("A")).GetBSTR(), &index);
  EXPECT_EQ(index, 1);
}

TEST_F(ColumnCollection, ErrorSourceIsTheRegisteredProgId) {
  const ScopedProgId registration(MutableColumns::kClassId, OLESTR("BrevoRecordList.MutableColumns.1"));
  Add(OLESTR("a"));
  EXPECT_EQ(Add(OLESTR("a")), DISP_E_EXCEPTION);
  EXPECT_EQ(TakeErrorInfo().source, "BrevoRecordList.MutableColumns.1");
}

TEST_F(ColumnCollection, IndexMapFollowsAdditionsAndRemovals) {
  Add(OLESTR("a"));
  Add(OLESTR("b"));
  Add(OLESTR("c"));
  EXPECT_EQ(IndexMap(), (std::vector<ULONG>{0, 1, 2}));
  EXPECT_EQ(columns->RemoveColumn(1), S_OK);
  EXPECT_EQ(IndexMap(), (std::vector<ULONG>{0, 2, 2})) << "shifted down, length kept";
  Add(OLESTR("d"));
  EXPECT_EQ(IndexMap(), (std::vector<ULONG>{0, 2, 2, 2})) << "room made at position 2";

  const auto manager = columns.query<IMutableColumnsManager>();
  EXPECT_EQ(manager->GetTrueIndexOfColumn(2), 1) << "the first position holding 2";
  EXPECT_EQ(manager->GetTrueIndexOfColumn(1), -1);
  manager->SetTrueIndexOfColumn(3, 7);
  EXPECT_EQ(manager->GetTrueIndexOfColumn(7), 3);
  EXPECT_EQ(manager->GetTrueIndexOfColumn(0xFFFFFFFF), -1);
}

TEST_F(ColumnCollection, GroupTestLooksForTheKeyInTheMappedColumnsName) {
  for (const OLECHAR* name : {OLESTR("G.a"), OLESTR("x"), OLESTR("G.b"), OLESTR("")}) Add(name);
  const auto manager = columns.query<IMutableColumnsManager>();
  const _bstr_t key(OLESTR("G."));
  EXPECT_EQ(manager->GetCloumnIndicesByGroup(key, 0), 0);
  EXPECT_EQ(manager->GetCloumnIndicesByGroup(key, 1), -1);
  EXPECT_EQ(manager->GetCloumnIndicesByGroup(key, 2), 2);
  EXPECT_EQ(manager->GetCloumnIndicesByGroup(_bstr_t(OLESTR("g.")), 2), -1);
  EXPECT_EQ(manager->GetCloumnIndicesByGroup(_bstr_t(OLESTR("")), 1), 1) << "an empty key is in every name";
  EXPECT_EQ(manager->GetCloumnIndicesByGroup(_bstr_t(OLESTR("")), 3), -1) << "but not in an empty name";
}

// A column event starts stopped: a "Before" pass goes past a listener only
// when that listener calls Stop.
TEST_F(ColumnCollection, ColumnBeforeAddGoesOnOnlyPastListenersThatStop) {
  const auto first = Listen("first", false);
  const auto second = Listen("second", false);
  EXPECT_EQ(Add(OLESTR("a")), DISP_E_EXCEPTION);
  EXPECT_EQ(TakeErrorInfo().description, "Failed to add column.");
  EXPECT_EQ(transcript, (Transcript{"first.ColumnBeforeAdd(a)"}));
  EXPECT_EQ(Size(), 0);

  // Once a listener has cleared the shared flag it stays clear: later
  // listeners are called and the addition goes ahead.
  transcript.clear();
  first->stop = true;
  EXPECT_EQ(Add(OLESTR("a")), S_OK);
  EXPECT_EQ(transcript, (Transcript{"first.ColumnBeforeAdd(a)", "second.ColumnBeforeAdd(a)",
                                    "first.ColumnAfterAdd(a)", "second.ColumnAfterAdd(a)"}));
  EXPECT_EQ(IndexMap(), (std::vector<ULONG>{0}));

  transcript.clear();
  first->stop = false;
  EXPECT_EQ(columns->RemoveColumn(0), DISP_E_EXCEPTION);
  EXPECT_EQ(TakeErrorInfo().description, "Failed to remove column.");
  EXPECT_EQ(Size(), 1);
  first->stop = true;
  EXPECT_EQ(columns->RemoveColumn(0), S_OK);
  EXPECT_EQ(transcript, (Transcript{"first.ColumnBeforeRemove(a)", "first.ColumnBeforeRemove(a)",
                                    "second.ColumnBeforeRemove(a)", "first.ColumnAfterRemove(a)",
                                    "second.ColumnAfterRemove(a)"}));
  EXPECT_EQ(Size(), 0);
}

TEST_F(ColumnCollection, SwitchedOffEventsSummariseOnceWhenSwitchedOn) {
  const auto listener = Listen("l", true);
  columns->AddPropertyChangeListener(listener.get());
  EXPECT_EQ(columns->EnableMutableColumnsEvents(VARIANT_FALSE), S_OK);
  Add(OLESTR("a"));
  Add(OLESTR("b"));
  Add(OLESTR("c"));
  columns->RemoveColumn(0);
  com_ptr<IMutableColumn> column;
  columns->get_MutableColumn(0, column.put());
  column->put_DisplayName(_bstr_t(OLESTR("Bee")).GetBSTR());
  EXPECT_TRUE(transcript.empty());

  columns->EnableMutableColumnsEvents(VARIANT_TRUE);
  EXPECT_EQ(transcript, (Transcript{"l.ColumnAfterAdd(null)", "l.ColumnAfterRemove(null)"}))
      << "the property summary is swallowed by design";

  transcript.clear();
  columns->EnableMutableColumnsEvents(VARIANT_TRUE);
  column->put_ColumnName(_bstr_t(OLESTR("B")).GetBSTR());
  EXPECT_EQ(transcript, (Transcript{"l.PropertyChange(Display Name: b -> B)"})) << "renames are relayed";
}

TEST_F(ColumnCollection, MutableColumnChecksTheIndexWithGreaterThan) {
  Add(OLESTR("a"));
  Add(OLESTR("b"));
  com_ptr<IMutableColumn> column;
  EXPECT_EQ(columns->get_MutableColumn(5, column.put()), DISP_E_EXCEPTION);
  EXPECT_EQ(TakeErrorInfo().description, "There is no such index : 5");

  ScopedThrowingInvalidParameter guard;
  const auto raw = columns.query<IMutableColumnsRaw>();
  EXPECT_THROW(raw->MutableColumnAt(2), InvalidParameterRaised) << "equal to the size reaches the bounds check";
  EXPECT_THROW(raw->RemoveColumnAt(2), InvalidParameterRaised);
}

TEST_F(ColumnCollection, IndexEqualToSizeEndsTheProcess) {
  Add(OLESTR("a"));
  EXPECT_DEATH(
      {
        com_ptr<IMutableColumn> column;
        columns->get_MutableColumn(1, column.put());
      },
      "");
}

TEST_F(ColumnCollection, ComparesPairwiseAndByCount) {
  com_ptr<IMutableColumns> other(make_object<MutableColumns>().get());
  com_ptr<IMutableColumn> added;
  for (const OLECHAR* name : {OLESTR("a"), OLESTR("b")}) {
    Add(name);
    other->AddColumn(_bstr_t(name).GetBSTR(), 10, added.put());
  }
  LONG result = 5;
  EXPECT_EQ(columns->CompareTo(other.get(), &result), S_OK);
  EXPECT_EQ(result, 0);
  com_ptr<IColumns> view;
  other->get_Columns(view.put());
  columns->CompareTo(view.get(), &result);
  EXPECT_EQ(result, 0) << "a view compares as its collection";

  other->AddColumn(_bstr_t(OLESTR("c")).GetBSTR(), 10, added.put());
  columns->CompareTo(other.get(), &result);
  EXPECT_EQ(result, -1);
  added->put_DisplayName(_bstr_t(OLESTR("C")).GetBSTR());
  Add(OLESTR("c"));
  columns->CompareTo(other.get(), &result);
  EXPECT_EQ(result, -1) << "columns differing in display name; never 1";
}

TEST_F(ColumnCollection, ClearDropsColumnsAndViewButKeepsTheMap) {
  Add(OLESTR("a"));
  Add(OLESTR("b"));
  com_ptr<IColumns> before;
  columns->get_Columns(before.put());
  com_ptr<IColumns> again;
  columns->get_Columns(again.put());
  EXPECT_EQ(before.get(), again.get());

  EXPECT_EQ(columns->Clear(), S_OK);
  EXPECT_EQ(Size(), 0);
  EXPECT_EQ(IndexMap(), (std::vector<ULONG>{0, 1}));
  com_ptr<IColumns> after;
  columns->get_Columns(after.put());
  EXPECT_NE(after.get(), before.get());
  LONG size = -1;
  before->get_Size(&size);
  EXPECT_EQ(size, 0) << "a dropped view still shows its collection";

  const auto clone = columns.query<IMutableColumnsRaw>()->Clone();
  clone->get_Size(&size);
  EXPECT_EQ(size, 0);
}

TEST_F(ColumnCollection, ViewForwardsAndOutlivesItsCollectionSafely) {
  Add(OLESTR("Address.City"));
  com_ptr<IColumns> view;
  columns->get_Columns(view.put());
  com_ptr<IColumn> column;
  ASSERT_EQ(view->get_Column(0, column.put()), S_OK);
  BSTR name = nullptr;
  column->get_ColumnName(&name);
  EXPECT_EQ(Narrow(name), "Address.City");
  SysFreeString(name);
  const auto listener = MakeRecorder("l", transcript);
  listener->stop = true;
  EXPECT_EQ(view->AddColumnsChangeListener(listener.get()), S_OK);
  Add(OLESTR("b"));
  EXPECT_EQ(transcript, (Transcript{"l.ColumnBeforeAdd(b)", "l.ColumnAfterAdd(b)"}));
  // A refusal of the collection reaches the view's caller with its message.
  const auto stranger = MakeRecorder("stranger", transcript);
  EXPECT_EQ(view->RemoveColumnsChangeListener(stranger.get()), DISP_E_EXCEPTION);
  EXPECT_EQ(TakeErrorInfo().description, "Cannot remove columns change listener.");
  EXPECT_EQ(view->RemovePropertyChangeListener(stranger.get()), DISP_E_EXCEPTION);
  EXPECT_EQ(TakeErrorInfo().description, "Cannot remove property change listener.");

  columns.reset();
  LONG size = 0;
  EXPECT_EQ(view->get_Size(&size), E_POINTER);
  EXPECT_EQ(column->get_ColumnName(&name), E_POINTER) << "the column went with its collection";
  ClearErrorInfo();
}

}  // namespace
}  // namespace brevo::testing
