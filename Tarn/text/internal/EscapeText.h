// Escaping into a buffer.
#ifndef TARN_TEXT_INTERNAL_ESCAPETEXT_H_
#define TARN_TEXT_INTERNAL_ESCAPETEXT_H_

#include <string>
#include <string_view>

namespace Tarn::internal {

// Writes what `controlsToEsc` makes of a short `text`, with `unicodeEscapes`, to `out`, which has room for six times
// its size. Returns the end of what was written.
char* putEscaped(char* out, std::string_view text);

// Appends what `controlsToEsc` makes of `text`, which must not be part of `out`. If it throws, part of that has been
// appended.
void appendEscaped(std::string& out, std::string_view text, bool unicodeEscapes);

}  // namespace Tarn::internal

#endif  // TARN_TEXT_INTERNAL_ESCAPETEXT_H_
