// SQLite, in memory: one prepared INSERT per row inside one transaction,
// SELECT for reading and walking, WHERE for the filter, ORDER BY for the sort
// and a view of the group's columns. Its own SQL does the deciding, so it has
// no client callbacks to count.
#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/workload.h"

namespace bench {
namespace {

void Check(int rc, sqlite3* db) {
  if (rc != SQLITE_OK && rc != SQLITE_DONE && rc != SQLITE_ROW) {
    std::fprintf(stderr, "sqlite: %s\n", sqlite3_errmsg(db));
    std::abort();
  }
}

std::string Quoted(const char* name) { return std::string("\"") + name + "\""; }
std::string ColumnName(int column) { return Quoted(kColumnDefs[column].name); }

struct Table {
  sqlite3* db = nullptr;
  ~Table() { sqlite3_close(db); }
};

class Statement {
 public:
  Statement(sqlite3* db, const std::string& sql) : db_(db) {
    Check(sqlite3_prepare_v2(db, sql.c_str(), -1, &statement_, nullptr), db);
  }
  ~Statement() { sqlite3_finalize(statement_); }
  bool Step() {
    const int rc = sqlite3_step(statement_);
    Check(rc, db_);
    return rc == SQLITE_ROW;
  }
  sqlite3_stmt* get() const { return statement_; }

 private:
  sqlite3* db_;
  sqlite3_stmt* statement_ = nullptr;
};

void Exec(sqlite3* db, const std::string& sql) { Check(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), db); }

const char* SqlType(Kind kind) {
  switch (kind) {
    case Kind::Integer:
    case Kind::Boolean: return "INTEGER";
    case Kind::Real: return "REAL";
    case Kind::Text: return "TEXT";
  }
  return "";
}

void CountChange(void* count, int, const char*, const char*, sqlite3_int64) {
  ++*static_cast<std::uint64_t*>(count);
}

// With notifications given, an update hook counts the changes (one per row).
void Build(Table& table, std::size_t rows, std::uint64_t* notifications) {
  const Dataset& data = DatasetOf(rows);
  Check(sqlite3_open(":memory:", &table.db), table.db);
  sqlite3* db = table.db;
  if (notifications != nullptr) sqlite3_update_hook(db, &CountChange, notifications);
  std::string columns, select, slots;
  for (int c = 0; c < kColumns; ++c) {
    const char* comma = c == 0 ? "" : ", ";
    columns += comma + ColumnName(c) + " " + SqlType(kColumnDefs[c].kind);
    select += comma + ColumnName(c);
    slots += c == 0 ? "?" : ", ?";
  }
  Exec(db, "CREATE TABLE t (" + columns + ")");
  Exec(db, "CREATE VIEW " + Quoted(kGroup) + " AS SELECT " + select + " FROM t");
  Exec(db, "BEGIN");
  {
    Statement insert(db, "INSERT INTO t VALUES (" + slots + ")");
    sqlite3_stmt* s = insert.get();
    for (std::size_t i = 0; i < rows; ++i) {
      sqlite3_bind_int(s, 1, data.ints[0][i]);
      sqlite3_bind_int(s, 2, data.ints[1][i]);
      sqlite3_bind_int(s, 3, data.ints[2][i]);
      sqlite3_bind_double(s, 4, data.reals[0][i]);
      sqlite3_bind_double(s, 5, data.reals[1][i]);
      const std::string& name = data.texts[0][i];
      const std::string& category = data.texts[1][i];
      sqlite3_bind_text(s, 6, name.data(), static_cast<int>(name.size()), SQLITE_STATIC);
      sqlite3_bind_text(s, 7, category.data(), static_cast<int>(category.size()), SQLITE_STATIC);
      sqlite3_bind_int(s, 8, data.flags[i] ? 1 : 0);
      insert.Step();
      sqlite3_reset(s);
    }
  }
  Exec(db, "COMMIT");
}

Table& CachedTable(std::size_t rows) {
  return TableOf<Table>("sqlite", rows, [&] {
    auto table = std::make_shared<Table>();
    Build(*table, rows, nullptr);
    return table;
  });
}

// Reads every column of every row the query yields (the text as UTF-8, which
// hashes as its UTF-16 does for this ASCII data).
void ReadAll(sqlite3* db, const std::string& sql, Checksum& sum) {
  Statement query(db, sql);
  sqlite3_stmt* s = query.get();
  while (query.Step()) {
    for (int c = 0; c < kColumns; ++c) {
      switch (kColumnDefs[c].kind) {
        case Kind::Integer: sum.AddInt(sqlite3_column_int(s, c)); break;
        case Kind::Real: sum.AddReal(sqlite3_column_double(s, c)); break;
        case Kind::Text: {
          const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(s, c));
          sum.AddText(text, static_cast<std::size_t>(sqlite3_column_bytes(s, c)));
          break;
        }
        case Kind::Boolean: sum.AddBool(sqlite3_column_int(s, c) != 0); break;
      }
    }
  }
}

void BuildWorkload(Runner& run, bool listened) {
  DropTable();
  const std::size_t rows = run.rows();
  DatasetOf(rows);
  std::uint64_t notifications = 0;
  run.RunBuild<Table>([&](Table& table) { Build(table, rows, listened ? &notifications : nullptr); },
                      [](const Table& table) {
                        Checksum sum;
                        ReadAll(table.db, "SELECT * FROM t", sum);
                        return sum;
                      },
                      listened ? &notifications : nullptr);
}

void BuildPlain(Runner& run) { BuildWorkload(run, false); }
void BuildListened(Runner& run) { BuildWorkload(run, true); }

void Read(Runner& run) {
  const Table& table = CachedTable(run.rows());
  run.RunSummed([&](Checksum& sum) {
    ReadAll(table.db, "SELECT * FROM t", sum);
  });
}

void Walk(Runner& run) {
  const Table& table = CachedTable(run.rows());
  run.RunSummed([&](Checksum& sum) {
    Statement query(table.db, "SELECT " + ColumnName(kIdColumn) + " FROM t");
    while (query.Step()) sum.AddInt(sqlite3_column_int(query.get(), 0));
  });
}

void Filter(Runner& run) {
  const Table& table = CachedTable(run.rows());
  run.RunSummed([&](Checksum& sum) {
    const std::string id = ColumnName(kIdColumn);
    Statement query(table.db, "SELECT " + id + " FROM t WHERE " + id + " % 2 = 0");
    while (query.Step()) sum.AddInt(sqlite3_column_int(query.get(), 0));
  });
}

void Sort(Runner& run) {
  const Table& table = CachedTable(run.rows());
  run.RunSummed([&](Checksum& sum) {
    const std::string key = ColumnName(kKeyColumn);
    Statement query(table.db, "SELECT " + key + ", " + ColumnName(kIdColumn) + " FROM t ORDER BY " + key);
    while (query.Step()) {
      sum.AddInt(sqlite3_column_int(query.get(), 0));
      sum.AddUnordered(sqlite3_column_int(query.get(), 1));
    }
  });
}

void Grouped(Runner& run) {
  const Table& table = CachedTable(run.rows());
  run.RunSummed([&](Checksum& sum) {
    ReadAll(table.db, "SELECT * FROM " + Quoted(kGroup), sum);
  });
}

const char* Version() { return sqlite3_libversion(); }

}  // namespace

const Implementation kSqlite = {"sqlite", &Version, {&BuildPlain, &BuildListened, &Read, &Walk, &Filter, &Sort, &Grouped, nullptr}};

}  // namespace bench
