#include "Tarn/text/WideText.h"

#include <codecvt>
#include <locale>

#include "bench/Bench.h"
#include "bench/Texts.h"

#if WITH_UTF8CPP
#include <utf8.h>
#endif

void bench::registerCases() {
  for (const Script& script : {kAscii, kEuropean, kCjk}) {
    auto wide = compare(
        std::string("wide of ") + script.name, {64, 4096, 1 << 20},
        [script](std::size_t size) { return script.plain(size); },
        [](const std::string& text) { return Tarn::wide(text); });
    wide.peer("wstring_convert", [](const std::string& text) {
      return std::wstring_convert<std::codecvt_utf8<wchar_t>>().from_bytes(text);
    });
#if WITH_UTF8CPP
    wide.peer("utf8cpp", [](const std::string& text) {
      std::wstring result;
      result.reserve(text.size());
      utf8::utf8to32(text.begin(), text.end(), std::back_inserter(result));
      return result;
    });
#endif
    wide.limit("widening loop", [](const std::string& text) {
      std::wstring result(text.size(), L'\0');
      for (std::size_t i = 0; i < text.size(); ++i) result[i] = static_cast<unsigned char>(text[i]);
      return result;
    });
  }
}
