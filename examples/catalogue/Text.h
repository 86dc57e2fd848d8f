// Text as a person sees it: the characters of UTF-8, and the columns that they take on a terminal.
#ifndef CATALOGUE_TEXT_H_
#define CATALOGUE_TEXT_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace catalogue {

// Takes one character from the front of a text that is not empty. Nothing, and the text stays, where no well-formed
// UTF-8 begins: a sequence must be whole, in its shortest form, and no surrogate.
std::optional<char32_t> takeCharacter(std::string_view& text);

// The columns of a text; East Asian wide characters take two, combining ones none.
std::size_t displayWidth(std::string_view text);

// The text in at most so many columns, cut with an ellipsis. What would disturb a terminal is shown as a question mark.
std::string shortened(std::string_view text, std::size_t columns);

// The text with spaces behind it, in at least so many columns.
std::string padded(std::string text, std::size_t columns);

// A text to be named in a message.
std::string inQuotes(std::string_view text);

// The text as a JSON string, of valid UTF-8 whatever the text holds: U+FFFD stands for each byte that begins no
// character. What would disturb a terminal is escaped.
std::string jsonText(std::string_view text);

// A JSON object of keys and values that are JSON already.
std::string jsonObject(const std::vector<std::pair<std::string, std::string>>& members);

}  // namespace catalogue

#endif  // CATALOGUE_TEXT_H_
