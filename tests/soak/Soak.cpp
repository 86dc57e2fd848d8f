// One task of great size: soak TASK SIZE. Fails if a result is not what it must be. See tools/soak.
#include <Tarn/Tarn.h>

#include <climits>
#include <cstdlib>
#include <iostream>
#include <limits>

using namespace Tarn;
using namespace Tarn::DataStructures;

namespace {

void require(bool holds, const char* what) {
  if (holds) return;
  std::cerr << "does not hold: " << what << '\n';
  std::exit(1);
}

constexpr std::string_view kLine = "Scan 0042: north of the old wall, caf\xC3\xA9 and tower\t\"1.8 m\" 17 \\ 4.25 \n";
constexpr std::size_t kCharacters = kLine.size() - 1;  // One of them has two bytes.

// Whole lines, of about this size.
std::string linesOf(std::size_t size) {
  std::string text;
  text.reserve(size);
  while (text.size() + kLine.size() <= size) text += kLine;
  return text;
}

std::string numbered(const KeyTable&, std::uint64_t number) { return "scan" + std::to_string(number); }
uuids::uuid numbered(const UuidKeyTable&, std::uint64_t number) {
  std::array<unsigned char, 16> bytes{};
  for (std::size_t i = 0; i < 8; ++i) bytes[15 - i] = static_cast<unsigned char>(number >> (8 * i));
  return uuids::uuid(bytes);
}

template <class Table>
void table(std::size_t size) {
  Table table;
  for (std::size_t i = 0; i < size; ++i) require(table.addEntry(i, numbered(table, i)), "an entry is new");
  require(table.getNumElements() == size, "all are there");
  for (std::size_t i = 0; i < size; ++i) {
    require(table.keyToToken(numbered(table, i)) == i && table.tokenToKey(i).has_value(), "a pair is found");
  }
  if constexpr (std::is_same_v<Table, UuidKeyTable>) require(table.getToken(size - 1) == size - 1, "positions are");
}

void map(std::size_t size) {
  StringMap entries;
  for (std::size_t i = 0; i < size; ++i) entries["key\n" + std::to_string(i)] = "caf\xC3\xA9 " + std::to_string(i);
  std::string text;
  text << entries;
  StringMap back;
  ValueReader reader(text);
  reader >> back;
  require(back == entries && reader.rest() == " ", "the map comes back");
}

void wideText(std::size_t size) {
  const std::string text = linesOf(size);
  const std::wstring decoded = wide(text);
  require(decoded.size() == text.size() / kLine.size() * kCharacters && decoded.back() == L'\n', "all is decoded");
}

void escapes(std::size_t size) {
  const std::string text = linesOf(size);
  std::string escaped = text;
  controlsToEsc(escaped, true);
  require(isAscii(escaped), "all is escaped");
  require(escToControls(escaped, true) == -1 && escaped == text, "all comes back");
}

void searches(std::size_t size) {
  std::string text(size, '\t');
  text.back() = 'x';
  text[size - 2] = 'e';
  const auto last = static_cast<int>(size) - 1;
  require(findAlphaNum(text, 0) == last - 1 && findNonWS(text, 0) == last - 1, "the first is found");
  require(findValidNumberChar(text, 0) == last - 1 && findLastOf(text, 'e', 0) == last - 1, "the first is found");
  require(findLastOf(text, "\tex") == last - 2 && isAscii(text), "the last is found");
  replaceAll(text, "e", "x");
  require(compareIgnoreCase(text, text) == 0 && text[size - 2] == 'x', "it is replaced");
  trim(text);
  require(text == "xx", "it is trimmed");
}

void values(std::size_t size) {
  const std::string text = linesOf(size);
  std::size_t lines = 0;
  for (ValueReader reader(text); !reader.rest().empty(); ++lines) {
    char letter = '\0';
    int number = 0;
    double fraction = 0;
    std::string rest;
    reader >> letter;
    reader.skip(4);
    reader >> number;
    reader.skip(reader.rest().find('\\'));
    reader >> fraction >> rest;
    require(letter == 'S' && number == 42 && fraction == 4.25 && rest == " ", "a line is as each is");
  }
  require(lines == text.size() / kLine.size(), "each line is read");
}

// Positions that an int does not hold are -1, and the last that it holds is one.
void far(std::size_t) {
  constexpr auto kLast = static_cast<std::size_t>(INT_MAX);
  std::string text(kLast, '\t');
  text += "e\\x";
  for (const int position : {INT_MAX, -1}) {
    require(findAlphaNum(text, 0) == position && findNonWS(text, 1) == position, "the first");
    require(findValidNumberChar(text, 7) == position && findLastOf(text, "e") == position, "the first or last");
    require(findLastOf(text, 'e', 9) == position, "the last");
    require(position < 0 || findLastOf(text, "x") == -1, "behind the last position");
    if (position > 0) text.insert(0, 1, '\t');
  }
  const std::size_t size = text.size();
  require(escToControls(text, true) == -1 && text.size() == size && text[size - 2] == '\\', "a malformed escape stays");
  text.erase(0, 3);
  require(escToControls(text, true) == INT_MAX - 1, "a malformed escape at a position");
}

struct Task {
  std::string_view name;
  void (*run)(std::size_t size);
};
constexpr Task kTasks[] = {{"KeyTable", table<KeyTable>},
                           {"UuidKeyTable", table<UuidKeyTable>},
                           {"map", map},
                           {"wide", wideText},
                           {"escapes", escapes},
                           {"searches", searches},
                           {"values", values},
                           {"far", far}};

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return 2;
  for (const Task& task : kTasks) {
    if (task.name != arguments[1]) continue;
    task.run(std::stoull(arguments[2]));
    return 0;
  }
  return 2;
}
