#include "bench/Tables.h"

namespace {

using Entries = bench::Entries<Tarn::uuids::uuid>;

// Visits all positions one after the other.
auto byPosition(const Entries& entries) {
  return [filled = bench::filled<bench::UuidTables::Ours>(entries), count = entries.registered.size()] {
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < count; ++i) sum += filled->table.getToken(i) + filled->table.getKey(i)->hash();
    return sum;
  };
}

template <class Table>
auto byIterator(const Entries& entries) {
  return [filled = bench::filled<Table>(entries)] {
    std::uint64_t sum = 0;
    for (const auto& [token, id] : filled->keys) sum += token + id.hash();
    return sum;
  };
}

}  // namespace

void bench::registerCases() {
  auto positions = compare("UuidKeyTable, all positions", {1000, 10000, 100000}, entriesOf<UuidTables>, byPosition);
  positions.peer("std::map iterated", byIterator<UuidTables::Std>);
  positions.peer("absl::btree_map iterated", byIterator<UuidTables::Absl>);
  registerTables<UuidTables>({1000, 100000, 1000000});
}
