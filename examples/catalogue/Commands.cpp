#include "catalogue/Commands.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <iostream>
#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

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
  void add(std::uint64_t token, const Record& record) {
    const std::string& name = record.scan.name();
    if (const std::uint64_t taken = names_.keyToToken(name); taken != kNone) {
      throw ScanError("there is a scan " + inQuotes(name) + " already, token " + std::to_string(taken));
    }
    if (const std::uint64_t taken = ids_.keyToToken(record.id); taken != kNone) {
      throw ScanError("there is a scan with this uuid already, token " + std::to_string(taken));
    }
    names_.addEntry(token, name);
    ids_.addEntry(token, record.id);
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

// Reads a stream; problems go to the console and to a list.
RecordReader openStream(const std::filesystem::path& path, std::vector<Problem>& problems, Console& console) {
  return {path, [&problems, &console, name = textOf(path)](const Problem& problem) {
            console.say(name + ':' + std::to_string(problem.line) + ": byte " + std::to_string(problem.byte) + ": " +
                        problem.reason);
            problems.push_back(problem);
          }};
}

// Reads a whole stream into a model, and gives the problems. `check` may report more of them.
template <class Check>
std::vector<Problem> load(const std::filesystem::path& path, Model& model, Console& console, const Check& check) {
  std::vector<Problem> problems;
  RecordReader reader = openStream(path, problems, console);
  while (const auto record = reader.next()) {
    check(*record, reader);
    try {
      model.add(reader.token(), *record);
    } catch (const ScanError& error) {
      reader.report(error.what());
    }
    console.advance(reader.done());
  }
  return problems;
}

// The line of a list without what some editors add: a byte order mark, carriage returns.
std::string_view plainLine(const LineReader& list) {
  std::string_view line = list.line;
  if (list.number == 1 && line.starts_with("\xEF\xBB\xBF")) line.remove_prefix(3);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

bool isComment(std::string_view line) {
  return line.starts_with('#') || line.find_first_not_of(" \t") == std::string_view::npos;
}

void print(std::vector<NumberedRecord> scans) {
  Table table(std::cout);
  for (NumberedRecord& scan : scans) table.add(std::move(scan));
  table.finish();
}

// How well a key names a scan: by its name best, else by its uuid in either form, else by its token.
int closeness(const NumberedRecord& scan, const std::string& key) {
  if (scan.record.scan.name() == key) return 3;
  if (scan.record.id == Tarn::parseUuid(key) || scan.record.id.toShortString() == key) return 2;
  return std::to_string(scan.token) == key ? 1 : 0;
}

std::optional<NumberedRecord> findScan(RecordReader& reader, const std::string& key, Console& console) {
  std::optional<NumberedRecord> found;
  int best = 0;
  while (best < 3) {
    auto record = reader.next();
    if (!record) break;
    NumberedRecord scan{reader.token(), std::move(*record)};
    if (const int now = closeness(scan, key); now > best) {
      best = now;
      found = std::move(scan);
    }
    console.advance(reader.done());
  }
  return found;
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
  Model model;
  // A list of unknown size, 0, leaves everything unknown. A byte of it costs more than one of the stream.
  const double oldSize = exists(path) ? static_cast<double>(file_size(path)) : 0.0;
  const double listSize = 2.5 * static_cast<double>(list.size());
  const double oldShare = listSize > 0.0 ? oldSize / (oldSize + listSize) : 0.0;
  console.begin("Reading the stream", oldShare);
  if (exists(path) && !load(path, model, console, [](const auto&, const auto&) {}).empty()) {
    console.say("catalogue: " + name + " is damaged; nothing was written");
    return kDamaged;
  }

  const std::uint64_t oldScans = model.size();
  std::vector<NumberedRecord> first;
  std::size_t skipped = 0;
  Appender stream(path);
  if (stream.isNew()) stream.append(StreamNames::S_SCAN_HEADER + '\n');
  console.begin("Writing scans", 1.0 - oldShare);
  while (list.next()) {
    const std::string_view line = plainLine(list);
    if (isComment(line)) continue;
    try {
      const NumberedRecord scan{model.size(), {Tarn::uuids::uuid::generate(), parseScan(line)}};
      const std::string text = storableText(scan.record);
      model.add(scan.token, scan.record);
      stream.append(text);
      if (first.size() < options.rows.value_or(20)) first.push_back(scan);
    } catch (const ScanError& error) {
      console.say(list.name() + ':' + std::to_string(list.number) + ": " + error.what());
      ++skipped;
    }
    console.advance(list.done());
  }
  stream.finish();
  console.begin("Reading back", 0.0);
  if (!stream.readBack()) {
    console.say("catalogue: " + name + " does not hold what was written");
    return kDamaged;
  }

  const std::uint64_t added = model.size() - oldScans;
  console.clear();
  if (options.json) {
    std::cout << "{\"list\":" << jsonText(list.name()) << ",\"added\":" << added << ",\"skipped\":" << skipped
              << ",\"stream\":" << jsonText(name) << ",\"scans\":" << model.size() << "}\n";
  } else {
    const std::uint64_t more = added - first.size();
    print(std::move(first));
    if (more > 0) std::cout << "... and " << more << " more\n";
    std::cout << list.name() << ": " << added << " scans added, " << skipped << " lines skipped\n"
              << name << ": " << model.size() << " scans\n";
  }
  return skipped == 0 ? kAllWell : kNotAll;
}

ExitStatus showScans(const Options& options, Console& console) {
  const std::filesystem::path path = streamIn(options.folder);
  std::vector<Problem> problems;
  RecordReader reader = openStream(path, problems, console);
  console.begin("Reading the stream", 1.0);
  if (options.argument) {
    const std::optional<NumberedRecord> scan = findScan(reader, *options.argument, console);
    console.clear();
    if (scan) {
      std::cout << (options.json ? jsonOf(*scan) + '\n' : detailsOf(*scan));
    } else {
      console.say("catalogue: there is no scan " + inQuotes(*options.argument) + " in " + textOf(path));
    }
    return !problems.empty() ? kDamaged : scan ? kAllWell : kNotAll;
  }

  const std::size_t rows = options.rows.value_or(std::numeric_limits<std::size_t>::max());
  Table table(std::cout);
  std::uint64_t count = 0;
  while (auto record = reader.next()) {
    NumberedRecord scan{reader.token(), std::move(*record)};
    if (count++ < rows) {
      if (options.json) {
        std::cout << jsonOf(scan) << '\n';
      } else {
        table.add(std::move(scan));
      }
      checkOutput();
    }
    console.advance(reader.done());
  }
  console.clear();
  table.finish();
  if (!options.json) {
    if (count > rows) std::cout << "... and " << count - rows << " more\n";
    std::cout << textOf(path) << ": " << count << " scans\n";
  }
  return problems.empty() ? kAllWell : kDamaged;
}

ExitStatus verifyScans(const Options& options, Console& console) {
  const std::filesystem::path path = streamIn(options.folder);
  const std::string name = textOf(path);
  Model model;
  console.begin("Verifying", 1.0);
  const std::vector<Problem> problems =
      load(path, model, console, [](const Record& record, const RecordReader& reader) {
        if (!isTextOf(reader.text(), record)) reader.report("the record is not what would be written for it");
      });
  console.clear();
  if (options.json) {
    std::cout << "{\"stream\":" << jsonText(name) << ",\"scans\":" << model.size() << ",\"problems\":[";
    const char* separator = "";
    for (const Problem& problem : problems) {
      std::cout << std::exchange(separator, ",") << "{\"line\":" << problem.line << ",\"byte\":" << problem.byte
                << ",\"reason\":" << jsonText(problem.reason) << '}';
    }
    std::cout << "]}\n";
  } else {
    std::cout << name << ": " << model.size() << " scans, " << problems.size() << " problems\n";
  }
  return problems.empty() ? kAllWell : kDamaged;
}

}  // namespace catalogue
