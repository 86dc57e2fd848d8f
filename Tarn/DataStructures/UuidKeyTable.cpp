#include "Tarn/DataStructures/UuidKeyTable.h"

#include <limits>

#include "Tarn/DataStructures/internal/HashedPairsInline.h"

namespace Tarn::DataStructures {
namespace {

constexpr std::uint64_t kNoToken = std::numeric_limits<std::uint64_t>::max();

uuids::uuid toUuid(std::string_view bytes) noexcept {
  std::array<unsigned char, 16> copy;
  std::memcpy(copy.data(), bytes.data(), copy.size());
  return uuids::uuid(copy);
}

}  // namespace

bool UuidKeyTable::addEntry(std::uint64_t token, const uuids::uuid& key) {
  return pairs_.add(token, key, [this, token] { tokens_.insert(token); });
}

std::uint64_t UuidKeyTable::keyToToken(const uuids::uuid& key) const {
  const auto pair = pairs_.find(key);
  return pair != 0 ? pairs_.token(pair) : kNoToken;
}

std::optional<uuids::uuid> UuidKeyTable::tokenToKey(std::uint64_t token) const {
  const auto pair = pairs_.find(token);
  if (pair == 0) return std::nullopt;
  return toUuid(pairs_.key(pair));
}

std::uint64_t UuidKeyTable::getToken(std::uint64_t position) const {
  const std::uint64_t* const token = tokens_.at(position);
  return token != nullptr ? *token : kNoToken;
}

std::optional<uuids::uuid> UuidKeyTable::getKey(std::uint64_t position) const {
  const std::uint64_t* const token = tokens_.at(position);
  if (token == nullptr) return std::nullopt;
  return tokenToKey(*token);
}

std::uint64_t UuidKeyTable::getNumElements() const { return pairs_.keys(); }

bool UuidKeyTable::rmEntry(std::uint64_t token, const uuids::uuid& key) {
  if (!pairs_.remove(token, key)) return false;
  tokens_.erase(token);
  return true;
}

bool UuidKeyTable::rmAll() {
  if (pairs_.keys() == 0) return false;
  *this = {};
  return true;
}

}  // namespace Tarn::DataStructures
