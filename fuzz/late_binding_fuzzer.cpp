// Late binding: IDispatch::Invoke with any member id, flags, argument count,
// named arguments and argument kinds, through every dual interface of a live
// object graph. Objects that come back as results (and events heard by a
// listener in the graph) join the graph and become targets and arguments.
#include <vector>

#include "columns/mutable_columns.h"
#include "factory/record_list_utils.h"
#include "factory/records_factory.h"
#include "fuzz/support/fuzz_values.h"
#include "fuzz/support/grouped_lists.h"
#include "fuzz/support/listener_sweep.h"
#include "fuzz/support/one_input.h"
#include "fuzz/support/reentrant_actors.h"
#include "lists/mutable_record_list.h"

namespace brevo::fuzz {
namespace {

constexpr std::size_t kGraphLimit = 64;

// The dual interfaces a graph object may be called through.
using Face = com_ptr<IDispatch> (*)(IUnknown*);
template <class I>
com_ptr<IDispatch> FaceOf(IUnknown* object) {
  const com_ptr<I> face = com_ptr<IUnknown>(object).try_query<I>();
  return com_ptr<IDispatch>(face.get());
}
constexpr Face kFaces[] = {
    FaceOf<IDispatch>,          FaceOf<IColumn>,          FaceOf<IMutableColumn>,
    FaceOf<IColumns>,           FaceOf<IMutableColumns>,  FaceOf<IRecord>,
    FaceOf<IMutableRecord>,     FaceOf<IRecordList>,      FaceOf<IMutableRecordList>,
    FaceOf<IRecordListIterator>, FaceOf<IRecordListUtils>, FaceOf<IRecordsFactory>,
    FaceOf<IRecordChangeEvent>, FaceOf<IColumnsChangeEvent>, FaceOf<IRecordListChangeEvent>,
    FaceOf<IRecordListValueChangeEvent>, FaceOf<IPropertyChangeEvent>, FaceOf<IRecordChangeListener>,
    FaceOf<IColumnsChangeListener>, FaceOf<IRecordListChangeListener>, FaceOf<IRecordListValueChangeListener>,
    FaceOf<IPropertyChangeListener>, FaceOf<IRecordCondition>, FaceOf<IRecordComparator>,
};

constexpr DISPID kSpecialIds[] = {DISPID_UNKNOWN, DISPID_VALUE, DISPID_PROPERTYPUT, -4, -5, -8};  // -4: the enumerator
constexpr WORD kFlags[] = {DISPATCH_METHOD, DISPATCH_PROPERTYGET, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                           DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF, DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF};

// The error object a failed call fills in, freed with the call.
struct Exception : EXCEPINFO {
  Exception() : EXCEPINFO{} {}
  ~Exception() {
    SysFreeString(bstrSource);
    SysFreeString(bstrDescription);
    SysFreeString(bstrHelpFile);
  }
};

// The graph's listener (and condition, and comparator) hands every event and
// record it is given to the graph.
class LateBindingSession final : public Stage {
 public:
  explicit LateBindingSession(ByteReader& in) : in_(in), values_(in) {
    catcher_ = make_object<Actor>(this);
    const com_ptr<IMutableColumns> columns(make_object<MutableColumns>().get());
    for (const OLECHAR* name : {OLESTR("g.a"), OLESTR("g.b"), OLESTR("g.c")}) {
      com_ptr<IMutableColumn> column;
      Done(columns->AddColumn(_bstr_t(name).GetBSTR(), 10 - in_.Pick(10), column.put()));
      Join(column.get());
    }
    const com_ptr<IMutableRecordList> list(make_object<MutableRecordList>().get());
    Done(list->Create(columns.get()));
    for (std::size_t n = in_.Pick(4); n > 0; --n) {
      com_ptr<IMutableRecord> record;
      Done(list->AddRecord(record.put()));
      Join(record.get());
    }
    com_ptr<IRecordList> view;
    Done(list->get_RecordList(view.put()));
    Join(columns.get());
    Join(list.get());
    Join(view.get());
    Join(static_cast<IRecordCondition*>(catcher_.get()));
    Done(list->AddRecordListChangeListener(catcher_.get()));
    Done(list->AddRecordListValueChangeListener(catcher_.get()));
    Done(columns->AddColumnsChangeListener(catcher_.get()));

    // Every column's name is in group "g", so both groupings succeed.
    const auto utils = make_object<RecordListUtils>();
    Join(static_cast<IRecordListUtils*>(utils.get()));
    Join(static_cast<IRecordsFactory*>(make_object<RecordsFactory>().get()));
    Join(grouped_.Group(utils.get(), list.get()).get());
    Join(grouped_.Group(utils.get(), view.get()).get());
    for (const VARIANT_BOOL synchronized : {VARIANT_TRUE, VARIANT_FALSE}) {
      com_ptr<IRecordListIterator> it;
      Done(list->GetIterator(synchronized, it.put()));
      Join(it.get());
    }
    groupingIds_ = GroupingIds(utils.get());
  }

  ~LateBindingSession() {
    catcher_->stage = nullptr;
    // Registrations and cell values the input made may tie graph objects in a
    // cycle; undo them before letting go.
    sweep_.RemoveAll(values_.Handed());
    // A list keeps its last condition and comparator, which may be a graph
    // object (even the list itself): the catcher takes their place.
    Quietly([&] {
      for (const com_ptr<IUnknown>& object : graph_) {
        com_ptr<IRecordListIterator> it;
        if (const auto list = object.try_query<IMutableRecordList>()) {
          list->GetSortedIterator(catcher_.get(), VARIANT_FALSE, it.put());
          list->GetFilteredIterator(catcher_.get(), VARIANT_FALSE, it.put());
        } else if (const auto view = object.try_query<IRecordList>()) {
          view->GetSortedIterator(catcher_.get(), VARIANT_FALSE, it.put());
          view->GetFilteredIterator(catcher_.get(), VARIANT_FALSE, it.put());
        }
      }
    });
    Quietly([&] {
      for (const com_ptr<IUnknown>& object : graph_)
        if (const auto record = object.try_query<IMutableRecord>()) record->Clear();
    });
  }

  Reply React(Cue, IUnknown* subject) override {
    if (subject != nullptr) heard_.push_back(identity_of(subject));
    return {};
  }

  void Run() {
    while (!in_.empty()) {
      Step();
      for (std::size_t i = 0; i < heard_.size(); ++i) Join(heard_[i].get());
      heard_.clear();
    }
  }

 private:
  static void Done(HRESULT) { StopIfAborted(); }

  void Join(IUnknown* object) {
    if (object == nullptr) return;
    const com_ptr<IUnknown> identity = identity_of(object);
    for (const com_ptr<IUnknown>& known : graph_)
      if (known == identity) return;
    if (graph_.size() >= kGraphLimit) return;
    graph_.push_back(identity);
    values_.Offer(identity.get());
  }

  void Step() {
    const com_ptr<IUnknown> target = graph_[in_.Pick(graph_.size())];
    const com_ptr<IDispatch> face = kFaces[in_.Pick(std::size(kFaces))](target.get());
    if (!face) return;
    switch (in_.Pick(8)) {
      case 0: Names(face.get()); break;
      case 1: TypeInfo(face.get()); break;
      default: Invoke(target.get(), face.get()); break;
    }
  }

  void Invoke(IUnknown* target, IDispatch* face) {
    const std::uint8_t pick = in_.Byte();
    const DISPID id = pick < 0xE0 ? pick % 40
                      : pick < 0xF0 ? kSpecialIds[pick % std::size(kSpecialIds)]
                                     : in_.Number<DISPID>();
    // A grouping that fails its group check is kept alive for good by
    // contract; only the harness makes groupings, with groups that exist.
    if (com_ptr<IUnknown>(target).try_query<IRecordListUtils>() &&
        (id == groupingIds_[0] || id == groupingIds_[1]))
      return;
    const std::uint8_t flagPick = in_.Byte();
    const WORD flags = flagPick < 0xF0 ? kFlags[flagPick % std::size(kFlags)] : flagPick & 0x0F;

    std::vector<unique_variant> args(in_.Pick(2) == 0 ? in_.Pick(9) : in_.Pick(4));
    for (unique_variant& arg : args) arg = values_.Value();
    std::vector<DISPID> named(in_.Pick(args.size() + 1));
    for (DISPID& name : named) name = in_.Pick(2) == 0 ? DISPID_PROPERTYPUT : static_cast<DISPID>(in_.Pick(5));
    // Arguments go in reverse order; the array is only read by the callee.
    std::vector<VARIANTARG> reversed;
    for (auto it = args.rbegin(); it != args.rend(); ++it) reversed.push_back(it->get());
    DISPPARAMS params{reversed.data(), named.data(), static_cast<UINT>(args.size()), static_cast<UINT>(named.size())};

    const std::uint8_t outs = in_.Byte();
    unique_variant result;
    Exception error;
    UINT argErr = 0;
    const GUID none{};
    sweep_.Called(target);
    face->Invoke(id, none, 0, flags, &params, outs & 1 ? nullptr : result.put(), outs & 2 ? nullptr : &error,
                 outs & 4 ? nullptr : &argErr);
    StopIfAborted();
    if ((result.vt() == VT_DISPATCH || result.vt() == VT_UNKNOWN) && result->punkVal != nullptr)
      Join(result->punkVal);
  }

  void Names(IDispatch* face) {
    std::vector<_bstr_t> texts(1 + in_.Pick(3));
    // A name is a C string: never null (the library reads it unchecked, as the
    // runtime's own lookup does).
    for (_bstr_t& text : texts) {
      text = values_.Text();
      if (text.is_null()) text = _bstr_t(OLESTR(""));
    }
    std::vector<LPOLESTR> names;
    for (_bstr_t& text : texts) names.push_back(text.GetBSTR());
    std::vector<DISPID> ids(names.size());
    const GUID none{};
    Done(face->GetIDsOfNames(none, names.data(), static_cast<UINT>(names.size()), 0, ids.data()));
  }

  void TypeInfo(IDispatch* face) {
    UINT count = 0;
    Done(face->GetTypeInfoCount(&count));
    com_ptr<ITypeInfo> info;
    Done(face->GetTypeInfo(in_.Byte(), 0, info.put()));
  }

  // The member ids of the two grouping calls.
  static std::vector<DISPID> GroupingIds(IRecordListUtils* utils) {
    std::vector<DISPID> ids;
    for (const OLECHAR* name : {OLESTR("GetRecordListByGroup"), OLESTR("GetMutableRecordListByGroup")}) {
      DISPID id = DISPID_UNKNOWN;
      LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
      const GUID none{};
      utils->GetIDsOfNames(none, names, 1, 0, &id);
      ids.push_back(id);
    }
    return ids;
  }

  ByteReader& in_;
  ValueMaker values_;
  com_ptr<CComObject<Actor>> catcher_;
  std::vector<com_ptr<IUnknown>> heard_;
  std::vector<DISPID> groupingIds_;
  // Released after the graph; each keeps what it has to undo.
  GroupedLists grouped_;
  ListenerSweep sweep_;
  std::vector<com_ptr<IUnknown>> graph_;
};

}  // namespace
}  // namespace brevo::fuzz

BREVO_FUZZ_TARGET(brevo::fuzz::LateBindingSession, "late_binding")
