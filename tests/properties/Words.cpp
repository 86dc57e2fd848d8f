// Words of a stream, and uuids as text. Input: a text.
#include <optional>
#include <sstream>
#include <string_view>

#include "tests/Plain.h"
#include "tests/properties/Properties.h"

namespace {

using namespace Tarn;

std::string restOf(std::istream& stream) {
  stream.clear();
  return {std::istreambuf_iterator<char>(stream), {}};
}

// A token, character by character.
std::optional<std::string> plainWord(std::istream& stream) {
  char c = '\0';
  if (!(stream >> std::ws).get(c)) return std::nullopt;
  const bool isQuoted = c == '"';
  std::string word(isQuoted ? 0 : 1, c);
  while (stream.get(c)) {
    if (isQuoted && c == '"') break;
    if (!isQuoted && std::string_view(" \t\n\v\f\r").find(c) != std::string_view::npos) {
      stream.unget();
      break;
    }
    if (!isQuoted || c != '\\' || stream.get(c)) word += c;
  }
  return word;
}

void requireWords(const std::string& text) {
  std::istringstream stream(text);
  std::istringstream plain(text);
  while (stream) {
    std::optional<std::string> word = "before";
    stream >> word;
    const std::optional<std::string> expected = plainWord(plain);
    reached(!expected ? "no word" : plain ? "a word" : "a word that the end cuts off");
    require(word == expected.value_or("before"), "a word is what its rule reads, or stays");
    require(stream.rdstate() == plain.rdstate() && stream.tellg() == plain.tellg(), "a word leaves the same rest");
  }
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
