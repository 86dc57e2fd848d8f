#include "Tarn/text/ValueText.h"

#include <charconv>
#include <sstream>

#include "Tarn/text/Escapes.h"
#include "Tarn/text/StringUtilities.h"
#include "Tarn/time/Time.h"
#include "bench/Bench.h"
#include "bench/Json.h"
#include "bench/Texts.h"

namespace {

using namespace Tarn;

struct Map {
  StringMap entries;
  std::string text;
  std::string json;
};

// Our form of a map from that of JSON, and back, for texts without these characters.
std::string fromJson(std::string_view json) {
  std::string text = "{ " + bench::insideOf(json) + " } ";
  replaceAll(text, "\":\"", "\"=>\"");
  replaceAll(text, "\",\"", "\" \"");
  return text;
}
std::string toJson(const std::string& text) {
  std::string json = "{" + text.substr(2, text.size() - 5) + "}";
  replaceAll(json, "\"=>\"", "\":\"");
  replaceAll(json, "\" \"", "\",\"");
  return json;
}

Map mapOf(std::size_t count) {
  Map map;
  for (const std::uint64_t number : bench::shuffled(count)) {
    map.entries["property " + std::to_string(number)] = bench::kEuropean.withFewEscapes(8 + number % 32);
  }
  map.text << map.entries;
  map.json = toJson(map.text);
  return map;
}

#if WITH_RAPIDJSON
// Puts the members of an object into a map as they are read.
struct MapHandler : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, MapHandler> {
  bool Key(const char* text, rapidjson::SizeType size, bool /*copy*/) {
    key.assign(text, size);
    return true;
  }
  bool String(const char* text, rapidjson::SizeType size, bool /*copy*/) {
    entries.emplace(std::move(key), std::string(text, size));
    return true;
  }
  std::string key;
  StringMap entries;
};
#endif

void registerMaps() {
  const bench::Sizes sizes = {10, 1000, 100000};
  auto write = bench::compare("map write, entries", sizes, mapOf, [](const Map& map) {
    std::string text;
    text << map.entries;
    return text;
  });
  write.limit("iteration", [](const Map& map) {
    std::size_t sum = 0;
    for (const auto& [key, value] : map.entries) sum += key.size() + static_cast<unsigned char>(value.front());
    return sum;
  });
  auto read = bench::compare("map read, entries", sizes, mapOf, [](const Map& map) {
    StringMap entries;
    ValueReader reader(map.text);
    reader >> entries;
    return entries;
  });
#if WITH_RAPIDJSON
  write.peer(
      "RapidJSON",
      [](const Map& map) {
        rapidjson::StringBuffer buffer;
        bench::AsciiWriter writer(buffer);
        writer.StartObject();
        for (const auto& [key, value] : map.entries) {
          writer.Key(key.data(), static_cast<rapidjson::SizeType>(key.size()));
          writer.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
        }
        writer.EndObject();
        return buffer;
      },
      [](const rapidjson::StringBuffer& buffer) { return fromJson(buffer.GetString()); });
  read.peer("RapidJSON", [](const Map& map) {
    MapHandler handler;
    rapidjson::MemoryStream stream(map.json.data(), map.json.size());
    rapidjson::Reader().Parse(stream, handler);
    return std::move(handler.entries);
  });
#endif
#if WITH_NLOHMANN_JSON
  write.peer(
      "nlohmann", [](const Map& map) { return nlohmann::json(map.entries).dump(-1, ' ', true); }, fromJson);
  read.peer("nlohmann", [](const Map& map) { return nlohmann::json::parse(map.json).get<StringMap>(); });
#endif
}

void registerIntegers() {
  using bench::each;
  const std::string front = "scan 7: ";
  bench::compare("int append", std::vector<int>{0, -1, 42, 65536, -123456, 2147483647}, each([front](int number) {
                   std::string buffer = front;
                   buffer << number;
                   return buffer;
                 }))
      .peer("ostringstream", each([front](int number) {
              std::ostringstream stream;
              stream << number;
              return front + stream.str();
            }))
      .limit("to_chars and append", each([front](int number) {
               std::string buffer = front;
               std::array<char, 16> digits;
               buffer.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
               return buffer;
             }));

  const std::vector<std::string> texts = {"0 m", "-1;x", "42\nab", "65536 ", "-123456.", "2147483647 m"};
  bench::compare("int read from the front", texts, each([](std::string buffer) {
                   int number = 0;
                   buffer >> number;
                   return std::pair(number, buffer);
                 }))
      .peer("istringstream", each([](std::string buffer) {
              int number = 0;
              std::istringstream stream(buffer);
              stream >> number;
              buffer.erase(0, static_cast<std::size_t>(stream.tellg()));
              return std::pair(number, buffer);
            }))
      .limit("from_chars and erase", each([](std::string buffer) {
               int number = 0;
               const char* const begin = buffer.data();
               buffer.erase(
                   0, static_cast<std::size_t>(std::from_chars(begin, begin + buffer.size(), number).ptr - begin));
               return std::pair(number, buffer);
             }));
}

struct Record {
  uuids::uuid id;
  StringMap properties;
  Time time;
  std::string endOfLine;
};

std::string recordsOf(std::size_t count) {
  std::string text;
  Time time;
  time.setTime(1709647629.0);
  const std::vector<uuids::uuid> ids = bench::idsOf<uuids::uuid>(bench::randomBytes(count));
  for (const uuids::uuid& id : ids)
    text << id << '\n' << StringMap{{"name", "Tower"}, {"range", "12 m"}} << time << '\n';
  return text;
}

std::size_t sizeOf(const ValueReader& reader) { return reader.rest().size(); }
std::size_t sizeOf(const std::string& buffer) { return buffer.size(); }

// Reads all records; gives how many there were.
template <class Source>
std::size_t readAll(Source source) {
  std::size_t count = 0;
  for (Record record; sizeOf(source) > 0; record.properties.clear()) {
    source >> record.id >> record.properties >> record.time >> record.endOfLine;
    count += record.properties.size() == 2 && record.time.getLastTime() > 0 ? 1U : 0U;
  }
  return count;
}

void registerRecords() {
  const auto byReader = [](const std::string& text) { return readAll(ValueReader(text)); };
  const auto byErasing = [](const std::string& text) { return readAll(text); };
  bench::compare("records read", {10000}, recordsOf, byReader).peer("erasing each time", byErasing).once();
  bench::compare("records read, slow peer", {100000}, recordsOf, byReader).peer("erasing each time", byErasing).once();
}

}  // namespace

void bench::registerCases() {
  registerMaps();
  registerIntegers();
  registerRecords();
}
