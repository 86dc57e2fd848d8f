// The JSON libraries beside which texts and maps are timed, as their manuals advise.
#ifndef BENCH_JSON_H_
#define BENCH_JSON_H_

#ifdef __SSE2__
#define RAPIDJSON_SSE2
#endif
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <simdjson.h>

#include <span>
#include <string>
#include <string_view>

namespace bench {

// Writes all but ASCII as escapes.
using AsciiWriter = rapidjson::Writer<rapidjson::StringBuffer, rapidjson::UTF8<>, rapidjson::ASCII<>>;

// Gives each string of a JSON text, keys too, to a function.
template <class Use>
struct ForEachString : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, ForEachString<Use>> {
  explicit ForEachString(Use function) : use(function) {}
  bool Key(const char* text, rapidjson::SizeType size, bool /*copy*/) { return String(text, size, false); }
  bool String(const char* text, rapidjson::SizeType size, bool /*copy*/) {
    use(std::string_view(text, size));
    return true;
  }
  Use use;
};

template <class Use>
void readStrings(std::string json, Use use) {
  rapidjson::InsituStringStream stream(json.data());
  ForEachString handler(use);
  rapidjson::Reader().Parse<rapidjson::kParseInsituFlag>(stream, handler);
}

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
