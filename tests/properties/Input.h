// What properties are made of: values from bytes that somebody else makes up, checks, and marks of what was reached.
//
// A property is a function that makes its values from an input and requires what must hold of them. GoogleTest runs
// each on a fixed number of generated inputs (PropertyTest.cpp), libFuzzer on inputs that grow (fuzz/).
//
// Texts end at a '|', so that the files of the corpus can be written by hand. What is missing at the end counts as
// zero. The first character of a text may tell how it is made, so that few bytes make long texts:
//
//     *PP...    the pieces that the bytes P name, one behind the other
//     @LFPP...  the piece F again and again up to the length that L names, then the pieces P
//     %LPP...   all the pieces again and again up to that length
//     #CC...    the characters of numbers that the bytes C name
#ifndef TESTS_PROPERTIES_INPUT_H_
#define TESTS_PROPERTIES_INPUT_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <map>
#include <stdexcept>
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
    using namespace std::string_view_literals;
    // One behind the other, each up to a '|'.
    constexpr std::string_view kPieces =
        "\"=>\"|=>|\"|\" \"|\\|\\\"|\\\\|\\n|\\u00e9|\\u|a|B|e| |\n|\t|{|}|[|,|-|+|.|0|1|99999|32768|65536|2147483647|"
        "4294967296|9223372036854775808|18446744073709551615|1e400|tRue|False|\x7F|\x80|\xC3\xA9|\xE2\x82|\xF0\x9F\x98|"
        "2024-03-05T14|:07:09+01:00|5.3.2024 14:|00010203-0405-0607|0809-0a0b0c0d0e0f|\0|"sv;
    constexpr auto kCount = static_cast<std::size_t>(std::count(kPieces.begin(), kPieces.end(), '|'));
    // Around the sizes at which the library changes its ways.
    constexpr std::size_t kLengths[] = {0,    1,    7,    8,    9,    15,   16,   17,   23,   24,  25,
                                        31,   32,   33,   47,   48,   63,   64,   65,   127,  128, 129,
                                        1000, 1023, 1024, 1025, 4096, 8191, 8192, 8193, 20000};
    const auto number = [text](std::size_t at) {
      return at < text.size() ? static_cast<unsigned char>(text[at]) : std::size_t{0};
    };
    const auto pieces = [&](std::size_t from, std::size_t end) {
      std::string result;
      for (std::size_t i = from; i < end; ++i) {
        std::string_view rest = kPieces;
        for (std::size_t before = number(i) % kCount; before > 0; --before) rest.remove_prefix(rest.find('|') + 1);
        result += rest.substr(0, rest.find('|'));
      }
      return result;
    };
    const auto filled = [&](const std::string& piece) {
      std::string result;
      while (!piece.empty() && result.size() < kLengths[number(1) % std::size(kLengths)]) result += piece;
      return result.substr(0, kLengths[number(1) % std::size(kLengths)]);
    };
    if (text.starts_with('*')) return pieces(1, text.size());
    if (text.starts_with('#')) {
      constexpr std::string_view kCharacters = "0123456789990+-.eE, ";
      std::string result(text.substr(1));
      for (char& c : result) c = kCharacters[static_cast<unsigned char>(c) % kCharacters.size()];
      return result;
    }
    if (text.starts_with('@')) return filled(pieces(2, 3)) + pieces(3, text.size());
    if (text.starts_with('%')) return filled(pieces(2, text.size()));
    return std::string(text);
  }

  std::string_view take(std::size_t size) {
    const std::string_view taken = rest_.substr(0, size);
    rest_.remove_prefix(taken.size());
    return taken;
  }

  std::string_view rest_;
};

// Thrown by a check that does not hold. A fuzzer ends by it.
struct DoesNotHold : std::logic_error {
  using std::logic_error::logic_error;
};

inline void require(bool holds, const char* what) {
  if (!holds) throw DoesNotHold(what);
}

// How often each mark was reached.
inline std::map<std::string_view, long>& marks() {
  static std::map<std::string_view, long> counts;
  return counts;
}

// Marks a path of the library or a kind of input. The generated inputs have to reach every mark: a mark that a property
// names and whose condition never holds fails its test.
inline void reached(const char* mark, bool isReached = true) { marks()[mark] += isReached ? 1 : 0; }

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

#endif  // TESTS_PROPERTIES_INPUT_H_
