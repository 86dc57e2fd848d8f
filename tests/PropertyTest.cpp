// Each property on generated inputs, the same in every run: files of the fuzzers' corpus with pieces put in their place
// or behind them, and any bytes.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "tests/Generate.h"
#include "tests/properties/Properties.h"

namespace {

struct Property {
  const char* name;
  void (*check)(Input);
};
constexpr Property kProperties[] = {
    {"Progress", checkProgress}, {"Readers", checkReaders}, {"Strings", checkStrings}, {"Tables", checkTables},
    {"Texts", checkTexts},       {"Times", checkTimes},     {"Words", checkWords},     {"Writers", checkWriters},
};

std::vector<std::string> corpusOf(const std::string& name) {
  std::vector<std::string> files;
  for (const auto& file : std::filesystem::directory_iterator(TARN_TEST_DIRECTORY "/../fuzz/corpus/" + name)) {
    std::ifstream stream(file.path(), std::ios::binary);
    files.emplace_back(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  }
  std::sort(files.begin(), files.end());  // Folders have no order of their own.
  return files;
}

std::string pieceOf(Generate& generate) {
  const std::string bytes = generate.bytes(generate.below(8) == 0 ? 40 : 8);
  switch (generate.below(6)) {
    case 0:
      return bytes;
    case 1:
      return generate.text(" \n|{}\"\\=>,.:+-0123456789aeftrux", 12);
    case 2:
      return "|" + bytes;
    default:
      return std::string("|") + "*@%#"[generate.below(4)] + bytes;
  }
}

std::string inputOf(Generate& generate, const std::vector<std::string>& corpus) {
  if (generate.below(4) == 0) return generate.bytes(200);
  std::string input = corpus[generate.below(corpus.size())];
  for (auto changes = generate.below(6); changes > 0; --changes) {
    const std::string piece = pieceOf(generate);
    const auto at = generate.below(input.size() + 1);
    input.replace(at, generate.below(2) * generate.below(input.size() + 1), piece);
  }
  return input;
}

class PropertyTest : public testing::TestWithParam<Property> {};

TEST_P(PropertyTest, HoldsForGeneratedInputs) {
  const std::vector<std::string> corpus = corpusOf(GetParam().name);
  ASSERT_FALSE(corpus.empty());
  Generate generate(1);
  marks().clear();
  for (int i = 0; i < 10000; ++i) {
    const std::string input =
        i < static_cast<int>(corpus.size()) ? corpus[static_cast<std::size_t>(i)] : inputOf(generate, corpus);
    try {
      GetParam().check(Input(input));
    } catch (const std::exception& fault) {
      FAIL() << "input " << i << ", " << testing::PrintToString(input) << ": " << fault.what();
    }
  }
  for (const auto& [mark, count] : marks()) {
    std::cout << "   " << count << " times: " << mark << '\n';
    EXPECT_GT(count, 0) << "no input has reached: " << mark;
  }
}

INSTANTIATE_TEST_SUITE_P(All, PropertyTest, testing::ValuesIn(kProperties),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
