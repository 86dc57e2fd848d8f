// A scan, the line that lists it, and the record that stores it.
#ifndef CATALOGUE_SCAN_H_
#define CATALOGUE_SCAN_H_

#include <Tarn/Tarn.h>

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace catalogue {

// The property that holds a scan's name.
inline const std::string kName = "name";

struct Scan {
  Tarn::StringMap properties;  // kName is among them.
  Tarn::Time time;

  [[nodiscard]] const std::string& name() const { return properties.at(kName); }

  // To the millisecond, as a record keeps the time.
  friend bool operator==(const Scan& a, const Scan& b) {
    return a.properties == b.properties && Tarn::Time::compare(a.time, b.time) == 0;
  }
};

// Why a scan cannot be read, stored or added, in words for whoever wrote it.
class ScanError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Reads a line without its end: name, time and any number of key=value properties, with a tab between each two.
Scan parseScan(std::string_view line);

struct Record {
  std::uint64_t token = 0;  // Its place in the stream, from 0, which the stream does not tell.
  Tarn::uuids::uuid id;
  Scan scan;
};

// The two lines of a record, by the codec of the library:
//
//     00112233-4455-6677-8899-aabbccddeeff
//     { "height"=>"1.8" "name"=>"T\u00FCrmchen" } 5.3.2024 14:7:9:0
// The line of a list that is the scan.
std::string listLineOf(const Scan& scan);

std::string recordText(const Record& record);

// The record that two lines hold, each with its end, or nothing if they hold anything else.
std::optional<Record> parseRecord(std::string_view lines);

// Whether the lines are exactly what would be written for the record that they hold.
bool isTextOf(std::string_view lines, const Record& record);

// The text of a record that is certain to come back. Throws `ScanError` for a scan that the codec would change.
std::string storableText(const Record& record);

}  // namespace catalogue

#endif  // CATALOGUE_SCAN_H_
