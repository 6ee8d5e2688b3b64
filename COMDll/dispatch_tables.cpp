// The late-bound names of every dual interface: member ids, the names that
// reach them (a property answers to its get_/put_ spellings too) and the
// parameter names, numbered by position.
#include "columns/column_interfaces.h"
#include "core/dispatch.h"
#include "factory/factory_interfaces.h"
#include "factory/record_list_utils.h"
#include "lists/list_interfaces.h"

namespace brevo {
namespace {

using dispatch::Call;
using dispatch::CallIgnoringArguments;
using dispatch::Inputs;

const DispatchMember kRecordMembers[] = {
    {2, {OLESTR("CompareTo")}, {OLESTR("Other"), OLESTR("retVal")}, Call<&IRecord::CompareTo>(), nullptr, Inputs<&IRecord::CompareTo>()},
    {3, {OLESTR("Columns"), OLESTR("get_Columns")}, {OLESTR("RetVal")}, Call<&IRecord::get_Columns>(), nullptr, Inputs<&IRecord::get_Columns>()},
    {4, {OLESTR("GetValue")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IRecord::GetValue>(), nullptr, Inputs<&IRecord::GetValue>()},
    {5, {OLESTR("GetValueAsBoolean")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IRecord::GetValueAsBoolean, true>(), nullptr, Inputs<&IRecord::GetValueAsBoolean>()},
    {6, {OLESTR("GetValueAsDouble")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IRecord::GetValueAsDouble>(), nullptr, Inputs<&IRecord::GetValueAsDouble>()},
    {7, {OLESTR("GetValueAsFloat")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IRecord::GetValueAsFloat>(), nullptr, Inputs<&IRecord::GetValueAsFloat>()},
    {8, {OLESTR("GetValueAsInt32")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IRecord::GetValueAsInt32>(), nullptr, Inputs<&IRecord::GetValueAsInt32>()},
    {9, {OLESTR("GetValueAsInt16")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IRecord::GetValueAsInt16>(), nullptr, Inputs<&IRecord::GetValueAsInt16>()},
    {10, {OLESTR("GetValueAsInt64")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IRecord::GetValueAsInt64>(), nullptr, Inputs<&IRecord::GetValueAsInt64>()},
    {11, {OLESTR("GetValueAsString")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IRecord::GetValueAsString>(), nullptr, Inputs<&IRecord::GetValueAsString>()},
    {12, {OLESTR("GetValueByName")}, {OLESTR("name"), OLESTR("RetVal")}, Call<&IRecord::GetValueByName>(), nullptr, Inputs<&IRecord::GetValueByName>()},
    {13, {OLESTR("EnableRecordEvents")}, {OLESTR("flag")}, Call<&IRecord::EnableRecordEvents>(), nullptr, Inputs<&IRecord::EnableRecordEvents>()},
    {14, {OLESTR("AddRecordChangeListener")}, {OLESTR("pVal")}, Call<&IRecord::AddRecordChangeListener>(), nullptr, Inputs<&IRecord::AddRecordChangeListener>()},
    {15, {OLESTR("RemoveRecordChangeListener")}, {OLESTR("pVal")}, Call<&IRecord::RemoveRecordChangeListener>(), nullptr, Inputs<&IRecord::RemoveRecordChangeListener>()},
    {16, {OLESTR("GetValueAsByte")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IRecord::GetValueAsByte>(), nullptr, Inputs<&IRecord::GetValueAsByte>()},
};

const DispatchMember kMutableRecordMembers[] = {
    {3, {OLESTR("Clear")}, {}, Call<&IMutableRecord::Clear>(), nullptr, Inputs<&IMutableRecord::Clear>()},
    {4, {OLESTR("CompareTo")}, {OLESTR("Other"), OLESTR("retVal")}, Call<&IMutableRecord::CompareTo>(), nullptr, Inputs<&IMutableRecord::CompareTo>()},
    {5, {OLESTR("Record"), OLESTR("get_Record")}, {OLESTR("RetVal")}, Call<&IMutableRecord::get_Record>(), nullptr, Inputs<&IMutableRecord::get_Record>()},
    {6, {OLESTR("GetValue")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IMutableRecord::GetValue>(), nullptr, Inputs<&IMutableRecord::GetValue>()},
    {7, {OLESTR("SetValue")}, {OLESTR("index"), OLESTR("newVal")}, Call<&IMutableRecord::SetValue>(), nullptr, Inputs<&IMutableRecord::SetValue>()},
    {8, {OLESTR("GetValueAsBoolean")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IMutableRecord::GetValueAsBoolean, true>(), nullptr, Inputs<&IMutableRecord::GetValueAsBoolean>()},
    {9, {OLESTR("SetValueAsBoolean")}, {OLESTR("index"), OLESTR("newVal")}, Call<&IMutableRecord::SetValueAsBoolean>(), nullptr, Inputs<&IMutableRecord::SetValueAsBoolean>()},
    {10, {OLESTR("GetValueAsDouble")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IMutableRecord::GetValueAsDouble>(), nullptr, Inputs<&IMutableRecord::GetValueAsDouble>()},
    {11, {OLESTR("SetValueAsDouble")}, {OLESTR("index"), OLESTR("newVal")}, Call<&IMutableRecord::SetValueAsDouble>(), nullptr, Inputs<&IMutableRecord::SetValueAsDouble>()},
    {12, {OLESTR("GetValueAsFloat")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IMutableRecord::GetValueAsFloat>(), nullptr, Inputs<&IMutableRecord::GetValueAsFloat>()},
    {13, {OLESTR("SetValueAsFloat")}, {OLESTR("index"), OLESTR("newVal")}, Call<&IMutableRecord::SetValueAsFloat>(), nullptr, Inputs<&IMutableRecord::SetValueAsFloat>()},
    {14, {OLESTR("GetValueAsInt32")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IMutableRecord::GetValueAsInt32>(), nullptr, Inputs<&IMutableRecord::GetValueAsInt32>()},
    {15, {OLESTR("SetValueAsInt32")}, {OLESTR("index"), OLESTR("newVal")}, Call<&IMutableRecord::SetValueAsInt32>(), nullptr, Inputs<&IMutableRecord::SetValueAsInt32>()},
    {16, {OLESTR("GetValueAsInt64")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IMutableRecord::GetValueAsInt64>(), nullptr, Inputs<&IMutableRecord::GetValueAsInt64>()},
    {17, {OLESTR("SetValueAsInt64")}, {OLESTR("index"), OLESTR("newVal")}, Call<&IMutableRecord::SetValueAsInt64>(), nullptr, Inputs<&IMutableRecord::SetValueAsInt64>()},
    {18, {OLESTR("GetValueAsInt16")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IMutableRecord::GetValueAsInt16>(), nullptr, Inputs<&IMutableRecord::GetValueAsInt16>()},
    {19, {OLESTR("SetValueAsInt16")}, {OLESTR("index"), OLESTR("newVal")}, Call<&IMutableRecord::SetValueAsInt16>(), nullptr, Inputs<&IMutableRecord::SetValueAsInt16>()},
    {20, {OLESTR("GetValueAsString")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IMutableRecord::GetValueAsString>(), nullptr, Inputs<&IMutableRecord::GetValueAsString>()},
    {21, {OLESTR("SetValueAsString")}, {OLESTR("index"), OLESTR("newVal")}, Call<&IMutableRecord::SetValueAsString>(), nullptr, Inputs<&IMutableRecord::SetValueAsString>()},
    {22, {OLESTR("GetValueByName")}, {OLESTR("name"), OLESTR("RetVal")}, Call<&IMutableRecord::GetValueByName>(), nullptr, Inputs<&IMutableRecord::GetValueByName>()},
    {23, {OLESTR("SetValueByName")}, {OLESTR("name"), OLESTR("newVal")}, Call<&IMutableRecord::SetValueByName>(), nullptr, Inputs<&IMutableRecord::SetValueByName>()},
    {24, {OLESTR("Columns"), OLESTR("get_Columns")}, {OLESTR("RetVal")}, Call<&IMutableRecord::get_Columns>(), nullptr, Inputs<&IMutableRecord::get_Columns>()},
    {25, {OLESTR("EnableMutableRecordEvents")}, {OLESTR("flag")}, Call<&IMutableRecord::EnableMutableRecordEvents>(), nullptr, Inputs<&IMutableRecord::EnableMutableRecordEvents>()},
    {26, {OLESTR("AddRecordChangeListener")}, {OLESTR("pVal")}, Call<&IMutableRecord::AddRecordChangeListener>(), nullptr, Inputs<&IMutableRecord::AddRecordChangeListener>()},
    {27, {OLESTR("RemoveRecordChangeListener")}, {OLESTR("pVal")}, Call<&IMutableRecord::RemoveRecordChangeListener>(), nullptr, Inputs<&IMutableRecord::RemoveRecordChangeListener>()},
    {28, {OLESTR("GetValueAsByte")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IMutableRecord::GetValueAsByte>(), nullptr, Inputs<&IMutableRecord::GetValueAsByte>()},
    {29, {OLESTR("SetValueAsByte")}, {OLESTR("index"), OLESTR("newVal")}, Call<&IMutableRecord::SetValueAsByte>(), nullptr, Inputs<&IMutableRecord::SetValueAsByte>()},
};

const DispatchMember kColumnMembers[] = {
    {2, {OLESTR("CompareTo")}, {OLESTR("Other"), OLESTR("retVal")}, Call<&IColumn::CompareTo>(), nullptr, Inputs<&IColumn::CompareTo>()},
    {3, {OLESTR("DisplayName"), OLESTR("get_DisplayName")}, {OLESTR("RetVal")}, Call<&IColumn::get_DisplayName>(), nullptr, Inputs<&IColumn::get_DisplayName>()},
    {4, {OLESTR("ColumnName"), OLESTR("get_ColumnName")}, {OLESTR("RetVal")}, Call<&IColumn::get_ColumnName>(), nullptr, Inputs<&IColumn::get_ColumnName>()},
    {5, {OLESTR("ColumnType"), OLESTR("get_ColumnType")}, {OLESTR("RetVal")}, Call<&IColumn::get_ColumnType>(), nullptr, Inputs<&IColumn::get_ColumnType>()},
    {6, {OLESTR("AddPropertyChangeListener")}, {OLESTR("pVal")}, Call<&IColumn::AddPropertyChangeListener>(), nullptr, Inputs<&IColumn::AddPropertyChangeListener>()},
    {7, {OLESTR("RemovePropertyChangeListener")}, {OLESTR("pVal")}, Call<&IColumn::RemovePropertyChangeListener>(), nullptr, Inputs<&IColumn::RemovePropertyChangeListener>()},
};

const DispatchMember kMutableColumnMembers[] = {
    {1, {OLESTR("Create")}, {OLESTR("name"), OLESTR("type")}, Call<&IMutableColumn::Create>(), nullptr, Inputs<&IMutableColumn::Create>()},
    {2, {OLESTR("CompareTo")}, {OLESTR("Other"), OLESTR("retVal")}, Call<&IMutableColumn::CompareTo>(), nullptr, Inputs<&IMutableColumn::CompareTo>()},
    {3, {OLESTR("DisplayName"), OLESTR("get_DisplayName"), OLESTR("put_DisplayName")}, {OLESTR("RetVal")}, Call<&IMutableColumn::get_DisplayName>(), Call<&IMutableColumn::put_DisplayName>(), Inputs<&IMutableColumn::get_DisplayName>()},
    {4, {OLESTR("Column"), OLESTR("get_Column")}, {OLESTR("RetVal")}, Call<&IMutableColumn::get_Column>(), nullptr, Inputs<&IMutableColumn::get_Column>()},
    {5, {OLESTR("ColumnName"), OLESTR("get_ColumnName"), OLESTR("put_ColumnName")}, {OLESTR("RetVal")}, Call<&IMutableColumn::get_ColumnName>(), Call<&IMutableColumn::put_ColumnName>(), Inputs<&IMutableColumn::get_ColumnName>()},
    {6, {OLESTR("ColumnType"), OLESTR("get_ColumnType")}, {OLESTR("RetVal")}, Call<&IMutableColumn::get_ColumnType>(), nullptr, Inputs<&IMutableColumn::get_ColumnType>()},
    {7, {OLESTR("AddPropertyChangeListener")}, {OLESTR("pVal")}, Call<&IMutableColumn::AddPropertyChangeListener>(), nullptr, Inputs<&IMutableColumn::AddPropertyChangeListener>()},
    {8, {OLESTR("RemovePropertyChangeListener")}, {OLESTR("pVal")}, Call<&IMutableColumn::RemovePropertyChangeListener>(), nullptr, Inputs<&IMutableColumn::RemovePropertyChangeListener>()},
};

const DispatchMember kColumnsMembers[] = {
    {5, {OLESTR("CompareTo")}, {OLESTR("Other"), OLESTR("retVal")}, Call<&IColumns::CompareTo>(), nullptr, Inputs<&IColumns::CompareTo>()},
    {6, {OLESTR("IndexOf")}, {OLESTR("name"), OLESTR("RetVal")}, Call<&IColumns::IndexOf>(), nullptr, Inputs<&IColumns::IndexOf>()},
    {7, {OLESTR("Column"), OLESTR("get_Column")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IColumns::get_Column>(), nullptr, Inputs<&IColumns::get_Column>()},
    {8, {OLESTR("Size"), OLESTR("get_Size")}, {OLESTR("RetVal")}, Call<&IColumns::get_Size>(), nullptr, Inputs<&IColumns::get_Size>()},
    {12, {OLESTR("EnableColumnsEvents")}, {OLESTR("flag")}, Call<&IColumns::EnableColumnsEvents>(), nullptr, Inputs<&IColumns::EnableColumnsEvents>()},
    {13, {OLESTR("AddColumnsChangeListener")}, {OLESTR("pVal")}, Call<&IColumns::AddColumnsChangeListener>(), nullptr, Inputs<&IColumns::AddColumnsChangeListener>()},
    {14, {OLESTR("RemoveColumnsChangeListener")}, {OLESTR("pVal")}, Call<&IColumns::RemoveColumnsChangeListener>(), nullptr, Inputs<&IColumns::RemoveColumnsChangeListener>()},
    {15, {OLESTR("AddPropertyChangeListener")}, {OLESTR("pVal")}, Call<&IColumns::AddPropertyChangeListener>(), nullptr, Inputs<&IColumns::AddPropertyChangeListener>()},
    {16, {OLESTR("RemovePropertyChangeListener")}, {OLESTR("pVal")}, Call<&IColumns::RemovePropertyChangeListener>(), nullptr, Inputs<&IColumns::RemovePropertyChangeListener>()},
};

const DispatchMember kMutableColumnsMembers[] = {
    {5, {OLESTR("Clear")}, {}, Call<&IMutableColumns::Clear>(), nullptr, Inputs<&IMutableColumns::Clear>()},
    {6, {OLESTR("CompareTo")}, {OLESTR("Other"), OLESTR("retVal")}, Call<&IMutableColumns::CompareTo>(), nullptr, Inputs<&IMutableColumns::CompareTo>()},
    {7, {OLESTR("AddColumn")}, {OLESTR("name"), OLESTR("type"), OLESTR("RetVal")}, Call<&IMutableColumns::AddColumn>(), nullptr, Inputs<&IMutableColumns::AddColumn>()},
    {8, {OLESTR("RemoveColumn")}, {OLESTR("index")}, Call<&IMutableColumns::RemoveColumn>(), nullptr, Inputs<&IMutableColumns::RemoveColumn>()},
    {9, {OLESTR("IndexOf")}, {OLESTR("name"), OLESTR("RetVal")}, Call<&IMutableColumns::IndexOf>(), nullptr, Inputs<&IMutableColumns::IndexOf>()},
    {10, {OLESTR("MutableColumn"), OLESTR("get_MutableColumn")}, {OLESTR("index"), OLESTR("RetVal")}, Call<&IMutableColumns::get_MutableColumn>(), nullptr, Inputs<&IMutableColumns::get_MutableColumn>()},
    {11, {OLESTR("Columns"), OLESTR("get_Columns")}, {OLESTR("RetVal")}, Call<&IMutableColumns::get_Columns>(), nullptr, Inputs<&IMutableColumns::get_Columns>()},
    {12, {OLESTR("Size"), OLESTR("get_Size")}, {OLESTR("RetVal")}, Call<&IMutableColumns::get_Size>(), nullptr, Inputs<&IMutableColumns::get_Size>()},
    {16, {OLESTR("EnableMutableColumnsEvents")}, {OLESTR("flag")}, Call<&IMutableColumns::EnableMutableColumnsEvents>(), nullptr, Inputs<&IMutableColumns::EnableMutableColumnsEvents>()},
    {17, {OLESTR("AddColumnsChangeListener")}, {OLESTR("pVal")}, Call<&IMutableColumns::AddColumnsChangeListener>(), nullptr, Inputs<&IMutableColumns::AddColumnsChangeListener>()},
    {18, {OLESTR("RemoveColumnsChangeListener")}, {OLESTR("pVal")}, Call<&IMutableColumns::RemoveColumnsChangeListener>(), nullptr, Inputs<&IMutableColumns::RemoveColumnsChangeListener>()},
    {19, {OLESTR("AddPropertyChangeListener")}, {OLESTR("pVal")}, Call<&IMutableColumns::AddPropertyChangeListener>(), nullptr, Inputs<&IMutableColumns::AddPropertyChangeListener>()},
    {20, {OLESTR("RemovePropertyChangeListener")}, {OLESTR("pVal")}, Call<&IMutableColumns::RemovePropertyChangeListener>(), nullptr, Inputs<&IMutableColumns::RemovePropertyChangeListener>()},
};

const DispatchMember kRecordListMembers[] = {
    {2, {OLESTR("CompareTo")}, {OLESTR("other"), OLESTR("retVal")}, Call<&IRecordList::CompareTo>(), nullptr, Inputs<&IRecordList::CompareTo>()},
    {3, {OLESTR("Columns"), OLESTR("get_Columns")}, {OLESTR("RetVal")}, Call<&IRecordList::get_Columns>(), nullptr, Inputs<&IRecordList::get_Columns>()},
    {4, {OLESTR("Size"), OLESTR("get_Size")}, {OLESTR("RetVal")}, Call<&IRecordList::get_Size>(), nullptr, Inputs<&IRecordList::get_Size>()},
    {5, {OLESTR("GetIterator")}, {OLESTR("synchronized"), OLESTR("RetVal")}, Call<&IRecordList::GetIterator>(), nullptr, Inputs<&IRecordList::GetIterator>()},
    {6, {OLESTR("GetFilteredIterator")}, {OLESTR("condition"), OLESTR("synchronized"), OLESTR("RetVal")}, Call<&IRecordList::GetFilteredIterator>(), nullptr, Inputs<&IRecordList::GetFilteredIterator>()},
    {7, {OLESTR("GetSortedIterator")}, {OLESTR("comparator"), OLESTR("synchronized"), OLESTR("RetVal")}, Call<&IRecordList::GetSortedIterator>(), nullptr, Inputs<&IRecordList::GetSortedIterator>()},
    {8, {OLESTR("EnableRecordListEvents")}, {OLESTR("flag")}, Call<&IRecordList::EnableRecordListEvents>(), nullptr, Inputs<&IRecordList::EnableRecordListEvents>()},
    {9, {OLESTR("AddRecordListChangeListener")}, {OLESTR("pVal")}, Call<&IRecordList::AddRecordListChangeListener>(), nullptr, Inputs<&IRecordList::AddRecordListChangeListener>()},
    {10, {OLESTR("RemoveRecordListChangeListener")}, {OLESTR("pVal")}, Call<&IRecordList::RemoveRecordListChangeListener>(), nullptr, Inputs<&IRecordList::RemoveRecordListChangeListener>()},
    {11, {OLESTR("AddRecordListValueChangeListener")}, {OLESTR("pVal")}, Call<&IRecordList::AddRecordListValueChangeListener>(), nullptr, Inputs<&IRecordList::AddRecordListValueChangeListener>()},
    {12, {OLESTR("RemoveRecordListValueChangeListener")}, {OLESTR("pVal")}, Call<&IRecordList::RemoveRecordListValueChangeListener>(), nullptr, Inputs<&IRecordList::RemoveRecordListValueChangeListener>()},
};

const DispatchMember kMutableRecordListMembers[] = {
    {2, {OLESTR("Create")}, {OLESTR("columns")}, Call<&IMutableRecordList::Create>(), nullptr, Inputs<&IMutableRecordList::Create>()},
    {3, {OLESTR("AddRecord")}, {OLESTR("RetVal")}, Call<&IMutableRecordList::AddRecord>(), nullptr, Inputs<&IMutableRecordList::AddRecord>()},
    {4, {OLESTR("Clear")}, {}, Call<&IMutableRecordList::Clear>(), nullptr, Inputs<&IMutableRecordList::Clear>()},
    {5, {OLESTR("CompareTo")}, {OLESTR("other"), OLESTR("retVal")}, Call<&IMutableRecordList::CompareTo>(), nullptr, Inputs<&IMutableRecordList::CompareTo>()},
    {7, {OLESTR("Columns"), OLESTR("get_Columns")}, {OLESTR("RetVal")}, Call<&IMutableRecordList::get_Columns>(), nullptr, Inputs<&IMutableRecordList::get_Columns>()},
    {8, {OLESTR("RecordList"), OLESTR("get_RecordList")}, {OLESTR("RetVal")}, Call<&IMutableRecordList::get_RecordList>(), nullptr, Inputs<&IMutableRecordList::get_RecordList>()},
    {9, {OLESTR("Size"), OLESTR("get_Size")}, {OLESTR("RetVal")}, Call<&IMutableRecordList::get_Size>(), nullptr, Inputs<&IMutableRecordList::get_Size>()},
    {10, {OLESTR("GetIterator")}, {OLESTR("synchronized"), OLESTR("RetVal")}, Call<&IMutableRecordList::GetIterator>(), nullptr, Inputs<&IMutableRecordList::GetIterator>()},
    {11, {OLESTR("GetFilteredIterator")}, {OLESTR("condition"), OLESTR("synchronized"), OLESTR("RetVal")}, Call<&IMutableRecordList::GetFilteredIterator>(), nullptr, Inputs<&IMutableRecordList::GetFilteredIterator>()},
    {12, {OLESTR("GetSortedIterator")}, {OLESTR("comparator"), OLESTR("synchronized"), OLESTR("RetVal")}, Call<&IMutableRecordList::GetSortedIterator>(), nullptr, Inputs<&IMutableRecordList::GetSortedIterator>()},
    {13, {OLESTR("EnableMutableRecordListEvents")}, {OLESTR("flag")}, Call<&IMutableRecordList::EnableMutableRecordListEvents>(), nullptr, Inputs<&IMutableRecordList::EnableMutableRecordListEvents>()},
    {14, {OLESTR("AddRecordListChangeListener")}, {OLESTR("pVal")}, Call<&IMutableRecordList::AddRecordListChangeListener>(), nullptr, Inputs<&IMutableRecordList::AddRecordListChangeListener>()},
    {15, {OLESTR("RemoveRecordListChangeListener")}, {OLESTR("pVal")}, Call<&IMutableRecordList::RemoveRecordListChangeListener>(), nullptr, Inputs<&IMutableRecordList::RemoveRecordListChangeListener>()},
    {16, {OLESTR("AddRecordListValueChangeListener")}, {OLESTR("pVal")}, Call<&IMutableRecordList::AddRecordListValueChangeListener>(), nullptr, Inputs<&IMutableRecordList::AddRecordListValueChangeListener>()},
    {17, {OLESTR("RemoveRecordListValueChangeListener")}, {OLESTR("pVal")}, Call<&IMutableRecordList::RemoveRecordListValueChangeListener>(), nullptr, Inputs<&IMutableRecordList::RemoveRecordListValueChangeListener>()},
};

const DispatchMember kRecordListIteratorMembers[] = {
    {3, {OLESTR("Find")}, {OLESTR("Condition"), OLESTR("RetVal")}, Call<&IRecordListIterator::Find, true>(), nullptr, Inputs<&IRecordListIterator::Find>()},
    {4, {OLESTR("FindNext")}, {OLESTR("pVal")}, Call<&IRecordListIterator::FindNext, true>(), nullptr, Inputs<&IRecordListIterator::FindNext>()},
    {5, {OLESTR("HasNext")}, {OLESTR("RetVal")}, Call<&IRecordListIterator::HasNext, true>(), nullptr, Inputs<&IRecordListIterator::HasNext>()},
    {6, {OLESTR("Next")}, {OLESTR("RetVal")}, Call<&IRecordListIterator::Next>(), nullptr, Inputs<&IRecordListIterator::Next>()},
    {7, {OLESTR("Remove")}, {}, Call<&IRecordListIterator::Remove>(), nullptr, Inputs<&IRecordListIterator::Remove>()},
    {8, {OLESTR("IsSynchronized")}, {OLESTR("RetVal")}, Call<&IRecordListIterator::IsSynchronized, true>(), nullptr, Inputs<&IRecordListIterator::IsSynchronized>()},
};

const DispatchMember kRecordListUtilsMembers[] = {
    {1, {OLESTR("GetRecordListByGroup")}, {OLESTR("list"), OLESTR("group"), OLESTR("RetVal")}, Call<&IRecordListUtils::GetRecordListByGroup>(), nullptr, Inputs<&IRecordListUtils::GetRecordListByGroup>()},
    {2, {OLESTR("GetMutableRecordListByGroup")}, {OLESTR("list"), OLESTR("group"), OLESTR("RetVal")}, Call<&IRecordListUtils::GetMutableRecordListByGroup>(), nullptr, Inputs<&IRecordListUtils::GetMutableRecordListByGroup>()},
    {3, {OLESTR("SaveToFile")}, {OLESTR("list"), OLESTR("fileName")}, CallIgnoringArguments<&IRecordListUtils::SaveToFile>(), nullptr, Inputs<&IRecordListUtils::SaveToFile>(), true},
    {4, {OLESTR("GetGroupCount")}, {OLESTR("list"), OLESTR("RetVal")}, Call<&IRecordListUtils::GetGroupCount>(), nullptr, Inputs<&IRecordListUtils::GetGroupCount>()},
    {5, {OLESTR("GetMutableGroupCount")}, {OLESTR("list"), OLESTR("RetVal")}, Call<&IRecordListUtils::GetMutableGroupCount>(), nullptr, Inputs<&IRecordListUtils::GetMutableGroupCount>()},
    {6, {OLESTR("GetGroupName")}, {OLESTR("list"), OLESTR("index"), OLESTR("RetVal")}, Call<&IRecordListUtils::GetGroupName>(), nullptr, Inputs<&IRecordListUtils::GetGroupName>()},
    {7, {OLESTR("GetMutableGroupName")}, {OLESTR("list"), OLESTR("index"), OLESTR("RetVal")}, Call<&IRecordListUtils::GetMutableGroupName>(), nullptr, Inputs<&IRecordListUtils::GetMutableGroupName>()},
};

const DispatchMember kRecordsFactoryMembers[] = {
    {1, {OLESTR("CreateMutableRecord")}, {OLESTR("RetVal")}, Call<&IRecordsFactory::CreateMutableRecord>(), nullptr, Inputs<&IRecordsFactory::CreateMutableRecord>()},
    {2, {OLESTR("CreateMutableRecordFromColumns")}, {OLESTR("columns"), OLESTR("RetVal")}, Call<&IRecordsFactory::CreateMutableRecordFromColumns>(), nullptr, Inputs<&IRecordsFactory::CreateMutableRecordFromColumns>()},
};

const DispatchMember kPropertyChangeEventMembers[] = {
    {1, {OLESTR("Initialize")}, {OLESTR("pSource"), OLESTR("propertyName"), OLESTR("oldValue"), OLESTR("newValue")}, Call<&IPropertyChangeEvent::Initialize>(), nullptr, Inputs<&IPropertyChangeEvent::Initialize>()},
    {2, {OLESTR("GetPropertyName")}, {OLESTR("RetVal")}, Call<&IPropertyChangeEvent::GetPropertyName>(), nullptr, Inputs<&IPropertyChangeEvent::GetPropertyName>()},
    {3, {OLESTR("GetNewValue")}, {OLESTR("RetVal")}, Call<&IPropertyChangeEvent::GetNewValue>(), nullptr, Inputs<&IPropertyChangeEvent::GetNewValue>()},
    {4, {OLESTR("GetOldValue")}, {OLESTR("RetVal")}, Call<&IPropertyChangeEvent::GetOldValue>(), nullptr, Inputs<&IPropertyChangeEvent::GetOldValue>()},
    {5, {OLESTR("GetPropagationId")}, {OLESTR("RetVal")}, Call<&IPropertyChangeEvent::GetPropagationId>(), nullptr, Inputs<&IPropertyChangeEvent::GetPropagationId>()},
    {6, {OLESTR("SetPropagationId")}, {OLESTR("id")}, Call<&IPropertyChangeEvent::SetPropagationId>(), nullptr, Inputs<&IPropertyChangeEvent::SetPropagationId>()},
    {7, {OLESTR("GetSource")}, {OLESTR("RetVal")}, Call<&IPropertyChangeEvent::GetSource>(), nullptr, Inputs<&IPropertyChangeEvent::GetSource>()},
};

const DispatchMember kRecordChangeEventMembers[] = {
    {1, {OLESTR("Initialize")}, {OLESTR("pSource"), OLESTR("index")}, Call<&IRecordChangeEvent::Initialize>(), nullptr, Inputs<&IRecordChangeEvent::Initialize>()},
    {2, {OLESTR("Stop")}, {}, Call<&IRecordChangeEvent::Stop>(), nullptr, Inputs<&IRecordChangeEvent::Stop>()},
    {3, {OLESTR("IsStopped")}, {OLESTR("RetVal")}, Call<&IRecordChangeEvent::IsStopped, true>(), nullptr, Inputs<&IRecordChangeEvent::IsStopped>()},
    {4, {OLESTR("GetIndex")}, {OLESTR("RetVal")}, Call<&IRecordChangeEvent::GetIndex>(), nullptr, Inputs<&IRecordChangeEvent::GetIndex>()},
    {5, {OLESTR("GetSource")}, {OLESTR("RetVal")}, Call<&IRecordChangeEvent::GetSource>(), nullptr, Inputs<&IRecordChangeEvent::GetSource>()},
};

const DispatchMember kColumnsChangeEventMembers[] = {
    {1, {OLESTR("Initialize")}, {OLESTR("pSource"), OLESTR("pColumnChanged")}, Call<&IColumnsChangeEvent::Initialize>(), nullptr, Inputs<&IColumnsChangeEvent::Initialize>()},
    {2, {OLESTR("Stop")}, {}, Call<&IColumnsChangeEvent::Stop>(), nullptr, Inputs<&IColumnsChangeEvent::Stop>()},
    {3, {OLESTR("IsStopped")}, {OLESTR("RetVal")}, Call<&IColumnsChangeEvent::IsStopped, true>(), nullptr, Inputs<&IColumnsChangeEvent::IsStopped>()},
    {4, {OLESTR("GetColumnChanged")}, {OLESTR("RetVal")}, Call<&IColumnsChangeEvent::GetColumnChanged>(), nullptr, Inputs<&IColumnsChangeEvent::GetColumnChanged>()},
    {5, {OLESTR("GetSource")}, {OLESTR("RetVal")}, Call<&IColumnsChangeEvent::GetSource>(), nullptr, Inputs<&IColumnsChangeEvent::GetSource>()},
};

const DispatchMember kRecordListChangeEventMembers[] = {
    {1, {OLESTR("Initialize")}, {OLESTR("pSource"), OLESTR("pRecordChanged")}, Call<&IRecordListChangeEvent::Initialize>(), nullptr, Inputs<&IRecordListChangeEvent::Initialize>()},
    {2, {OLESTR("Stop")}, {}, Call<&IRecordListChangeEvent::Stop>(), nullptr, Inputs<&IRecordListChangeEvent::Stop>()},
    {3, {OLESTR("IsStopped")}, {OLESTR("RetVal")}, Call<&IRecordListChangeEvent::IsStopped, true>(), nullptr, Inputs<&IRecordListChangeEvent::IsStopped>()},
    {4, {OLESTR("GetRecordChanged")}, {OLESTR("RetVal")}, Call<&IRecordListChangeEvent::GetRecordChanged>(), nullptr, Inputs<&IRecordListChangeEvent::GetRecordChanged>()},
    {5, {OLESTR("GetSource")}, {OLESTR("RetVal")}, Call<&IRecordListChangeEvent::GetSource>(), nullptr, Inputs<&IRecordListChangeEvent::GetSource>()},
};

const DispatchMember kRecordListValueChangeEventMembers[] = {
    {1, {OLESTR("Initialize")}, {OLESTR("pSource"), OLESTR("pRecordChanged"), OLESTR("index")}, Call<&IRecordListValueChangeEvent::Initialize>(), nullptr, Inputs<&IRecordListValueChangeEvent::Initialize>()},
    {2, {OLESTR("Stop")}, {}, Call<&IRecordListValueChangeEvent::Stop>(), nullptr, Inputs<&IRecordListValueChangeEvent::Stop>()},
    {3, {OLESTR("IsStopped")}, {OLESTR("RetVal")}, Call<&IRecordListValueChangeEvent::IsStopped, true>(), nullptr, Inputs<&IRecordListValueChangeEvent::IsStopped>()},
    {4, {OLESTR("GetRecordChanged")}, {OLESTR("RetVal")}, Call<&IRecordListValueChangeEvent::GetRecordChanged>(), nullptr, Inputs<&IRecordListValueChangeEvent::GetRecordChanged>()},
    {5, {OLESTR("GetIndex")}, {OLESTR("RetVal")}, Call<&IRecordListValueChangeEvent::GetIndex>(), nullptr, Inputs<&IRecordListValueChangeEvent::GetIndex>()},
    {6, {OLESTR("GetSource")}, {OLESTR("RetVal")}, Call<&IRecordListValueChangeEvent::GetSource>(), nullptr, Inputs<&IRecordListValueChangeEvent::GetSource>()},
};

// The listener interfaces, reached through a library object that listens.
const DispatchMember kColumnsChangeListenerMembers[] = {
    {1, {OLESTR("ColumnBeforeAdd")}, {OLESTR("pEvent")}, Call<&IColumnsChangeListener::ColumnBeforeAdd>(), nullptr, Inputs<&IColumnsChangeListener::ColumnBeforeAdd>()},
    {2, {OLESTR("ColumnAfterAdd")}, {OLESTR("pEvent")}, Call<&IColumnsChangeListener::ColumnAfterAdd>(), nullptr, Inputs<&IColumnsChangeListener::ColumnAfterAdd>()},
    {3, {OLESTR("ColumnBeforeRemove")}, {OLESTR("pEvent")}, Call<&IColumnsChangeListener::ColumnBeforeRemove>(), nullptr, Inputs<&IColumnsChangeListener::ColumnBeforeRemove>()},
    {4, {OLESTR("ColumnAfterRemove")}, {OLESTR("pEvent")}, Call<&IColumnsChangeListener::ColumnAfterRemove>(), nullptr, Inputs<&IColumnsChangeListener::ColumnAfterRemove>()},
};

const DispatchMember kRecordListChangeListenerMembers[] = {
    {1, {OLESTR("RecordBeforeAdd")}, {OLESTR("pEvent")}, Call<&IRecordListChangeListener::RecordBeforeAdd>(), nullptr, Inputs<&IRecordListChangeListener::RecordBeforeAdd>()},
    {2, {OLESTR("RecordAfterAdd")}, {OLESTR("pEvent")}, Call<&IRecordListChangeListener::RecordAfterAdd>(), nullptr, Inputs<&IRecordListChangeListener::RecordAfterAdd>()},
    {3, {OLESTR("RecordBeforeRemove")}, {OLESTR("pEvent")}, Call<&IRecordListChangeListener::RecordBeforeRemove>(), nullptr, Inputs<&IRecordListChangeListener::RecordBeforeRemove>()},
    {4, {OLESTR("RecordAfterRemove")}, {OLESTR("pEvent")}, Call<&IRecordListChangeListener::RecordAfterRemove>(), nullptr, Inputs<&IRecordListChangeListener::RecordAfterRemove>()},
};

// Late-bound callers see After as id 1.
const DispatchMember kRecordChangeListenerMembers[] = {
    {1, {OLESTR("ValueAfterChange")}, {OLESTR("pEvent")}, Call<&IRecordChangeListener::ValueAfterChange>(), nullptr, Inputs<&IRecordChangeListener::ValueAfterChange>()},
    {2, {OLESTR("ValueBeforeChange")}, {OLESTR("pEvent")}, Call<&IRecordChangeListener::ValueBeforeChange>(), nullptr, Inputs<&IRecordChangeListener::ValueBeforeChange>()},
};

const DispatchMember kRecordListValueChangeListenerMembers[] = {
    {1, {OLESTR("ValueBeforeChange")}, {OLESTR("pEvent")}, Call<&IRecordListValueChangeListener::ValueBeforeChange>(), nullptr, Inputs<&IRecordListValueChangeListener::ValueBeforeChange>()},
    {2, {OLESTR("ValueAfterChange")}, {OLESTR("pEvent")}, Call<&IRecordListValueChangeListener::ValueAfterChange>(), nullptr, Inputs<&IRecordListValueChangeListener::ValueAfterChange>()},
};

const DispatchMember kPropertyChangeListenerMembers[] = {
    {1, {OLESTR("PropertyChange")}, {OLESTR("pEvent")}, Call<&IPropertyChangeListener::PropertyChange>(), nullptr, Inputs<&IPropertyChangeListener::PropertyChange>()},
};

template <class I, std::size_t N>
constexpr DispatchTable TableOf(const DispatchMember (&members)[N]) {
  return DispatchTable{&iid_of<I>(), members, N};
}

const DispatchTable kTables[] = {
    TableOf<IRecord>(kRecordMembers),
    TableOf<IMutableRecord>(kMutableRecordMembers),
    TableOf<IColumn>(kColumnMembers),
    TableOf<IMutableColumn>(kMutableColumnMembers),
    TableOf<IColumns>(kColumnsMembers),
    TableOf<IMutableColumns>(kMutableColumnsMembers),
    TableOf<IRecordList>(kRecordListMembers),
    TableOf<IMutableRecordList>(kMutableRecordListMembers),
    TableOf<IRecordListIterator>(kRecordListIteratorMembers),
    TableOf<IRecordListUtils>(kRecordListUtilsMembers),
    TableOf<IRecordsFactory>(kRecordsFactoryMembers),
    TableOf<IPropertyChangeEvent>(kPropertyChangeEventMembers),
    TableOf<IRecordChangeEvent>(kRecordChangeEventMembers),
    TableOf<IColumnsChangeEvent>(kColumnsChangeEventMembers),
    TableOf<IRecordListChangeEvent>(kRecordListChangeEventMembers),
    TableOf<IRecordListValueChangeEvent>(kRecordListValueChangeEventMembers),
    TableOf<IColumnsChangeListener>(kColumnsChangeListenerMembers),
    TableOf<IRecordListChangeListener>(kRecordListChangeListenerMembers),
    TableOf<IRecordChangeListener>(kRecordChangeListenerMembers),
    TableOf<IRecordListValueChangeListener>(kRecordListValueChangeListenerMembers),
    TableOf<IPropertyChangeListener>(kPropertyChangeListenerMembers),
};

}  // namespace

std::span<const DispatchTable> DispatchTables() noexcept { return kTables; }

const DispatchTable* FindDispatchTable(REFIID iid) noexcept {
  for (const DispatchTable& table : kTables) {
    if (*table.iid == iid) return &table;
  }
  return nullptr;
}

}  // namespace brevo
