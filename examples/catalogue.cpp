// Catalogues a list of scans: gives each a token and a uuid, appends it as a record to the scans stream of a model
// folder, reads the stream back and verifies that every value came back.
//
// A record is a uuid, a line feed, a map of the scan's properties, its time and a line feed; the stream begins with
// its header line.
#include <Tarn/Tarn.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Terminal.h"

namespace {

using namespace Tarn;
using namespace Tarn::DataStructures;

constexpr const char* kHelp = R"(Usage: catalogue MODEL_FOLDER [LIST]

Appends the scans of LIST to the model in MODEL_FOLDER, reads them back and verifies them. Without LIST, or with -, the
list comes from standard input. It is UTF-8 with a scan on each line and tabs between the fields:

  name  ISO-8601-time  key=value  key=value ...

Empty lines and lines that begin with # are skipped. The time is local; its zone is required and ignored.
Scans that the model holds already stay.

Exit status: 0 all scans are catalogued, 1 lines that could not be read were skipped, 2 nothing could be done (usage,
files), 3 the stream did not give back what was written.
)";

constexpr const char* kNameKey = "name";  // The property that holds a scan's name in a record.
constexpr std::size_t kChunk = std::size_t{1} << 20U;

enum ExitStatus { kAllWell = 0, kLinesSkipped = 1, kNothingDone = 2, kNotVerified = 3 };

// A line that is no scan. Its text is the reason.
struct BadLine : std::runtime_error {
  using runtime_error::runtime_error;
};

// What stops the program.
struct Failure : std::runtime_error {
  Failure(ExitStatus exitStatus, const std::string& text) : runtime_error(text), status(exitStatus) {}
  ExitStatus status;
};

struct Scan {
  StringMap properties;
  Time time;
};

// A progress bar on a terminal; nothing elsewhere.
class ProgressBar {
 public:
  void show(double progress) {
    const int percent = static_cast<int>(progress * 100);
    if (percent != percent_) draw(percent);
  }
  void show(const std::string& step) {
    step_ = step;
    draw(percent_);
  }
  void clear() const {
    if (visible_) std::cerr << "\r\033[K";
  }

 private:
  void draw(int percent) {
    percent_ = percent;
    if (!visible_) return;
    std::string bar(40, '.');
    std::fill_n(bar.begin(), percent * 40 / 100, '#');
    std::cerr << '\r' << std::string(PrintF("[%s] %3d %% %-10s", bar, percent, step_)) << std::flush;
  }

  bool visible_ = isTerminal();
  int percent_ = 0;
  std::string step_;
};

// Takes the text in front of the separator, and the separator.
std::string_view takeField(std::string_view& rest, char separator) {
  const std::string_view field = rest.substr(0, rest.find(separator));
  rest.remove_prefix(std::min(field.size() + 1, rest.size()));
  return field;
}

// Refuses what the stream's text could not give back: bytes that are not UTF-8, and characters above U+FFFF.
void checkText(const std::string& line) {
  std::string copy = line;
  try {
    controlsToEsc(copy, true);
  } catch (const std::invalid_argument&) {
    throw BadLine("not UTF-8");
  }
  escToControls(copy, true);
  if (copy != line) throw BadLine("not UTF-8, or a character above U+FFFF");
}

Time parseTime(const std::string& text) {
  const Time time = Time::fromIsoTimeStrIgnoringTimeZone(text);
  // The reader carries fields over that are out of range; a list with a 31st of June is wrong.
  const bool exists = time.getIsoTimeStr().substr(0, 10) == text.substr(0, 10) &&
                      time.getIsoTimeStr().substr(11, 8) == text.substr(11, 8);
  if (text.find('\n') != std::string::npos || !exists) throw BadLine("no ISO 8601 date and time: '" + text + "'");
  return time;
}

Scan parseScan(std::string_view line) {
  checkText(std::string(line));
  Scan scan;
  scan.properties[kNameKey] = trim_copy(std::string(takeField(line, '\t')));
  if (scan.properties[kNameKey].empty()) throw BadLine("the scan has no name");
  const std::string time(takeField(line, '\t'));
  if (time.size() < 20) throw BadLine("no ISO 8601 date and time: '" + time + "'");
  scan.time = parseTime(time);
  while (!line.empty()) {
    std::string_view property = takeField(line, '\t');
    const std::string text(property);
    const std::string key(takeField(property, '='));
    if (key.empty() || key.size() == text.size()) throw BadLine("'" + text + "' is not of the form key=value");
    if (!scan.properties.try_emplace(key, property).second) throw BadLine("a second property '" + key + "'");
  }
  return scan;
}

bool isSame(const Scan& a, const Scan& b) { return a.properties == b.properties && Time::compare(a.time, b.time) == 0; }

void appendRecord(std::string& stream, const uuids::uuid& id, const Scan& scan) {
  stream << id << '\n' << scan.properties << scan.time << '\n';
}

void readRecord(ValueReader& reader, uuids::uuid& id, Scan& scan) {
  std::string endOfLine;
  reader >> id >> scan.properties >> scan.time >> endOfLine;
}

std::string readAll(std::istream& stream, const std::string& name) {
  std::string text;
  while (stream) {
    const std::size_t size = text.size();
    text.resize(size + kChunk);
    stream.read(text.data() + size, static_cast<std::streamsize>(kChunk));
    text.resize(size + static_cast<std::size_t>(stream.gcount()));
  }
  if (stream.bad()) throw Failure(kNothingDone, name + ": cannot be read");
  return text;
}

std::string readFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw Failure(kNothingDone, path.string() + ": cannot be opened");
  return readAll(file, path.string());
}

// Columns that a terminal takes for UTF-8 text: two for East Asian wide characters, none for combining marks.
std::size_t displayWidth(const std::string& text) {
  std::size_t width = 0;
  for (const wchar_t character : wide(text)) {
    const auto code = static_cast<unsigned>(character);
    const bool isWide = (code >= 0x1100 && code <= 0x115F) || (code >= 0x2E80 && code <= 0xA4CF) ||
                        (code >= 0xAC00 && code <= 0xD7A3) || (code >= 0xF900 && code <= 0xFAFF) ||
                        (code >= 0xFF00 && code <= 0xFF60);
    const bool isMark = code >= 0x300 && code <= 0x36F;
    width += isWide ? 2 : isMark ? 0 : 1;
  }
  return width;
}

// The model's scans stream, and what is known of its scans. A scan's token is its place in the stream, from 1.
class Catalogue {
 public:
  explicit Catalogue(const std::filesystem::path& folder) : path_(folder / StreamNames::S_MODEL_SCANS) {
    if (!std::filesystem::is_directory(folder)) throw Failure(kNothingDone, folder.string() + ": is not a folder");
    if (!std::filesystem::exists(path_) || std::filesystem::file_size(path_) == 0) return;
    const std::string stream = readFile(path_);
    ValueReader reader = behindHeader(stream);
    while (!reader.rest().empty()) {
      uuids::uuid id;
      Scan scan;
      readRecord(reader, id, scan);
      if (id.is_nil()) throw Failure(kNothingDone, path_.string() + ": holds something else than records");
      add(id, scan.properties[kNameKey]);
    }
  }

  // Appends the scans of a list. Gives the lines that were taken; the others are reported.
  std::vector<std::string_view> write(std::string_view list, const std::string& listName, IProgress& progress) {
    progress.setStep("writing");
    firstToken_ = names_.getNumElements() + 1;
    std::ofstream file(path_, std::ios::binary | std::ios::app);
    std::string chunk =
        firstToken_ == 1 && std::filesystem::file_size(path_) == 0 ? StreamNames::S_SCAN_HEADER + '\n' : "";
    std::vector<std::string_view> lines;
    std::string_view rest = list;
    for (std::size_t number = 1; !rest.empty(); ++number) {
      std::string_view line = takeField(rest, '\n');
      if (line.ends_with('\r')) line.remove_suffix(1);
      if (line.empty() || line.starts_with('#')) continue;
      try {
        addRecord(chunk, line);
        lines.push_back(line);
      } catch (const BadLine& reason) {
        ++skipped_;
        std::cerr << listName << ':' << number << ": " << reason.what() << '\n';
      }
      if (chunk.size() >= kChunk) {
        flush(file, chunk);
        progress.setProgress(1.0 - static_cast<double>(rest.size()) / static_cast<double>(list.size()));
      }
    }
    flush(file, chunk);
    progress.setProgress(1.0);
    return lines;
  }

  // Reads the stream and compares the scans that were written with their lines.
  void verify(const std::vector<std::string_view>& lines, IProgress& progress) const {
    progress.setStep("reading");
    const std::string stream = readFile(path_);
    ValueReader reader = behindHeader(stream);
    for (std::uint64_t token = 1; token <= names_.getNumElements(); ++token) {
      uuids::uuid id;
      Scan scan;
      readRecord(reader, id, scan);
      const bool known = id == ids_.getKey(token - 1) && scan.properties[kNameKey] == names_.tokenToKey(token);
      const bool written = token >= firstToken_;
      if (!known || (written && !isSame(scan, parseScan(lines[token - firstToken_])))) {
        throw Failure(kNotVerified, path_.string() + ": scan " + std::to_string(token) + " did not come back");
      }
      if (token % 4096 == 0) {
        progress.setProgress(1.0 - static_cast<double>(reader.rest().size()) / static_cast<double>(stream.size()));
      }
    }
    if (!reader.rest().empty()) throw Failure(kNotVerified, path_.string() + ": has text behind the last scan");
    progress.setProgress(1.0);
  }

  // Prints the scans that were written, the first of many, in aligned columns.
  void print(const std::vector<std::string_view>& lines) const {
    constexpr std::size_t kRows = 20;
    std::vector<std::vector<std::string>> rows = {{"token", "name", "taken", "id", "properties"}};
    for (std::size_t i = 0; i < std::min(lines.size(), kRows); ++i) {
      Scan scan = parseScan(lines[i]);
      const std::string name = scan.properties[kNameKey];
      scan.properties.erase(kNameKey);
      std::vector<std::string> properties;
      for (const auto& [key, value] : scan.properties) properties.push_back(key + '=' + value);
      const std::uint64_t token = firstToken_ + i;
      rows.push_back({std::to_string(token), name, scan.time.getTimeStr8(), ids_.tokenToKey(token)->toShortString(),
                      implode(properties, ", ")});
    }
    std::vector<std::size_t> widths(rows.front().size(), 0);
    for (const auto& row : rows) {
      for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], displayWidth(row[i]));
    }
    for (const auto& row : rows) {
      std::string line;
      for (std::size_t i = 0; i < row.size(); ++i) {
        line += row[i] + std::string(widths[i] - displayWidth(row[i]) + 2, ' ');
      }
      rtrim(line);
      std::cout << line << '\n';
    }
    if (lines.size() > kRows) std::cout << "... and " << lines.size() - kRows << " more\n";
    std::cout << '\n'
              << lines.size() << " scans catalogued and verified, " << skipped_ << " lines skipped; "
              << names_.getNumElements() << " scans and " << std::filesystem::file_size(path_) << " bytes in "
              << path_.string() << '\n';
  }

  [[nodiscard]] std::uint64_t skipped() const { return skipped_; }

 private:
  [[nodiscard]] ValueReader behindHeader(const std::string& stream) const {
    ValueReader reader(stream);
    std::string header;
    reader >> header;
    if (header != StreamNames::S_SCAN_HEADER) throw Failure(kNothingDone, path_.string() + ": is no scans stream");
    return reader;
  }

  void add(const uuids::uuid& id, const std::string& name) {
    const std::uint64_t token = names_.getNumElements() + 1;
    names_.addEntry(token, name);
    ids_.addEntry(token, id);
  }

  // Appends the record of a line, once it is known to come back.
  void addRecord(std::string& chunk, std::string_view line) {
    const Scan scan = parseScan(line);
    const uuids::uuid id = uuids::uuid::generate();
    const std::size_t size = chunk.size();
    appendRecord(chunk, id, scan);
    ValueReader reader(std::string_view(chunk).substr(size));
    uuids::uuid readId;
    Scan readScan;
    readRecord(reader, readId, readScan);
    if (readId != id || !isSame(readScan, scan) || !reader.rest().empty()) {
      chunk.resize(size);
      throw BadLine("a backslash before a double quote cannot be stored");
    }
    add(id, scan.properties.at(kNameKey));
  }

  void flush(std::ofstream& file, std::string& chunk) const {
    if (!file.write(chunk.data(), static_cast<std::streamsize>(chunk.size())).flush()) {
      throw Failure(kNothingDone, path_.string() + ": cannot be written");
    }
    chunk.clear();
  }

  std::filesystem::path path_;
  KeyTable names_;
  UuidKeyTable ids_;
  std::uint64_t firstToken_ = 1;
  std::uint64_t skipped_ = 0;
};

ExitStatus run(const std::string& folder, const std::string& listName) {
  const std::string list = listName == "-" ? readAll(std::cin, "standard input") : readFile(listName);
  ProgressBar bar;
  const auto whole = std::make_shared<Progress>([&bar](double progress) { bar.show(progress); },
                                                [&bar](const std::string& step) { bar.show(step); });
  PartialProgress writing(whole, 0.5);
  PartialProgress reading(whole, 0.5);
  Catalogue catalogue(folder);
  const auto lines = catalogue.write(list, listName, writing);
  catalogue.verify(lines, reading);
  bar.clear();
  catalogue.print(lines);
  return catalogue.skipped() == 0 ? kAllWell : kLinesSkipped;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (!arguments.empty() && (arguments[0] == "--help" || arguments[0] == "-h")) {
    std::cout << kHelp;
    return kAllWell;
  }
  if (arguments.empty() || arguments.size() > 2 || startsWith(arguments[0], "-")) {
    std::cerr << kHelp;
    return kNothingDone;
  }
  try {
    return run(arguments[0], arguments.size() == 2 ? arguments[1] : "-");
  } catch (const Failure& failure) {
    std::cerr << "catalogue: " << failure.what() << '\n';
    return failure.status;
  } catch (const std::exception& error) {
    std::cerr << "catalogue: " << error.what() << '\n';
    return kNothingDone;
  }
}
