#include "Tarn/DataStructures/KeyTable.h"

#include <memory>

#include "bench/Bench.h"
#include "bench/Texts.h"

#if WITH_BOOST
#include <boost/bimap.hpp>
#include <boost/bimap/unordered_set_of.hpp>
#endif

namespace {

using Tarn::DataStructures::KeyTable;
using Tarn::DataStructures::KeyTableEntry;

// Entries in the order in which they are registered, and in another in which they are looked up.
struct Entries {
  std::vector<KeyTableEntry> registered;
  std::vector<KeyTableEntry> lookedUp;
};

Entries entriesOf(std::size_t count) {
  Entries entries;
  for (std::size_t i = 0; i < count; ++i)
    entries.registered.push_back({i * 7, "Tower/level 3/scan " + std::to_string(i)});
  for (const std::uint64_t at : bench::shuffled(count)) entries.lookedUp.push_back(entries.registered[at]);
  return entries;
}

struct Ours {
  KeyTable table;
  void add(std::uint64_t token, const std::string& key) { table.addEntry(token, key); }
  [[nodiscard]] std::uint64_t toToken(const std::string& key) const { return table.keyToToken(key); }
  [[nodiscard]] std::optional<std::string> toKey(std::uint64_t token) const { return table.tokenToKey(token); }
};

struct ByHand {
  std::unordered_map<std::string, std::uint64_t> tokens;
  std::unordered_map<std::uint64_t, std::string> keys;
  void add(std::uint64_t token, const std::string& key) {
    if (keys.try_emplace(token, key).second) tokens.try_emplace(key, token);
  }
  [[nodiscard]] std::uint64_t toToken(const std::string& key) const {
    const auto found = tokens.find(key);
    return found != tokens.end() ? found->second : ~std::uint64_t{0};
  }
  [[nodiscard]] std::optional<std::string> toKey(std::uint64_t token) const {
    const auto found = keys.find(token);
    return found != keys.end() ? std::optional(found->second) : std::nullopt;
  }
};

#if WITH_BOOST
struct Bimap {
  boost::bimap<boost::bimaps::unordered_set_of<std::uint64_t>, boost::bimaps::unordered_set_of<std::string>> table;
  void add(std::uint64_t token, const std::string& key) { table.insert({token, key}); }
  [[nodiscard]] std::uint64_t toToken(const std::string& key) const {
    const auto found = table.right.find(key);
    return found != table.right.end() ? found->second : ~std::uint64_t{0};
  }
  [[nodiscard]] std::optional<std::string> toKey(std::uint64_t token) const {
    const auto found = table.left.find(token);
    return found != table.left.end() ? std::optional(found->second) : std::nullopt;
  }
};
#endif

template <class Table>
std::shared_ptr<Table> filled(const Entries& entries) {
  auto table = std::make_shared<Table>();
  for (const auto& [token, key] : entries.registered) table->add(token, key);
  return table;
}

template <class Table>
auto toToken(const Entries& entries) {
  return [table = filled<Table>(entries), next = bench::Cycle(entries.lookedUp)]() mutable {
    return table->toToken(next().key);
  };
}

template <class Table>
auto toKey(const Entries& entries) {
  return [table = filled<Table>(entries), next = bench::Cycle(entries.lookedUp)]() mutable {
    return table->toKey(next().token);
  };
}

template <class Table>
std::uint64_t build(const Entries& entries) {
  return filled<Table>(entries)->toToken(entries.lookedUp.front().key);
}

}  // namespace

void bench::registerCases() {
  const Sizes sizes = {1000, 100000, 1000000, 10000000};
  auto tokens = compare("KeyTable::keyToToken", sizes, entriesOf, toToken<Ours>);
  auto keys = compare("KeyTable::tokenToKey", sizes, entriesOf, toKey<Ours>);
  auto inserts = compare("KeyTable filled", sizes, entriesOf, build<Ours>);
  tokens.limit("two std::unordered_map", toToken<ByHand>);
  keys.limit("two std::unordered_map", toKey<ByHand>);
  inserts.limit("two std::unordered_map", build<ByHand>);
#if WITH_BOOST
  tokens.peer("boost::bimap", toToken<Bimap>);
  keys.peer("boost::bimap", toKey<Bimap>);
  inserts.peer("boost::bimap", build<Bimap>);
#endif
}
