#include "Tarn/text/ValueText.h"

#include "Tarn/text/internal/EscapeText.h"

namespace Tarn {
namespace {

void appendQuoted(std::string& buffer, std::string_view text) {
  buffer += '"';
  internal::appendEscaped(buffer, text, true);
  buffer += '"';
}

// Appends one entry, or leaves the buffer as it was.
void appendEntry(std::string& buffer, const StringMap::value_type& entry) {
  const std::size_t size = buffer.size();
  try {
    buffer += ' ';
    appendQuoted(buffer, entry.first);
    buffer += "=>";
    appendQuoted(buffer, entry.second);
  } catch (...) {
    buffer.resize(size);
    throw;
  }
}

// A value that is the buffer itself is read on the side.
std::string& takeString(std::string& buffer, std::string& value) {
  if (&value != &buffer) return internal::takeFromFront(buffer, value);
  std::string taken;
  internal::takeFromFront(buffer, taken);
  return value = std::move(taken);
}

}  // namespace

template <>
std::string& operator<<(std::string& buffer, const char& value) {
  return buffer += value;
}

template <>
std::string& operator<<(std::string& buffer, const bool& value) {
  return buffer += value ? "true" : "false";
}

template <>
std::string& operator<<(std::string& buffer, const std::string& value) {
  return buffer += value;
}

template <>
std::string& operator<<(std::string& buffer, const StringMap& value) {
  buffer += '{';
  for (auto next = value.begin(); next != value.end();) {
    const auto& entry = *next++;  // Ahead of the writing: the processor fetches the next entry meanwhile.
    if (&entry.second == &buffer) {
      appendEntry(buffer, StringMap::value_type(entry));  // The buffer's own text is what it was before this entry.
    } else {
      appendEntry(buffer, entry);
    }
  }
  return buffer += " } ";
}

template <>
std::string& operator<<(std::string& buffer, const uuids::uuid& value) {
  return buffer += value.string();
}

std::string& operator<<(std::string& buffer, const JsonValue& value) { return buffer += value.text; }

std::string& operator<<(std::string& buffer, const char* value) { return buffer += value; }

template <>
std::string& operator>>(std::string& buffer, char& value) {
  return internal::takeFromFront(buffer, value);
}

template <>
std::string& operator>>(std::string& buffer, signed char& value) {
  return internal::takeFromFront(buffer, value);
}

template <>
std::string& operator>>(std::string& buffer, unsigned char& value) {
  return internal::takeFromFront(buffer, value);
}

template <>
std::string& operator>>(std::string& buffer, bool& value) {
  return internal::takeFromFront(buffer, value);
}

template <>
std::string& operator>>(std::string& buffer, std::string& value) {
  return takeString(buffer, value);
}

template <>
std::string& operator>>(std::string& buffer, JsonValue& value) {
  return takeString(buffer, value.text);
}

template <>
std::string& operator>>(std::string& buffer, StringMap& value) {
  return internal::takeFromFront(buffer, value);
}

template <>
std::string& operator>>(std::string& buffer, uuids::uuid& value) {
  return internal::takeFromFront(buffer, value);
}

}  // namespace Tarn
