// The column and its read-only view: renames announced before they happen
// (with the property names crossed), vetoes, equality, clones, lifetimes.
#include "columns/column_helpers.h"
#include "core/module_lock.h"

namespace brevo::testing {
namespace {

com_ptr<IColumn> ViewOf(IMutableColumn* column) {
  com_ptr<IColumn> view;
  EXPECT_EQ(column->get_Column(view.put()), S_OK);
  return view;
}

TEST(MutableColumn, CreateIsSilentAndTheViewIsMadeOnceReadsThroughAndRelaysRenames) {
  Transcript transcript;
  const com_ptr<IMutableColumn> column(make_object<MutableColumn>().get());
  column->AddPropertyChangeListener(MakeScripted(transcript, "column").get());
  EXPECT_EQ(column->Create(_bstr_t(OLESTR("Price")).GetBSTR(), 5), S_OK);
  const auto view = ViewOf(column.get());
  EXPECT_EQ(ViewOf(column.get()).get(), view.get());
  const auto onView = MakeScripted(transcript, "view");
  EXPECT_EQ(view->AddPropertyChangeListener(onView.get()), S_OK);
  column->put_DisplayName(_bstr_t(OLESTR("Shown")).GetBSTR());
  EXPECT_EQ(onView->lastSource, identity_of(column.get()).get()) << "the relayed event still names the column";
  EXPECT_EQ(view->RemovePropertyChangeListener(onView.get()), S_OK);
  column->put_ColumnName(_bstr_t(OLESTR("Cost")).GetBSTR());
  EXPECT_EQ(Read(view.get(), &IColumn::get_ColumnName) + "/" + Read(view.get(), &IColumn::get_DisplayName), "Cost/Shown");
  ULONG type = 0;
  EXPECT_EQ(view->get_ColumnType(&type), S_OK);
  EXPECT_EQ(type, 5u);
  EXPECT_EQ(transcript, (Transcript{"column.PropertyChange(Name: <null> -> Shown)", "view.PropertyChange(Name: <null> -> Shown)",
                                    "column.PropertyChange(Display Name: Price -> Cost)"}))
      << "Create announces nothing";
}

// Each setter announces the other property's name; listeners still see the old value.
TEST(MutableColumn, RenameIsAnnouncedUnderTheCrossedPropertyNameBeforeItHappens) {
  const struct {
    bool display;
    const OLECHAR* from;
    const OLECHAR* to;
  } cases[] = {
      {false, OLESTR("Price"), OLESTR("Cost")}, {false, OLESTR("Price"), OLESTR("price")},
      {false, OLESTR("Price"), nullptr},        {false, OLESTR("Price"), OLESTR("Price")},
      {true, nullptr, OLESTR("Shown")},         {true, nullptr, OLESTR("")},
      {true, OLESTR(""), nullptr},              {true, nullptr, nullptr},
      {true, OLESTR("Shown"), OLESTR("Shown")},
  };
  for (const auto& c : cases) {
    const std::string from = Narrow(c.from), to = Narrow(c.to);
    SCOPED_TRACE(from + " -> " + to);
    const auto column = NewColumn(c.display ? OLESTR("Price") : c.from, 3, c.display ? c.from : nullptr);
    const auto read = c.display ? &DisplayOf : &NameOf;
    Transcript transcript;
    const auto a = MakeScripted(transcript, "a");
    a->during = [&] { transcript.push_back("saw " + read(column.get())); };
    column->AddPropertyChangeListener(a.get());
    column->AddPropertyChangeListener(MakeScripted(transcript, "b").get());
    const _bstr_t value(c.to);
    EXPECT_EQ(c.display ? column->put_DisplayName(value.GetBSTR()) : column->put_ColumnName(value.GetBSTR()), S_OK);
    const std::string line = (c.display ? ".PropertyChange(Name: " : ".PropertyChange(Display Name: ") + from + " -> " + to + ")";
    EXPECT_EQ(transcript, from == to ? Transcript{} : (Transcript{"a" + line, "saw " + from, "b" + line}));
    EXPECT_EQ(read(column.get()), to);
    EXPECT_EQ(a->lastSource, from == to ? nullptr : identity_of(column.get()).get()) << "the column is the source";
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
  EXPECT_EQ(column->put_ColumnName(_bstr_t(OLESTR("Cost")).GetBSTR()), veto->result);
  const ErrorSnapshot error = TakeErrorInfo();
  EXPECT_EQ(error.description, "Not this name.");
  EXPECT_TRUE(IsEqualGUID(error.guid, iid_of<IMutableColumn>()));
  EXPECT_EQ(column->put_DisplayName(nullptr), veto->result);
  ClearErrorInfo();
  EXPECT_EQ(NameOf(column.get()) + "/" + DisplayOf(column.get()), "Price/Shown");
  EXPECT_EQ(transcript, (Transcript{"veto.PropertyChange(Display Name: Price -> Cost)",
                                    "veto.PropertyChange(Name: Shown -> <null>)"}));
}

// 0 or 1, never -1: both directions and through the views.
TEST(MutableColumn, CompareToIsZeroOnlyWhenTypeAndBothNamesMatch) {
  const auto column = NewColumn(OLESTR("Price"), 3, OLESTR("Shown"));
  const struct {
    const OLECHAR* name;
    ULONG type;
    const OLECHAR* display;
    LONG expected;
  } cases[] = {{OLESTR("Price"), 3, OLESTR("Shown"), 0}, {OLESTR("Price"), 3, OLESTR("Other"), 1},
               {OLESTR("Price"), 3, nullptr, 1},         {OLESTR("PRICE"), 3, OLESTR("Shown"), 1},
               {OLESTR("Price"), 4, OLESTR("Shown"), 1}};
  for (const auto& c : cases) {
    const auto other = NewColumn(c.name, c.type, c.display);
    SCOPED_TRACE(NameOf(other.get()) + "/" + DisplayOf(other.get()) + "/" + std::to_string(c.type));
    LONG results[4] = {-2, -2, -2, -2};
    column->CompareTo(other.get(), &results[0]);
    other->CompareTo(column.get(), &results[1]);
    ViewOf(column.get())->CompareTo(other.get(), &results[2]);
    column->CompareTo(ViewOf(other.get()).get(), &results[3]);
    for (const LONG result : results) EXPECT_EQ(result, c.expected);
  }
}

TEST(MutableColumn, CloneIsEqualIndependentAndUnheard) {
  Transcript transcript;
  const auto column = NewColumn(OLESTR("Price"), 3, OLESTR("Shown"));
  const auto a = MakeScripted(transcript, "a");
  column->AddPropertyChangeListener(a.get());
  const com_ptr<IMutableColumn> clone = column.query<IMutableColumnRaw>()->Clone();
  LONG result = -2;
  EXPECT_EQ(clone->CompareTo(column.get(), &result), S_OK);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(clone->put_ColumnName(_bstr_t(OLESTR("Cost")).GetBSTR()), S_OK);
  EXPECT_EQ(NameOf(column.get()), "Price");
  EXPECT_EQ(transcript, Transcript{});

  // Removing an unknown listener fails with the called interface's message.
  const auto view = ViewOf(column.get());
  const auto stranger = MakeScripted(transcript, "stranger");
  const auto expectRefused = [](HRESULT hr, const GUID& iid) {
    EXPECT_EQ(hr, DISP_E_EXCEPTION);
    const ErrorSnapshot error = TakeErrorInfo();
    EXPECT_EQ(error.description, "Cannot remove property change listener.");
    EXPECT_TRUE(IsEqualGUID(error.guid, iid));
  };
  expectRefused(clone->RemovePropertyChangeListener(a.get()), iid_of<IMutableColumn>());
  expectRefused(column->RemovePropertyChangeListener(stranger.get()), iid_of<IMutableColumn>());
  expectRefused(view->RemovePropertyChangeListener(stranger.get()), iid_of<IColumn>());
}

// The view does not keep its column alive; kept past it, it refuses to read
// rather than reach the freed column.
TEST(ColumnView, GoesWithItsColumnAndRefusesToReadWhenKeptPastIt) {
  Transcript transcript;
  auto column = NewColumn(OLESTR("Price"), 7);
  ViewOf(column.get())->AddPropertyChangeListener(MakeScripted(transcript, "view").get());
  EXPECT_EQ(ModuleLock::Count(), 3) << "column, view and the view's listener";
  const auto view = ViewOf(column.get());
  column.reset();
  EXPECT_EQ(ModuleLock::Count(), 2);
  BSTR name = nullptr;
  EXPECT_EQ(view->get_ColumnName(&name), E_POINTER);
  SysFreeString(name);
  ClearErrorInfo();
}

}  // namespace
}  // namespace brevo::testing
