#include <absl/strings/escaping.h>
#include <sys/random.h>
#include <uuid/uuid.h>

#include <algorithm>
#include <boost/functional/hash.hpp>
#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <map>
#include <unordered_map>

#include "Tarn/text/ValueReader.h"
#include "Tarn/uuids/uuid.h"
#include "bench/Bench.h"
#include "bench/Texts.h"

namespace {

using bench::Bytes;
using Tarn::uuids::uuid;

void registerTexts() {
  const std::vector<Bytes> ids = bench::randomBytes(1024);
  std::vector<std::string> texts;
  for (const uuid& id : bench::idsOf<uuid>(ids)) texts.push_back(id.string());
  bench::comparePool("uuid to canonical text", ids, [](const Bytes& id) { return uuid(id).string(); })
      .limitCopy()
      .peer("Boost.Uuid", [](const Bytes& id) { return to_string(std::bit_cast<boost::uuids::uuid>(id)); })
      .peer("libuuid", [](const Bytes& id) {
        std::array<char, 37> text;
        uuid_unparse_lower(id.data(), text.data());
        return std::string(text.data(), 36);
      });
  bench::comparePool("uuid to short text", ids, [](const Bytes& id) { return uuid(id).toShortString(); })
      .limitCopy()
      .peer("absl::Base64Escape", [](const Bytes& id) {
        return absl::Base64Escape({reinterpret_cast<const char*>(id.data()), id.size()});
      });
  bench::comparePool("uuid from text", texts, [](const std::string& text) {
    return *Tarn::parseUuid(text);
  }).peer("Boost.Uuid", [](const std::string& text) {
      return boost::uuids::string_generator()(text);
    }).peer("libuuid", [](const std::string& text) {
    Bytes id{};
    uuid_parse(text.c_str(), id.data());
    return id;
  });
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
  using Other = boost::uuids::uuid;
  sorting.peer("Boost.Uuid", sort<Other>);
  map.peer("Boost.Uuid", find<Other, std::map<Other, std::size_t>>);
  hashed.peer("Boost.Uuid", find<Other, std::unordered_map<Other, std::size_t, boost::hash<Other>>>);
}

void registerGenerate() {
  bench::comparePool("uuid::generate", std::vector<int>{0}, [](int /*none*/) {
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
