#include "Tarn/text/WideText.h"

#include <utf8.h>

#include "bench/Bench.h"
#include "bench/Texts.h"

namespace {

// A sequence at a time, without looking at what is wrong with it.
std::wstring byPlainLoop(const std::string& text) {
  std::wstring result(text.size(), L'\0');
  std::size_t size = 0;
  for (std::size_t at = 0; at < text.size();) {
    const auto byte = [&text, at](std::size_t i) {
      return static_cast<unsigned>(static_cast<unsigned char>(text[at + i]));
    };
    const unsigned lead = byte(0);
    if (lead < 0x80) {
      result[size++] = static_cast<wchar_t>(lead);
      at += 1;
    } else if (lead < 0xE0) {
      result[size++] = static_cast<wchar_t>((lead & 0x1F) << 6 | (byte(1) & 0x3F));
      at += 2;
    } else {
      result[size++] = static_cast<wchar_t>((lead & 0xF) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F));
      at += 3;
    }
  }
  result.resize(size);
  return result;
}

std::wstring byUtf8Cpp(const std::string& text) {
  std::wstring result;
  result.reserve(text.size());
  utf8::utf8to32(text.begin(), text.end(), std::back_inserter(result));
  return result;
}

std::wstring byWidening(const std::string& text) {
  std::wstring result(text.size(), L'\0');
  for (std::size_t i = 0; i < text.size(); ++i) result[i] = static_cast<unsigned char>(text[i]);
  return result;
}

}  // namespace

void bench::registerCases() {
  const Sizes sizes = {16, 64, 4096, 1 << 20};
  for (const Script& script : {kAscii, kEuropean, kCjk}) {
    const auto make = [script](std::size_t size, std::uint64_t seed) { return script.plain(size, seed); };
    auto wide = comparePool(std::string("wide of ") + script.name, sizes, make,
                            [](const std::string& text) { return Tarn::wide(text); });
    wide.peer("plain loop", byPlainLoop).peer("utf8cpp", byUtf8Cpp).limitCopy();
    if (script.name == kAscii.name) wide.peer("widening loop", byWidening);
  }
  comparePool("wide of ASCII by its address", sizes, ascii, [](const std::string& text) {
    return Tarn::wide(reinterpret_cast<const unsigned char*>(text.data()), text.size());
  }).peer("widening loop", byWidening);
}
