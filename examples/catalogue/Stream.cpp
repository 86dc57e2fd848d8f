#include "catalogue/Stream.h"

#include <cerrno>
#include <csignal>
#include <iostream>
#include <system_error>
#include <utility>

#include "catalogue/System.h"

namespace catalogue {

namespace {

using Tarn::DataStructures::StreamNames::S_SCAN_HEADER;

volatile std::sig_atomic_t interruption = 0;  // The signal, if one has to wait.

extern "C" void remember(int signal) { interruption = signal; }

}  // namespace

std::filesystem::path pathOf(const std::string& text) { return std::u8string(text.begin(), text.end()); }

std::string textOf(const std::filesystem::path& path) {
  const std::u8string text = path.generic_u8string();
  return {text.begin(), text.end()};
}

void throwIoError(const std::string& what) {
  throw std::system_error(errno != 0 ? errno : EIO, std::generic_category(), what);
}

LineReader::LineReader(const std::optional<std::filesystem::path>& path)
    : name_(path ? textOf(*path) : "standard input"), in_(path ? file_ : std::cin) {
  if (!path) return;
  errno = 0;
  file_.open(*path, std::ios::binary);
  if (!file_) throwIoError("cannot read " + name_);
  std::error_code noSize;  // A pipe has none.
  const std::uintmax_t size = file_size(*path, noSize);
  if (!noSize) size_ = static_cast<double>(size);
}

bool LineReader::next() {
  errno = 0;
  std::getline(in_, line_.text);
  if (in_.bad()) throwIoError("cannot read " + name_);
  if (in_.fail()) return false;
  line_.hasEnd = !in_.eof();
  ++line_.number;
  line_.byte = end_;
  end_ += line_.text.size() + (line_.hasEnd ? 1 : 0);
  return true;
}

RecordReader::RecordReader(const std::filesystem::path& path, bool mayGrow, Console& console)
    : path_(path), mayGrow_(mayGrow), lines_(path), console_(console), first_{{}, 1} {
  if (lines_.next() && lines_.line().hasEnd && lines_.line().text == S_SCAN_HEADER) return;
  report("the stream does not begin with the header of scan data");
  isLost_ = true;
}

std::optional<Scan> RecordReader::next() {
  while (lines_.next()) {
    const bool isRecord = Tarn::parseUuid(lines_.line().text).has_value();
    if (isLost_ && !isRecord) continue;
    first_ = lines_.line();
    text_ = first_.text + '\n';
    const bool hasBody = isRecord && lines_.next();
    if (hasBody) text_ += lines_.line().text + '\n';
    console_.advance(lines_.done());
    const bool isWhole = hasBody && lines_.line().hasEnd;
    if (!lines_.line().hasEnd && mayGrow_ && !FileLock(path_, false).take(false)) return std::nullopt;
    std::optional<Scan> scan = isWhole ? parseRecord(text_) : std::nullopt;
    isLost_ = !scan;
    if (scan) {
      scan->token = records_++;
      return scan;
    }
    report(!isRecord ? "no record begins here" : isWhole ? "the record is damaged" : "the record is cut short");
  }
  return std::nullopt;
}

void RecordReader::report(const std::string& reason) {
  problems_.push_back({first_.number, first_.byte, reason});
  console_.say(name() + ':' + std::to_string(first_.number) + ": byte " + std::to_string(first_.byte) + ": " + reason);
}

Appender::Appender(std::filesystem::path path) : path_(std::move(path)), size_(file_size(path_)) {
  if (size_ > 0) return;
  pending_ = S_SCAN_HEADER + '\n';
  flush();
}

void Appender::append(std::string_view record) {
  constexpr std::size_t kPiece = 1U << 20U;
  pending_ += record;
  if (pending_.size() >= kPiece) flush();
}

void Appender::flush() {
  const auto onInterrupt = std::signal(SIGINT, remember);
  const auto onTermination = std::signal(SIGTERM, remember);
  errno = 0;
  const bool isWritten = writePending();
  const int reason = errno;
  std::error_code ignored;  // The failure that brought us here is the one to report.
  if (!isWritten) resize_file(path_, size_, ignored);
  static_cast<void>(std::signal(SIGINT, onInterrupt));
  static_cast<void>(std::signal(SIGTERM, onTermination));
  if (interruption != 0) static_cast<void>(std::raise(interruption));
  errno = reason;
  if (!isWritten) throwIoError("cannot write " + textOf(path_));
  size_ += pending_.size();
  pending_.clear();
}

bool Appender::writePending() const {
  std::ofstream out(path_, std::ios::binary | std::ios::app);
  out << pending_;
  out.close();
  if (!out) return false;
  std::ifstream in(path_, std::ios::binary);
  in.seekg(static_cast<std::streamoff>(size_));
  std::string text(pending_.size(), '\0');
  in.read(text.data(), static_cast<std::streamsize>(text.size()));
  return in && text == pending_ && in.peek() == std::ifstream::traits_type::eof();
}

}  // namespace catalogue
