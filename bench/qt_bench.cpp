// Qt's item model: QStandardItemModel with its change signals, and
// QSortFilterProxyModel for the filter, the sort and the column-group view,
// driven by the same condition and comparator logic as the library.
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QtGlobal>
#include <map>

#include "bench/workload.h"

namespace bench {
namespace {

struct Table {
  QStandardItemModel model;
};

const std::vector<QString>& TextsOf(std::size_t rows, int column) {
  static std::map<std::size_t, std::vector<QString>> made[2];
  std::vector<QString>& texts = made[column][rows];
  if (texts.empty()) {
    for (const std::string& text : DatasetOf(rows).texts[column]) texts.push_back(QString::fromStdString(text));
  }
  return texts;
}

void Build(QStandardItemModel& model, std::size_t rows) {
  const Dataset& data = DatasetOf(rows);
  const std::vector<QString>* texts[] = {&TextsOf(rows, 0), &TextsOf(rows, 1)};
  model.setColumnCount(kColumns);
  QStringList names;
  for (const ColumnDef& column : kColumnDefs) names.push_back(column.name);
  model.setHorizontalHeaderLabels(names);
  for (std::size_t i = 0; i < rows; ++i) {
    const int row = model.rowCount();
    model.insertRow(row);
    model.setData(model.index(row, 0), QVariant(data.ints[0][i]));
    model.setData(model.index(row, 1), QVariant(data.ints[1][i]));
    model.setData(model.index(row, 2), QVariant(data.ints[2][i]));
    model.setData(model.index(row, 3), QVariant(data.reals[0][i]));
    model.setData(model.index(row, 4), QVariant(data.reals[1][i]));
    model.setData(model.index(row, 5), QVariant((*texts[0])[i]));
    model.setData(model.index(row, 6), QVariant((*texts[1])[i]));
    model.setData(model.index(row, 7), QVariant(bool(data.flags[i])));
  }
}

Table& CachedTable(std::size_t rows) {
  return TableOf<Table>("qt", rows, [&] {
    auto table = std::make_shared<Table>();
    Build(table->model, rows);
    return table;
  });
}

void ReadCell(const QVariant& value, int column, Checksum& sum) {
  switch (kColumnDefs[column].kind) {
    case Kind::Integer: sum.AddInt(value.toInt()); break;
    case Kind::Real: sum.AddReal(value.toDouble()); break;
    case Kind::Text: {
      const QString text = value.toString();
      sum.AddText(reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size()));
      break;
    }
    case Kind::Boolean: sum.AddBool(value.toBool()); break;
  }
}

void ReadAll(const QAbstractItemModel& model, Checksum& sum) {
  const int rows = model.rowCount();
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < kColumns; ++c) ReadCell(model.data(model.index(r, c)), c, sum);
  }
}

int IntAt(const QAbstractItemModel& model, int row, int column) { return model.data(model.index(row, column)).toInt(); }

class EverySecondProxy : public QSortFilterProxyModel {
 public:
  mutable KeepsEverySecond logic;

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override {
    return logic.Keep(sourceModel()->data(sourceModel()->index(row, kIdColumn, parent)).toInt());
  }
};

class ByKeyProxy : public QSortFilterProxyModel {
 public:
  mutable ByKey logic;

 protected:
  bool lessThan(const QModelIndex& left, const QModelIndex& right) const override {
    return logic.Compare(sourceModel()->data(left).toInt(), sourceModel()->data(right).toInt()) > 0;
  }
};

// The columns whose header carries the group key.
class GroupProxy : public QSortFilterProxyModel {
 protected:
  bool filterAcceptsColumn(int column, const QModelIndex&) const override {
    return sourceModel()->headerData(column, Qt::Horizontal).toString().startsWith(QLatin1String(kGroup) + '.');
  }
};

void BuildWorkload(Runner& run, bool listened) {
  DropTable();
  const std::size_t rows = run.rows();
  TextsOf(rows, 0), TextsOf(rows, 1), DatasetOf(rows);
  std::uint64_t notifications = 0;
  run.RunBuild<Table>(
      [&](Table& table) {
        if (listened) QObject::connect(&table.model, &QAbstractItemModel::dataChanged, [&] { ++notifications; });
        Build(table.model, rows);
      },
      [](Table& table) {
        Checksum sum;
        ReadAll(table.model, sum);
        return sum;
      },
      listened ? &notifications : nullptr);
}

void BuildPlain(Runner& run) { BuildWorkload(run, false); }
void BuildListened(Runner& run) { BuildWorkload(run, true); }

void Read(Runner& run) {
  const Table& table = CachedTable(run.rows());
  run.RunSummed([&](Checksum& sum) {
    ReadAll(table.model, sum);
  });
}

void Walk(Runner& run) {
  const Table& table = CachedTable(run.rows());
  run.RunSummed([&](Checksum& sum) {
    const int rows = table.model.rowCount();
    for (int r = 0; r < rows; ++r) sum.AddInt(IntAt(table.model, r, kIdColumn));
  });
}

// Each pass reads a fresh proxy over the cached table, as a client would; the
// proxy goes after the timed part, once `done` has seen it.
template <class Proxy, class Read, class Done>
void RunOverProxy(Runner& run, Read&& read, Done&& done) {
  Table& table = CachedTable(run.rows());
  Checksum sum;
  std::unique_ptr<Proxy> proxy;
  run.Run(
      [&] {
        sum = Checksum();
        proxy = std::make_unique<Proxy>();
        proxy->setSourceModel(&table.model);
        read(*proxy, sum);
      },
      [&](std::int64_t) {
        done(*proxy);
        proxy.reset();
      });
  run.SetChecksum(sum);
}

void Filter(Runner& run) {
  RunOverProxy<EverySecondProxy>(
      run,
      [](EverySecondProxy& proxy, Checksum& sum) {
        const int rows = proxy.rowCount();
        for (int r = 0; r < rows; ++r) sum.AddInt(IntAt(proxy, r, kIdColumn));
      },
      [](EverySecondProxy&) {});
}

void Sort(Runner& run) {
  std::uint64_t compares = 0;
  std::int64_t passes = 0;
  RunOverProxy<ByKeyProxy>(
      run,
      [](ByKeyProxy& proxy, Checksum& sum) {
        proxy.sort(kKeyColumn, Qt::AscendingOrder);
        const int rows = proxy.rowCount();
        for (int r = 0; r < rows; ++r) {
          sum.AddInt(IntAt(proxy, r, kKeyColumn));
          sum.AddUnordered(IntAt(proxy, r, kIdColumn));
        }
      },
      [&](ByKeyProxy& proxy) {
        compares += proxy.logic.calls;
        ++passes;
      });
  run.SetCounter("compares_per_row", static_cast<double>(compares) / static_cast<double>(passes * run.rows()));
}

void Grouped(Runner& run) {
  RunOverProxy<GroupProxy>(
      run, [](GroupProxy& proxy, Checksum& sum) { ReadAll(proxy, sum); }, [](GroupProxy&) {});
}

const char* Version() { return qVersion(); }

}  // namespace

const Implementation kQt = {"qt", &Version, {&BuildPlain, &BuildListened, &Read, &Walk, &Filter, &Sort, &Grouped, nullptr}};

}  // namespace bench
