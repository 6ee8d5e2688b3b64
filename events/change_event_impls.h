// State and logic of the five change events.
#pragma once

#include "core/bstr_t.h"
#include "core/com_ptr.h"

namespace brevo {

// Source and stopped flag of the four events that can be stopped. The flag is
// 1 / 0; kStoppedAtStart says which value Initialize sets and Stop undoes.
template <VARIANT_BOOL kStoppedAtStart>
class StoppableEventImpl {
 public:
  void Stop() noexcept { stopped_ = kStoppedAtStart != 0 ? 0 : 1; }
  VARIANT_BOOL IsStopped() const noexcept { return stopped_; }
  com_ptr<IDispatch> GetSource() const noexcept { return source_; }

 protected:
  void Begin(IDispatch* source) noexcept {
    source_ = com_ptr<IDispatch>(source);
    stopped_ = kStoppedAtStart;
  }

 private:
  com_ptr<IDispatch> source_;
  VARIANT_BOOL stopped_ = kStoppedAtStart;
};

class RecordChangeEventImpl : public StoppableEventImpl<0> {
 public:
  void Initialize(IDispatch* source, LONG index) noexcept {
    Begin(source);
    index_ = index;
  }
  LONG GetIndex() const noexcept { return index_; }

 private:
  LONG index_ = 0;
};

// Starts stopped: a "Before" pass goes on only past listeners that call Stop.
class ColumnsChangeEventImpl : public StoppableEventImpl<1> {
 public:
  void Initialize(IDispatch* source, IDispatch* column) noexcept {
    Begin(source);
    column_ = com_ptr<IDispatch>(column);
  }
  com_ptr<IDispatch> GetColumnChanged() const noexcept { return column_; }

 private:
  com_ptr<IDispatch> column_;
};

class RecordListChangeEventImpl : public StoppableEventImpl<0> {
 public:
  void Initialize(IDispatch* source, IDispatch* record) noexcept {
    Begin(source);
    record_ = com_ptr<IDispatch>(record);
  }
  com_ptr<IDispatch> GetRecordChanged() const noexcept { return record_; }

 private:
  com_ptr<IDispatch> record_;
};

class RecordListValueChangeEventImpl : public StoppableEventImpl<0> {
 public:
  void Initialize(IDispatch* source, IDispatch* record, LONG index) noexcept {
    Begin(source);
    record_ = com_ptr<IDispatch>(record);
    index_ = index;
  }
  com_ptr<IDispatch> GetRecordChanged() const noexcept { return record_; }
  LONG GetIndex() const noexcept { return index_; }

 private:
  com_ptr<IDispatch> record_;
  LONG index_ = 0;
};

// Property changes cannot be vetoed. The propagation id travels untouched by
// the library, for listeners that pass events on.
class PropertyChangeEventImpl {
 public:
  void Initialize(IDispatch* source, const _bstr_t& name, const _bstr_t& oldValue, const _bstr_t& newValue) {
    source_ = com_ptr<IDispatch>(source);
    name_ = name;
    oldValue_ = oldValue;
    newValue_ = newValue;
  }
  const _bstr_t& GetPropertyName() const noexcept { return name_; }
  const _bstr_t& GetNewValue() const noexcept { return newValue_; }
  const _bstr_t& GetOldValue() const noexcept { return oldValue_; }
  com_ptr<IUnknown> GetPropagationId() const noexcept { return propagationId_; }
  void SetPropagationId(IUnknown* id) noexcept {
    if (id != propagationId_.get()) propagationId_ = com_ptr<IUnknown>(id);
  }
  com_ptr<IDispatch> GetSource() const noexcept { return source_; }

 private:
  com_ptr<IDispatch> source_;
  com_ptr<IUnknown> propagationId_;
  _bstr_t newValue_;
  _bstr_t oldValue_;
  _bstr_t name_;
};

}  // namespace brevo
