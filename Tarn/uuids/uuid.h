/// @file
/// The 16-byte identifier.
#ifndef TARN_UUIDS_UUID_H_
#define TARN_UUIDS_UUID_H_

#include <array>
#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <span>
#include <string>
#include <utility>

#include "Tarn/Export.h"

/// Identifiers.
namespace Tarn::uuids {

/// Who laid down the layout of a uuid (RFC 4122, section 4.1.1): the high bits of byte 8.
enum class uuid_variant : int {
  ncs = 0,        ///< 0xxxxxxx
  rfc = 1,        ///< 10xxxxxx
  microsoft = 2,  ///< 110xxxxx
  reserved = 3    ///< 111xxxxx
};

/// How a uuid was made (RFC 4122, section 4.1.3): the high four bits of byte 6.
enum class uuid_version : int {
  none = 0,  ///< 0, and 6 to 15
  time_based = 1,
  dce_security = 2,
  name_based_md5 = 3,
  random_number_based = 4,
  name_based_sha1 = 5
};

/// A 16-byte identifier with the layout of RFC 4122; nil, all zero, unless it is given bytes.
///
/// The bytes stand in the order in which the canonical text shows them, most significant first. Uuids compare byte by
/// byte, byte 0 first, each byte as an unsigned value. `Tarn::parseUuid` (UuidText.h) makes a uuid from text.
///
///     uuid id = uuid::generate();
///     id.string();         // "00112233-4455-6677-8899-aabbccddeeff", say
///     id.toShortString();  // "ABEiM0RVZneImaq7zN3u/w=="
///     std::unordered_map<uuid, Scan> scans;  // hashed, ordered and printed like any value
///
/// A plain value, trivially copyable, without shared state.
class uuid {
 public:
  /// The nil uuid.
  constexpr uuid() noexcept = default;
  /// A uuid of these bytes.
  /// @{
  constexpr explicit uuid(const unsigned char (&bytes)[16]) noexcept : data(std::to_array(bytes)) {}
  constexpr explicit uuid(const std::array<unsigned char, 16>& bytes) noexcept : data(bytes) {}
  constexpr explicit uuid(std::span<unsigned char, 16> bytes) noexcept {
    for (std::size_t i = 0; i < data.size(); ++i) data[i] = bytes[i];
  }
  constexpr explicit uuid(std::span<const std::byte, 16> bytes) noexcept {
    for (std::size_t i = 0; i < data.size(); ++i) data[i] = static_cast<unsigned char>(bytes[i]);
  }
  constexpr explicit uuid(const std::array<std::byte, 16>& bytes) noexcept : uuid(std::span(bytes)) {}
  /// @}

  /// A new uuid from the operating system: the platform's own generator where there is one, otherwise random bytes
  /// (version 4, RFC variant). Keeps no state; any number of threads may call it at once.
  /// Throws `std::system_error` where the system has no random bytes to give; a platform's own generator is not asked
  /// whether it failed.
  [[nodiscard]] TARN_API static uuid generate();

  /// The same for each uuid of a span, by one request for random bytes for up to two million of them; where the
  /// platform has a generator of its own, by a call for each. If it throws, what the span holds is unspecified.
  TARN_API static void generate(std::span<uuid> ids);

  /// The 16 bytes, without a copy; valid while the uuid lives.
  [[nodiscard]] std::span<const std::byte, 16> as_bytes() const noexcept { return std::as_bytes(std::span(data)); }

  /// Two 64-bit FNV-1a hashes, of bytes 0 to 7 and of bytes 8 to 15, their top bits cleared, combined by exclusive-or.
  ///
  /// The same on every platform. The top bit is always 0, and a uuid whose halves are equal hashes to 0.
  [[nodiscard]] constexpr std::uint64_t hash() const noexcept { return hashHalf(0) ^ hashHalf(8); }

  /// Whether all 16 bytes are zero.
  [[nodiscard]] constexpr bool is_nil() const noexcept { return *this == uuid(); }

  /// The canonical text: 32 lower-case hexadecimal digits in groups of 8, 4, 4, 4 and 12, joined by hyphens.
  [[nodiscard]] TARN_API std::string string() const;

  /// The bytes in base64 (RFC 4648, section 4, with padding): 24 characters, the last two of them "==".
  [[nodiscard]] TARN_API std::string toShortString() const;

  /// Exchanges the bytes.
  constexpr void swap(uuid& other) noexcept { std::swap(data, other.data); }

  /// Decoded from byte 8.
  [[nodiscard]] constexpr uuid_variant variant() const noexcept {
    return static_cast<uuid_variant>(std::countl_one(static_cast<unsigned char>(data[8] & 0xE0U)));
  }

  /// Decoded from byte 6, whatever the variant.
  [[nodiscard]] constexpr uuid_version version() const noexcept {
    const int number = data[6] >> 4;
    return number <= 5 ? static_cast<uuid_version>(number) : uuid_version::none;
  }

  /// Compare byte by byte.
  /// @{
  friend constexpr bool operator==(const uuid& a, const uuid& b) noexcept = default;

  friend constexpr std::strong_ordering operator<=>(const uuid& a, const uuid& b) noexcept {
    const std::uint64_t highA = a.bigEndianHalf(0);
    const std::uint64_t highB = b.bigEndianHalf(0);
    return highA != highB ? highA <=> highB : a.bigEndianHalf(8) <=> b.bigEndianHalf(8);
  }
  /// @}

 private:
  // Eight bytes as one number, whose order is that of the bytes. Compilers make one load and a byte swap of it.
  [[nodiscard]] constexpr std::uint64_t bigEndianHalf(std::size_t first) const noexcept {
    std::uint64_t number = 0;
    for (std::size_t i = first; i < first + 8; ++i) number = (number << 8) | data[i];
    return number;
  }

  [[nodiscard]] constexpr std::uint64_t hashHalf(std::size_t first) const noexcept {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (std::size_t i = first; i < first + 8; ++i) hash = (hash ^ data[i]) * 0x100000001b3;
    return hash & 0x7fffffffffffffff;
  }

  std::array<unsigned char, 16> data{};
};

/// Inserts the canonical text, as a `std::string` is inserted: width, fill and adjustment apply.
TARN_API std::ostream& operator<<(std::ostream& stream, const uuid& id);

}  // namespace Tarn::uuids

/// For tables in memory: seeded at random once a process, so that nobody can choose uuids that make a table slow. Not
/// to be stored: `uuid::hash()` is the same everywhere.
template <>
struct std::hash<Tarn::uuids::uuid> {
  TARN_API std::size_t operator()(const Tarn::uuids::uuid& id) const noexcept;
};

#endif  // TARN_UUIDS_UUID_H_
