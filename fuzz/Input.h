// Values from the bytes that a fuzzer makes up, and the check that stops it.
//
// Texts end at a '|', so that the files of the corpus can be written by hand. What is missing at the end counts as
// zero.
#ifndef FUZZ_INPUT_H_
#define FUZZ_INPUT_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

class Input {
 public:
  explicit Input(std::string_view bytes) : rest_(bytes) {}

  [[nodiscard]] bool isEmpty() const { return rest_.empty(); }

  // The bytes of a number, the lowest first.
  template <class Number>
  Number number() {
    Number number{};
    const std::string_view bytes = take(sizeof number);
    std::memcpy(&number, bytes.data(), bytes.size());
    return number;
  }

  // A number below the limit, from one byte.
  std::size_t below(std::size_t limit) { return number<unsigned char>() % limit; }

  // A text up to the next '|', which is dropped.
  std::string text() {
    const std::string_view text = take(rest_.find('|'));
    take(1);
    return assembled(text);
  }

  std::string rest() { return assembled(std::exchange(rest_, {})); }

 private:
  static std::string assembled(std::string_view text) {
    constexpr std::string_view kPieces[] = {"\"=>\"",
                                            "=>",
                                            "\"",
                                            "\" \"",
                                            "\\",
                                            "\\\"",
                                            "\\\\",
                                            "\\n",
                                            "\\u00e9",
                                            "\\u",
                                            "a",
                                            "B",
                                            "e",
                                            " ",
                                            "\n",
                                            "\t",
                                            "{",
                                            "}",
                                            "[",
                                            ",",
                                            "-",
                                            "+",
                                            ".",
                                            "0",
                                            "1",
                                            "99999",
                                            "4294967296",
                                            "1e400",
                                            "tRue",
                                            "False",
                                            "\x7F",
                                            "\x80",
                                            "\xC3\xA9",
                                            "\xE2\x82",
                                            "\xF0\x9F\x98",
                                            "2024-03-05T14",
                                            ":07:09+01:00",
                                            "5.3.2024 14:",
                                            "00010203-0405-0607",
                                            "0809-0a0b0c0d0e0f",
                                            {"\0", 1}};
    if (!text.starts_with('*')) return std::string(text);
    std::string result;
    for (const char byte : text.substr(1)) result += kPieces[static_cast<unsigned char>(byte) % std::size(kPieces)];
    return result;
  }

  std::string_view take(std::size_t size) {
    const std::string_view taken = rest_.substr(0, size);
    rest_.remove_prefix(taken.size());
    return taken;
  }

  std::string_view rest_;
};

// What each fuzzer defines: makes its values from the input and requires what must hold.
void fuzz(Input input);

inline void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

// What a call throws, or none.
template <class Exception, class Call>
std::string wordsOf(Call call) {
  try {
    call();
    return "";
  } catch (const Exception& exception) {
    return exception.what();
  }
}

#endif  // FUZZ_INPUT_H_
