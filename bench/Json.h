// The JSON libraries beside which texts and maps are timed.
#ifndef BENCH_JSON_H_
#define BENCH_JSON_H_

#include <span>
#include <string>
#include <string_view>

#if WITH_NLOHMANN_JSON
#include <nlohmann/json.hpp>
#endif
#if WITH_RAPIDJSON
#include <rapidjson/document.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#endif

namespace bench {

#if WITH_RAPIDJSON
// Writes all but ASCII as escapes.
using AsciiWriter = rapidjson::Writer<rapidjson::StringBuffer, rapidjson::UTF8<>, rapidjson::ASCII<>>;
#endif

// What stands between the first character and the last, with the hexadecimal digits of its escapes as ours has them.
inline std::string insideOf(std::string_view json) {
  std::string text(json.substr(1, json.size() - 2));
  for (std::size_t at = text.find("\\u"); at != std::string::npos; at = text.find("\\u", at + 6)) {
    for (char& digit : std::span(text).subspan(at + 2, 4)) {
      if (digit >= 'a') digit = static_cast<char>(digit - 'a' + 'A');
    }
  }
  return text;
}

}  // namespace bench

#endif  // BENCH_JSON_H_
