// Words of a stream, and uuids as text. Input: a text.
#include <iomanip>
#include <sstream>

#include "tests/Plain.h"
#include "tests/properties/Properties.h"

namespace {

using namespace Tarn;

std::string restOf(std::istream& stream) {
  stream.clear();
  return {std::istreambuf_iterator<char>(stream), {}};
}

// The standard library's quoted strings have the same rules.
void requireWords(const std::string& text) {
  std::istringstream stream(text);
  std::istringstream plain(text);
  while (stream) {
    std::optional<std::string> word;
    std::string expected = "none";
    stream >> word;
    plain >> std::quoted(expected);
    require(word.value_or("none") == expected, "a word is what std::quoted reads");
  }
  require(restOf(stream) == restOf(plain), "words leave the same rest");
}

void requireStreamedUuid(const std::string& text) {
  const uuids::uuid before(std::array<unsigned char, 16>{1});
  std::istringstream stream(text);
  std::istringstream same(text);
  uuids::uuid id = before;
  std::optional<std::string> word;
  stream >> id;
  same >> word;
  require(id == plainParse(word.value_or("")).value_or(before), "a uuid is read where a word is one");
  require(restOf(stream) == restOf(same), "a uuid takes a word");
}

void requireUuid(const std::string& text) {
  const std::optional<uuids::uuid> id = parseUuid(text);
  require(id == plainParse(text), "a uuid is parsed where there are 32 digits");
  if (!id) return;
  require(parseUuid(id->string()) == id && parseUuid('{' + id->string() + '}') == id, "its own texts are parsed");
}

}  // namespace

void checkWords(Input input) {
  const std::string text = input.rest();
  requireUuid(text);
  requireWords(text);
  requireStreamedUuid(text);
}
