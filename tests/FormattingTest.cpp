#include "Tarn/text/Formatting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iomanip>
#include <sstream>
#include <string_view>

#include "Tarn/text/ValueText.h"

namespace {

using namespace Tarn;

enum Unscoped { kThree = 3 };
enum class Scoped { kOne };
static_assert(std::is_constructible_v<PrintF, const char*, int, double, const char*, std::string, void*, Unscoped>);
static_assert(!std::is_constructible_v<PrintF, const char*, std::string_view>);
static_assert(!std::is_constructible_v<PrintF, const char*, Scoped>);

TEST(PrintF, FormatsOnce) {
  const PrintF text("%d|%5.2f|%s|%s|%c|%zu|%d", 42, 2.125F, std::string("a\0b", 3), "lit", 'x', sizeof(char), kThree);
  EXPECT_EQ(std::string(text), "42| 2.12|a|lit|x|1|3");
  EXPECT_EQ(std::string(text), std::string(text));
  PrintF named("%s", std::string(50, 'x'));
  const auto size = [](const std::string& bound) { return bound.size(); };
  const std::string taken = named;
  EXPECT_EQ(taken.size() + std::string(named).size() + size(named), 150U);  // It keeps its text,
  EXPECT_EQ(size(PrintF("%d", 7)) + size(std::move(named)), 51U);           // but for whom it is moved to.
  EXPECT_EQ(std::string(PrintF("100 %%")), "100 %");
  EXPECT_EQ(std::string(PrintF("a%cb", '\0')), "a");
}

TEST(PrintF, MeetsStringsAndStreams) {
  std::ostringstream stream;
  stream << PrintF("%d", 1) << std::setw(4) << PrintF("%s", std::string("x"));
  EXPECT_EQ(stream.str(), "1   x");
  std::string buffer = "a" + PrintF("%d", 2) + std::string("b");
  buffer << PrintF(std::string("%s-%d"), std::string("c"), 3) << PrintF("%%");
  EXPECT_EQ(buffer, "a2bc-3%");
  EXPECT_EQ(std::string_view("v") + PrintF("%c", 'w') + "x" + (PrintF("%d", 1) + PrintF("%d", 2)), "vwx12");
}

TEST(PrintF, CutsAt999) {
  for (const std::size_t size : {0U, 1U, 998U, 999U, 1000U, 5000U}) {
    EXPECT_EQ(std::string(PrintF("%s", std::string(size, 'x'))), std::string(std::min<std::size_t>(size, 999), 'x'));
  }
}

TEST(IncrementIndex, AdvancesTheNumberAtTheEnd) {
  const std::pair<std::string, std::string> rows[] = {
      {"", "1"},      {"Scan", "Scan1"}, {"Scan009", "Scan010"}, {"Scan99", "Scan100"},  {"999", "1000"},
      {"a-5", "a-6"}, {"x/", "x/1"},     {"x:", "x:1"},          {"x\xB9", "x\xB9\x31"}, {"Scan1 ", "Scan1 1"}};
  for (const auto& [name, next] : rows) {
    std::string text = name;
    incrementIndex(text);
    EXPECT_EQ(text, next);
    EXPECT_STREQ(text.c_str(), next.c_str());  // Nothing is written behind its end.
  }
}

}  // namespace
