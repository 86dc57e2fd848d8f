// Escaping into a buffer, and back.
#ifndef TARN_TEXT_INTERNAL_ESCAPETEXT_H_
#define TARN_TEXT_INTERNAL_ESCAPETEXT_H_

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "Tarn/text/internal/Blocks.h"

namespace Tarn::internal {

// Writes what `controlsToEsc` makes of a short `text`, with `unicodeEscapes`, to `out`, which has room for six times
// its size. Returns the end of what was written.
char* putEscaped(char* out, std::string_view text);

// Appends what `controlsToEsc` makes of `text`, which must not be part of `out`. If it throws, part of that has been
// appended.
void appendEscaped(std::string& out, std::string_view text, bool unicodeEscapes);

// Room for a text of few bytes, and for a block that is stored at its end.
inline constexpr std::size_t kMostShort = 8192 - kBlockSize;
using ShortText = std::array<char, kMostShort + kBlockSize>;

// What `escToControls` makes of a short `text`, with `unicodeEscapes`: in `room`, or the text itself. The text goes on
// to `readable`, so that blocks can be read at its end.
std::string_view unescaped(std::string_view text, const char* readable, ShortText& room);

}  // namespace Tarn::internal

#endif  // TARN_TEXT_INTERNAL_ESCAPETEXT_H_
