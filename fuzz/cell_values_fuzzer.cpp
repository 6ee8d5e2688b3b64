// Cell values: values of every kind through SetValue, the typed setters and
// every getter, on records (one in a list, one made alone) and their
// read-only views, over columns of every type code and codes the library
// does not know.
#include "columns/mutable_columns.h"
#include "factory/records_factory.h"
#include "fuzz/support/fuzz_values.h"
#include "fuzz/support/one_input.h"
#include "lists/mutable_record_list.h"

namespace brevo::fuzz {
namespace {

// The codes the fit test knows, their neighbours and the extremes.
constexpr ULONG kTypeCodes[] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13,        14,
                                15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 0x80000000, 0xFFFFFFFF};

void Done(HRESULT) { StopIfAborted(); }

class CellSession {
 public:
  explicit CellSession(ByteReader& in) : in_(in), values_(in) {
    columns_ = com_ptr<IMutableColumns>(make_object<MutableColumns>().get());
    for (std::size_t n = in_.Pick(6); n > 0; --n) AddColumn();
    list_ = com_ptr<IMutableRecordList>(make_object<MutableRecordList>().get());
    Done(list_->Create(columns_.get()));
    Done(list_->AddRecord(records_[0].put()));
    const auto factory = make_object<RecordsFactory>();
    Done(factory->CreateMutableRecordFromColumns(columns_.get(), records_[1].put()));
    for (int i = 0; i < 2; ++i)
      if (records_[i]) Done(records_[i]->get_Record(views_[i].put()));
    // Objects a cell may hold; none of them holds a record, so no cycle forms.
    values_.Offer(columns_.get());
    values_.Offer(static_cast<IRecordsFactory*>(make_object<RecordsFactory>().get()));
  }

  void Run() {
    while (!in_.empty()) Step();
  }

 private:
  void Step() {
    IMutableRecord* record = records_[in_.Pick(2)].get();
    IRecord* view = views_[in_.Pick(2)].get();
    switch (in_.Pick(9)) {
      case 0: if (record) SetValue(record); break;
      case 1: if (record) SetValueByName(record); break;
      case 2: if (record) TypedSet(record); break;
      case 3: if (record) Read(record); break;
      case 4: if (view) Read(view); break;
      case 5: AddColumn(); break;
      case 6: Done(columns_->RemoveColumn(Index())); break;
      case 7: Compare(record, view); break;
      case 8: Switch(record, view); break;
    }
  }

  // The position is read before the value: the seeds depend on the order.
  void SetValue(IMutableRecord* record) {
    const ULONG index = Index();
    Done(record->SetValue(index, values_.Value().get()));
  }
  void SetValueByName(IMutableRecord* record) {
    const _bstr_t name = Name();
    Done(record->SetValueByName(name.GetBSTR(), values_.Value().get()));
  }

  ULONG Index() {
    const std::uint8_t b = in_.Byte();
    if (b >= 0xF0) return in_.Number<ULONG>();
    LONG size = 0;
    Done(columns_->get_Size(&size));
    return b % static_cast<ULONG>(size + 2);  // the row's element 0 and one past the end included
  }

  // A column's name, or text from the input.
  _bstr_t Name() {
    LONG size = 0;
    Done(columns_->get_Size(&size));
    const ULONG index = in_.Pick(static_cast<std::size_t>(size) + 1);
    com_ptr<IMutableColumn> column;
    if (index == static_cast<ULONG>(size) || columns_->get_MutableColumn(index, column.put()) != S_OK) {
      StopIfAborted();
      return values_.Text();
    }
    BSTR name = nullptr;
    Done(column->get_ColumnName(&name));
    return _bstr_t(name, false);
  }

  void AddColumn() {
    const std::uint8_t b = in_.Byte();
    const ULONG type = b < 0xF0 ? kTypeCodes[b % std::size(kTypeCodes)] : in_.Number<ULONG>();
    com_ptr<IMutableColumn> added;
    Done(columns_->AddColumn(values_.Text().GetBSTR(), type, added.put()));
  }

  void TypedSet(IMutableRecord* record) {
    const ULONG index = Index();
    switch (in_.Pick(8)) {
      case 0: Done(record->SetValueAsBoolean(index, values_.Boolean())); break;
      case 1: Done(record->SetValueAsDouble(index, values_.Real())); break;
      case 2: Done(record->SetValueAsFloat(index, values_.Single())); break;
      case 3: Done(record->SetValueAsInt32(index, values_.Int32())); break;
      case 4: Done(record->SetValueAsInt64(index, values_.Int64())); break;
      case 5: Done(record->SetValueAsInt16(index, values_.Int16())); break;
      case 6: Done(record->SetValueAsString(index, values_.Text().GetBSTR())); break;
      case 7: Done(record->SetValueAsByte(index, in_.Byte())); break;
    }
  }

  // Every getter; records and views spell them alike.
  template <class R>
  void Read(R* record) {
    const ULONG index = Index();
    unique_variant value;
    switch (in_.Pick(10)) {
      case 0: Done(record->GetValue(index, value.put())); break;
      case 1: Done(record->GetValueByName(Name().GetBSTR(), value.put())); break;
      case 2: { VARIANT_BOOL b = 0; Done(record->GetValueAsBoolean(index, &b)); break; }
      case 3: { double d = 0; Done(record->GetValueAsDouble(index, &d)); break; }
      case 4: { float f = 0; Done(record->GetValueAsFloat(index, &f)); break; }
      case 5: { LONG l = 0; Done(record->GetValueAsInt32(index, &l)); break; }
      case 6: { LONGLONG ll = 0; Done(record->GetValueAsInt64(index, &ll)); break; }
      case 7: { SHORT s = 0; Done(record->GetValueAsInt16(index, &s)); break; }
      case 8: { BSTR text = nullptr; Done(record->GetValueAsString(index, &text)); _bstr_t(text, false); break; }
      case 9: { BYTE b = 0; Done(record->GetValueAsByte(index, &b)); break; }
    }
  }

  void Compare(IMutableRecord* record, IRecord* view) {
    LONG order = 0;
    IDispatch* other = in_.Pick(2) == 0 ? static_cast<IDispatch*>(view) : records_[in_.Pick(2)].get();
    if (record) Done(record->CompareTo(other, &order));
    if (view) Done(view->CompareTo(other, &order));
  }

  // Events on and off (nobody listens: the pending summaries still run), or
  // the record emptied, which also empties its column collection.
  void Switch(IMutableRecord* record, IRecord* view) {
    const VARIANT_BOOL flag = values_.Boolean();
    switch (in_.Pick(4)) {
      case 0: if (record) Done(record->EnableMutableRecordEvents(flag)); break;
      case 1: if (view) Done(view->EnableRecordEvents(flag)); break;
      case 2: Done(list_->EnableMutableRecordListEvents(flag)); break;
      case 3: if (record) Done(record->Clear()); break;
    }
  }

  ByteReader& in_;
  ValueMaker values_;
  com_ptr<IMutableColumns> columns_;
  com_ptr<IMutableRecordList> list_;
  com_ptr<IMutableRecord> records_[2];
  com_ptr<IRecord> views_[2];
};

}  // namespace
}  // namespace brevo::fuzz

BREVO_FUZZ_TARGET(brevo::fuzz::CellSession, "cell_values")
