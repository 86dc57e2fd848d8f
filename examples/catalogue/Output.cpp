#include "catalogue/Output.h"

#include <algorithm>
#include <map>
#include <utility>

#include "catalogue/Text.h"

namespace catalogue {

namespace {

constexpr std::size_t kFirst = 1000;
constexpr std::size_t kMostKeys = 3;
constexpr std::size_t kWidest = 28;

// The keys that most of the scans have, besides the name.
std::vector<std::string> commonKeys(const std::vector<Record>& records) {
  std::map<std::string, std::size_t> counts;
  for (const Record& record : records) {
    for (const auto& property : record.scan.properties) ++counts[property.first];
  }
  counts.erase(kName);
  std::vector<std::string> keys;
  keys.reserve(counts.size());
  for (const auto& count : counts) keys.push_back(count.first);
  std::ranges::stable_sort(keys, [&](const auto& a, const auto& b) { return counts[a] > counts[b]; });
  keys.resize(std::min(keys.size(), kMostKeys));
  return keys;
}

}  // namespace

void Table::add(Record record) {
  if (first_.size() == kFirst) finish();
  if (!widths_.empty()) return print(cells(record));
  first_.push_back(std::move(record));
}

void Table::finish() {
  if (first_.empty()) return;
  keys_ = commonKeys(first_);
  std::vector<Row> rows = {{"token", "name", "time"}};
  for (const std::string& key : keys_) rows[0].push_back(shortened(key, kWidest));
  rows[0].emplace_back("uuid");
  for (const Record& record : first_) rows.push_back(cells(record));
  first_.clear();
  widths_.resize(rows[0].size());
  for (const Row& row : rows) {
    for (std::size_t column = 0; column < row.size(); ++column) {
      widths_[column] = std::max(widths_[column], displayWidth(row[column]));
    }
  }
  for (const Row& row : rows) print(row);
}

Row Table::cells(const Record& record) const {
  const auto& [token, id, scan] = record;
  Row row = {std::to_string(token), shortened(scan.name(), kWidest), scan.time.getTimeStr8()};
  for (const std::string& key : keys_) {
    row.push_back(scan.properties.contains(key) ? shortened(scan.properties.at(key), kWidest) : "");
  }
  row.push_back(id.toShortString());
  return row;
}

void Table::print(const Row& row) {
  std::string line;
  for (std::size_t column = 0; column < row.size(); ++column) {
    line += padded(row[column], widths_[column]) + "  ";
  }
  Tarn::rtrim(line);
  out_ << line << '\n';
}

std::string detailsOf(const Record& record) {
  const auto& [token, id, scan] = record;
  std::vector<Row> rows = {{"token", std::to_string(token)},
                           {"uuid", id.string() + " or " + id.toShortString()},
                           {"time", Tarn::isoText(scan.time)}};
  const std::size_t own = rows.size();
  for (const auto& [key, value] : scan.properties)
    rows.push_back({shortened(key, std::string::npos), shortened(value, std::string::npos)});
  std::size_t width = 0;
  for (const Row& row : rows) width = std::max(width, displayWidth(row[0]));
  std::string text;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (i == own) text += '\n';
    text += padded(rows[i][0], width) + "  " + rows[i][1] + '\n';
  }
  return text;
}

std::string jsonOf(const Record& record) {
  const auto& [token, id, scan] = record;
  std::vector<std::pair<std::string, std::string>> properties;
  for (const auto& [key, value] : scan.properties) {
    if (key != kName) properties.emplace_back(key, jsonText(value));
  }
  return jsonObject({{"token", std::to_string(token)},
                     {"uuid", jsonText(id.string())},
                     {"name", jsonText(scan.name())},
                     {"time", jsonText(Tarn::isoText(scan.time))},
                     {"properties", jsonObject(properties)}});
}

}  // namespace catalogue
