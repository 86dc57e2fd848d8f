#include "Tarn/DataStructures/UuidKeyTable.h"

#include <memory>

#include "bench/Bench.h"
#include "bench/Texts.h"

#if WITH_BOOST
#include <boost/bimap.hpp>
#endif

namespace {

using Tarn::DataStructures::UuidKeyTable;
using Tarn::uuids::uuid;
using Ids = std::vector<uuid>;

Ids someIds(std::size_t count) { return bench::idsOf<uuid>(bench::randomBytes(count)); }

struct Ours {
  UuidKeyTable table;
  void add(std::uint64_t token, const uuid& id) { table.addEntry(token, id); }
  [[nodiscard]] std::uint64_t toToken(const uuid& id) const { return table.keyToToken(id); }
};

struct ByHand {
  std::map<uuid, std::uint64_t> tokens;
  std::map<std::uint64_t, uuid> ids;
  void add(std::uint64_t token, const uuid& id) {
    if (ids.try_emplace(token, id).second) tokens.try_emplace(id, token);
  }
  [[nodiscard]] std::uint64_t toToken(const uuid& id) const { return tokens.find(id)->second; }
};

#if WITH_BOOST
struct Bimap {
  boost::bimap<std::uint64_t, uuid> table;
  void add(std::uint64_t token, const uuid& id) { table.insert({token, id}); }
  [[nodiscard]] std::uint64_t toToken(const uuid& id) const { return table.right.find(id)->second; }
};
#endif

template <class Table>
std::shared_ptr<Table> filled(const Ids& ids) {
  auto table = std::make_shared<Table>();
  for (std::size_t i = 0; i < ids.size(); ++i) table->add(i, ids[i]);
  return table;
}

template <class Table>
auto toToken(const Ids& ids) {
  return [table = filled<Table>(ids), next = bench::Cycle(ids)]() mutable { return table->toToken(next()); };
}

template <class Table>
std::uint64_t build(const Ids& ids) {
  return filled<Table>(ids)->toToken(ids.back());
}

// Visits all positions one after the other.
auto walk(const Ids& ids) {
  return [table = filled<Ours>(ids), count = ids.size()] {
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < count; ++i) sum += table->table.getToken(i) + table->table.getKey(i)->hash();
    return sum;
  };
}

auto iterate(const Ids& ids) {
  return [table = filled<ByHand>(ids)] {
    std::uint64_t sum = 0;
    for (const auto& [token, id] : table->ids) sum += token + id.hash();
    return sum;
  };
}

}  // namespace

void bench::registerCases() {
  compare("UuidKeyTable, all positions", {1000, 10000, 100000}, someIds, walk).limit("std::map iterated", iterate);
  const Sizes sizes = {1000, 100000, 1000000};
  auto tokens = compare("UuidKeyTable::keyToToken", sizes, someIds, toToken<Ours>);
  auto inserts = compare("UuidKeyTable filled", sizes, someIds, build<Ours>);
  tokens.limit("two std::map", toToken<ByHand>);
  inserts.limit("two std::map", build<ByHand>);
#if WITH_BOOST
  tokens.peer("boost::bimap", toToken<Bimap>);
  inserts.peer("boost::bimap", build<Bimap>);
#endif
}
