// Running out of memory while making an event object reads as the runtime's
// object creation reports it, E_OUTOFMEMORY, and changes nothing.
#include "allocation_countdown.h"
#include "columns/mutable_column.h"
#include "events/change_events.h"
#include "sweep_table.h"

namespace brevo::testing {
namespace {

TEST(EventAllocation, AColumnsEventThatCannotBeMadeFailsAddColumnWithOutOfMemory) {
  ASSERT_NE(sizeof(CComObject<ColumnsChangeEvent>), sizeof(CComObject<MutableColumn>))
      << "the event's allocation must be told from the column's";
  Table table;
  const auto before = table.State();
  const _bstr_t name(OLESTR("Name"));
  com_ptr<IMutableColumn> column;
  AllocationCountdown::ArmForSize(sizeof(CComObject<ColumnsChangeEvent>));
  EXPECT_EQ(table.columns->AddColumn(name.GetBSTR(), 1, column.put()), E_OUTOFMEMORY);
  AllocationCountdown::Disarm();
  EXPECT_TRUE(AllocationCountdown::Fired());
  EXPECT_EQ(table.State(), before);
  EXPECT_TRUE(table.heard.empty());
  ClearErrorInfo();
}

}  // namespace
}  // namespace brevo::testing
