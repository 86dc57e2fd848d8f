/// @file
/// The two-way table between tokens and string keys.
#ifndef TARN_DATASTRUCTURES_KEYTABLE_H_
#define TARN_DATASTRUCTURES_KEYTABLE_H_

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Tarn/DataStructures/internal/HashedPairs.h"
#include "Tarn/Export.h"

/// Key tables, progress, stream names and scan statistics.
namespace Tarn::DataStructures {

/// One (token, key) pair, for filling a `KeyTable` in one call.
struct KeyTableEntry {
  std::uint64_t token;  ///< The caller's number for the key.
  std::string key;      ///< Any text.
};

/// Translates between tokens, numbers that the caller chooses, and string keys, in both directions.
///
/// Every 64-bit number is a valid token and every text a valid key, the empty one and one with NULs included; keys
/// are compared byte by byte. A token has one key. Several tokens may share a key, which then translates back to the
/// token that was registered first. The table owns copies of its keys, one for each pair.
///
///     KeyTable table;
///     table.addEntry(1, "north");  // true
///     table.addEntry(2, "north");  // true: a second token for the same key
///     table.addEntry(1, "south");  // false: token 1 is taken
///     table.keyToToken("north");   // 1
///     table.tokenToKey(2);         // "north"
///
/// Every call but `addTable`, `rmAll` and copying takes constant time on average, whatever keys and tokens somebody
/// chooses: hashes are seeded at random once a process. Now and then an insertion makes room, or a removal gives memory
/// back, in time linear in the table. A pair with a key of 8 bytes takes 42 to 76 bytes in all; a table takes at most
/// twice what one takes that has never held another pair, but for two kilobytes, unless there was no memory to move to.
/// Only allocation can throw, and `std::length_error` where the keys and 16 bytes a pair would pass 32 GiB; a table
/// then stays as it was. Threads: any number may call const members at once; a call that changes the table must not
/// overlap any other on the same table. A table that was moved from is empty.
class KeyTable {
 public:
  /// An empty table, and copies. A copy that allocation keeps from being made changes nothing.
  /// @{
  KeyTable() = default;
  KeyTable(const KeyTable&) = default;
  KeyTable(KeyTable&&) noexcept = default;
  KeyTable& operator=(const KeyTable& other) { return *this = KeyTable(other); }
  KeyTable& operator=(KeyTable&&) noexcept = default;
  /// @}
  ~KeyTable() = default;

  /// A table filled by `addTable(entries)`.
  /// @{
  TARN_API explicit KeyTable(const std::vector<KeyTableEntry>& entries);
  KeyTable(std::initializer_list<KeyTableEntry> entries) {
    for (const KeyTableEntry& entry : entries) addEntry(entry.token, entry.key);
  }
  /// @}

  /// Registers a pair. A key that is registered already keeps its first token. If it throws, nothing has changed.
  /// @return false, and nothing changes, when the token is present.
  /// @{
  TARN_API bool addEntry(std::uint64_t token, const std::string& key);
  template <std::same_as<std::string_view> View>  // A template, so that a literal stays a `std::string`.
  bool addEntry(std::uint64_t token, View key) {
    return add(token, key);
  }
  /// @}

  /// Registers the entries from first to last, each as `addEntry` does; an entry whose token is present is skipped.
  /// If it throws, the entries before stay.
  TARN_API void addTable(const std::vector<KeyTableEntry>& entries);

  /// The number of tokens.
  [[nodiscard]] TARN_API std::uint64_t getNumElements() const;

  /// The token registered first for the key.
  /// @return 0xFFFFFFFFFFFFFFFF when there is none. A pair may hold that token too: `tokenToKey` tells them apart.
  /// @{
  [[nodiscard]] TARN_API std::uint64_t keyToToken(const std::string& key) const;
  template <std::same_as<std::string_view> View>
  [[nodiscard]] std::uint64_t keyToToken(View key) const {
    return find(key);
  }
  /// @}

  /// A copy of the token's key, or nothing for an unknown token.
  [[nodiscard]] TARN_API std::optional<std::string> tokenToKey(std::uint64_t token) const;

  /// Removes the token from one direction and the key from the other.
  ///
  /// The two need not belong together. When they do not, the token's own key and the key's own token stay, each
  /// reachable from its side only.
  /// @return false, and nothing changes, unless both are present.
  /// @{
  TARN_API bool rmEntry(std::uint64_t token, const std::string& key);
  template <std::same_as<std::string_view> View>
  bool rmEntry(std::uint64_t token, View key) {
    return remove(token, key);
  }
  /// @}

  /// Empties the table and gives its memory back.
  /// @return false when it held no token.
  TARN_API bool rmAll();

 private:
  TARN_API bool add(std::uint64_t token, std::string_view key);
  [[nodiscard]] TARN_API std::uint64_t find(std::string_view key) const;
  TARN_API bool remove(std::uint64_t token, std::string_view key);

  internal::HashedPairs pairs_;
};

}  // namespace Tarn::DataStructures

#endif  // TARN_DATASTRUCTURES_KEYTABLE_H_
