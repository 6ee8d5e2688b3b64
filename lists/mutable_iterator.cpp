#include "lists/mutable_iterator.h"

#include <utility>

#include "core/call_out.h"
#include "core/checked_access.h"

namespace brevo {

void MutableIteratorImpl::Bind(RowSequence& sequence, VARIANT_BOOL synchronized, IUnknown* owner) {
  synchronized_ = synchronized;
  if (synchronized == VARIANT_TRUE) {
    walked_ = &sequence;
    owner_ = com_ptr<IUnknown>(owner);
  } else {
    copy_ = sequence;
    walked_ = &copy_;
    owner_.reset();
  }
}

void MutableIteratorImpl::Create(IRecordCondition* condition) {
  if (condition != condition_.get()) condition_ = AsCallback<IRecordCondition>(condition);
  cursor_ = 0;
}

VARIANT_BOOL MutableIteratorImpl::HasNext() {
  const RowSequence& rows = Walked();
  if (rows.empty()) return VARIANT_FALSE;
  if (cursor_ + 1 < rows.size()) {
    pendingFirst_ = VARIANT_FALSE;
    return VARIANT_TRUE;
  }
  // On the last row: before the first Next that row is still to come, once.
  if (pendingFirst_ != VARIANT_FALSE) {
    pendingFirst_ = VARIANT_FALSE;
    return VARIANT_TRUE;
  }
  return VARIANT_FALSE;
}

com_ptr<IMutableRecord> MutableIteratorImpl::Next() {
  RowSequence& rows = Walked();
  if (rows.empty()) throw EBvException(OLESTR("The record iterator is empty."));
  if (cursor_ == rows.size()) throw EBvException(OLESTR("The record iterator is in the end."));
  try {
    if (!found_.empty()) {
      cursor_ = static_cast<std::size_t>(CheckedAt(found_, foundPosition_));
    } else if (started_ == VARIANT_FALSE) {
      cursor_ = 0;
      started_ = VARIANT_TRUE;
    } else {
      ++cursor_;
    }
    // Past the last row this is the runtime's bounds check: the process ends.
    return CheckedAt(rows, cursor_);
  } catch (const EBvException&) {
    throw;
  } catch (...) {
    throw EBvException(OLESTR("Failed in iterator next."));
  }
}

VARIANT_BOOL MutableIteratorImpl::Find(IRecordCondition* condition) {
  if (condition == nullptr) return VARIANT_FALSE;
  try {
    const auto callback = AsCallback<IRecordCondition>(condition);
    if (!callback) _com_issue_error(E_NOINTERFACE);
    const RowSequence& rows = Walked();
    // The condition may change the sequence: the size is read at every step
    // and the row is held while it is asked.
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const Row row = rows[i];
      VARIANT_BOOL result = VARIANT_FALSE;
      const CallOutLevel level;
      ThrowIfFailed(callback->Evaluate(row.get(), &result));
      if (result == VARIANT_TRUE) {
        cursor_ = i;
        return VARIANT_TRUE;
      }
    }
  } catch (const CallOutTooDeep&) {
    throw;
  } catch (...) {
    throw EBvException(OLESTR("Failed in iterator find."));
  }
  return VARIANT_FALSE;
}

VARIANT_BOOL MutableIteratorImpl::FindNext() {
  if (cursor_ == Walked().size()) return VARIANT_FALSE;
  const com_ptr<IRecordCondition> condition = condition_;  // Create may replace it meanwhile
  return Find(condition.get());
}

void MutableIteratorImpl::Remove() {
  RowSequence& rows = Walked();
  if (rows.empty()) throw EBvException(OLESTR("The list is empty , No objects to remove."));
  // Releasing a record may run its last release: the sequence settles first.
  if (rows.size() == 1) {
    RowSequence removed;
    removed.swap(rows);
    return;
  }
  if (cursor_ >= rows.size()) throw EBvException(OLESTR("Failed in iterator remove."));
  const Row removed = std::move(rows[cursor_]);
  rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(cursor_));
}

void MutableIteratorImpl::AddToList(IMutableRecord* record) {
  if (record == nullptr) _com_issue_error(E_POINTER);
  com_ptr<IMutableColumns> columns;
  ThrowIfFailed(record->get_Columns(columns.put()), record);
  if (!columns) _com_issue_error(E_POINTER);
  const auto columnCount = [&] {
    LONG size = 0;
    ThrowIfFailed(columns->get_Size(&size), columns.get());
    return size;
  };
  // A row is only its record, so the values are not kept; they must still
  // all be readable. The collection may change while they are read.
  for (LONG i = 0, size = columnCount(); i < size; ++i, size = columnCount()) {
    unique_variant value;
    ThrowIfFailed(record->GetValue(static_cast<ULONG>(i), value.put()), record);
  }
  Walked().push_back(Row(record));
}

}  // namespace brevo
