#include "catalogue/Stream.h"

#include <cerrno>
#include <iostream>
#include <system_error>
#include <utility>

#include "catalogue/FileLock.h"

namespace catalogue {

namespace StreamNames = Tarn::DataStructures::StreamNames;

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
  if (!noSize) size_ = size;
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

double LineReader::done() const { return size_ == 0 ? 0.0 : static_cast<double>(end_) / static_cast<double>(size_); }

RecordReader::RecordReader(const std::filesystem::path& path, bool mayGrow, Console& console)
    : path_(path), mayGrow_(mayGrow), lines_(path), console_(console) {
  if (lines_.next() && lines_.line().hasEnd && lines_.line().text == StreamNames::S_SCAN_HEADER) return;
  report("the stream does not begin with the header of scan data");
  isLost_ = true;
}

std::optional<Record> RecordReader::next() {
  while (lines_.next()) {
    const bool isRecord = Tarn::parseUuid(lines_.line().text).has_value();
    if (isLost_ && !isRecord) continue;
    line_ = lines_.line().number;
    byte_ = lines_.line().byte;
    text_ = lines_.line().text + '\n';
    const bool hasBody = isRecord && lines_.next();
    if (hasBody) text_ += lines_.line().text + '\n';
    const bool isWhole = hasBody && lines_.line().hasEnd;
    std::optional<Record> record = isWhole ? parseRecord(text_) : std::nullopt;
    console_.advance(lines_.done());
    if (!isWhole && !lines_.line().hasEnd && mayGrow_ && FileLock::isHeld(path_)) return std::nullopt;
    isLost_ = !record;
    if (record) {
      record->token = records_++;
      return record;
    }
    report(!isRecord ? "no record begins here" : isWhole ? "the record is damaged" : "the record is cut short");
  }
  return std::nullopt;
}

void RecordReader::report(const std::string& reason) {
  problems_.push_back({line_, byte_, reason});
  console_.say(lines_.name() + ':' + std::to_string(line_) + ": byte " + std::to_string(byte_) + ": " + reason);
}

Appender::Appender(std::filesystem::path path, bool isNew)
    : path_(std::move(path)), isNew_(isNew), oldSize_(file_size(path_)) {
  errno = 0;
  out_.open(path_, std::ios::binary | std::ios::app);
  if (!out_) throwIoError("cannot write " + textOf(path_));
}

Appender::~Appender() {
  if (isFinished_) return;
  out_.close();
  std::error_code ignored;  // The failure that brought us here is the one to report.
  if (isNew_) {
    std::filesystem::remove(path_, ignored);
  } else {
    std::filesystem::resize_file(path_, oldSize_, ignored);
  }
}

void Appender::append(std::string_view text) {
  constexpr std::size_t kPiece = 1U << 20U;
  pending_ += text;
  if (pending_.size() >= kPiece) flush();
}

void Appender::finish() {
  flush();
  out_.close();
  if (!out_) throwIoError("cannot write " + textOf(path_));
  isFinished_ = true;
}

void Appender::flush() {
  errno = 0;
  out_.write(pending_.data(), static_cast<std::streamsize>(pending_.size())).flush();
  if (!out_) throwIoError("cannot write " + textOf(path_));
  pieces_.push_back({pending_.size(), std::hash<std::string>()(pending_)});
  pending_.clear();
}

bool Appender::readBack() const {
  std::ifstream in(path_, std::ios::binary);
  in.seekg(static_cast<std::streamoff>(oldSize_));
  std::string text;
  for (const Piece& piece : pieces_) {
    text.resize(piece.size);
    if (!in.read(text.data(), static_cast<std::streamsize>(text.size()))) return false;
    if (std::hash<std::string>()(text) != piece.hash) return false;
  }
  return in && in.peek() == std::ifstream::traits_type::eof();
}

}  // namespace catalogue
