#include "Tarn/uuids/uuid.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <iterator>
#include <set>
#include <sstream>
#include <unordered_set>
#include <vector>

#include "Tarn/platform/GuidFields.h"
#include "Tarn/text/ValueReader.h"
#include "tests/Generate.h"
#include "tests/Plain.h"

namespace {

using Tarn::parseUuid;
using Tarn::uuids::uuid;
using Tarn::uuids::uuid_version;
using Bytes = std::array<unsigned char, 16>;

constexpr uuid kNil;
static_assert(std::is_trivially_copyable_v<uuid> && std::is_nothrow_default_constructible_v<uuid> &&
              std::is_nothrow_constructible_v<uuid, Bytes> && std::is_nothrow_swappable_v<uuid> && sizeof(uuid) == 16);
static_assert(noexcept(uuid(std::array<std::byte, 16>{})) && noexcept(uuid(kNil.as_bytes())));
static_assert(noexcept(parseUuid(std::string_view())) && noexcept(std::declval<uuid&>().swap(std::declval<uuid&>())));
static_assert(noexcept(kNil == kNil) && noexcept(kNil <=> kNil) && noexcept(kNil.hash()) && noexcept(kNil.is_nil()));
static_assert(noexcept(kNil.variant()) && noexcept(kNil.version()));
static_assert(!std::is_convertible_v<const Bytes&, uuid> && !std::is_convertible_v<const unsigned char (&)[16], uuid> &&
              !std::is_convertible_v<std::span<unsigned char, 16>, uuid>);
static_assert(kNil.is_nil() && kNil.hash() == 0 && uuid(Bytes{0x80}) > uuid(Bytes{0x7F, 0xFF}));
static_assert(*parseUuid("00010203-0405-0607-0809-0a0b0c0d0e0f") < *parseUuid("{000102030405060708090A0B0C0D0E10}"));

constexpr Bytes kBytes = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77,
                          0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF};

TEST(Uuid, KnownForms) {
  const uuid id(kBytes);
  EXPECT_EQ(id.string(), "00112233-4455-6677-8899-aabbccddeeff");
  EXPECT_EQ(id.toShortString(), "ABEiM0RVZneImaq7zN3u/w==");
  EXPECT_EQ(id.hash(), 0x6526CBD5DF87F520U);
  const Tarn::platform::GuidFields fields{0x00112233, 0x4455, 0x6677, {0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF}};
  EXPECT_EQ(toBytes(fields), kBytes);
  std::ostringstream stream;
  stream << std::left << std::setfill('.') << std::setw(38) << id;
  EXPECT_EQ(stream.str(), "00112233-4455-6677-8899-aabbccddeeff..");
  std::istringstream words("00112233445566778899aabbccddeeff {00112233-4455-6677-8899-AABBCCDDEEFF} ");
  EXPECT_EQ(std::vector<uuid>(std::istream_iterator<uuid>(words), {}), std::vector<uuid>({id, id}));
}

// Base64 bit by bit: six at a time, then two characters of padding.
std::string plainBase64(const Bytes& bytes) {
  const std::string digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t bit = 0; bit < 128; bit += 6) {
    unsigned value = 0;
    for (std::size_t i = bit; i < bit + 6; ++i) {
      value = value * 2 + (i < 128 ? (unsigned{bytes[i / 8]} >> (7 - i % 8)) & 1U : 0U);
    }
    text += digits[value];
  }
  return text + "==";
}

// FNV-1a of each half; the exclusive-or of both without its top bit.
std::uint64_t plainHash(const Bytes& bytes) {
  std::uint64_t halves[2] = {0xCBF29CE484222325, 0xCBF29CE484222325};
  for (std::size_t i = 0; i < 16; ++i) halves[i / 8] = (halves[i / 8] ^ bytes[i]) * 0x100000001B3;
  return (halves[0] ^ halves[1]) << 1U >> 1U;
}

TEST(Uuid, FormsAndOrderOfAnyBytes) {
  Generate generate(2);
  for (unsigned i = 0; i < 5000; ++i) {
    Bytes a{};
    for (unsigned char& byte : a) byte = static_cast<unsigned char>(i < 256 ? i : generate.below(256));
    Bytes b = a;
    b[generate.below(16)] = static_cast<unsigned char>(generate.below(256));
    uuid id(std::span<unsigned char, 16>{a});
    EXPECT_EQ(parseUuid(id.string()), id);
    EXPECT_EQ(id.toShortString(), plainBase64(a));
    EXPECT_EQ(id.hash(), plainHash(a));
    EXPECT_TRUE(std::equal(a.begin(), a.end(), reinterpret_cast<const unsigned char*>(id.as_bytes().data())));
    EXPECT_TRUE(uuid(id.as_bytes()) == id && uuid(reinterpret_cast<const unsigned char(&)[16]>(a[0])) == id);
    EXPECT_EQ(id <=> uuid(b), (a < b ? -1 : a == b ? 0 : 1) <=> 0);
    EXPECT_TRUE((id < uuid(b)) == (a < b) && (id == uuid(b)) == (a == b) && id.is_nil() == (a == Bytes{}));
    EXPECT_EQ(static_cast<int>(id.variant()), a[8] < 0x80 ? 0 : a[8] < 0xC0 ? 1 : a[8] < 0xE0 ? 2 : 3);
    EXPECT_EQ(static_cast<int>(id.version()), a[6] / 16 <= 5 ? a[6] / 16 : 0);
    uuid other(b);
    id.swap(other);
    EXPECT_TRUE(id == uuid(b) && other == uuid(a));
  }
}

// Uuids of a few bits, as numbering makes them, spread over a table by the low bits of their hashes.
TEST(Uuid, HashesFillTables) {
  std::set<std::size_t> hashes, lowBits;
  for (unsigned i = 0; i < 256 * 16 * 16; ++i) {
    Bytes bytes{};
    bytes[i / 256 % 16] = static_cast<unsigned char>(i % 16 + 1);
    bytes[i / 4096] = static_cast<unsigned char>(i / 16 % 16 + 1);
    const std::size_t hash = i / 256 % 16 < i / 4096 ? std::hash<uuid>()(uuid(bytes)) : 0;
    hashes.insert(hash);
    lowBits.insert(hash % 32768);
  }
  EXPECT_EQ(hashes.size(), 256U * 120 + 1);
  // By chance 20 000 of these 30 720 would differ in 15 bits.
  EXPECT_GT(lowBits.size(), 16000U);
}

TEST(Uuid, GeneratedOnesDiffer) {
  std::vector<uuid> ids(10000);
  uuid::generate(ids);
  uuid::generate(std::span<uuid>());
  ids.push_back(uuid::generate());
  for (const uuid& id : ids) {
    EXPECT_TRUE(id.version() == uuid_version::random_number_based && id.variant() == Tarn::uuids::uuid_variant::rfc);
  }
  EXPECT_EQ(std::unordered_set<uuid>(ids.begin(), ids.end()).size(), ids.size());
}

TEST(Uuid, ParsesWhatItShould) {
  std::vector<std::string> texts = {"", "-", "{", "}", "{}"};
  for (const std::string good : {"{00010203-0405-0607-0809-0A0b0C0d0E0f}", "0f1E2d3C-4b5A-6978-8796-A5b4C3d2E1f0",
                                 "Af9E8d7C6b5A4938271605F4e3D2c1B0"}) {
    texts.insert(texts.end(), {" " + good, good + " ", good + '\0' + "x", good.substr(1)});
    for (std::size_t at = 0; at <= good.size(); ++at) {
      texts.push_back(good.substr(0, at));
      for (const char more : {'-', '7'}) texts.push_back(good.substr(0, at) + more + good.substr(at));
      for (int byte = 0; at < good.size() && byte < 256; ++byte) {
        texts.push_back(good);
        texts.back()[at] = static_cast<char>(byte);
      }
    }
  }
  for (const std::string& text : texts) EXPECT_EQ(parseUuid(text), plainParse(text)) << text;
}

}  // namespace
