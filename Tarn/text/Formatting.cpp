#include "Tarn/text/Formatting.h"

#include <array>
#include <cstdarg>
#include <cstdio>

#include "Tarn/text/internal/Characters.h"

namespace Tarn {
namespace {

// Makes the text that of the format, up to its first NUL; empty if the runtime cannot format it.
void print(std::string& text, const char* format, std::va_list arguments) {
  std::array<char, 1000> buffer;
  const int length = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
  text.assign(length >= 0 ? buffer.data() : "");
}

}  // namespace

PrintF::operator std::string() const { return text_; }

void PrintF::apply(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  print(text_, format, arguments);
  va_end(arguments);
}

std::string PrintF::printf_apply(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  print(text_, format, arguments);
  va_end(arguments);
  return text_;
}

void incrementIndex(std::string& name) {
  std::size_t at = name.size();
  while (at > 0 && name[at - 1] == '9') --at;
  const bool carries = at == 0 || !internal::isOf(name[at - 1], internal::kDigit);
  if (carries) {
    name.insert(at, 1, '1');  // In front of the nines that become zeros, if there are any.
    ++at;
  } else {
    ++name[at - 1];
  }
  for (; at < name.size(); ++at) name[at] = '0';
}

}  // namespace Tarn
