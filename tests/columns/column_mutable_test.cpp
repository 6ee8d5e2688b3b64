// The mutable column: creation, renames announced before they happen (with the
// property names crossed), vetoes, equality and clones.
#include "columns/column_helpers.h"

namespace brevo::testing {
namespace {

TEST(MutableColumn, CreateSetsNameAndTypeWithoutAnnouncingThem) {
  Transcript transcript;
  const com_ptr<IMutableColumn> column(make_object<MutableColumn>().get());
  column->AddPropertyChangeListener(MakeScripted(transcript, "a").get());
  EXPECT_EQ(column->Create(_bstr_t(OLESTR("Price")).GetBSTR(), 5), S_OK);
  ULONG type = 0;
  EXPECT_EQ(column->get_ColumnType(&type), S_OK);
  EXPECT_EQ(type, 5u);
  EXPECT_EQ(NameOf(column.get()), "Price");
  EXPECT_EQ(DisplayOf(column.get()), "<null>");
  EXPECT_EQ(transcript, Transcript{});
}

TEST(MutableColumn, RenameIsAnnouncedUnderTheOtherPropertyNameWhileTheOldValueStands) {
  enum Field { kName, kDisplay };
  struct Case {
    Field field;
    const OLECHAR* from;
    const OLECHAR* to;
    Transcript heard;  // then what the field reads
  };
  const Case cases[] = {
      {kName, OLESTR("Price"), OLESTR("Cost"),
       {"a.PropertyChange(Display Name: Price -> Cost)", "a saw Price", "b.PropertyChange(Display Name: Price -> Cost)",
        "Cost"}},
      {kName, OLESTR("Price"), OLESTR("price"), {"a.PropertyChange(Display Name: Price -> price)", "a saw Price",
                                                 "b.PropertyChange(Display Name: Price -> price)", "price"}},
      {kName, OLESTR("Price"), nullptr, {"a.PropertyChange(Display Name: Price -> <null>)", "a saw Price",
                                         "b.PropertyChange(Display Name: Price -> <null>)", "<null>"}},
      {kName, OLESTR("Price"), OLESTR("Price"), {"Price"}},
      {kDisplay, nullptr, OLESTR("Shown"),
       {"a.PropertyChange(Name: <null> -> Shown)", "a saw <null>", "b.PropertyChange(Name: <null> -> Shown)", "Shown"}},
      {kDisplay, nullptr, OLESTR(""),
       {"a.PropertyChange(Name: <null> -> )", "a saw <null>", "b.PropertyChange(Name: <null> -> )", ""}},
      {kDisplay, OLESTR(""), nullptr,
       {"a.PropertyChange(Name:  -> <null>)", "a saw ", "b.PropertyChange(Name:  -> <null>)", "<null>"}},
      {kDisplay, nullptr, nullptr, {"<null>"}},
      {kDisplay, OLESTR("Shown"), OLESTR("Shown"), {"Shown"}},
  };
  for (const Case& c : cases) {
    const auto column = NewColumn(c.field == kName ? c.from : OLESTR("Price"), 3);
    if (c.field == kDisplay && c.from != nullptr) column->put_DisplayName(_bstr_t(c.from).GetBSTR());
    const auto read = c.field == kName ? &NameOf : &DisplayOf;
    Transcript transcript;
    const auto a = MakeScripted(transcript, "a");
    a->during = [&] { transcript.push_back("a saw " + read(column.get())); };
    column->AddPropertyChangeListener(a.get());
    column->AddPropertyChangeListener(MakeScripted(transcript, "b").get());

    const _bstr_t to(c.to);
    EXPECT_EQ(c.field == kName ? column->put_ColumnName(to.GetBSTR()) : column->put_DisplayName(to.GetBSTR()), S_OK);
    transcript.push_back(read(column.get()));
    EXPECT_EQ(transcript, c.heard) << Narrow(c.from) << " -> " << Narrow(c.to);
    EXPECT_EQ(a->lastSource, c.heard.size() > 1 ? identity_of(column.get()).get() : nullptr) << "the column is the source";
    a->during = nullptr;
  }
}

TEST(MutableColumn, FailingListenerKeepsTheOldValueAndItsErrorIsTheSetters) {
  Transcript transcript;
  const auto column = NewColumn(OLESTR("Price"), 3, OLESTR("Shown"));
  const auto veto = MakeScripted(transcript, "veto");
  veto->result = static_cast<HRESULT>(0x80040321);
  veto->errorText = OLESTR("Not this name.");
  veto->supportsErrorInfo = true;
  column->AddPropertyChangeListener(veto.get());
  column->AddPropertyChangeListener(MakeScripted(transcript, "after").get());

  EXPECT_EQ(column->put_ColumnName(_bstr_t(OLESTR("Cost")).GetBSTR()), static_cast<HRESULT>(0x80040321));
  const ErrorSnapshot error = TakeErrorInfo();
  EXPECT_EQ(error.description, "Not this name.");
  EXPECT_TRUE(IsEqualGUID(error.guid, iid_of<IMutableColumn>()));
  EXPECT_EQ(column->put_DisplayName(nullptr), static_cast<HRESULT>(0x80040321));
  ClearErrorInfo();
  EXPECT_EQ(NameOf(column.get()), "Price");
  EXPECT_EQ(DisplayOf(column.get()), "Shown");
  EXPECT_EQ(transcript, (Transcript{"veto.PropertyChange(Display Name: Price -> Cost)",
                                    "veto.PropertyChange(Name: Shown -> <null>)"}));
}

TEST(MutableColumn, CompareToIsZeroOnlyWhenTypeAndBothNamesMatch) {
  struct Case {
    const char* what;
    const OLECHAR* name;
    ULONG type;
    const OLECHAR* display;
    LONG expected;
  };
  const Case cases[] = {
      {"equal", OLESTR("Price"), 3, OLESTR("Shown"), 0},
      {"other display name", OLESTR("Price"), 3, OLESTR("Other"), 1},
      {"no display name", OLESTR("Price"), 3, nullptr, 1},
      {"name differs in case", OLESTR("PRICE"), 3, OLESTR("Shown"), 1},
      {"other type", OLESTR("Price"), 4, OLESTR("Shown"), 1},
  };
  const auto column = NewColumn(OLESTR("Price"), 3, OLESTR("Shown"));
  com_ptr<IColumn> view;
  ASSERT_EQ(column->get_Column(view.put()), S_OK);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const auto other = NewColumn(c.name, c.type, c.display);
    com_ptr<IColumn> otherView;
    other->get_Column(otherView.put());
    // Both directions, and through the views: never -1.
    for (IDispatch* rhs : std::initializer_list<IDispatch*>{other.get(), otherView.get()}) {
      LONG result = -2;
      EXPECT_EQ(column->CompareTo(rhs, &result), S_OK);
      EXPECT_EQ(result, c.expected);
      EXPECT_EQ(view->CompareTo(rhs, &result), S_OK);
      EXPECT_EQ(result, c.expected);
    }
    LONG result = -2;
    EXPECT_EQ(other->CompareTo(column.get(), &result), S_OK);
    EXPECT_EQ(result, c.expected);
  }
}

TEST(MutableColumn, CloneIsEqualIndependentAndUnheard) {
  Transcript transcript;
  const auto column = NewColumn(OLESTR("Price"), 3, OLESTR("Shown"));
  const auto a = MakeScripted(transcript, "a");
  column->AddPropertyChangeListener(a.get());
  const com_ptr<IMutableColumn> clone = column.query<IMutableColumnRaw>()->Clone();
  ASSERT_TRUE(clone);
  ASSERT_NE(clone.get(), column.get());
  LONG result = -2;
  EXPECT_EQ(clone->CompareTo(column.get(), &result), S_OK);
  EXPECT_EQ(result, 0);

  EXPECT_EQ(clone->put_ColumnName(_bstr_t(OLESTR("Cost")).GetBSTR()), S_OK);
  EXPECT_EQ(NameOf(column.get()), "Price");
  EXPECT_EQ(transcript, Transcript{}) << "the clone has no listeners";
  EXPECT_EQ(clone->RemovePropertyChangeListener(a.get()), DISP_E_EXCEPTION);
  ClearErrorInfo();
}

}  // namespace
}  // namespace brevo::testing
