// The read-only view of a column: one per column, reading through, relaying
// renames; removal failures as callers see them; who keeps whom alive.
#include "columns/column_helpers.h"

namespace brevo::testing {
namespace {

com_ptr<IColumn> ViewOf(IMutableColumn* column) {
  com_ptr<IColumn> view;
  EXPECT_EQ(column->get_Column(view.put()), S_OK);
  return view;
}

TEST(ColumnView, IsMadeOnceAndReadsThroughToItsColumn) {
  const auto column = NewColumn(OLESTR("Price"), 7);
  const auto view = ViewOf(column.get());
  ASSERT_TRUE(view);
  EXPECT_EQ(ViewOf(column.get()).get(), view.get());
  EXPECT_EQ(Read(view.get(), &IColumn::get_DisplayName), "<null>");

  column->put_ColumnName(_bstr_t(OLESTR("Cost")).GetBSTR());
  column->put_DisplayName(_bstr_t(OLESTR("Shown")).GetBSTR());
  EXPECT_EQ(Read(view.get(), &IColumn::get_ColumnName), "Cost");
  EXPECT_EQ(Read(view.get(), &IColumn::get_DisplayName), "Shown");
  ULONG type = 0;
  EXPECT_EQ(view->get_ColumnType(&type), S_OK);
  EXPECT_EQ(type, 7u);
  LONG result = -2;
  EXPECT_EQ(view->CompareTo(column.get(), &result), S_OK);
  EXPECT_EQ(result, 0);
}

TEST(ColumnView, RelaysTheColumnsRenamesToItsOwnListeners) {
  Transcript transcript;
  const auto column = NewColumn(OLESTR("Price"), 7);
  const auto onColumn = MakeScripted(transcript, "column");
  const auto onView = MakeScripted(transcript, "view");
  column->AddPropertyChangeListener(onColumn.get());
  const auto view = ViewOf(column.get());
  EXPECT_EQ(view->AddPropertyChangeListener(onView.get()), S_OK);

  column->put_DisplayName(_bstr_t(OLESTR("Shown")).GetBSTR());
  EXPECT_EQ(onView->lastSource, identity_of(column.get()).get()) << "the relayed event still names the column";
  EXPECT_EQ(view->RemovePropertyChangeListener(onView.get()), S_OK);
  column->put_ColumnName(_bstr_t(OLESTR("Cost")).GetBSTR());
  EXPECT_EQ(transcript, (Transcript{"column.PropertyChange(Name: <null> -> Shown)",
                                    "view.PropertyChange(Name: <null> -> Shown)",
                                    "column.PropertyChange(Display Name: Price -> Cost)"}));
}

TEST(ColumnView, FailedRemovalReportsTheMessageForTheCalledInterface) {
  Transcript transcript;
  const auto stranger = MakeScripted(transcript, "stranger");
  const auto column = NewColumn(OLESTR("Price"), 7);
  const auto view = ViewOf(column.get());
  const std::pair<std::function<HRESULT()>, const GUID*> removals[] = {
      {[&] { return column->RemovePropertyChangeListener(stranger.get()); }, &iid_of<IMutableColumn>()},
      {[&] { return view->RemovePropertyChangeListener(stranger.get()); }, &iid_of<IColumn>()},
  };
  for (const auto& [remove, iid] : removals) {
    EXPECT_EQ(remove(), DISP_E_EXCEPTION);
    const ErrorSnapshot error = TakeErrorInfo();
    EXPECT_EQ(error.description, "Cannot remove property change listener.");
    EXPECT_TRUE(IsEqualGUID(error.guid, *iid));
  }
}

TEST(ColumnView, GoesWithItsColumnAndDoesNotKeepItAlive) {
  Transcript transcript;
  auto column = NewColumn(OLESTR("Price"), 7);
  {
    const auto view = ViewOf(column.get());
    view->AddPropertyChangeListener(MakeScripted(transcript, "view").get());
  }
  EXPECT_EQ(ModuleLock::Count(), 3) << "column, view and the view's listener";
  column.reset();
  EXPECT_EQ(ModuleLock::Count(), 0);
}

// A client may keep the view after releasing the column: it must refuse to read
// rather than reach the freed column.
TEST(ColumnView, OutlivingItsColumnRefusesToRead) {
  auto column = NewColumn(OLESTR("Price"), 7);
  const auto view = ViewOf(column.get());
  column.reset();
  BSTR name = nullptr;
  EXPECT_EQ(view->get_ColumnName(&name), E_POINTER);
  SysFreeString(name);
  ClearErrorInfo();
}

}  // namespace
}  // namespace brevo::testing
