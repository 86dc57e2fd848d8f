// The classes of characters: one table, independent of locales.
#ifndef TARN_TEXT_INTERNAL_CHARACTERS_H_
#define TARN_TEXT_INTERNAL_CHARACTERS_H_

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace Tarn::internal {

// Bits that combine to a character's classes.
enum CharacterClass : unsigned char {
  kSpace = 1,      // space and 0x09 to 0x0D
  kLetter = 2,     // A to Z, a to z
  kDigit = 4,      // 0 to 9
  kValueSign = 8,  // plus, minus, full stop
  kVisible = 16,   // 0x21 to 0x7E and 0x80 to 0xFF
  kExponent = 32,  // E, e
};

inline constexpr unsigned kAlphaNum = kLetter | kDigit | kValueSign;
inline constexpr unsigned kNumberChar = kDigit | kValueSign | kExponent;

inline constexpr std::array<unsigned char, 256> kCharacterClasses = [] {
  std::array<unsigned char, 256> classes{};
  const auto add = [&classes](int first, int last, CharacterClass added) {
    for (int i = first; i <= last; ++i) {
      auto& entry = classes[static_cast<std::size_t>(i)];
      entry = static_cast<unsigned char>(entry | added);
    }
  };
  add(0x09, 0x0D, kSpace);
  add(' ', ' ', kSpace);
  add('A', 'Z', kLetter);
  add('a', 'z', kLetter);
  add('0', '9', kDigit);
  add('+', '+', kValueSign);
  add('-', '.', kValueSign);
  add(0x21, 0x7E, kVisible);
  add(0x80, 0xFF, kVisible);
  add('E', 'E', kExponent);
  add('e', 'e', kExponent);
  return classes;
}();

// Whether the character belongs to any of the classes.
constexpr bool isOf(char character, unsigned classes) {
  return (kCharacterClasses[static_cast<unsigned char>(character)] & classes) != 0;
}

// The position of the first character of the classes at or after `start`, or npos.
constexpr std::size_t findFirstOf(std::string_view text, unsigned classes, std::size_t start = 0) {
  while (start < text.size() && !isOf(text[start], classes)) ++start;
  return start < text.size() ? start : std::string_view::npos;
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
