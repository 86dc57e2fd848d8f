#include "Tarn/text/Formatting.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <ostream>

#include "Tarn/text/internal/Characters.h"

namespace Tarn {
namespace {

using Buffer = std::array<char, 1000>;

// Up to its first NUL, the buffer holds the text of the format; none if the runtime cannot format it.
void print(Buffer& buffer, const char* format, std::va_list arguments) noexcept {
  if (std::vsnprintf(buffer.data(), buffer.size(), format, arguments) < 0) buffer.front() = '\0';
}

}  // namespace

PrintF::PrintF(const char* format, ...) {
  Buffer buffer;
  std::va_list arguments;
  va_start(arguments, format);
  print(buffer, format, arguments);
  va_end(arguments);
  text_ = buffer.data();
}

PrintF::operator std::string() const { return text_; }

std::ostream& operator<<(std::ostream& stream, const PrintF& text) { return stream << text.text_; }

std::string PrintF::printf_apply(const char* format, ...) {
  Buffer buffer;
  std::va_list arguments;
  va_start(arguments, format);
  print(buffer, format, arguments);
  va_end(arguments);
  text_ = buffer.data();
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
