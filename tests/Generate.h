// Inputs that no one would think of, the same in every run.
#ifndef TESTS_GENERATE_H_
#define TESTS_GENERATE_H_

#include <cstdint>
#include <random>
#include <string>
#include <string_view>

class Generate {
 public:
  explicit Generate(unsigned seed) : engine_(seed) {}

  // A number from 0 up to below the limit.
  std::uint64_t below(std::uint64_t limit) { return engine_() % limit; }

  // A text of up to `size` characters of the alphabet.
  template <class Character>
  std::basic_string<Character> text(std::basic_string_view<Character> alphabet, std::size_t size) {
    std::basic_string<Character> result(below(size + 1), Character{});
    for (Character& character : result) character = alphabet[below(alphabet.size())];
    return result;
  }
  std::string text(std::string_view alphabet, std::size_t size) { return text<char>(alphabet, size); }

  std::string bytes(std::size_t size) {
    std::string result(below(size + 1), '\0');
    for (char& byte : result) byte = static_cast<char>(below(256));
    return result;
  }

 private:
  std::mt19937_64 engine_;
};

#endif  // TESTS_GENERATE_H_
