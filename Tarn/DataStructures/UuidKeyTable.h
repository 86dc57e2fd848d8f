/// @file
/// The two-way table between tokens and uuids, with access by position.
#ifndef TARN_DATASTRUCTURES_UUIDKEYTABLE_H_
#define TARN_DATASTRUCTURES_UUIDKEYTABLE_H_

#include <cstdint>
#include <optional>

#include "Tarn/DataStructures/internal/HashedPairs.h"
#include "Tarn/DataStructures/internal/SortedTokens.h"
#include "Tarn/Export.h"
#include "Tarn/uuids/uuid.h"

namespace Tarn::DataStructures {

/// Translates between tokens, numbers that the caller chooses, and uuids, in both directions.
///
/// Pairs follow the rules of `KeyTable`: a token has one uuid, several tokens may share one, and a uuid translates
/// back to the token that was registered first. The nil uuid is a key like any other. Besides, the tokens have
/// positions: 0 is the smallest token, and every insertion and removal counts them anew.
///
///     UuidKeyTable table;
///     table.addEntry(5, a);
///     table.addEntry(2, b);
///     table.addEntry(9, a);    // a second token for a
///     table.keyToToken(a);     // 5
///     table.getToken(0);       // 2, the smallest token
///     table.getKey(2);         // a, the uuid of token 9
///     table.getNumElements();  // 2: different uuids, not tokens
///
///     for (std::uint64_t i = 0; const auto key = table.getKey(i); ++i) show(table.getToken(i), *key);  // All tokens.
///
/// Look-ups by token and uuid take constant time on average, whatever somebody chooses, and by position logarithmic
/// time; where one thread visits all positions from 0 on, most of its calls take constant time. Insertions and removals
/// take logarithmic time, but for moving, on average, a few bytes for each thousand entries, and for making room or
/// giving memory back now and then. The memory is 60 to 100 bytes a pair; it is at most twice what a table takes that
/// has never held another pair, but for two kilobytes, unless there was no memory to move to. Only allocation can
/// throw, and `std::length_error` above a thousand million pairs; a table then stays as it was. Threads: any number may
/// call const members at once; a call that changes the table must not overlap any other on the same table. A table that
/// was moved from is empty.
class UuidKeyTable {
 public:
  /// An empty table, and copies. A copy that allocation keeps from being made changes nothing.
  /// @{
  UuidKeyTable() = default;
  UuidKeyTable(const UuidKeyTable&) = default;
  UuidKeyTable(UuidKeyTable&&) noexcept = default;
  UuidKeyTable& operator=(const UuidKeyTable& other) { return *this = UuidKeyTable(other); }
  UuidKeyTable& operator=(UuidKeyTable&&) noexcept = default;
  /// @}
  ~UuidKeyTable() = default;

  /// Registers a pair. A uuid that is registered already keeps its first token. If it throws, nothing has changed.
  /// @return false, and nothing changes, when the token is present.
  TARN_API bool addEntry(std::uint64_t token, const uuids::uuid& key);

  /// The token registered first for the uuid.
  /// @return 0xFFFFFFFFFFFFFFFF when there is none. A pair may hold that token too: `tokenToKey` tells them apart.
  [[nodiscard]] TARN_API std::uint64_t keyToToken(const uuids::uuid& key) const;

  /// The token's uuid, or nothing for an unknown token.
  [[nodiscard]] TARN_API std::optional<uuids::uuid> tokenToKey(std::uint64_t token) const;

  /// The token at a position in ascending order.
  /// @return 0xFFFFFFFFFFFFFFFF when the position is not below the number of tokens, which may be larger than
  /// `getNumElements()`.
  [[nodiscard]] TARN_API std::uint64_t getToken(std::uint64_t position) const;

  /// The uuid of the token at a position, or nothing; bounds as for `getToken`.
  [[nodiscard]] TARN_API std::optional<uuids::uuid> getKey(std::uint64_t position) const;

  /// The number of uuids that translate to a token. Tokens that share a uuid count once.
  [[nodiscard]] TARN_API std::uint64_t getNumElements() const;

  /// Removes the token from one direction and the uuid from the other.
  ///
  /// The two need not belong together. When they do not, the token's own uuid and the uuid's own token stay, each
  /// reachable from its side only.
  /// @return false, and nothing changes, unless both are present.
  TARN_API bool rmEntry(std::uint64_t token, const uuids::uuid& key);

  /// Empties the table; linear in its size.
  /// @return false when no uuid translates to a token. Tokens left by `rmEntry` without one then stay.
  TARN_API bool rmAll();

 private:
  internal::HashedPairs pairs_;
  internal::SortedTokens tokens_;
};

}  // namespace Tarn::DataStructures

#endif  // TARN_DATASTRUCTURES_UUIDKEYTABLE_H_
