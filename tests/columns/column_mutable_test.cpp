// The column and its read-only view: renames announced before they happen
// (with the property names crossed), vetoes, equality, clones, lifetimes.
#include "columns/column_helpers.h"

namespace brevo::testing {
namespace {

com_ptr<IColumn> ViewOf(IMutableColumn* column) {
  com_ptr<IColumn> view;
  EXPECT_EQ(column->get_Column(view.put()), S_OK);
  return view;
}

// The view does not keep its column alive; kept past it, it refuses to read
// rather than reach the freed column.
TEST(MutableColumn, CreateIsSilentAndTheViewIsMadeOnceRelaysRenamesAndGoesWithItsColumn) {
  Transcript transcript;
  com_ptr<IMutableColumn> column(make_object<MutableColumn>().get());
  column->AddPropertyChangeListener(MakeScripted(transcript, "column").get());
  EXPECT_EQ(column->Create(_bstr_t(OLESTR("Price")).GetBSTR(), 5), S_OK);
  const auto view = ViewOf(column.get());
  EXPECT_EQ(ViewOf(column.get()).get(), view.get());
  const auto onView = MakeScripted(transcript, "view");
  EXPECT_EQ(view->AddPropertyChangeListener(onView.get()), S_OK);
  column->put_DisplayName(_bstr_t(OLESTR("Shown")).GetBSTR());
  EXPECT_EQ(onView->lastSource, identity_of(column.get()).get()) << "the relayed event still names the column";
  EXPECT_EQ(view->RemovePropertyChangeListener(onView.get()), S_OK);
  ExpectFailure(column->RemovePropertyChangeListener(onView.get()), "Cannot remove property change listener.");
  EXPECT_EQ(view->RemovePropertyChangeListener(onView.get()), DISP_E_EXCEPTION);
  const ErrorSnapshot error = TakeErrorInfo();
  EXPECT_EQ(error.description, "Cannot remove property change listener.");
  EXPECT_TRUE(IsEqualGUID(error.guid, iid_of<IColumn>())) << "the view's own refusal";
  column->put_ColumnName(_bstr_t(OLESTR("Cost")).GetBSTR());
  EXPECT_EQ(Read(view.get(), &IColumn::get_ColumnName) + "/" + Read(view.get(), &IColumn::get_DisplayName), "Cost/Shown");
  ULONG type = 0;
  EXPECT_EQ(view->get_ColumnType(&type), S_OK);
  EXPECT_EQ(type, 5u);
  EXPECT_EQ(transcript, (Transcript{"column.PropertyChange(Name: <null> -> Shown)", "view.PropertyChange(Name: <null> -> Shown)",
                                    "column.PropertyChange(Display Name: Price -> Cost)"}))
      << "Create announces nothing";
  column.reset();
  BSTR name = nullptr;
  EXPECT_EQ(view->get_ColumnName(&name), E_POINTER);
  ClearErrorInfo();
}

// Each setter announces the other property's name; listeners still see the
// old value, and one that fails keeps it.
TEST(MutableColumn, RenameIsAnnouncedUnderTheCrossedPropertyNameBeforeItHappens) {
  const struct { bool display; const OLECHAR* from; const OLECHAR* to; HRESULT veto; } cases[] = {
      {false, OLESTR("Price"), OLESTR("Cost"), S_OK},
      {false, OLESTR("Price"), OLESTR("price"), S_OK},
      {false, OLESTR("Price"), OLESTR("Price"), S_OK},
      {true, nullptr, OLESTR(""), S_OK},
      {true, nullptr, OLESTR("Shown"), static_cast<HRESULT>(0x80040321)},
  };
  for (const auto& c : cases) {
    const std::string from = Narrow(c.from), to = Narrow(c.to);
    SCOPED_TRACE(from + " -> " + to);
    const auto column = NewColumn(c.display ? OLESTR("Price") : c.from, 3, c.display ? c.from : nullptr);
    const auto read = c.display ? &DisplayOf : &NameOf;
    Transcript transcript;
    const auto a = MakeScripted(transcript, "a");
    a->during = [&] { transcript.push_back("saw " + read(column.get())); };
    a->result = c.veto;
    column->AddPropertyChangeListener(a.get());
    column->AddPropertyChangeListener(MakeScripted(transcript, "b").get());
    const _bstr_t value(c.to);
    EXPECT_EQ(c.display ? column->put_DisplayName(value.GetBSTR()) : column->put_ColumnName(value.GetBSTR()), c.veto);
    ClearErrorInfo();
    const std::string line = (c.display ? ".PropertyChange(Name: " : ".PropertyChange(Display Name: ") + from + " -> " + to + ")";
    Transcript expected{"a" + line, "saw " + from, "b" + line};
    if (FAILED(c.veto)) expected.pop_back();
    EXPECT_EQ(transcript, from == to ? Transcript{} : expected);
    EXPECT_EQ(read(column.get()), FAILED(c.veto) ? from : to);
    EXPECT_EQ(a->lastSource, from == to ? nullptr : identity_of(column.get()).get()) << "the column is the source";
    a->during = nullptr;
  }
}

// 0 or 1, never -1: both directions and through the views. A clone is equal,
// yet a column of its own that the original's listeners do not hear.
TEST(MutableColumn, CompareToIsZeroOnlyWhenTypeAndBothNamesMatchAsForAClone) {
  Transcript transcript;
  const auto column = NewColumn(OLESTR("Price"), 3, OLESTR("Shown"));
  column->AddPropertyChangeListener(MakeScripted(transcript, "a").get());
  const struct { com_ptr<IMutableColumn> other; LONG expected; } cases[] = {
      {column.query<IMutableColumnRaw>()->Clone(), 0},
      {NewColumn(OLESTR("Price"), 3, OLESTR("Other")), 1},
      {NewColumn(OLESTR("PRICE"), 3, OLESTR("Shown")), 1},
      {NewColumn(OLESTR("Price"), 4, OLESTR("Shown")), 1},
  };
  for (const auto& c : cases) {
    IMutableColumn* other = c.other.get();
    SCOPED_TRACE(NameOf(other) + "/" + DisplayOf(other) + " expected " + std::to_string(c.expected));
    LONG results[4] = {-2, -2, -2, -2};
    column->CompareTo(other, &results[0]);
    other->CompareTo(column.get(), &results[1]);
    ViewOf(column.get())->CompareTo(other, &results[2]);
    column->CompareTo(ViewOf(other).get(), &results[3]);
    for (const LONG result : results) EXPECT_EQ(result, c.expected);
  }
  EXPECT_EQ(cases[0].other->put_ColumnName(_bstr_t(OLESTR("Cost")).GetBSTR()), S_OK);
  EXPECT_EQ(NameOf(column.get()), "Price");
  EXPECT_EQ(transcript, Transcript{});
}

}  // namespace
}  // namespace brevo::testing
