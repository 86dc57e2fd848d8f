#include <sys/random.h>

#include <algorithm>
#include <map>
#include <unordered_map>

#include "Tarn/text/ValueReader.h"
#include "Tarn/uuids/uuid.h"
#include "bench/Bench.h"
#include "bench/Texts.h"

#if WITH_ABSL
#include <absl/strings/escaping.h>
#endif
#if WITH_BOOST
#include <boost/functional/hash.hpp>
#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_io.hpp>
#endif
#if WITH_LIBUUID
#include <uuid/uuid.h>
#endif

namespace {

using bench::Bytes;
using Tarn::uuids::uuid;

void registerTexts() {
  using bench::each;
  const std::vector<Bytes> ids = bench::randomBytes(256);
  std::vector<std::string> texts;
  for (const uuid& id : bench::idsOf<uuid>(ids)) texts.push_back(id.string());
  auto canonical =
      bench::compare("uuid to canonical text", ids, each([](const Bytes& id) { return uuid(id).string(); }));
  canonical.limit("allocation", each([](const Bytes& /*id*/) { return std::string(36, '0'); }));
  auto brief =
      bench::compare("uuid to short text", ids, each([](const Bytes& id) { return uuid(id).toShortString(); }));
  brief.limit("allocation", each([](const Bytes& /*id*/) { return std::string(24, '0'); }));
  auto parse =
      bench::compare("uuid from text", texts, each([](const std::string& text) { return *Tarn::parseUuid(text); }));
#if WITH_ABSL
  brief.peer("absl::Base64Escape", each([](const Bytes& id) {
               return absl::Base64Escape({reinterpret_cast<const char*>(id.data()), id.size()});
             }));
#endif
#if WITH_BOOST
  canonical.peer("Boost.Uuid", each([](const Bytes& id) { return to_string(std::bit_cast<boost::uuids::uuid>(id)); }));
  parse.peer("Boost.Uuid", each([](const std::string& text) { return boost::uuids::string_generator()(text); }));
#endif
#if WITH_LIBUUID
  canonical.peer("libuuid", each([](const Bytes& id) {
                   std::array<char, 37> text;
                   uuid_unparse_lower(id.data(), text.data());
                   return std::string(text.data(), 36);
                 }));
  parse.peer("libuuid", each([](const std::string& text) {
               Bytes id{};
               uuid_parse(text.c_str(), id.data());
               return id;
             }));
#endif
}

template <class Id>
auto sort(const std::vector<Bytes>& bytes) {
  return [ids = bench::idsOf<Id>(bytes)] {
    std::vector<Id> sorted = ids;
    std::sort(sorted.begin(), sorted.end());
    return std::bit_cast<Bytes>(sorted[sorted.size() / 2]);
  };
}

// Finds identifiers in a table of all.
template <class Id, class Table>
auto find(const std::vector<Bytes>& bytes) {
  struct Filled {
    std::vector<Id> ids;
    Table table;
  };
  auto filled = std::make_shared<Filled>();
  for (const Id& id : bench::idsOf<Id>(bytes)) filled->table.emplace(id, filled->table.size());
  filled->ids = bench::idsOf<Id>(bench::lookUps(bytes));
  return [filled, next = bench::Cycle(filled->ids)]() mutable { return filled->table.find(next())->second; };
}

void registerContainers() {
  const bench::Sizes sizes = {1000, 100000};
  auto sorting = bench::compare("uuid sort", {1000000}, bench::randomBytes, sort<uuid>);
  auto map =
      bench::compare("uuid find in std::map", sizes, bench::randomBytes, find<uuid, std::map<uuid, std::size_t>>);
  auto hashed = bench::compare("uuid find in std::unordered_map", sizes, bench::randomBytes,
                               find<uuid, std::unordered_map<uuid, std::size_t>>);
#if WITH_BOOST
  using Other = boost::uuids::uuid;
  sorting.peer("Boost.Uuid", sort<Other>);
  map.peer("Boost.Uuid", find<Other, std::map<Other, std::size_t>>);
  hashed.peer("Boost.Uuid", find<Other, std::unordered_map<Other, std::size_t, boost::hash<Other>>>);
#endif
}

void registerGenerate() {
  bench::compare("uuid::generate", 0, [](int /*none*/) {
    return uuid::generate();
  }).limit("getrandom", [](int /*none*/) {
    Bytes bytes;
    static_cast<void>(!getrandom(bytes.data(), bytes.size(), 0));
    return bytes;
  });
}

}  // namespace

void bench::registerCases() {
  registerTexts();
  registerContainers();
  registerGenerate();
}
