#include "Tarn/text/Formatting.h"

#include <absl/strings/str_format.h>
#include <fmt/compile.h>

#include <array>
#include <cstdio>

#include "bench/Bench.h"

namespace {

struct Arguments {
  std::string name;
  int number;
  double length;
};

std::vector<Arguments> pool() {
  std::vector<Arguments> pool;
  for (int i = 0; i < 1024; ++i) pool.push_back({std::string(static_cast<std::size_t>(i) % 13, 'x'), i * i, i * 0.37});
  return pool;
}

}  // namespace

void bench::registerCases() {
  comparePool("PrintF", pool(),
              [](const Arguments& arguments) {
                return std::string(Tarn::PrintF("%s %03d: %.1f m", arguments.name, arguments.number, arguments.length));
              })
      .peer("snprintf and a string",
            [](const Arguments& arguments) {
              std::array<char, 1000> text;
              const int size = std::snprintf(text.data(), text.size(), "%s %03d: %.1f m", arguments.name.c_str(),
                                             arguments.number, arguments.length);
              return std::string(text.data(), static_cast<std::size_t>(size));
            })
      .peer("absl::StrFormat",
            [](const Arguments& arguments) {
              return absl::StrFormat("%s %03d: %.1f m", arguments.name, arguments.number, arguments.length);
            })
      .peer("fmt::format, compiled", [](const Arguments& arguments) {
        return fmt::format(FMT_COMPILE("{} {:03}: {:.1f} m"), arguments.name, arguments.number, arguments.length);
      });
}
