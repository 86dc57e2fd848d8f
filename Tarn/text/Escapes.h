/// @file
/// Escapes that let any text stand between double quotes, and the skipping of whitespace.
///
/// Free functions without state, but for the whitespace set that `eatWS` keeps for each thread: threads may call them
/// at once, each on a text or stream of its own.
#ifndef TARN_TEXT_ESCAPES_H_
#define TARN_TEXT_ESCAPES_H_

#include <iosfwd>
#include <string>

#include "Tarn/Export.h"

namespace Tarn {

/// Replaces the characters that have an escape by that escape.
///
///     \n  line feed         \"  double quote      \uXXXX  U+0080 and up, in capital hexadecimal digits
///     \r  carriage return   \\  backslash                 (one byte, its low eight bits, without `unicodeEscapes`)
///
/// Other controls, NUL among them, stay. The text is decoded as `wide` does it, so that a four-byte sequence keeps
/// its low 16 bits only. Linear in the text.
///
///     std::string text = "caf\xC3\xA9\n";
///     controlsToEsc(text, true);  // text is R"(caf\u00E9\n)"
///
/// Throws `std::invalid_argument` with "Invalid UTF-8 byte encountered." where `wide` does. Whatever throws, the text
/// is as before.
TARN_API void controlsToEsc(std::string& text, bool unicodeEscapes);

/// Replaces the escapes in `text` by the characters they stand for.
///
///     \n  line feed         \"  double quote      \uXXXX  the UTF-8 of that 16-bit value
///     \r  carriage return   \\  backslash                 (kept as it is without `unicodeEscapes`)
///
/// Surrogates are not joined: each becomes three bytes. A backslash that ends the text is dropped. Linear in the
/// text; allocates nothing and throws nothing.
///
///     std::string text = R"(caf\u00e9)";
///     escToControls(text, true);  // -1: text is "café"
///     text = R"(ab\tc)";
///     escToControls(text, true);  // 2: there is no \t; text is as before
///
/// A text with a malformed escape stays as it was, also when the position is more than an `int` holds and -1 is
/// returned.
/// @return -1, or the byte position of the first malformed escape's backslash, `text` untouched.
TARN_API int escToControls(std::string& text, bool unicodeEscapes);

/// Skips whitespace on a stream: `stream >> eatWS >> value`.
///
/// What is whitespace is taken once for each thread, from the locale of the first stream that it skips on; in the
/// classic locale that is space and 0x09 to 0x0D. At the end of the input the stream's end-of-file flag is set.
/// @return the stream.
TARN_API std::istream& eatWS(std::istream& stream);

/// Removes what comes before the first byte that `findNonWS` finds. A text of nothing but whitespace stays as it is.
TARN_API void eatwhite(std::string& text);

}  // namespace Tarn

#endif  // TARN_TEXT_ESCAPES_H_
