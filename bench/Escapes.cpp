#include "Tarn/text/Escapes.h"

#include "bench/Bench.h"
#include "bench/Json.h"
#include "bench/Texts.h"

namespace {

struct Text {
  std::string plain;
  std::string escaped;
  std::string json;  // The escaped text between quotes.
  simdjson::padded_string padded;
};

Text textOf(std::string plain) {
  std::string escaped = plain;
  Tarn::controlsToEsc(escaped, true);
  std::string json = '"' + escaped + '"';
  simdjson::padded_string padded(json);
  return {std::move(plain), std::move(escaped), std::move(json), std::move(padded)};
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
    const auto make = [script](std::size_t size, std::uint64_t seed) {
      return textOf(script.withFewEscapes(size, seed));
    };
    const std::string name = std::string(" of ") + script.name;
    comparePool("controlsToEsc" + name, {64, 4096, 1 << 20}, make, escape)
        .limitCopy()
        .peer(
            "RapidJSON",
            [](const Text& text) {
              rapidjson::StringBuffer buffer;
              AsciiWriter(buffer).String(text.plain.data(), static_cast<rapidjson::SizeType>(text.plain.size()));
              return buffer;
            },
            [](const rapidjson::StringBuffer& buffer) { return insideOf(buffer.GetString()); });
    comparePool("escToControls" + name, {64, 4096, 1 << 20}, make, unescape)
        .limitCopy()
        .peer("RapidJSON in situ",
              [](const Text& text) {
                std::string result;
                readStrings(text.json, [&result](std::string_view plain) { result = plain; });
                return result;
              })
        .peer("simdjson", [](const Text& text) {
          static simdjson::ondemand::parser parser;
          auto document = parser.iterate(text.padded);
          return std::string(std::string_view(document.get_string()));
        });
  }
}
