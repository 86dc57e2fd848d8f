#include "Tarn/text/ValueText.h"

#include <absl/strings/str_cat.h>
#include <fast_float/fast_float.h>
#include <fmt/compile.h>

#include <algorithm>
#include <charconv>

#include "Tarn/text/Escapes.h"
#include "Tarn/text/StringUtilities.h"
#include "Tarn/time/Time.h"
#include "bench/Bench.h"
#include "bench/Json.h"
#include "bench/Texts.h"
#include "bench/TimePeers.h"

namespace {

using namespace Tarn;

struct Map {
  StringMap entries;
  std::string text;
  std::string json;
  simdjson::padded_string padded;
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

// Entries whose values have at most so many characters.
auto mapOf(const bench::Script& script, std::size_t most) {
  return [script, most](std::size_t count, std::uint64_t seed) {
    Map map;
    for (const std::uint64_t number : bench::shuffled(count, seed)) {
      const std::size_t size = std::min<std::size_t>(8, most) + (number + seed) % (most - 7);
      map.entries["property " + std::to_string(number)] = script.withFewEscapes(size, number + seed);
    }
    map.text << map.entries;
    map.json = toJson(map.text);
    map.padded = simdjson::padded_string(map.json);
    return map;
  };
}

// Puts keys and values into a map, one after the other.
auto intoMap(StringMap& entries) {
  return [&entries, key = std::string(), isKey = false](std::string_view text) mutable {
    isKey = !isKey;
    if (isKey) {
      key = text;
    } else {
      entries.emplace_hint(entries.end(), std::move(key), text);
    }
  };
}

void addTo(StringMap& entries, simdjson::ondemand::object object) {
  for (auto field : object) {
    const std::string_view key = field.unescaped_key();
    const std::string_view value = field.value().get_string();
    entries.emplace_hint(entries.end(), key, value);
  }
}

void registerMaps(const std::string& name, const bench::Script& script, std::size_t most) {
  const bench::Sizes sizes = {4, 1000, 100000};
  bench::comparePool(
      "map write, " + name, sizes, mapOf(script, most),
      [](const Map& map) {
        static std::string text;
        text.clear();
        text << map.entries;
        return std::string_view(text);
      },
      64)
      .peer(
          "RapidJSON",
          [](const Map& map) {
            static rapidjson::StringBuffer buffer;
            buffer.Clear();
            bench::AsciiWriter writer(buffer);
            writer.StartObject();
            for (const auto& [key, value] : map.entries) {
              writer.Key(key.data(), static_cast<rapidjson::SizeType>(key.size()));
              writer.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
            }
            writer.EndObject();
            return std::string_view(buffer.GetString(), buffer.GetSize());
          },
          fromJson);
  bench::comparePool(
      "map read, " + name, sizes, mapOf(script, most),
      [](const Map& map) {
        StringMap entries;
        ValueReader reader(map.text);
        reader >> entries;
        return entries;
      },
      64)
      .limitCopy()
      .peer("RapidJSON in situ",
            [](const Map& map) {
              StringMap entries;
              bench::readStrings(map.json, intoMap(entries));
              return entries;
            })
      .peer("simdjson", [](const Map& map) {
        static simdjson::ondemand::parser parser;
        StringMap entries;
        auto document = parser.iterate(map.padded);
        addTo(entries, document.get_object());
        return entries;
      });
}

// Appends each number to a text that has room for it.
template <class Append>
auto appended(Append append) {
  return [append](auto number) {
    return [append, number, buffer = std::string(64, ' ')]() mutable -> const std::string& {
      buffer = "scan 7: ";
      append(buffer, number);
      return buffer;
    };
  };
}

// By `std::to_chars`, in a form and precision of its own if any are given.
auto appendedByToChars(auto... form) {
  return appended([form...](std::string& buffer, auto number) {
    std::array<char, 32> digits;
    buffer.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number, form...).ptr);
  });
}

const auto kByStrAppend = appended([](std::string& buffer, auto number) { absl::StrAppend(&buffer, number); });
const auto kByFmt = appended(
    [](std::string& buffer, auto number) { fmt::format_to(std::back_inserter(buffer), FMT_COMPILE("{}"), number); });
const auto kByOurs = appended([](std::string& buffer, auto number) { buffer << number; });

// Takes a number behind a space from the front of a text, and gives its end.
constexpr auto kFromChars = [](const char* begin, const char* end, auto& number) {
  return std::from_chars(begin, end, number).ptr;
};
constexpr auto kFastFloat = [](const char* begin, const char* end, auto& number) {
  return fast_float::from_chars(begin, end, number).ptr;
};
template <class Number, class Take>
auto sumBy(Take take) {
  return [take](const std::string& text) {
    Number sum = 0;
    const char* const end = text.data() + text.size();
    for (const char* at = text.data(); at != end;) {
      Number number = 0;
      at = take(at + 1, end, number);
      sum += number;
    }
    return sum;
  };
}

// Reads numbers that stand behind a space each, and one from the front of a buffer, which drops it.
template <class Number>
void registerReading(const std::string& name, const std::vector<Number>& numbers) {
  std::vector<std::string> fronts;
  std::vector<std::string> texts;
  for (const Number number : numbers) {
    std::array<char, 32> digits;
    fronts.emplace_back(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
    fronts.back() += " m of the scan";
  }
  for (std::size_t i = 0; i < fronts.size(); ++i) {
    if (i % 256 == 0) texts.emplace_back();
    texts.back().append(" ").append(fronts[i], 0, fronts[i].find(' '));
  }
  auto many = bench::comparePool("256 of " + name + " read", texts, [](const std::string& text) {
    Number sum = 0;
    ValueReader reader(text);
    for (Number number = 0; !reader.rest().empty(); sum += number) reader >> number;
    return sum;
  });
  many.peer("from_chars", sumBy<Number>(kFromChars));
  if constexpr (std::floating_point<Number>) {
    many.peer("fast_float", sumBy<Number>(kFastFloat));
  }
  bench::comparePool(name + " read from a buffer", fronts, [](std::string buffer) {
    Number number = 0;
    buffer >> number;
    return std::pair(number, buffer);
  }).peer("from_chars and erase", [](std::string buffer) {
    Number number = 0;
    const char* const begin = buffer.data();
    buffer.erase(0, static_cast<std::size_t>(kFromChars(begin, begin + buffer.size(), number) - begin));
    return std::pair(number, buffer);
  });
}

void registerNumbers() {
  std::mt19937_64 random(5);
  std::vector<int> ints(4096);
  std::vector<double> shortOnes(4096);
  std::vector<double> longOnes(4096);
  for (std::size_t i = 0; i < ints.size(); ++i) {
    const auto number = static_cast<int>(random() >> 32);
    ints[i] = number >> random() % 31;  // Of all lengths.
    shortOnes[i] = number % 1000000 / 1000.0;
    longOnes[i] = number / 7e6;
  }
  using bench::comparePool;
  comparePool("int append", ints, kByOurs)
      .peer("to_chars", appendedByToChars())
      .peer("absl::StrAppend", kByStrAppend)
      .peer("fmt::format_to, compiled", kByFmt);
  comparePool("double append", longOnes, kByOurs)
      .peer("to_chars", appendedByToChars(std::chars_format::general, 6))
      .peer("absl::StrAppend", kByStrAppend);
  comparePool("short double append", shortOnes, kByOurs)
      .peer("to_chars", appendedByToChars(std::chars_format::general, 6))
      .peer("absl::StrAppend", kByStrAppend);
  comparePool("exact double append", longOnes,
              appended([](std::string& buffer, double number) { buffer << exact(number); }))
      .peer("to_chars", appendedByToChars())
      .peer("fmt::format_to, compiled", kByFmt);
  registerReading("int", ints);
  registerReading("short double", shortOnes);
  registerReading("double", longOnes);
}

struct Record {
  uuids::uuid id;
  StringMap properties;
  Time time;
};

struct Records {
  std::string text;
  simdjson::padded_string lines;  // A JSON object a line.
};

Records recordsOf(std::size_t count, std::uint64_t seed) {
  Records records;
  std::string lines;
  const std::vector<uuids::uuid> ids = bench::idsOf<uuids::uuid>(bench::randomBytes(count));
  const std::vector<std::time_t> seconds = bench::someSeconds();
  for (std::size_t i = 0; i < count; ++i) {
    Record record{ids[i], mapOf(bench::kAscii, 16)(4, seed + i).entries, {}};
    record.time.setTime(static_cast<double>(seconds[i % seconds.size()]) + 0.042);
    records.text << record.id << '\n' << record.properties << record.time << '\n';
    lines << R"({"id":")" << record.id << R"(","properties":)" << toJson(bench::written(record.properties))
          << R"(,"time":")" << isoText(record.time) << "\"}\n";
  }
  records.lines = simdjson::padded_string(lines);
  return records;
}

// Adds up something of each record.
std::uint64_t sumByOurs(const Records& records) {
  std::uint64_t sum = 0;
  Record record;
  std::string endOfLine;
  for (ValueReader reader(records.text); !reader.rest().empty(); record.properties.clear()) {
    reader >> record.id >> record.properties >> record.time >> endOfLine;
    sum += static_cast<std::uint64_t>(record.time.getLastTime()) + record.properties.size() + record.id.hash();
  }
  return sum;
}

// Reads uuids by ours, too, and times by a function of their numbers.
template <class MakeTime>
auto sumBySimdjson(MakeTime makeTime) {
  return [makeTime](const Records& records) {
    static simdjson::ondemand::parser parser;
    parser.threaded = false;
    std::uint64_t sum = 0;
    StringMap properties;
    simdjson::ondemand::document_stream stream = parser.iterate_many(records.lines);
    for (auto document : stream) {
      auto object = document.get_object();
      const uuids::uuid id = *parseUuid(std::string_view(object.find_field("id").get_string()));
      addTo(properties, object.find_field("properties").get_object());
      const auto [time] = makeTime(bench::numbersOf(std::string_view(object.find_field("time").get_string())));
      sum += static_cast<std::uint64_t>(time / 1000) + properties.size() + id.hash();
      properties.clear();
    }
    return sum;
  };
}

}  // namespace

void bench::registerCases() {
  registerMaps("European text", bench::kEuropean, 39);
  registerMaps("short entries", bench::kAscii, 8);
  registerNumbers();
  comparePool("records read", {100, 10000}, recordsOf, sumByOurs, 256)
      .peer("simdjson and cctz", sumBySimdjson([](const auto& numbers) { return bench::byCctz(numbers); }))
      .peer("simdjson, mktime, clocks", sumBySimdjson([](const auto& numbers) { return bench::byMktime(numbers); }));
}
