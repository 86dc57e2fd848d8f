#include "catalogue/Commands.h"

#include <cerrno>
#include <cstdint>
#include <iostream>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>
#include <vector>

#include "catalogue/Stream.h"
#include "catalogue/System.h"

namespace catalogue {

using namespace Tarn::DataStructures;
using Json = nlohmann::ordered_json;

namespace {

// The scans of a model by name and by uuid, neither of which occurs twice. Both tables know a scan by its token.
class Model {
 public:
  [[nodiscard]] std::uint64_t size() const { return names_.getNumElements(); }

  // Throws `ScanError`, and adds nothing, for a name or a uuid that is taken.
  void add(const Scan& scan) {
    refuse("a scan " + inQuotes(scan.name()), names_.keyToToken(scan.name()));
    refuse("a scan with this uuid", ids_.keyToToken(scan.id));
    names_.addEntry(scan.token, scan.name());
    ids_.addEntry(scan.token, scan.id);
  }

 private:
  static void refuse(const std::string& what, std::uint64_t token) {
    if (token == std::numeric_limits<std::uint64_t>::max()) return;  // It is not there.
    throw ScanError("there is " + what + " already, token " + std::to_string(token));
  }

  KeyTable names_;
  UuidKeyTable ids_;
};

std::filesystem::path streamIn(const std::string& folder) {
  if (!is_directory(pathOf(folder))) throw std::runtime_error("there is no folder " + folder);
  std::filesystem::path path = pathOf(folder) / StreamNames::S_MODEL_SCANS;
  if (exists(path) && !is_regular_file(path)) throw std::runtime_error(textOf(path) + " is no regular file");
  return path;
}

// Reads a whole stream into a model. What is not exactly as it would be written is a problem only if that is asked for.
std::vector<Problem> load(const std::filesystem::path& path, Model& model, bool isStrict, Console& console) {
  RecordReader reader(path, isStrict, console);
  while (const auto scan = reader.next()) {
    try {
      if (isStrict && recordOf(*scan) != reader.text()) reader.report("this is not what would be written");
      model.add(*scan);
    } catch (const std::invalid_argument& error) {  // Also from the codec, for what is no UTF-8.
      reader.report(error.what());
    }
  }
  return reader.problems();
}

// The line of a list without what some editors add: a byte order mark, a carriage return. Empty if it does not count.
std::string_view plainText(const Line& read) {
  std::string_view line = read.text;
  if (read.number == 1 && line.starts_with("\xEF\xBB\xBF")) line.remove_prefix(3);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line.starts_with('#') || line.find_first_not_of(" \t") == std::string_view::npos ? "" : line;
}

// Whether a scan goes by this name, uuid in either form, or token.
bool goesBy(const std::string& key, const Scan& scan) {
  return scan.name() == key || scan.id == Tarn::parseUuid(key) || scan.id.toShortString() == key ||
         std::to_string(scan.token) == key;
}

void addRow(Table& table, const Scan& scan) {
  std::vector<std::string> properties;
  for (const auto& [key, value] : scan.properties) {
    if (key != kName) properties.push_back(Tarn::implode({key, value}, "="));
  }
  if (table.isNew()) table.add({"token", "name", "time", "properties", "uuid"});
  table.add({std::to_string(scan.token), shortened(scan.name(), 28), scan.time.getTimeStr8(),
             shortened(Tarn::implode(properties, ", "), 60), scan.id.toShortString()});
}

// Prints the rest of a table, which is to have so many rows at most.
void finish(Table& table, std::size_t scans, std::size_t rows) {
  table.print(columnsOf(1));
  if (scans > rows) std::cout << "... and " << scans - rows << " more\n";
}

// What became of a list.
struct Added {
  std::size_t scans = 0;
  std::size_t skippedLines = 0;
  Table shown;
};

Added addScans(LineReader& list, Model& model, Appender& stream, std::size_t rows, Console& console) {
  Added added;
  while (list.next()) {
    const std::string_view line = plainText(list.line());
    if (line.empty()) continue;
    try {
      Scan scan = parseLine(line);
      scan.token = model.size();
      model.add(scan);
      stream.append(recordOf(scan));
      if (added.scans++ < rows) addRow(added.shown, scan);
    } catch (const ScanError& error) {
      console.say(list.name() + ':' + std::to_string(list.line().number) + ": " + error.what());
      ++added.skippedLines;
    }
    console.advance(list.done());
  }
  stream.flush();
  return added;
}

Table detailsOf(const Scan& scan) {
  Table table;
  table.add({"token", std::to_string(scan.token)});
  table.add({"uuid", scan.id.string() + " or " + scan.id.toShortString()});
  table.add({"time", Tarn::isoText(scan.time)});
  table.add({});
  for (const auto& [key, value] : scan.properties) table.add({shortened(key), shortened(value)});
  return table;
}

Json jsonOf(const Scan& scan) {
  Json properties(scan.properties);
  properties.erase(kName);
  return {{"token", scan.token},
          {"uuid", scan.id.string()},
          {"name", scan.name()},
          {"time", Tarn::isoText(scan.time)},
          {"properties", properties}};
}

// A line in ASCII, whatever the texts hold.
void print(const Json& json) { std::cout << json.dump(-1, ' ', true, Json::error_handler_t::replace) << '\n'; }

}  // namespace

void checkOutput() {
  if (std::cout) return;
  if (errno == EPIPE || errno == EINVAL) throw ReaderGone();  // The latter on Windows.
  throwIoError("cannot write to standard output");
}

ExitStatus writeScans(const Options& options) {
  Console console;
  const bool fromFile = options.argument && options.argument != "-";
  LineReader list(fromFile ? std::optional(pathOf(*options.argument)) : std::nullopt);
  const std::filesystem::path path = streamIn(options.folder);
  const std::string name = textOf(path);
  FileLock lock(path, true);
  if (!lock.take(false)) {
    if (options.noWait) throw std::runtime_error("another program writes to " + name);
    console.say("catalogue: waiting for another program that writes to " + name);
    if (!lock.take(true)) throwIoError("cannot lock " + name);
  }
  // A list of unknown size counts as 0, and then no share is known. Its bytes cost more than those of the stream.
  const auto oldSize = static_cast<double>(file_size(path));
  const double oldShare = list.size() > 0.0 ? oldSize / (oldSize + 2.5 * list.size()) : 0.0;

  Model model;
  console.begin("Reading the stream", oldShare);
  if (oldSize > 0.0 && !load(path, model, false, console).empty()) {
    console.say("catalogue: " + name + " is damaged; nothing was written");
    return kDamaged;
  }
  if (!fromFile && isTerminal(0)) console.say("catalogue: waiting for a list from the terminal, up to its end");
  console.begin("Writing scans", 1.0 - oldShare);
  Appender stream(path);
  const std::size_t rows = options.rows.value_or(20);
  Added added = addScans(list, model, stream, rows, console);
  console.clear();
  if (options.json) {
    print({{"list", list.name()},
           {"added", added.scans},
           {"skipped", added.skippedLines},
           {"stream", name},
           {"scans", model.size()}});
  } else {
    finish(added.shown, added.scans, rows);
    std::cout << list.name() << ": " << added.scans << " scans added, " << added.skippedLines << " lines skipped\n"
              << name << ": " << model.size() << " scans\n";
  }
  return added.skippedLines == 0 ? kAllWell : kNotAll;
}

ExitStatus showScans(const Options& options) {
  constexpr std::size_t kBlock = 1000;  // Rows that are held back to find how wide the columns are.
  const auto& key = options.argument;
  const std::size_t rows = options.rows.value_or(std::numeric_limits<std::size_t>::max());
  // A table that grows on the terminal shows by itself how it gets on.
  Console console(key || !isTerminal(1));
  console.begin("Reading the stream", 1.0);
  RecordReader reader(streamIn(options.folder), true, console);
  Table table;
  std::size_t count = 0;
  while (const auto scan = reader.next()) {
    if (key && !goesBy(*key, *scan)) continue;
    if (count++ >= rows) continue;
    if (key) console.clear();
    if (options.json) {
      print(jsonOf(*scan));
    } else if (options.list) {
      std::cout << lineOf(*scan) << '\n';
    } else if (key) {
      detailsOf(*scan).print();
    } else {
      addRow(table, *scan);
      if (table.size() >= kBlock) table.print(columnsOf(1));
    }
    checkOutput();
  }
  console.clear();
  if (key && count == 0) console.say("catalogue: there is no scan " + inQuotes(*key) + " in " + reader.name());
  if (!key && !options.json && !options.list) {
    finish(table, count, rows);
    std::cout << reader.name() << ": " << count << " scans\n";
  }
  return !reader.problems().empty() ? kDamaged : key && count == 0 ? kNotAll : kAllWell;
}

ExitStatus verifyScans(const Options& options) {
  const std::filesystem::path path = streamIn(options.folder);
  Console console;
  Model model;
  console.begin("Verifying", 1.0);
  const std::vector<Problem> problems = load(path, model, true, console);
  console.clear();
  if (options.json) {
    Json found = Json::array();
    for (const auto& [line, byte, reason] : problems) {
      found.push_back({{"line", line}, {"byte", byte}, {"reason", reason}});
    }
    print({{"stream", textOf(path)}, {"scans", model.size()}, {"problems", found}});
  } else {
    std::cout << textOf(path) << ": " << model.size() << " scans, " << problems.size() << " problems\n";
  }
  return problems.empty() ? kAllWell : kDamaged;
}

}  // namespace catalogue
