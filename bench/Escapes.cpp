#include "Tarn/text/Escapes.h"

#include "bench/Bench.h"
#include "bench/Json.h"
#include "bench/Texts.h"

namespace {

struct Text {
  std::string plain;
  std::string escaped;
  std::string json;  // The escaped text between quotes.
};

Text textOf(std::string plain) {
  std::string escaped = plain;
  Tarn::controlsToEsc(escaped, true);
  return {plain, escaped, '"' + escaped + '"'};
}

std::string escape(const Text& text) {
  std::string result = text.plain;
  Tarn::controlsToEsc(result, true);
  return result;
}

std::string unescape(const Text& text) {
  std::string result = text.escaped;
  Tarn::escToControls(result, true);
  return result;
}

}  // namespace

void bench::registerCases() {
  for (const Script& script : {kAscii, kEuropean, kCjk}) {
    const auto make = [script](std::size_t size) { return textOf(script.withFewEscapes(size)); };
    const auto copyOf = [](const std::string Text::*side) { return [side](const Text& text) { return text.*side; }; };
    const std::string name = std::string(" of ") + script.name;
    auto write = compare("controlsToEsc" + name, {64, 4096, 1 << 20}, make, escape);
    auto read = compare("escToControls" + name, {64, 4096, 1 << 20}, make, unescape);
    write.limit("memcpy", copyOf(&Text::plain));
    read.limit("memcpy", copyOf(&Text::escaped));
#if WITH_RAPIDJSON
    write.peer(
        "RapidJSON",
        [](const Text& text) {
          rapidjson::StringBuffer buffer;
          AsciiWriter(buffer).String(text.plain.data(), static_cast<rapidjson::SizeType>(text.plain.size()));
          return buffer;
        },
        [](const rapidjson::StringBuffer& buffer) { return insideOf(buffer.GetString()); });
    read.peer(
        "RapidJSON",
        [](const Text& text) {
          rapidjson::Document document;
          document.Parse(text.json.data(), text.json.size());
          return document;
        },
        [](const rapidjson::Document& document) {
          return std::string(document.GetString(), document.GetStringLength());
        });
#endif
#if WITH_NLOHMANN_JSON
    write.peer(
        "nlohmann",
        [](const Text& text) { return [value = nlohmann::json(text.plain)] { return value.dump(-1, ' ', true); }; },
        insideOf);
    read.peer(
        "nlohmann", [](const Text& text) { return nlohmann::json::parse(text.json); },
        [](const nlohmann::json& value) { return value.get<std::string>(); });
#endif
  }
}
