#include "Tarn/uuids/uuid.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <limits>
#include <set>
#include <sstream>
#include <unordered_set>

#include "Tarn/platform/GuidFields.h"
#include "Tarn/text/ValueReader.h"
#include "tests/Generate.h"
#include "tests/Plain.h"

namespace {

using Tarn::parseUuid;
using Tarn::uuids::uuid;
using Tarn::uuids::uuid_variant;
using Tarn::uuids::uuid_version;
using Bytes = std::array<unsigned char, 16>;

static_assert(std::is_trivially_copyable_v<uuid> && std::is_nothrow_default_constructible_v<uuid> &&
              sizeof(uuid) == 16);
static_assert(noexcept(parseUuid(std::string_view())) && noexcept(uuid(Bytes{})) && noexcept(uuid(std::array<std::byte, 16>{})) && noexcept(uuid(
    uuid()
        .as_bytes())) && noexcept(uuid() ==
                                  uuid()) && noexcept(uuid() <=>
                                                      uuid()) && noexcept(uuid()
                                                                              .hash()) && noexcept(uuid()
                                                                                                       .variant()) && noexcept(uuid()
                                                                                                                                   .version()) && noexcept(uuid()
                                                                                                                                                               .is_nil()) && noexcept(std::declval<uuid&>()
                                                                                                                                                                                          .swap(std::declval<
                                                                                                                                                                                                uuid&>())));
static_assert(!std::is_convertible_v<const Bytes&, uuid> && !std::is_convertible_v<const unsigned char (&)[16], uuid> &&
              !std::is_convertible_v<std::span<unsigned char, 16>, uuid>);
static_assert(uuid(Bytes{0x80}) > uuid(Bytes{0x7F, 0xFF}) && uuid(Bytes{0, 1}) != uuid());
static_assert(uuid().is_nil() && uuid().hash() == 0 && uuid().variant() == uuid_variant::ncs);
static_assert(*parseUuid("00010203-0405-0607-0809-0a0b0c0d0e0f") < *parseUuid("{000102030405060708090A0B0C0D0E10}"));
static_assert(!parseUuid("{00010203-0405-0607-0809-0a0b0c0d0e0f"));

Bytes counting(unsigned step) {
  Bytes bytes{};
  for (unsigned i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<unsigned char>(i * step);
  return bytes;
}

Bytes randomBytes(Generate& generate) {
  Bytes bytes{};
  for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(generate.below(256));
  return bytes;
}

TEST(Uuid, KnownForms) {
  const uuid low(counting(1));
  EXPECT_EQ(low.string(), "00010203-0405-0607-0809-0a0b0c0d0e0f");
  EXPECT_EQ(low.toShortString(), "AAECAwQFBgcICQoLDA0ODw==");
  EXPECT_EQ(low.hash(), 0x29CC2F9E5EE569A0U);
  const uuid high(counting(0x11));
  EXPECT_EQ(high.string(), "00112233-4455-6677-8899-aabbccddeeff");
  EXPECT_EQ(high.toShortString(), "ABEiM0RVZneImaq7zN3u/w==");
  EXPECT_EQ(high.hash(), 0x6526CBD5DF87F520U);
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

TEST(Uuid, TextsOrderAndCopiesOfAnyBytes) {
  Generate generate(2);
  for (int i = 0; i < 5000; ++i) {
    Bytes a = randomBytes(generate);
    Bytes b = a;
    b[generate.below(16)] = static_cast<unsigned char>(generate.below(256));
    const uuid first(a);
    std::ostringstream text;
    text << std::hex << std::setfill('0');
    for (std::size_t at = 0; at < 16; ++at) {
      text << (at == 4 || at == 6 || at == 8 || at == 10 ? "-" : "") << std::setw(2) << unsigned{a[at]};
    }
    EXPECT_EQ(first.string(), text.str());
    EXPECT_EQ(first.toShortString(), plainBase64(a));
    EXPECT_EQ(parseUuid(first.string()), first);
    EXPECT_EQ(uuid(std::span<unsigned char, 16>(a)), first);
    std::array<std::byte, 16> raw{};
    std::copy(first.as_bytes().begin(), first.as_bytes().end(), raw.begin());
    EXPECT_TRUE(uuid(first.as_bytes()) == first && uuid(raw) == first);
    EXPECT_EQ(first <=> uuid(b), (a < b ? -1 : a == b ? 0 : 1) <=> 0);
    EXPECT_EQ(first < uuid(b), a < b);
    EXPECT_EQ(first == uuid(b), a == b);
    EXPECT_EQ(first.hash(), plainHash(a));
    EXPECT_TRUE(std::equal(a.begin(), a.end(), reinterpret_cast<const unsigned char*>(first.as_bytes().data())));
  }
}

// Uuids of a few bits, as numbering makes them, spread over a table by the low and by the high bits of their hashes.
TEST(Uuid, HashesFillTables) {
  std::set<std::size_t> hashes;
  std::set<std::size_t> lowBits;
  std::set<std::size_t> highBits;
  std::size_t count = 0;
  for (std::size_t at = 0; at < 16; ++at) {
    for (std::size_t other = at + 1; other < 16; ++other) {
      for (unsigned bits = 0; bits < 256; ++bits) {
        Bytes bytes{};
        bytes[at] = static_cast<unsigned char>(bits % 16 + 1);
        bytes[other] = static_cast<unsigned char>(bits / 16 + 1);
        const std::size_t hash = std::hash<uuid>()(uuid(bytes));
        hashes.insert(hash);
        lowBits.insert(hash % 32768);
        highBits.insert(hash >> (std::numeric_limits<std::size_t>::digits - 15));
        ++count;
      }
    }
  }
  EXPECT_EQ(hashes.size(), count);
  // By chance 20 000 of these 30 720 would differ in 15 bits.
  EXPECT_GT(lowBits.size(), 16000U);
  EXPECT_GT(highBits.size(), 16000U);
}

TEST(Uuid, VariantAndVersionOfEveryByte) {
  const unsigned char array[16] = {0, 0, 0, 0, 0, 0, 0x5A, 0, 0xC0};
  EXPECT_EQ(uuid(array).version(), uuid_version::name_based_sha1);
  for (unsigned byte = 0; byte < 256; ++byte) {
    Bytes bytes{};
    bytes[6] = bytes[8] = static_cast<unsigned char>(byte);
    const int variant = byte < 0x80 ? 0 : byte < 0xC0 ? 1 : byte < 0xE0 ? 2 : 3;
    EXPECT_EQ(static_cast<int>(uuid(bytes).variant()), variant) << byte;
    EXPECT_EQ(static_cast<unsigned>(uuid(bytes).version()), byte / 16 <= 5 ? byte / 16 : 0) << byte;
    EXPECT_EQ(uuid(bytes).is_nil(), byte == 0);
  }
}

TEST(Uuid, SwapsAndPrints) {
  uuid a(counting(1));
  uuid b;
  a.swap(b);
  a.swap(a);
  EXPECT_TRUE(a.is_nil());
  std::ostringstream stream;
  stream << std::left << std::setfill('.') << std::setw(38) << b;
  EXPECT_EQ(stream.str(), "00010203-0405-0607-0809-0a0b0c0d0e0f..");
}

TEST(Uuid, GeneratedOnesDiffer) {
  std::vector<uuid> ids(10000);
  uuid::generate(ids);
  uuid::generate(std::span<uuid>());
  for (int i = 0; i < 1000; ++i) ids.push_back(uuid::generate());
  std::unordered_set<uuid> hashed;
  for (const uuid& id : ids) {
    EXPECT_EQ(id.version(), uuid_version::random_number_based);
    EXPECT_EQ(id.variant(), uuid_variant::rfc);
    hashed.insert(id);
  }
  EXPECT_EQ(hashed.size(), ids.size());
  EXPECT_EQ(std::set<uuid>(ids.begin(), ids.end()).size(), ids.size());
}

TEST(Uuid, FieldsOfAPlatformsGenerator) {
  const Tarn::platform::GuidFields fields{0x00112233, 0x4455, 0x6677, {0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF}};
  EXPECT_EQ(toBytes(fields), counting(0x11));
}

TEST(Uuid, ParsesWhatItShould) {
  std::vector<std::string> texts = {"", "-", "{", "}", "{}"};
  for (const std::string good : {"{00010203-0405-0607-0809-0A0b0C0d0E0f}", "0f1E2d3C-4b5A-6978-8796-A5b4C3d2E1f0",
                                 "Af9E8d7C6b5A4938271605F4e3D2c1B0"}) {
    texts.insert(texts.end(), {" " + good, good + " ", good + '\0' + "x", good.substr(1)});
    for (std::size_t at = 0; at <= good.size(); ++at) {
      texts.push_back(good.substr(0, at));
      texts.push_back(good.substr(0, at) + '-' + good.substr(at));
      texts.push_back(good.substr(0, at) + '7' + good.substr(at));
      for (int byte = 0; at < good.size() && byte < 256; ++byte) {
        texts.push_back(good);
        texts.back()[at] = static_cast<char>(byte);
      }
    }
  }
  for (const std::string& text : texts) EXPECT_EQ(parseUuid(text), plainParse(text)) << text;
}

}  // namespace
