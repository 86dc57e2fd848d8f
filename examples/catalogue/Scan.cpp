#include "catalogue/Scan.h"

#include <cstddef>
#include <utility>

#include "catalogue/Text.h"

namespace catalogue {

using namespace Tarn;  // The codec's operators are found this way.

namespace {

std::string_view takeField(std::string_view& line) {
  const std::string_view field = line.substr(0, line.find('\t'));
  line.remove_prefix(std::min(field.size() + 1, line.size()));
  return field;
}

// The codec does not check UTF-8, and keeps the low 16 bits of a character.
void checkCharacters(std::string_view line) {
  for (std::string_view rest = line; !rest.empty();) {
    const std::size_t byte = line.size() - rest.size() + 1;
    const std::optional<char32_t> character = takeCharacter(rest);
    if (!character) throw ScanError(PrintF("byte %zu is not UTF-8", byte));
    if (*character > 0xFFFF) {
      throw ScanError(PrintF("byte %zu begins U+%X, and characters above U+FFFF cannot be stored", byte,
                             static_cast<unsigned>(*character)));
    }
  }
}

Time timeOf(std::string_view text) {
  if (text.empty()) throw ScanError("the time is missing");
  const std::optional<Time> time = parseTime(text);
  if (!time) throw ScanError(inQuotes(text) + " is no time such as 2024-03-05T14:07:09+01:00");
  std::string written;
  written << *time;
  ValueReader reader(written);
  const auto back = reader.tryRead<Time>();  // The stream does not say the zone.
  if (!back || Time::compare(*back, *time) != 0) {
    throw ScanError(inQuotes(text) + " is not from 1970-01-02 to 3000-12-30, which can be stored");
  }
  return *time;
}

void addProperty(StringMap& properties, std::string_view field) {
  const std::size_t equals = field.find('=');
  if (equals == std::string_view::npos) throw ScanError("the property " + inQuotes(field) + " has no '='");
  const std::string key(field.substr(0, equals));
  if (key.empty()) throw ScanError("the property " + inQuotes(field) + " has no key");
  if (key == kName) throw ScanError("the property \"" + kName + "\" would replace the scan's name");
  if (!properties.try_emplace(key, field.substr(equals + 1)).second) {
    throw ScanError("the property " + inQuotes(key) + " occurs twice");
  }
}

}  // namespace

Scan parseScan(std::string_view line) {
  checkCharacters(line);
  Scan scan;
  const std::string name(takeField(line));
  if (Tarn::trim_copy(name).empty()) throw ScanError("the name is empty");
  scan.properties.emplace(kName, name);
  scan.time = timeOf(takeField(line));
  while (!line.empty()) {
    // Spreadsheets fill short rows with empty fields.
    const std::string_view field = takeField(line);
    if (!field.empty()) addProperty(scan.properties, field);
  }
  return scan;
}

std::string listLineOf(const Scan& scan) {
  std::string line = scan.name() + '\t' + isoText(scan.time);
  for (const auto& [key, value] : scan.properties) {
    if (key != kName) line << '\t' << key << '=' << value;
  }
  return line;
}

std::string recordText(const Record& record) {
  std::string text;
  text << record.id << '\n' << record.scan.properties << record.scan.time << '\n';
  return text;
}

std::optional<Record> parseRecord(std::string_view lines) {
  if (lines.find('\0') != std::string_view::npos) return std::nullopt;  // The codec drops what is behind it.
  try {
    std::string idLine;
    std::string lineEnd;
    Scan scan;
    ValueReader reader(lines);
    reader >> idLine >> scan.properties >> scan.time >> lineEnd;
    const auto id = Tarn::parseUuid(idLine);
    const bool isWhole = lineEnd.empty() && reader.rest().empty() && scan.properties.contains(kName);
    return id && isWhole ? std::optional(Record{0, *id, std::move(scan)}) : std::nullopt;
  } catch (const std::out_of_range&) {  // No number where the time should have one.
    return std::nullopt;
  }
}

bool isTextOf(std::string_view lines, const Record& record) {
  try {
    return recordText(record) == lines;
  } catch (const std::invalid_argument&) {  // What the lines hold is not UTF-8.
    return false;
  }
}

std::string storableText(const Record& record) {
  std::string text = recordText(record);
  const auto readBack = parseRecord(text);
  if (!readBack || readBack->id != record.id || !(readBack->scan == record.scan)) {
    throw ScanError("cannot be stored: a NUL, or a backslash in front of a double quote, does not come back");
  }
  return text;
}

}  // namespace catalogue
