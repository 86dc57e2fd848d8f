// The key tables and the same by hand from the best maps there are, behind the same calls, so that each benchmark is
// written once.
#ifndef BENCH_TABLES_H_
#define BENCH_TABLES_H_

#include <algorithm>
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

#include <absl/container/btree_map.h>
#include <absl/container/flat_hash_map.h>
#include <boost/multi_index/hashed_index.hpp>
#include <boost/multi_index/member.hpp>
#include <boost/multi_index/ranked_index.hpp>
#include <boost/multi_index_container.hpp>

namespace bench {

template <class Table, class Key>
struct Ours {
  Table table;
  bool add(std::uint64_t token, const Key& key) { return table.addEntry(token, key); }
  bool remove(std::uint64_t token, const Key& key) { return table.rmEntry(token, key); }
  [[nodiscard]] std::uint64_t toToken(const Key& key) const { return table.keyToToken(key); }
  [[nodiscard]] std::optional<Key> toKey(std::uint64_t token) const { return table.tokenToKey(token); }
};

// A map for each direction.
template <class Tokens, class Keys>
struct ByHand {
  using Key = typename Keys::mapped_type;
  Tokens tokens;
  Keys keys;
  bool add(std::uint64_t token, const Key& key) {
    if (!keys.try_emplace(token, key).second) return false;
    tokens.try_emplace(key, token);
    return true;
  }
  bool remove(std::uint64_t token, const Key& key) {
    const auto byToken = keys.find(token);
    const auto byKey = tokens.find(key);
    if (byToken == keys.end() || byKey == tokens.end()) return false;
    keys.erase(byToken);
    tokens.erase(byKey);
    return true;
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

// One container that is hashed by key, and ranked by token, so that positions are found in logarithmic time.
template <class Key>
struct MultiIndex {
  struct Pair {
    std::uint64_t token;
    Key key;
  };
  struct Hash {
    std::size_t operator()(const Key& key) const { return std::hash<Key>()(key); }
  };
  using ByKey = boost::multi_index::hashed_unique<boost::multi_index::member<Pair, Key, &Pair::key>, Hash>;
  using ByToken = boost::multi_index::ranked_unique<boost::multi_index::member<Pair, std::uint64_t, &Pair::token>>;
  boost::multi_index_container<Pair, boost::multi_index::indexed_by<ByToken, ByKey>> pairs;
  bool add(std::uint64_t token, const Key& key) { return pairs.insert({token, key}).second; }
  bool remove(std::uint64_t token, const Key&) { return pairs.template get<0>().erase(token) == 1; }
  [[nodiscard]] std::uint64_t toToken(const Key& key) const {
    const auto found = pairs.template get<1>().find(key);
    return found != pairs.template get<1>().end() ? found->token : ~std::uint64_t{0};
  }
  [[nodiscard]] std::optional<Key> toKey(std::uint64_t token) const {
    const auto found = pairs.template get<0>().find(token);
    return found != pairs.template get<0>().end() ? std::optional(found->key) : std::nullopt;
  }
};

// The kinds of table for string keys of a size, and for uuids. Keys from `first` on.
template <std::size_t kSize>
struct StringTables {
  static inline const std::string kName = "KeyTable, " + std::to_string(kSize) + " B";
  using Key = std::string;
  using Ours = bench::Ours<Tarn::DataStructures::KeyTable, Key>;
  using Std = bench::ByHand<std::unordered_map<Key, std::uint64_t>, std::unordered_map<std::uint64_t, Key>>;
  static constexpr const char* kStd = "two std::unordered_map";
  using Absl = bench::ByHand<absl::flat_hash_map<Key, std::uint64_t>, absl::flat_hash_map<std::uint64_t, Key>>;
  static constexpr const char* kAbsl = "two absl::flat_hash_map";
  static std::vector<Key> keys(std::size_t first, std::size_t count) {
    std::vector<Key> keys;
    for (std::size_t i = first; i < first + count; ++i) {
      std::string number = std::to_string(i);
      keys.push_back(std::string(kSize - number.size(), 'x') + number);
    }
    return keys;
  }
};

struct UuidTables {
  static inline const std::string kName = "UuidKeyTable";
  using Key = Tarn::uuids::uuid;
  using Ours = bench::Ours<Tarn::DataStructures::UuidKeyTable, Key>;
  using Std = bench::ByHand<std::map<Key, std::uint64_t>, std::map<std::uint64_t, Key>>;
  static constexpr const char* kStd = "two std::map";
  struct Hash {
    std::size_t operator()(const Key& key) const {
      return absl::HashOf(absl::string_view(reinterpret_cast<const char*>(key.as_bytes().data()), 16));
    }
  };
  using Absl = bench::ByHand<absl::flat_hash_map<Key, std::uint64_t, Hash>, absl::btree_map<std::uint64_t, Key>>;
  static constexpr const char* kAbsl = "absl::flat_hash_map and btree_map";
  using AbslHash =
      bench::ByHand<absl::flat_hash_map<Key, std::uint64_t, Hash>, absl::flat_hash_map<std::uint64_t, Key>>;
  static std::vector<Key> keys(std::size_t first, std::size_t count) {
    std::vector<Key> keys = idsOf<Key>(randomBytes(first + count));
    return {keys.begin() + static_cast<std::ptrdiff_t>(first), keys.end()};
  }
};

// Keys with their tokens, in the order in which they are registered, and in another in which they are looked up; and
// some that are missing.
template <class Key>
struct Entries {
  struct Entry {
    std::uint64_t token;
    Key key;
  };
  Entries(const std::vector<Key>& keys, const std::vector<Key>& others) : missing(others) {
    for (const Key& key : keys) registered.push_back({registered.size() * 7, key});
    lookedUp = lookUps(registered);
  }
  std::vector<Entry> registered;
  std::vector<Entry> lookedUp;
  std::vector<Key> missing;
};

template <class Tables>
Entries<typename Tables::Key> entriesOf(std::size_t count) {
  return {Tables::keys(0, count), Tables::keys(count, std::min<std::size_t>(count, 100000))};
}

template <class Table, class Key>
std::shared_ptr<Table> filled(const Entries<Key>& entries) {
  auto table = std::make_shared<Table>();
  for (const auto& [token, key] : entries.registered) table->add(token, key);
  return table;
}

template <class Table>
constexpr auto kFound = [](const auto& entries) {
  return
      [table = filled<Table>(entries), next = Cycle(entries.lookedUp)]() mutable { return table->toToken(next().key); };
};
template <class Table>
constexpr auto kMissing = [](const auto& entries) {
  return [table = filled<Table>(entries), next = Cycle(entries.missing)]() mutable { return table->toToken(next()); };
};
template <class Table>
constexpr auto kToKey = [](const auto& entries) {
  return
      [table = filled<Table>(entries), next = Cycle(entries.lookedUp)]() mutable { return table->toKey(next().token); };
};
template <class Table>
constexpr auto kRemoved = [](const auto& entries) {
  return [table = filled<Table>(entries), next = Cycle(entries.lookedUp)]() mutable {
    const auto& [token, key] = next();
    return table->remove(token, key) && table->add(token, key);
  };
};
// Fills a table and drops it again.
template <class Table>
constexpr auto kFilled =
    [](const auto& entries) { return filled<Table>(entries)->toToken(entries.lookedUp.front().key); };

template <class Tables>
void registerTables(const Sizes& sizes) {
  using Ours = typename Tables::Ours;
  const auto cases = [&](const std::string& name, auto peers) {
    auto added = compare(Tables::kName + ' ' + name, sizes, entriesOf<Tables>, peers(std::type_identity<Ours>()));
    added.peer(Tables::kStd, peers(std::type_identity<typename Tables::Std>()));
    added.peer(Tables::kAbsl, peers(std::type_identity<typename Tables::Absl>()));
    if constexpr (requires { typename Tables::AbslHash; }) {  // Without an order, it has no positions.
      if (name == "token found")
        added.peer("absl::flat_hash_map", peers(std::type_identity<typename Tables::AbslHash>()));
    }
    added.peer("boost::multi_index", peers(std::type_identity<MultiIndex<typename Tables::Key>>()));
  };
  cases("found", []<class T>(std::type_identity<T>) { return kFound<T>; });
  cases("missing", []<class T>(std::type_identity<T>) { return kMissing<T>; });
  cases("token found", []<class T>(std::type_identity<T>) { return kToKey<T>; });
  cases("removed and added", []<class T>(std::type_identity<T>) { return kRemoved<T>; });
  cases("filled", []<class T>(std::type_identity<T>) { return kFilled<T>; });
}

}  // namespace bench

#endif  // BENCH_TABLES_H_
