// Escaping into a text that is already under way.
#ifndef TARN_TEXT_INTERNAL_ESCAPETEXT_H_
#define TARN_TEXT_INTERNAL_ESCAPETEXT_H_

#include <string>
#include <string_view>

namespace Tarn::internal {

// Appends what `controlsToEsc` makes of `text`, which must not be part of `out`. Where it throws, part of it has been
// appended.
void appendEscaped(std::string& out, std::string_view text, bool unicodeEscapes);

}  // namespace Tarn::internal

#endif  // TARN_TEXT_INTERNAL_ESCAPETEXT_H_
