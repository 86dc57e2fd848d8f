#include "catalogue/Scan.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "catalogue/Terminal.h"

namespace catalogue {

using namespace Tarn;  // The codec's operators are found this way.

namespace {

std::string_view takeField(std::string_view& line) {
  const std::string_view field = line.substr(0, line.find('\t'));
  line.remove_prefix(std::min(field.size() + 1, line.size()));
  return field;
}

Time timeOf(std::string_view text) {
  if (text.empty()) throw ScanError("the time is missing");
  const std::optional<Time> time = parseTime(text);
  if (!time) throw ScanError(inQuotes(text) + " is no time such as 2024-03-05T14:07:09+01:00");
  std::string written;
  written << *time;
  const auto back = ValueReader(std::string_view(written)).tryRead<Time>();  // The codec does not say the zone.
  if (!back || Time::compare(*back, *time) != 0) {
    throw ScanError(inQuotes(text) + " is not from 1970-01-02 to 3000-12-30, which can be stored");
  }
  return *time;
}

void addProperty(StringMap& properties, std::string_view field) {
  const auto equals = field.find('=');
  if (equals == std::string_view::npos) throw ScanError("the property " + inQuotes(field) + " has no '='");
  const std::string key(field.substr(0, equals));
  if (key.empty()) throw ScanError("the property " + inQuotes(field) + " has no key");
  if (key == kName) throw ScanError("the property \"" + kName + "\" would replace the scan's name");
  if (!properties.try_emplace(key, field.substr(equals + 1)).second) {
    throw ScanError("the property " + inQuotes(key) + " occurs twice");
  }
}

}  // namespace

Scan parseLine(std::string_view line) {
  static std::vector<uuids::uuid> ids;  // A thousand at a time are much faster than a request to the system for each.
  if (ids.empty()) uuids::uuid::generate(ids = std::vector<uuids::uuid>(1000));
  Scan scan;
  scan.id = ids.back();
  ids.pop_back();
  scan.properties.emplace(kName, takeField(line));
  if (trim_copy(scan.name()).empty()) throw ScanError("the name is empty");
  scan.time = timeOf(takeField(line));
  while (!line.empty()) {
    // Spreadsheets fill short rows with empty fields.
    if (const std::string_view field = takeField(line); !field.empty()) addProperty(scan.properties, field);
  }
  if (!comesBack(scan.properties)) {
    throw ScanError("cannot be stored: no UTF-8, a character above U+FFFF, a NUL, or a backslash before a quote");
  }
  return scan;
}

std::string lineOf(const Scan& scan) {
  std::string line = scan.name() + '\t' + isoText(scan.time);
  for (const auto& [key, value] : scan.properties) {
    if (key != kName) line << '\t' << key << '=' << value;
  }
  return line;
}

std::string recordOf(const Scan& scan) {
  std::string text;
  text << scan.id << '\n' << scan.properties << scan.time << '\n';
  return text;
}

std::optional<Scan> parseRecord(std::string_view lines) {
  if (lines.find('\0') != std::string_view::npos) return std::nullopt;  // The codec drops what is behind it.
  ValueReader reader(lines);
  const auto id = parseUuid(reader.takeLine().value_or(""));
  auto properties = reader.tryRead<StringMap>();
  const auto time = reader.tryRead<Time>();
  if (!id || !properties || !properties->contains(kName) || !time || reader.rest() != "\n") return std::nullopt;
  return Scan{0, *id, std::move(*properties), *time};
}

}  // namespace catalogue
