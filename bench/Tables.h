// The key tables, the same by hand and as a bimap, behind the same calls, so that each benchmark is written once.
#ifndef BENCH_TABLES_H_
#define BENCH_TABLES_H_

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "Tarn/DataStructures/KeyTable.h"
#include "Tarn/DataStructures/UuidKeyTable.h"
#include "bench/Bench.h"
#include "bench/Texts.h"

#if WITH_BOOST
#include <boost/bimap.hpp>
#include <boost/bimap/unordered_set_of.hpp>
#endif

namespace bench {

template <class Table, class Key>
struct Ours {
  Table table;
  void add(std::uint64_t token, const Key& key) { table.addEntry(token, key); }
  [[nodiscard]] std::uint64_t toToken(const Key& key) const { return table.keyToToken(key); }
  [[nodiscard]] std::optional<Key> toKey(std::uint64_t token) const { return table.tokenToKey(token); }
};

template <class Tokens, class Keys>
struct ByHand {
  using Key = typename Keys::mapped_type;
  Tokens tokens;
  Keys keys;
  void add(std::uint64_t token, const Key& key) {
    if (keys.try_emplace(token, key).second) tokens.try_emplace(key, token);
  }
  [[nodiscard]] std::uint64_t toToken(const Key& key) const {
    const auto found = tokens.find(key);
    return found != tokens.end() ? found->second : ~std::uint64_t{0};
  }
  [[nodiscard]] std::optional<Key> toKey(std::uint64_t token) const {
    const auto found = keys.find(token);
    return found != keys.end() ? std::optional(found->second) : std::nullopt;
  }
};

#if WITH_BOOST
template <class Tokens, class Keys, class Key>
struct Bimap {
  boost::bimap<Tokens, Keys> table;
  void add(std::uint64_t token, const Key& key) { table.insert({token, key}); }
  [[nodiscard]] std::uint64_t toToken(const Key& key) const {
    const auto found = table.right.find(key);
    return found != table.right.end() ? found->second : ~std::uint64_t{0};
  }
  [[nodiscard]] std::optional<Key> toKey(std::uint64_t token) const {
    const auto found = table.left.find(token);
    return found != table.left.end() ? std::optional(found->second) : std::nullopt;
  }
};
#endif

// The three kinds of table for string keys, and for uuids.
struct StringTables {
  static constexpr const char* kName = "KeyTable";
  static constexpr const char* kByHand = "two std::unordered_map";
  using Key = std::string;
  using Ours = bench::Ours<Tarn::DataStructures::KeyTable, Key>;
  using ByHand = bench::ByHand<std::unordered_map<Key, std::uint64_t>, std::unordered_map<std::uint64_t, Key>>;
#if WITH_BOOST
  using Bimap = bench::Bimap<boost::bimaps::unordered_set_of<std::uint64_t>, boost::bimaps::unordered_set_of<Key>, Key>;
#endif
  static std::vector<Key> keys(std::size_t count) {
    std::vector<Key> keys;
    for (std::size_t i = 0; i < count; ++i) keys.push_back("Tower/level 3/scan " + std::to_string(i));
    return keys;
  }
};

struct UuidTables {
  static constexpr const char* kName = "UuidKeyTable";
  static constexpr const char* kByHand = "two std::map";
  using Key = Tarn::uuids::uuid;
  using Ours = bench::Ours<Tarn::DataStructures::UuidKeyTable, Key>;
  using ByHand = bench::ByHand<std::map<Key, std::uint64_t>, std::map<std::uint64_t, Key>>;
#if WITH_BOOST
  using Bimap = bench::Bimap<std::uint64_t, Key, Key>;
#endif
  static std::vector<Key> keys(std::size_t count) { return idsOf<Key>(randomBytes(count)); }
};

// Keys with their tokens, in the order in which they are registered, and in another in which they are looked up.
template <class Key>
struct Entries {
  struct Entry {
    std::uint64_t token;
    Key key;
  };
  explicit Entries(const std::vector<Key>& keys) {
    for (const Key& key : keys) registered.push_back({registered.size() * 7, key});
    lookedUp = lookUps(registered);
  }
  std::vector<Entry> registered;
  std::vector<Entry> lookedUp;
};

template <class Table, class Key>
std::shared_ptr<Table> filled(const Entries<Key>& entries) {
  auto table = std::make_shared<Table>();
  for (const auto& [token, key] : entries.registered) table->add(token, key);
  return table;
}

template <class Table, class Key>
auto toToken(const Entries<Key>& entries) {
  return
      [table = filled<Table>(entries), next = Cycle(entries.lookedUp)]() mutable { return table->toToken(next().key); };
}

template <class Table, class Key>
auto toKey(const Entries<Key>& entries) {
  return
      [table = filled<Table>(entries), next = Cycle(entries.lookedUp)]() mutable { return table->toKey(next().token); };
}

// Fills a table and drops it again.
template <class Table, class Key>
std::uint64_t fill(const Entries<Key>& entries) {
  return filled<Table>(entries)->toToken(entries.lookedUp.front().key);
}

template <class Tables>
Entries<typename Tables::Key> entriesOf(std::size_t count) {
  return Entries(Tables::keys(count));
}

template <class Tables>
void registerTables(const Sizes& sizes) {
  using Key = typename Tables::Key;
  using Ours = typename Tables::Ours;
  using ByHand = typename Tables::ByHand;
  const std::string name = Tables::kName;
  auto tokens = compare(name + "::keyToToken", sizes, entriesOf<Tables>, toToken<Ours, Key>);
  auto keys = compare(name + "::tokenToKey", sizes, entriesOf<Tables>, toKey<Ours, Key>);
  auto filling = compare(name + " filled", sizes, entriesOf<Tables>, fill<Ours, Key>);
  tokens.limit(Tables::kByHand, toToken<ByHand, Key>);
  keys.limit(Tables::kByHand, toKey<ByHand, Key>);
  filling.limit(Tables::kByHand, fill<ByHand, Key>);
#if WITH_BOOST
  using Bimap = typename Tables::Bimap;
  tokens.peer("boost::bimap", toToken<Bimap, Key>);
  keys.peer("boost::bimap", toKey<Bimap, Key>);
  filling.peer("boost::bimap", fill<Bimap, Key>);
#endif
}

}  // namespace bench

#endif  // BENCH_TABLES_H_
