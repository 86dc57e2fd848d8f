#include "catalogue/Commands.h"

#include <cerrno>
#include <cstdint>
#include <iostream>
#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

#include "catalogue/FileLock.h"
#include "catalogue/Output.h"
#include "catalogue/Stream.h"
#include "catalogue/Text.h"

namespace catalogue {

using namespace Tarn::DataStructures;

namespace {

// The scans of a model by name and by uuid, neither of which occurs twice. Both tables know a scan by its token: its
// place in the stream, from 0.
class Model {
 public:
  [[nodiscard]] std::uint64_t size() const { return names_.getNumElements(); }

  // Throws `ScanError`, and adds nothing, for a name or a uuid that is taken.
  void add(const Record& record) {
    const std::string& name = record.scan.name();
    if (const std::uint64_t taken = names_.keyToToken(name); taken != kNone) {
      throw ScanError("there is a scan " + inQuotes(name) + " already, token " + std::to_string(taken));
    }
    if (const std::uint64_t taken = ids_.keyToToken(record.id); taken != kNone) {
      throw ScanError("there is a scan with this uuid already, token " + std::to_string(taken));
    }
    names_.addEntry(record.token, name);
    ids_.addEntry(record.token, record.id);
  }

 private:
  static constexpr std::uint64_t kNone = std::numeric_limits<std::uint64_t>::max();

  KeyTable names_;
  UuidKeyTable ids_;
};

std::filesystem::path streamIn(const std::filesystem::path& folder) {
  if (!is_directory(folder)) throw std::runtime_error("there is no folder " + textOf(folder));
  std::filesystem::path path = folder / StreamNames::S_MODEL_SCANS;
  if (exists(path) && !is_regular_file(path)) throw std::runtime_error(textOf(path) + " is no regular file");
  return path;
}

// Reads a whole stream into a model. What is not exactly as it would be written is a problem only if that is asked for.
std::vector<Problem> load(const std::filesystem::path& path, Model& model, bool isStrict, Console& console) {
  RecordReader reader(path, isStrict, console);
  while (const auto record = reader.next()) {
    if (isStrict && !isTextOf(reader.text(), *record)) reader.report("the record is not what would be written for it");
    try {
      model.add(*record);
    } catch (const ScanError& error) {
      reader.report(error.what());
    }
  }
  return reader.problems();
}

// The line of a list without what some editors add: a byte order mark, a carriage return.
std::string_view plainText(const Line& read) {
  std::string_view line = read.text;
  if (read.number == 1 && line.starts_with("\xEF\xBB\xBF")) line.remove_prefix(3);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

bool isComment(std::string_view line) {
  return line.starts_with('#') || line.find_first_not_of(" \t") == std::string_view::npos;
}

// How well a key names a scan: by its name best, else by its uuid in either form, else by its token.
int closeness(const Record& record, const std::string& key) {
  if (record.scan.name() == key) return 3;
  if (record.id == Tarn::parseUuid(key) || record.id.toShortString() == key) return 2;
  return std::to_string(record.token) == key ? 1 : 0;
}

std::optional<Record> findScan(RecordReader& reader, const std::string& key) {
  std::optional<Record> found;
  for (int best = 0; best < 3;) {
    auto record = reader.next();
    if (!record) break;
    if (const int now = closeness(*record, key); now > best) {
      best = now;
      found = std::move(record);
    }
  }
  return found;
}

// What became of a list.
struct Added {
  std::uint64_t scans = 0;
  std::uint64_t skippedLines = 0;
  std::vector<Record> first;  // Of the scans, to be shown.
};

// Adds the scans of a list to the stream and to the model.
Added addScans(LineReader& list, Model& model, Appender& stream, std::size_t rows, Console& console) {
  Added added;
  if (stream.isNew()) stream.append(StreamNames::S_SCAN_HEADER + '\n');
  while (list.next()) {
    const std::string_view line = plainText(list.line());
    if (isComment(line)) continue;
    try {
      const Record record{model.size(), Tarn::uuids::uuid::generate(), parseScan(line)};
      const std::string text = storableText(record);
      model.add(record);
      stream.append(text);
      if (added.scans++ < rows) added.first.push_back(record);
    } catch (const ScanError& error) {
      console.say(list.name() + ':' + std::to_string(list.line().number) + ": " + error.what());
      ++added.skippedLines;
    }
    console.advance(list.done());
  }
  stream.finish();
  FileLock::keepWhenInterrupted();
  return added;
}

ExitStatus showScan(RecordReader& reader, const std::string& key, const Options& options, Console& console) {
  const std::optional<Record> found = findScan(reader, key);
  console.clear();
  if (found) {
    std::cout << (options.list   ? listLineOf(found->scan) + '\n'
                  : options.json ? jsonOf(*found) + '\n'
                                 : detailsOf(*found));
  } else {
    console.say("catalogue: there is no scan " + inQuotes(key) + " in " + reader.name());
  }
  return !reader.problems().empty() ? kDamaged : found ? kAllWell : kNotAll;
}

}  // namespace

void checkOutput() {
  if (std::cout) return;
  if (meansClosedPipe(errno)) throw ReaderGone();
  throwIoError("cannot write to standard output");
}

ExitStatus writeScans(const Options& options, Console& console) {
  const bool fromFile = options.argument && options.argument != "-";
  LineReader list(fromFile ? std::optional(pathOf(*options.argument)) : std::nullopt);
  const std::filesystem::path path = streamIn(options.folder);
  const std::string name = textOf(path);
  const FileLock lock(path, [&] {
    if (options.noWait) throw std::runtime_error("another program writes to " + name);
    console.say("catalogue: waiting for another program that writes to " + name);
  });
  if (!fromFile && isTerminal(0)) console.say("catalogue: reading a list from the terminal, up to its end");
  // A list of unknown size counts as 0, and then no share is known. Its bytes cost more than those of the stream.
  const auto oldSize = static_cast<double>(file_size(path));
  const double listSize = 2.5 * static_cast<double>(list.size());
  const double oldShare = listSize > 0.0 ? oldSize / (oldSize + listSize) : 0.0;

  Model model;
  console.begin("Reading the stream", oldShare);
  if (!lock.isNew() && !load(path, model, false, console).empty()) {
    console.say("catalogue: " + name + " is damaged; nothing was written");
    return kDamaged;
  }
  console.begin("Writing scans", 1.0 - oldShare);
  lock.undoWhenInterrupted();
  Appender stream(path, lock.isNew());
  const Added added = addScans(list, model, stream, options.rows.value_or(20), console);
  console.clear();
  if (!stream.readBack()) {
    console.say("catalogue: " + name + " does not hold what was written");
    return kDamaged;
  }

  if (options.json) {
    std::cout << jsonObject({{"list", jsonText(list.name())},
                             {"added", std::to_string(added.scans)},
                             {"skipped", std::to_string(added.skippedLines)},
                             {"stream", jsonText(name)},
                             {"scans", std::to_string(model.size())}})
              << '\n';
  } else {
    Table table(std::cout);
    for (const Record& record : added.first) table.add(record);
    table.finish();
    if (added.scans > added.first.size()) std::cout << "... and " << added.scans - added.first.size() << " more\n";
    std::cout << list.name() << ": " << added.scans << " scans added, " << added.skippedLines << " lines skipped\n"
              << name << ": " << model.size() << " scans\n";
  }
  return added.skippedLines == 0 ? kAllWell : kNotAll;
}

ExitStatus showScans(const Options& options, Console& console) {
  console.begin("Reading the stream", 1.0);
  RecordReader reader(streamIn(options.folder), true, console);
  if (options.argument) return showScan(reader, *options.argument, options, console);

  const std::size_t rows = options.rows.value_or(std::numeric_limits<std::size_t>::max());
  Table table(std::cout);
  std::uint64_t count = 0;
  for (; auto record = reader.next(); ++count) {
    if (count >= rows) continue;
    if (options.list) {
      std::cout << listLineOf(record->scan) << '\n';
    } else if (options.json) {
      std::cout << jsonOf(*record) << '\n';
    } else {
      table.add(std::move(*record));
    }
    checkOutput();
  }
  console.clear();
  table.finish();
  if (!options.json && !options.list) {
    if (count > rows) std::cout << "... and " << count - rows << " more\n";
    std::cout << reader.name() << ": " << count << " scans\n";
  }
  return reader.problems().empty() ? kAllWell : kDamaged;
}

ExitStatus verifyScans(const Options& options, Console& console) {
  const std::filesystem::path path = streamIn(options.folder);
  const std::string name = textOf(path);
  Model model;
  console.begin("Verifying", 1.0);
  const std::vector<Problem> problems = load(path, model, true, console);
  console.clear();
  if (options.json) {
    std::vector<std::string> objects;
    objects.reserve(problems.size());
    for (const Problem& problem : problems) {
      objects.push_back(jsonObject({{"line", std::to_string(problem.line)},
                                    {"byte", std::to_string(problem.byte)},
                                    {"reason", jsonText(problem.reason)}}));
    }
    std::cout << jsonObject({{"stream", jsonText(name)},
                             {"scans", std::to_string(model.size())},
                             {"problems", '[' + Tarn::implode(objects, ",") + ']'}})
              << '\n';
  } else {
    std::cout << name << ": " << model.size() << " scans, " << problems.size() << " problems\n";
  }
  return problems.empty() ? kAllWell : kDamaged;
}

}  // namespace catalogue
