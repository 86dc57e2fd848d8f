// Keeps a catalogue of scans: reads a list, stores each scan as a record in a model's stream, reads the stream back and
// compares. What a list and a record look like is said in catalogue/Scan.h.
#include <Tarn/Tarn.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <limits>
#include <map>
#include <memory>
#include <system_error>
#include <utility>
#include <vector>

#include "catalogue/Scan.h"
#include "catalogue/Terminal.h"
#include "catalogue/Text.h"

using namespace Tarn;
using namespace Tarn::DataStructures;
using namespace catalogue;

namespace {

enum ExitStatus { kAllWell = 0, kLinesSkipped = 1, kFailed = 2, kNotVerified = 3 };

constexpr const char* kHelp = R"(Usage: catalogue [--rows N] FOLDER [LIST]

Adds the scans of a list to the model in FOLDER, reads all of them back and compares.

LIST is a file, or standard input when it is missing or -. Each line is a scan, in UTF-8, with a tab between fields:
    name, time, then any number of key=value, such as
    North tower <tab> 2024-03-05T14:07:09Z <tab> height=1.8 <tab> operator=Zofia
The time is ISO 8601; its zone is ignored. Empty lines and those that begin with # do not count.

Scans are appended to the file "Scans" in FOLDER, which must exist; the file is made if it does not. What the file holds
already stays, and a scan whose name is taken is skipped like a line that cannot be read: a list can be run again.
If writing fails, the file is left as it was.

    --rows N    list at most N of the added scans (20)
    --help      show this text

Exit status: 0 all well, 1 some lines were skipped, 2 wrong usage, or reading or writing failed,
3 the stream does not hold what was written.
)";

struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct VerificationError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Options {
  bool help = false;
  std::size_t rows = 20;
  std::filesystem::path folder;
  std::string list = "-";
};

Options parseOptions(const std::vector<std::string>& arguments) {
  Options options;
  std::vector<std::string> places;
  for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
    if (*argument == "--help" || *argument == "-h") {
      options.help = true;
      return options;
    }
    if (*argument == "--rows") {
      const std::string number = ++argument == arguments.end() ? "" : *argument;
      const bool isNumber = !number.empty() && number.find_first_not_of("0123456789") == std::string::npos;
      if (!isNumber || number.size() > 9) throw UsageError("--rows takes a number");
      ValueReader reader(number);
      reader >> options.rows;
    } else if (argument->size() > 1 && startsWith(*argument, "-")) {
      throw UsageError("there is no option " + *argument);
    } else {
      places.push_back(*argument);
    }
  }
  if (places.empty() || places.size() > 2) throw UsageError("a folder and at most one list are expected");
  options.folder = places[0];
  if (places.size() == 2) options.list = places[1];
  return options;
}

[[noreturn]] void throwIoError(const std::string& what) {
  throw std::system_error(errno != 0 ? errno : EIO, std::generic_category(), what);
}

std::string readAll(std::istream& in, const std::string& name, std::size_t expectedSize = 0) {
  std::string text;
  text.reserve(expectedSize);
  std::vector<char> chunk(1U << 20U);
  errno = 0;
  do {
    in.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
    text.append(chunk.data(), static_cast<std::size_t>(in.gcount()));
  } while (in);
  if (!in.eof()) throwIoError("cannot read " + name);
  return text;
}

std::string readFile(const std::string& path) {
  errno = 0;
  std::ifstream in(path, std::ios::binary);
  if (!in) throwIoError("cannot read " + path);
  std::error_code noSize;  // A pipe has none.
  const std::uintmax_t size = std::filesystem::file_size(path, noSize);
  return readAll(in, path, noSize ? 0 : static_cast<std::size_t>(size));
}

// The lines of a text, one after the other, without their ends.
class Lines {
 public:
  explicit Lines(std::string_view text) : text_(text), rest_(text) {
    if (rest_.starts_with("\xEF\xBB\xBF")) rest_.remove_prefix(3);  // The byte order mark of some editors.
  }

  bool next() {
    if (rest_.empty()) return false;
    line = rest_.substr(0, rest_.find('\n'));
    rest_.remove_prefix(std::min(line.size() + 1, rest_.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    ++number;
    return true;
  }

  [[nodiscard]] double done() const {
    return 1.0 - static_cast<double>(rest_.size()) / static_cast<double>(text_.size());
  }

  std::string_view line;
  std::size_t number = 0;

 private:
  std::string_view text_;
  std::string_view rest_;
};

// Both tables know a scan by its token: its place in the stream, from 0.
struct Model {
  std::filesystem::path path;
  bool isNew = true;
  KeyTable names;
  UuidKeyTable ids;

  [[nodiscard]] std::uint64_t size() const { return names.getNumElements(); }

  [[nodiscard]] bool holds(const std::string& name) const {
    return names.keyToToken(name) != std::numeric_limits<std::uint64_t>::max();
  }

  void add(const Record& record) {
    const std::uint64_t token = size();
    names.addEntry(token, record.scan.name());
    ids.addEntry(token, record.id);
  }

  // Whether this is the token's record.
  [[nodiscard]] bool knows(std::uint64_t token, const Record& record) const {
    return names.tokenToKey(token) == record.scan.name() && ids.tokenToKey(token) == record.id;
  }
};

// A line of the list that became a scan. The text itself is parsed again when it is needed: that is cheaper to keep.
struct AddedLine {
  std::string_view text;
  std::size_t number;
};

bool takeHeader(ValueReader& reader) {
  std::string header;
  reader >> header;
  return header == StreamNames::S_SCAN_HEADER;
}

Model openModel(const std::filesystem::path& folder) {
  Model model;
  model.path = folder / StreamNames::S_MODEL_SCANS;
  const std::string path = model.path.generic_string();
  if (!is_directory(folder)) throw std::runtime_error("there is no folder " + folder.generic_string());
  model.isNew = !exists(model.path);
  if (model.isNew) return model;
  if (!is_regular_file(model.path)) throw std::runtime_error(path + " is no regular file");
  const std::string text = readFile(path);
  ValueReader reader(text);
  if (!takeHeader(reader)) throw std::runtime_error(path + " does not begin with the header of scan data");
  while (!reader.rest().empty()) {
    const std::size_t position = text.size() - reader.rest().size();
    const auto record = takeRecord(reader);
    const bool isNew = record && text.ends_with('\n') && !model.holds(record->scan.name());
    if (isNew) model.add(*record);
    if (!isNew || model.ids.getNumElements() != model.size()) {  // Uuids count once.
      throw std::runtime_error(
          PrintF("%s is damaged: no record of its own at byte %zu; nothing was written", path, position));
    }
  }
  return model;
}

// Appends to a file in large pieces. Unless it is finished, the file ends up as it was.
class Appender {
 public:
  explicit Appender(const Model& model)
      : path_(model.path), isNew_(model.isNew), oldSize_(isNew_ ? 0 : file_size(path_)) {
    errno = 0;
    out_.open(path_, std::ios::binary | std::ios::app);
    if (!out_) throwIoError("cannot write " + path_.generic_string());
  }
  Appender(const Appender&) = delete;
  Appender& operator=(const Appender&) = delete;
  ~Appender() {
    if (finished_) return;
    out_.close();
    std::error_code ignored;  // The failure that brought us here is the one to report.
    if (isNew_) {
      std::filesystem::remove(path_, ignored);
    } else {
      std::filesystem::resize_file(path_, oldSize_, ignored);
    }
  }

  void append(std::string_view text) {
    constexpr std::size_t kPiece = 1U << 20U;
    pending_ += text;
    if (pending_.size() >= kPiece) flush();
  }

  void finish() {
    flush();
    out_.close();
    if (!out_) throwIoError("cannot write " + path_.generic_string());
    finished_ = true;
  }

 private:
  void flush() {
    errno = 0;
    out_.write(pending_.data(), static_cast<std::streamsize>(pending_.size())).flush();
    if (!out_) throwIoError("cannot write " + path_.generic_string());
    pending_.clear();
  }

  std::filesystem::path path_;
  bool isNew_;
  std::uintmax_t oldSize_;
  std::ofstream out_;
  std::string pending_;
  bool finished_ = false;
};

Record makeRecord(std::string_view line, const Model& model) {
  Record record{uuids::uuid::generate(), parseScan(line)};
  if (model.holds(record.scan.name())) throw LineError("there is a scan " + inQuotes(record.scan.name()) + " already");
  return record;
}

// Adds the scans of a list to the stream and the tables. `skip` is told the number of each other line, and why.
template <class Skip>
std::vector<AddedLine> addScans(Model& model, Lines lines, IProgress& progress, const Skip& skip) {
  progress.setStep("Writing scans");
  std::vector<AddedLine> added;
  Appender stream(model);
  if (model.isNew) stream.append(StreamNames::S_SCAN_HEADER + '\n');
  while (lines.next()) {
    if (lines.line.empty() || lines.line.starts_with('#')) continue;
    try {
      const Record record = makeRecord(lines.line, model);
      stream.append(storableText(record));
      model.add(record);
      added.push_back({lines.line, lines.number});
    } catch (const LineError& error) {
      skip(lines.number, error.what());
    }
    progress.setProgress(lines.done());
  }
  stream.finish();
  progress.setProgress(1.0);
  return added;
}

// Reads the whole stream back and compares it with the tables and with the lines that were added to it last.
// Returns the first of the added records.
std::vector<Record> verify(const Model& model, const std::vector<AddedLine>& added, IProgress& progress,
                           std::size_t rows) {
  progress.setStep("Reading back");
  const std::string text = readFile(model.path.generic_string());
  ValueReader reader(text);
  if (!takeHeader(reader)) throw VerificationError("the stream has lost its header");
  std::vector<Record> first;
  const std::uint64_t old = model.size() - added.size();
  for (std::uint64_t token = 0; token < model.size(); ++token) {
    auto record = takeRecord(reader);
    if (!record || !model.knows(token, *record)) {
      throw VerificationError(
          PrintF("record %llu is not the one that was written", static_cast<unsigned long long>(token)));
    }
    if (token >= old) {
      const AddedLine& line = added[token - old];
      if (!(parseScan(line.text) == record->scan)) {
        throw VerificationError(PrintF("the scan of line %zu came back changed", line.number));
      }
      if (first.size() < rows) first.push_back(std::move(*record));
    }
    progress.setProgress(1.0 - static_cast<double>(reader.rest().size()) / static_cast<double>(text.size()));
  }
  if (!reader.rest().empty()) throw VerificationError("the stream holds more than was written");
  progress.setProgress(1.0);
  return first;
}

// The keys that most of the records have, besides the name.
std::vector<std::string> commonKeys(const std::vector<Record>& records, std::size_t most) {
  std::map<std::string, std::size_t> counts;
  for (const Record& record : records) {
    for (const auto& property : record.scan.properties) ++counts[property.first];
  }
  counts.erase(kName);
  std::vector<std::string> keys;
  keys.reserve(counts.size());
  for (const auto& count : counts) keys.push_back(count.first);
  std::ranges::stable_sort(keys, [&](const auto& a, const auto& b) { return counts[a] > counts[b]; });
  keys.resize(std::min(keys.size(), most));
  return keys;
}

using Row = std::vector<std::string>;

std::vector<Row> tableOf(const std::vector<Record>& records, const Model& model) {
  const std::vector<std::string> keys = commonKeys(records, 3);
  std::vector<Row> rows = {{"token", "name", "time"}};
  rows[0].insert(rows[0].end(), keys.begin(), keys.end());
  rows[0].emplace_back("uuid");
  for (const Record& record : records) {
    const StringMap& properties = record.scan.properties;
    Row& row = rows.emplace_back();
    row = {std::to_string(model.ids.keyToToken(record.id)), record.scan.name(), record.scan.time.getTimeStr8()};
    for (const std::string& key : keys) row.push_back(properties.contains(key) ? properties.at(key) : "");
    row.push_back(record.id.toShortString());
  }
  return rows;
}

void print(std::ostream& out, const std::vector<Row>& rows) {
  constexpr std::size_t kWidest = 28;
  for (const Row& row : rows) {
    std::string line;
    for (std::size_t column = 0; column < row.size(); ++column) {
      std::size_t width = 0;
      for (const Row& other : rows) width = std::max(width, std::min(displayWidth(other[column]), kWidest));
      line += fitted(row[column], width) + "  ";
    }
    rtrim(line);
    out << line << '\n';
  }
}

ExitStatus run(const Options& options) {
  const bool fromFile = options.list != "-";
  const std::string listName = fromFile ? options.list : "standard input";
  const std::string list = fromFile ? readFile(options.list) : readAll(std::cin, listName);
  Model model = openModel(options.folder);

  ProgressBar bar(std::cerr);
  const auto whole = std::make_shared<Progress>();
  if (errorsGoToTerminal()) {
    whole->addObserver([&bar](double done) { bar.show(done); });
    whole->addObserver([&bar](const std::string& step) { bar.show(step); });
  }
  PartialProgress writing(whole, 0.5);
  PartialProgress reading(whole, 0.5);

  std::size_t skipped = 0;
  const auto added = addScans(model, Lines(list), writing, [&](std::size_t line, const char* reason) {
    bar.clear();
    std::cerr << listName + ':' + std::to_string(line) + ": " + reason + '\n';
    ++skipped;
  });
  const std::vector<Record> shown = verify(model, added, reading, options.rows);
  bar.clear();

  if (!shown.empty()) print(std::cout, tableOf(shown, model));
  if (added.size() > shown.size()) std::cout << "... and " << added.size() - shown.size() << " more\n";
  std::cout << listName << ": " << added.size() << " scans added, " << skipped << " lines skipped\n"
            << model.path.generic_string() << ": " << model.size() << " scans, each read back and compared\n";
  return skipped == 0 ? kAllWell : kLinesSkipped;
}

ExitStatus runProgram(const std::vector<std::string>& arguments) {
  try {
    const Options options = parseOptions(arguments);
    errno = 0;
    if (options.help) std::cout << kHelp;
    const ExitStatus status = options.help ? kAllWell : run(options);
    if (!std::cout.flush()) throwIoError("cannot write to standard output");
    return status;
  } catch (const UsageError& error) {
    std::cerr << "catalogue: " << error.what() << "; see catalogue --help\n";
  } catch (const VerificationError& error) {
    std::cerr << "catalogue: " << error.what() << '\n';
    return kNotVerified;
  } catch (const std::exception& error) {
    std::cerr << "catalogue: " << error.what() << '\n';
  }
  return kFailed;
}

}  // namespace

int main(int argc, char** argv) { return runProgram({argv + 1, argv + argc}); }
