// The classes of characters, independent of locales.
#ifndef TARN_TEXT_INTERNAL_CHARACTERS_H_
#define TARN_TEXT_INTERNAL_CHARACTERS_H_

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "Tarn/text/internal/Blocks.h"

namespace Tarn::internal {

inline constexpr ByteClass<ByteRange{0x09, 0x0D}, ByteRange{' ', ' '}> kSpace;
inline constexpr ByteClass<ByteRange{0x00, 0x08}, ByteRange{0x0E, 0x1F}, ByteRange{0x21, 0xFF}> kNoSpace;
inline constexpr ByteClass<ByteRange{0x21, 0x7E}, ByteRange{0x80, 0xFF}> kVisible;
inline constexpr ByteClass<ByteRange{0x80, 0xFF}> kNonAscii;
inline constexpr ByteClass<ByteRange{'0', '9'}> kDigit;
inline constexpr ByteClass<ByteRange{'A', 'Z'}, ByteRange{'a', 'z'}> kLetter;
inline constexpr ByteClass<ByteRange{'+', '+'}, ByteRange{'-', '.'}, ByteRange{'0', '9'}, ByteRange{'A', 'Z'},
                           ByteRange{'a', 'z'}>
    kAlphaNum;
inline constexpr ByteClass<ByteRange{'+', '+'}, ByteRange{'-', '.'}, ByteRange{'0', '9'}, ByteRange{'E', 'E'},
                           ByteRange{'e', 'e'}>
    kNumberChar;

inline constexpr std::size_t kNone = std::string_view::npos;  // The position of what is not there.

// Whether the character belongs to the class.
template <class Class>
constexpr bool isOf(char character, Class sought) {
  return sought.holds(character);
}

// The position of the first character of the class at or after `start`, which is at most the size; or npos.
template <class Class>
std::size_t findFirstOf(std::string_view text, Class sought, std::size_t start = 0) {
  const char* const end = text.data() + text.size();
  const char* const found = findFirst(text.data() + start, end, sought);
  return found == end ? std::string_view::npos : static_cast<std::size_t>(found - text.data());
}

// A to Z as a to z; any character type.
template <class Character>
constexpr Character toLower(Character character) {
  return character >= 'A' && character <= 'Z' ? static_cast<Character>(character + ('a' - 'A')) : character;
}

// Whether the text begins with this word of lower-case letters, in any letter case.
constexpr bool startsWithWord(std::string_view text, std::string_view word) {
  return text.size() >= word.size() &&
         std::equal(word.begin(), word.end(), text.begin(), [](char a, char b) { return a == toLower(b); });
}

}  // namespace Tarn::internal

#endif  // TARN_TEXT_INTERNAL_CHARACTERS_H_
