#include "bench/workload.h"

#include <cstdio>
#include <cstring>
#include <map>
#include <tuple>

namespace bench {

const ColumnDef kColumnDefs[kColumns] = {
    {"Group.Id", Kind::Integer},     {"Group.Key", Kind::Integer},  {"Group.Offset", Kind::Integer},
    {"Group.Price", Kind::Real},     {"Group.Ratio", Kind::Real},   {"Group.Name", Kind::Text},
    {"Group.Category", Kind::Text},  {"Group.Flag", Kind::Boolean},
};

const Dataset& DatasetOf(std::size_t rows) {
  static std::map<std::size_t, Dataset> made;
  Dataset& data = made[rows];
  if (data.rows == rows) return data;
  data.rows = rows;
  for (std::size_t i = 0; i < rows; ++i) {
    data.ints[0].push_back(static_cast<std::int32_t>(i));
    data.ints[1].push_back(static_cast<std::int32_t>(static_cast<std::uint32_t>(i * 2654435761u) % rows));
    data.ints[2].push_back(static_cast<std::int32_t>(i % 1000) - 500);
    data.reals[0].push_back(static_cast<double>(i) * 0.25);
    data.reals[1].push_back(static_cast<double>(i % 7919) / 3.0);
    data.texts[0].push_back("name-" + std::to_string(i));
    data.texts[1].push_back("category-" + std::to_string(i % 16));
    data.flags.push_back(i % 3 == 0);
  }
  return data;
}

const char* NameOf(Workload workload) {
  switch (workload) {
    case Workload::Build: return "build";
    case Workload::BuildListened: return "build_listened";
    case Workload::Read: return "read";
    case Workload::Walk: return "walk";
    case Workload::Filter: return "filter";
    case Workload::Sort: return "sort";
    case Workload::Grouped: return "grouped";
    case Workload::LateBound: return "late_bound";
  }
  return "?";
}

void Checksum::AddReal(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  Add(bits);
}

void Checksum::AddText(const char16_t* text, std::size_t length) {
  Add(length);
  for (std::size_t i = 0; i < length; ++i) Add(static_cast<std::uint64_t>(text[i]));
}

void Checksum::AddText(const char* utf8, std::size_t length) {
  Add(length);
  for (std::size_t i = 0; i < length; ++i) Add(static_cast<unsigned char>(utf8[i]));
}

std::uint64_t Checksum::value() const { return (hash_ ^ (unordered_ * 0x9E3779B97F4A7C15ull)) >> 12; }

void Runner::Report() {
  if (iterations_ == 0) return;
  const double rowsRun = static_cast<double>(iterations_) * static_cast<double>(rows_);
  SetCounter("allocs_per_row", static_cast<double>(allocations_) / rowsRun);
  SetCounter("checksum", static_cast<double>(checksum_));  // 52 bits: exact in a double
  RecordChecksum(workload_, rows_, implementation_, checksum_);
}

const std::vector<brevo::_bstr_t>& BstrTextsOf(std::size_t rows, int column) {
  static std::map<std::size_t, std::vector<brevo::_bstr_t>> made[2];
  std::vector<brevo::_bstr_t>& texts = made[column][rows];
  if (texts.empty()) {
    for (const std::string& text : DatasetOf(rows).texts[column]) texts.emplace_back(text.c_str());
  }
  return texts;
}

namespace {

struct CachedSlot {
  std::string implementation;
  std::size_t rows = 0;
  std::shared_ptr<void> table;
};
CachedSlot& Slot() {
  static CachedSlot slot;
  return slot;
}

using ChecksumKey = std::tuple<int, std::size_t>;
std::map<ChecksumKey, std::map<std::string, std::uint64_t>>& Checksums() {
  static std::map<ChecksumKey, std::map<std::string, std::uint64_t>> sums;
  return sums;
}

}  // namespace

void* CachedTable(const char* implementation, std::size_t rows) {
  CachedSlot& slot = Slot();
  if (slot.table && slot.implementation == implementation && slot.rows == rows) return slot.table.get();
  slot.table.reset();
  return nullptr;
}

void KeepTable(const char* implementation, std::size_t rows, std::shared_ptr<void> table) {
  CachedSlot& slot = Slot();
  slot.implementation = implementation;
  slot.rows = rows;
  slot.table = std::move(table);
}

void DropTable() { Slot().table.reset(); }

void RecordChecksum(Workload workload, std::size_t rows, const char* implementation, std::uint64_t value) {
  Checksums()[{static_cast<int>(workload), rows}][implementation] = value;
}

bool ChecksumsAgree() {
  bool agree = true;
  for (const auto& [key, sums] : Checksums()) {
    const std::uint64_t first = sums.begin()->second;
    for (const auto& [implementation, value] : sums) {
      if (value == first) continue;
      agree = false;
      std::fprintf(stderr, "checksum differs: %s/%zu: %s %llx, %s %llx\n",
                   NameOf(static_cast<Workload>(std::get<0>(key))), std::get<1>(key), sums.begin()->first.c_str(),
                   static_cast<unsigned long long>(first), implementation.c_str(),
                   static_cast<unsigned long long>(value));
    }
  }
  return agree;
}

}  // namespace bench
