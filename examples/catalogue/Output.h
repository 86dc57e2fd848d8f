// Scans for people and for programs.
#ifndef CATALOGUE_OUTPUT_H_
#define CATALOGUE_OUTPUT_H_

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "catalogue/Scan.h"

namespace catalogue {

using Row = std::vector<std::string>;

// A table with a row for each scan and a column for each of the properties that most of the first ones have. These
// make the columns as wide as they need to be, so that a table of any length takes little memory; a later row that
// needs more room takes it.
class Table {
 public:
  explicit Table(std::ostream& out) : out_(out) {}

  void add(Record record);

  // Prints what was kept to find the columns.
  void finish();

 private:
  void print(const Row& row);
  [[nodiscard]] Row cells(const Record& record) const;

  std::ostream& out_;
  std::vector<Record> first_;
  std::vector<std::string> keys_;
  std::vector<std::size_t> widths_;  // Empty until the columns are known.
};

// All that is known of a scan, a line each.
std::string detailsOf(const Record& record);

// The same as a JSON object, without a line feed.
std::string jsonOf(const Record& record);

}  // namespace catalogue

#endif  // CATALOGUE_OUTPUT_H_
