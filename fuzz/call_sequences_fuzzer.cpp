// Call sequences: one table whose listeners, conditions and comparators (C++
// objects and script-like IDispatch objects) re-enter the library from inside
// their calls. Oracles: a plain walk of the list yields Size() records, and no
// library object outlives the input.
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "columns/mutable_columns.h"
#include "factory/record_list_utils.h"
#include "fuzz/support/callback_arg.h"
#include "fuzz/support/grouped_lists.h"
#include "fuzz/support/listener_sweep.h"
#include "fuzz/support/one_input.h"
#include "fuzz/support/reentrant_actors.h"
#include "lists/mutable_record_list.h"

namespace brevo::fuzz {
namespace {

// Each switch turns on one kind of re-entry; all are on, each once crashed
// the library (fuzz/crashes). Listeners re-enter past the library's own
// nesting limit, which must refuse the innermost call cleanly.
constexpr int kReentryDepth = 160;
// A ColumnBefore/AfterRemove listener that changes the collection.
constexpr bool kColumnChangesInsideColumnRemoveEvents = true;
// Dropping references from inside a callback: objects released inside their
// own notifications, and sort/filter on views whose callback drops the list.
constexpr bool kDropReferencesInsideCallbacks = true;
// Sorted or filtered iteration started from inside a comparator or condition.
constexpr bool kOrderingInsideOrdering = true;

constexpr std::size_t kHeldLimit = 8;

template <class T>
T* PickFrom(ByteReader& in, const std::vector<com_ptr<T>>& items) {
  return items.empty() ? nullptr : items[in.Pick(items.size())].get();
}

template <class T>
void DropOne(ByteReader& in, std::vector<com_ptr<T>>& items) {
  if (!items.empty()) items.erase(items.begin() + static_cast<std::ptrdiff_t>(in.Pick(items.size())));
}

void Done(HRESULT) { StopIfAborted(); }

// Stops a "Before" event of any kind.
void StopEvent(IUnknown* event) {
  const com_ptr<IUnknown> held(event);
  if (const auto e = held.try_query<IRecordChangeEvent>()) Done(e->Stop());
  if (const auto e = held.try_query<IColumnsChangeEvent>()) Done(e->Stop());
  if (const auto e = held.try_query<IRecordListChangeEvent>()) Done(e->Stop());
  if (const auto e = held.try_query<IRecordListValueChangeEvent>()) Done(e->Stop());
}

class SequenceSession final : public Stage {
 public:
  explicit SequenceSession(ByteReader& in) : in_(in) {
    columns_ = com_ptr<IMutableColumns>(make_object<MutableColumns>().get());
    list_ = com_ptr<IMutableRecordList>(make_object<MutableRecordList>().get());
    Done(list_->Create(columns_.get()));
    utils_ = com_ptr<IRecordListUtils>(make_object<RecordListUtils>().get());
  }

  ~SequenceSession() {
    for (const auto& actor : actors_) actor->stage = nullptr;
    for (const auto& script : scripts_) script->stage = nullptr;
  }

  void Run() {
    while (!in_.empty()) Step();
  }

  Reply React(Cue cue, IUnknown* subject) override {
    Reply reply;
    InCallback([&] {
      const std::uint8_t b = in_.Byte();
      reply.value = cue == Cue::kComparator ? static_cast<LONG>(b % 3) - 1 : b & 1;
      if (b >= 0xF8) reply.hr = E_FAIL;
      if ((cue == Cue::kBefore || cue == Cue::kColumnRemove) && (b & 2) && subject != nullptr) StopEvent(subject);
      if ((b & 4) && depth_ < kReentryDepth) {
        const Nesting nested(*this, cue);
        Step();
      }
    });
    return reply;
  }

 private:
  struct Nesting {
    Nesting(SequenceSession& s, Cue cue)
        : s(s), columnRemove(cue == Cue::kColumnRemove), ordering(cue == Cue::kCondition || cue == Cue::kComparator) {
      ++s.depth_;
      s.insideColumnRemove_ += columnRemove;
      s.insideOrdering_ += ordering;
    }
    ~Nesting() {
      --s.depth_;
      s.insideColumnRemove_ -= columnRemove;
      s.insideOrdering_ -= ordering;
    }
    SequenceSession& s;
    bool columnRemove;
    bool ordering;
  };

  bool MayChangeColumns() const { return kColumnChangesInsideColumnRemoveEvents || insideColumnRemove_ == 0; }
  bool MayOrder() const { return kOrderingInsideOrdering || insideOrdering_ == 0; }
  bool MayDrop() const { return kDropReferencesInsideCallbacks || depth_ == 0; }

  void Step() {
    switch (in_.Pick(14)) {
      case 0: if (MayChangeColumns()) AddColumn(); break;
      case 1: if (MayChangeColumns()) Done(columns_->RemoveColumn(ColumnIndex())); break;
      case 2: AddRecord(); break;
      case 3: IteratorStep(); break;
      case 4: if (list_) Done(list_->Clear()); break;
      case 5: if (MayChangeColumns()) Done(columns_->Clear()); break;
      case 6: Listen(); break;
      case 7: StopListening(); break;
      case 8: NewIterator(); break;
      case 9: if (depth_ == 0) WalkCheck(); break;
      case 10: SetValue(); break;
      case 11: SwitchEvents(); break;
      case 12: if (MayDrop()) Drop(); break;
      case 13: Group(); break;
    }
  }

  ULONG ColumnIndex() {
    LONG size = 0;
    Done(columns_->get_Size(&size));
    return static_cast<ULONG>(in_.Pick(static_cast<std::size_t>(size) + 1));
  }

  // Every column is in group "g", so a grouping never fails its group check.
  void AddColumn() {
    constexpr ULONG kTypes[] = {10, 1, 4, 12};
    const _bstr_t name(("g." + std::to_string(nextColumn_++)).c_str());
    com_ptr<IMutableColumn> added;
    Done(columns_->AddColumn(name.GetBSTR(), kTypes[in_.Pick(std::size(kTypes))], added.put()));
  }

  void AddRecord() {
    com_ptr<IMutableRecord> record;
    // A vetoed addition still hands the record out; it is released like any other.
    if (list_) Done(list_->AddRecord(record.put()));
    else if (const auto grouped = Grouped<IMutableRecordList>()) Done(grouped->AddRecord(record.put()));
    if (record && records_.size() < kHeldLimit) records_.push_back(record);
  }

  void SetValue() {
    IMutableRecord* record = PickFrom(in_, records_);
    if (record == nullptr) return;
    const ULONG index = ColumnIndex();
    if (in_.Pick(2) == 0) Done(record->SetValueAsInt32(index, in_.Number<std::int8_t>()));
    else Done(record->SetValueAsString(index, _bstr_t(std::to_string(in_.Byte()).c_str()).GetBSTR()));
  }

  // A callback object; a new one while there are few.
  IUnknown* Callback() {
    const std::size_t count = actors_.size() + scripts_.size();
    const std::size_t pick = in_.Pick(count + 2);
    if (pick < actors_.size()) return static_cast<IRecordCondition*>(actors_[pick].get());
    if (pick < count) return scripts_[pick - actors_.size()].get();
    if (count >= kHeldLimit) return nullptr;
    if (pick == count) return static_cast<IRecordCondition*>(actors_.emplace_back(make_object<Actor>(this)).get());
    return scripts_.emplace_back(ScriptActor::Make(this)).get();
  }

  // The object whose registries a listener step uses.
  com_ptr<IUnknown> ListenerSource() {
    switch (in_.Pick(5)) {
      case 0: return identity_of(list_.get());
      case 1: return identity_of(columns_.get());
      case 2: return identity_of(PickFrom(in_, records_));
      case 3: {
        com_ptr<IMutableColumn> column;
        if (columns_->get_MutableColumn(ColumnIndex(), column.put()) != S_OK) StopIfAborted();
        return identity_of(column.get());
      }
      default: return identity_of(PickFrom(in_, grouped_held_));
    }
  }

  void Listen() {
    const com_ptr<IUnknown> source = ListenerSource();
    IUnknown* callback = Callback();
    // Callbacks hold nothing of the library, so registrations left in place
    // tie no cycle: the objects go with their last client reference.
    if (!source || callback == nullptr) return;
    switch (in_.Pick(4)) {
      case 0:
        if (const auto list = source.try_query<IMutableRecordList>()) {
          Done(list->AddRecordListChangeListener(CallbackArg<IRecordListChangeListener>(callback).get()));
          Done(list->AddRecordListValueChangeListener(CallbackArg<IRecordListValueChangeListener>(callback).get()));
        } else if (const auto view = source.try_query<IRecordList>()) {
          Done(view->AddRecordListChangeListener(CallbackArg<IRecordListChangeListener>(callback).get()));
        }
        break;
      case 1:
        if (const auto columns = source.try_query<IMutableColumns>())
          Done(columns->AddColumnsChangeListener(CallbackArg<IColumnsChangeListener>(callback).get()));
        break;
      case 2:
        if (const auto record = source.try_query<IMutableRecord>())
          Done(record->AddRecordChangeListener(CallbackArg<IRecordChangeListener>(callback).get()));
        break;
      case 3:
        if (const auto column = source.try_query<IMutableColumn>())
          Done(column->AddPropertyChangeListener(CallbackArg<IPropertyChangeListener>(callback).get()));
        else if (const auto columns = source.try_query<IMutableColumns>())
          Done(columns->AddPropertyChangeListener(CallbackArg<IPropertyChangeListener>(callback).get()));
        break;
    }
  }

  void StopListening() {
    const com_ptr<IUnknown> source = ListenerSource();
    IUnknown* callback = Callback();
    if (source && callback != nullptr) ListenerSweep::Remove(source.get(), callback);
    StopIfAborted();
  }

  template <class I>
  com_ptr<I> Grouped() {
    return com_ptr<IUnknown>(PickFrom(in_, grouped_held_)).try_query<I>();
  }

  template <class List>
  void IteratorOf(List* list) {
    if (list == nullptr || iterators_.size() >= kHeldLimit) return;
    const VARIANT_BOOL synchronized = in_.Pick(2) == 0 ? VARIANT_TRUE : VARIANT_FALSE;
    com_ptr<IRecordListIterator> it;
    switch (MayOrder() ? in_.Pick(3) : 0) {
      case 0: Done(list->GetIterator(synchronized, it.put())); break;
      case 1: Done(list->GetFilteredIterator(CallbackArg<IRecordCondition>(Callback()).get(), synchronized, it.put())); break;
      case 2: Done(list->GetSortedIterator(CallbackArg<IRecordComparator>(Callback()).get(), synchronized, it.put())); break;
    }
    if (it) iterators_.push_back(it);
  }

  void NewIterator() {
    switch (in_.Pick(4)) {
      case 0: IteratorOf(list_.get()); break;
      case 1: {
        com_ptr<IRecordList> view;
        if (list_) Done(list_->get_RecordList(view.put()));
        IteratorOf(view.get());
        break;
      }
      case 2: IteratorOf(Grouped<IMutableRecordList>().get()); break;
      case 3: IteratorOf(Grouped<IRecordList>().get()); break;
    }
  }

  void IteratorStep() {
    IRecordListIterator* it = PickFrom(in_, iterators_);
    if (it == nullptr) return;
    VARIANT_BOOL flag = VARIANT_FALSE;
    switch (in_.Pick(5)) {
      case 0: Done(it->HasNext(&flag)); break;
      case 1: {
        com_ptr<IDispatch> next;
        Done(it->Next(next.put()));
        break;
      }
      case 2: Done(it->Remove()); break;
      case 3: Done(it->Find(CallbackArg<IRecordCondition>(Callback()).get(), &flag)); break;
      case 4: Done(it->FindNext(&flag)); break;
    }
  }

  // The oracle: a plain walk, where no callback runs, sees Size() records.
  void WalkCheck() {
    if (!list_) return;
    ULONG size = 0;
    Done(list_->get_Size(&size));
    com_ptr<IRecordListIterator> it;
    Done(list_->GetIterator(in_.Pick(2) == 0 ? VARIANT_TRUE : VARIANT_FALSE, it.put()));
    if (!it) return;
    ULONG walked = 0;
    VARIANT_BOOL more = VARIANT_FALSE;
    while (walked <= size && it->HasNext(&more) == S_OK && more != VARIANT_FALSE) {
      com_ptr<IDispatch> next;
      if (it->Next(next.put()) != S_OK) break;
      ++walked;
    }
    StopIfAborted();
    if (walked == size) return;
    std::fprintf(stderr, "call_sequences: a plain walk saw %lu records, Size() is %lu\n",
                 static_cast<unsigned long>(walked), static_cast<unsigned long>(size));
    std::abort();
  }

  void SwitchEvents() {
    const VARIANT_BOOL flag = in_.Pick(2) == 0 ? VARIANT_TRUE : VARIANT_FALSE;
    switch (in_.Pick(3)) {
      case 0: if (list_) Done(list_->EnableMutableRecordListEvents(flag)); break;
      case 1: Done(columns_->EnableMutableColumnsEvents(flag)); break;
      case 2: if (IMutableRecord* record = PickFrom(in_, records_)) Done(record->EnableMutableRecordEvents(flag)); break;
    }
  }

  // Lets go of the client's reference; for the list, its last one.
  void Drop() {
    switch (in_.Pick(4)) {
      case 0: DropOne(in_, records_); break;
      case 1: DropOne(in_, iterators_); break;
      case 2:
        if (!grouped_held_.empty()) {
          const std::size_t pick = in_.Pick(grouped_held_.size());
          grouped_.Release(grouped_held_[pick].get());
          grouped_held_.erase(grouped_held_.begin() + static_cast<std::ptrdiff_t>(pick));
        }
        break;
      case 3: list_.reset(); break;
    }
  }

  void Group() {
    if (!list_ || grouped_held_.size() >= 3) return;
    if (in_.Pick(2) == 0) {
      if (const auto grouped = grouped_.Group(utils_.get(), list_.get())) grouped_held_.push_back(identity_of(grouped.get()));
    } else {
      com_ptr<IRecordList> view;
      Done(list_->get_RecordList(view.put()));
      if (const auto grouped = grouped_.Group(utils_.get(), view.get())) grouped_held_.push_back(identity_of(grouped.get()));
    }
    StopIfAborted();
  }

  ByteReader& in_;
  int depth_ = 0;
  int insideColumnRemove_ = 0;
  int insideOrdering_ = 0;
  unsigned nextColumn_ = 0;
  // Released last: each grouped list leaves its source's registries then.
  GroupedLists grouped_;
  com_ptr<IMutableColumns> columns_;
  com_ptr<IMutableRecordList> list_;
  com_ptr<IRecordListUtils> utils_;
  std::vector<com_ptr<IMutableRecord>> records_;
  std::vector<com_ptr<IRecordListIterator>> iterators_;
  std::vector<com_ptr<IUnknown>> grouped_held_;
  std::vector<com_ptr<CComObject<Actor>>> actors_;
  std::vector<com_ptr<ScriptActor>> scripts_;
};

}  // namespace
}  // namespace brevo::fuzz

BREVO_FUZZ_TARGET(brevo::fuzz::SequenceSession, "call_sequences")
