#include "Tarn/text/Formatting.h"

#include <array>
#include <cstdio>

#include "bench/Bench.h"

#if WITH_ABSL
#include <absl/strings/str_format.h>
#endif
#if WITH_FMT
#include <fmt/printf.h>
#endif

namespace {

struct Arguments {
  std::string name;
  int number;
  double length;
};

}  // namespace

void bench::registerCases() {
  auto print = compare("PrintF", Arguments{"Tower", 42, 12.25}, [](const Arguments& arguments) {
    return std::string(Tarn::PrintF("%s %03d: %.1f m", arguments.name, arguments.number, arguments.length));
  });
  print.limit("snprintf and a string", [](const Arguments& arguments) {
    std::array<char, 1000> text;
    const int size = std::snprintf(text.data(), text.size(), "%s %03d: %.1f m", arguments.name.c_str(),
                                   arguments.number, arguments.length);
    return std::string(text.data(), static_cast<std::size_t>(size));
  });
#if WITH_ABSL
  print.peer("absl::StrFormat", [](const Arguments& arguments) {
    return absl::StrFormat("%s %03d: %.1f m", arguments.name, arguments.number, arguments.length);
  });
#endif
#if WITH_FMT
  print.peer("fmt::sprintf", [](const Arguments& arguments) {
    return fmt::sprintf("%s %03d: %.1f m", arguments.name, arguments.number, arguments.length);
  });
#endif
}
