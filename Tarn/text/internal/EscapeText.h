// Escaping into a text that is already under way.
#ifndef TARN_TEXT_INTERNAL_ESCAPETEXT_H_
#define TARN_TEXT_INTERNAL_ESCAPETEXT_H_

#include <string>
#include <string_view>

namespace Tarn::internal {

// Writes what `controlsToEsc` makes of `text`, with `unicodeEscapes`, to `out`, which has room for six times as much.
// Gives the end of what was written. For texts of a few characters.
char* putEscaped(char* out, std::string_view text);

// Appends what `controlsToEsc` makes of `text`, which must not be part of `out`. Where it throws, part of it has been
// appended.
void appendEscaped(std::string& out, std::string_view text, bool unicodeEscapes);

}  // namespace Tarn::internal

#endif  // TARN_TEXT_INTERNAL_ESCAPETEXT_H_
