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
  std::uint64_t token = 0;  // Its place in the stream, from 0, which no record tells.
  Tarn::uuids::uuid id;
  Tarn::StringMap properties;  // kName is among them.
  Tarn::Time time;

  [[nodiscard]] const std::string& name() const { return properties.at(kName); }
};

// Why a scan cannot be read, stored or added, in words for whoever wrote it.
struct ScanError : std::invalid_argument {
  using std::invalid_argument::invalid_argument;
};

// Reads a line without its end: name, time and any number of key=value properties, with a tab between each two. The
// scan gets a uuid of its own, and is certain to come back from its record.
Scan parseLine(std::string_view line);

// The line that is read to the same scan.
std::string lineOf(const Scan& scan);

// The two lines of a record, by the codec of the library:
//
//     00112233-4455-6677-8899-aabbccddeeff
//     { "height"=>"1.8" "name"=>"T\u00FCrmchen" } 5.3.2024 14:7:9:0
std::string recordOf(const Scan& scan);

// The scan that two lines hold, each with its end, or nothing if they hold anything else.
std::optional<Scan> parseRecord(std::string_view lines);

}  // namespace catalogue

#endif  // CATALOGUE_SCAN_H_
