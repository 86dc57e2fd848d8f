#include "Tarn/text/Formatting.h"

#include <array>
#include <cstdarg>
#include <cstdio>

#include "Tarn/text/internal/Characters.h"

namespace Tarn {

PrintF::operator std::string() const { return text_; }

std::string PrintF::printf_apply(const char* format, ...) {
  std::array<char, 1000> buffer{};
  std::va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
  va_end(arguments);
  text_ = length >= 0 ? buffer.data() : "";
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
