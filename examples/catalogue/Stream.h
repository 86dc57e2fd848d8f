// Files, read and written in pieces: lists line by line, the stream of a model record by record.
#ifndef CATALOGUE_STREAM_H_
#define CATALOGUE_STREAM_H_

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/Scan.h"
#include "catalogue/Terminal.h"

namespace catalogue {

// Paths and texts are UTF-8 on every system.
std::filesystem::path pathOf(const std::string& text);
std::string textOf(const std::filesystem::path& path);

// Throws the system's reason, which is in `errno`.
[[noreturn]] void throwIoError(const std::string& what);

struct Line {
  std::string text;  // Without its end.
  std::size_t number = 0;
  std::uint64_t byte = 0;  // Where it begins, from 0.
  bool hasEnd = false;     // Only the last line may have none.
};

// The lines of a file, one after the other.
class LineReader {
 public:
  // Reads a file, or standard input without one.
  explicit LineReader(const std::optional<std::filesystem::path>& path);

  bool next();
  [[nodiscard]] const Line& line() const { return line_; }
  [[nodiscard]] const std::string& name() const { return name_; }
  // In bytes, 0 where nobody knows; and how much of it has been read, 0 to 1, or 0.
  [[nodiscard]] double size() const { return size_; }
  [[nodiscard]] double done() const { return size_ > 0.0 ? static_cast<double>(end_) / size_ : 0.0; }

 private:
  std::string name_;
  std::ifstream file_;
  std::istream& in_;
  Line line_;
  double size_ = 0.0;
  std::uint64_t end_ = 0;  // Of the line.
};

// What is wrong with a stream, and where.
struct Problem {
  std::size_t line;
  std::uint64_t byte;
  std::string reason;
};

// The scans of a stream, one after the other. Where a record cannot be read, that is a problem, and reading goes on at
// the next line that is a uuid. The console is told each problem, and how reading gets on.
class RecordReader {
 public:
  // Where somebody else may be writing, an unfinished record at the end is none.
  RecordReader(const std::filesystem::path& path, bool mayGrow, Console& console);

  std::optional<Scan> next();

  // The two lines of the record that was taken last, and a problem with them.
  [[nodiscard]] const std::string& text() const { return text_; }
  void report(const std::string& reason);

  [[nodiscard]] const std::vector<Problem>& problems() const { return problems_; }
  [[nodiscard]] const std::string& name() const { return lines_.name(); }

 private:
  std::filesystem::path path_;
  bool mayGrow_;
  LineReader lines_;
  Console& console_;
  std::vector<Problem> problems_;
  std::uint64_t records_ = 0;
  Line first_;        // Of the record.
  std::string text_;  // Of the record.
  bool isLost_ = false;
};

// Appends records to a stream, whose lock is held, and begins it if there is none. They are written in large pieces,
// each of whole records; one that cannot be written, or does not read back the same, is taken back, and an interruption
// of the program waits for its end.
class Appender {
 public:
  explicit Appender(std::filesystem::path path);

  void append(std::string_view record);
  void flush();

 private:
  // Also reads it back. False, with a reason in `errno` if there is one.
  [[nodiscard]] bool writePending() const;

  std::filesystem::path path_;
  std::uintmax_t size_;
  std::string pending_;
};

}  // namespace catalogue

#endif  // CATALOGUE_STREAM_H_
