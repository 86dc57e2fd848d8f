// Every allocation of every operation fails once: nothing leaks, and what is promised to stay has stayed.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <sstream>

#include "Tarn/DataStructures/KeyTable.h"
#include "Tarn/DataStructures/PartialProgress.h"
#include "Tarn/DataStructures/ScanStatistics.h"
#include "Tarn/DataStructures/UuidKeyTable.h"
#include "Tarn/Tarn.h"
#include "tests/FailingNew.h"

namespace foreign {

// Written and read by stream operators only.
struct Word {
  std::string text;
  bool operator==(const Word&) const = default;
};
std::ostream& operator<<(std::ostream& stream, const Word& word) { return stream << word.text; }

}  // namespace foreign

namespace {

using namespace Tarn;
using namespace Tarn::DataStructures;

const std::string kLong = "a text that is too long for a string's own room";

// Whether a call throws when the allocation behind the first `count` fails, or all behind them.
bool failsAfter(long count, const std::function<void()>& call) {
  untilFailure = count;
  try {
    call();
    untilFailure = kNever;
    return false;
  } catch (const std::bad_alloc&) {
    untilFailure = kNever;
    return true;
  }
}

// Attempts with no allocation, with one and so on, until one goes through; gives their number. Each attempt tells
// whether it failed, and gives back all that it allocated.
long attempts(const std::function<bool(long)>& attempt) {
  long count = 0;
  for (const bool once : {true, false}) {
    failsOnce = once;
    bool failed = true;
    for (count = 0; failed && !testing::Test::HasFailure(); ++count) {
      const long before = live;
      failed = attempt(count);
      EXPECT_EQ(live, before) << "leaks after " << count << " allocations";
    }
  }
  return count - 1;
}

template <class State>
struct Operation {
  int line;
  std::string name;
  State before;
  std::function<void(State&)> act;
  bool isStrong = true;  // Otherwise the old text is still in front.
};

template <class State>
bool isInFront(const State&, const State&) {
  return false;
}
bool isInFront(const std::string& before, const std::string& after) { return after.starts_with(before); }

template <class State>
void expectSafe(const std::vector<Operation<State>>& operations) {
  for (const Operation<State>& operation : operations) {
    testing::ScopedTrace at(__FILE__, operation.line, operation.name);
    State result = operation.before;
    operation.act(result);  // Makes what is made once, such as a locale's facets.
    const long count = attempts([&](long allocations) {
      State state = operation.before;
      const bool failed = failsAfter(allocations, [&] { operation.act(state); });
      if (failed && !operation.isStrong) {
        EXPECT_TRUE(isInFront(operation.before, state));
        return true;
      }
      EXPECT_TRUE(state == (failed ? operation.before : result)) << "after " << allocations << " allocations";
      return failed;
    });
    ASSERT_GT(count, 0) << "allocates nothing";
  }
}

class Allocation : public testing::Test {
 protected:
  void SetUp() override {
    const auto allocates = [] { return uuids::uuid().string().empty(); };
    ASSERT_TRUE(failsAfter(0, allocates)) << "the library has an operator new of its own";
  }
};

TEST_F(Allocation, TextsStayOrKeepTheirFront) {
  const StringMap map = {{"a", kLong}, {kLong, "b\n"}};
  const auto time = Time::now();
  const std::wstring wideLong(kLong.begin(), kLong.end());
  expectSafe<std::string>({
      {__LINE__, "escape", kLong + "\n\xC3\xA9", [](auto& text) { controlsToEsc(text, true); }},
      {__LINE__, "escape to bytes", kLong + "\n\xC3\xA9", [](auto& text) { controlsToEsc(text, false); }},
      {__LINE__, "replace", kLong, [](auto& text) { replaceAll(text, "t", "tt"); }},
      {__LINE__, "replace by itself", kLong, [](auto& text) { replaceAll(text, "t", text); }},
      {__LINE__, "increment", std::string(40, '9'), [](auto& text) { incrementIndex(text); }},
      {__LINE__, "increment none", kLong, [](auto& text) { incrementIndex(text); }},
      {__LINE__, "write char", kLong, [](auto& text) { text << 'c'; }},
      {__LINE__, "write bool", kLong, [](auto& text) { text << true; }},
      {__LINE__, "write int", kLong, [](auto& text) { text << 42; }},
      {__LINE__, "write double", kLong, [](auto& text) { text << 1e300; }},
      {__LINE__, "write text", kLong, [](auto& text) { text << kLong; }},
      {__LINE__, "write C string", kLong, [](auto& text) { text << kLong.c_str(); }},
      {__LINE__, "write JSON", kLong, [json = JsonValue{kLong}](auto& text) { text << json; }},
      {__LINE__, "write uuid", kLong, [](auto& text) { text << uuids::uuid(); }},
      {__LINE__, "write wide text", kLong, [&](auto& text) { text << wideLong; }},
      {__LINE__, "write by stream", kLong, [word = foreign::Word{kLong + kLong}](auto& text) { text << word; }},
      {__LINE__, "write map", kLong, [&](auto& text) { text << map; }, false},
      {__LINE__, "write time", kLong, [&](auto& text) { text << time; }, false},
      {__LINE__, "narrow", "", [&](auto& text) { text = narrow(wideLong, '?'); }},
      {__LINE__, "join", "",
       [](auto& text) {
         text = implode({kLong, kLong}, ", ");
       }},
      {__LINE__, "trim", "", [](auto& text) { text = trim_copy(kLong); }},
      {__LINE__, "print", "", [](auto& text) { text = PrintF("%s", kLong); }},
      {__LINE__, "uuid", "", [](auto& text) { text = uuids::uuid().string(); }},
      {__LINE__, "short uuid", "", [](auto& text) { text = uuids::uuid().toShortString(); }},
      {__LINE__, "date", "", [&](auto& text) { text = time.getTimeStr3(); }},
      {__LINE__, "ISO time", "", [&](auto& text) { text = time.getIsoTimeStr(); }},
      {__LINE__, "compare", "", [&](auto& text) { text.resize(compareIgnoreCase(kLong, wideLong) == 0 ? 1U : 2U); }},
  });
  expectSafe<std::wstring>({
      {__LINE__, "wide", L"", [](auto& text) { text = wide(kLong); }},
      {__LINE__, "replace", wideLong, [](auto& text) { replaceAll(text, L"t", L"tt"); }},
  });
}

// A buffer or reader and the value read from it.
template <class Source, class T>
struct Reading {
  Source source;
  T value;

  bool operator==(const Reading& other) const { return value == other.value && rest(source) == rest(other.source); }
  static std::string_view rest(const std::string& buffer) { return buffer; }
  static std::string_view rest(const ValueReader& reader) { return reader.rest(); }
};

template <class T>
void expectSafeReading(int line, const std::string& text, const T& before) {
  expectSafe<Reading<std::string, T>>({{line, "buffer", {text, before}, [](auto& r) { r.source >> r.value; }}});
  expectSafe<Reading<ValueReader, T>>(
      {{line, "reader", {ValueReader(text), before}, [](auto& r) { r.source >> r.value; }}});
}

TEST_F(Allocation, ReadersStayWhereTheyWere) {
  expectSafeReading<std::string>(__LINE__, '"' + kLong + "\" rest", "before");
  expectSafeReading<std::string>(__LINE__, kLong + "\nrest", "before");
  expectSafeReading<StringMap>(__LINE__, "  { \"a\"=>\"" + kLong + "\" \"" + kLong + "\"=>\"b\" } rest",
                               {{"old", kLong}});
  expectSafeReading<long double>(__LINE__, ", 1234567890.0987654321e-5 rest", 7.0L);
  expectSafe<std::optional<std::string>>({{__LINE__, "word", "before", [](auto& word) {
                                             std::istringstream stream('"' + kLong + "\" rest");
                                             stream >> word;
                                           }}});
}

TEST_F(Allocation, SomeOperationsNeedNone) {
  std::string text = R"(  "a\n\u00e9" 7 )" + kLong;
  std::string numbers = " 7 0.5 true x 5.3.2024 14:7:9:42 " + kLong;
  const std::string isoTime = kLong + "\n2024-03-05T14:07:09Z";
  const std::string id = uuids::uuid::generate().string();
  KeyTable table({{1, kLong}});
  const auto call = [&] {
    escToControls(text, true);
    eatwhite(text);
    trim(text);
    replaceAll(text, isoTime, id);
    int number = 0;
    bool flag = false;
    char letter = 0;
    Time time = Time::fromIsoTimeStrIgnoringTimeZone(isoTime);
    double half = 0;
    numbers >> number >> half >> flag >> letter >> time;
    return number == 7 && half == 0.5 && parseTime("2024-03-05T14:07:09.5+01:00") && flag && letter == 'x' &&
           parseUuid(id) && time.getYear() == 2024 && table.keyToToken(kLong) == 1 && !table.addEntry(1, isoTime) &&
           table.rmEntry(1, kLong) && findLastOf(isoTime, "Z") > 0 && compareIgnoreCase(kLong, isoTime) < 0;
  };
  bool holds = false;
  EXPECT_FALSE(failsAfter(0, [&] { holds = call(); }));
  EXPECT_TRUE(holds);
}

// Texts that repeat themselves are searched in linear time with some memory, and for the same result without.
TEST_F(Allocation, SearchesFindWithoutMemory) {
  const std::string run(300, 'a');
  const std::string needle = run + 'b' + run;
  const std::string text = std::string(3000, 'a') + needle + std::string(3000, 'a');
  const std::wstring wideNeedle(needle.begin(), needle.end());
  std::string replaced = text;
  std::wstring wideReplaced(text.begin(), text.end());
  int last = 0;
  EXPECT_FALSE(failsAfter(0, [&] {
    last = findLastOf(text, needle);
    replaceAll(replaced, needle, "c");
    replaceAll(wideReplaced, wideNeedle, L"c");
  }));
  const std::string expected = std::string(3000, 'a') + 'c' + std::string(3000, 'a');
  EXPECT_EQ(last, 3000);
  EXPECT_EQ(replaced, expected);
  EXPECT_EQ(wideReplaced, std::wstring(expected.begin(), expected.end()));
}

std::string keyOf(const KeyTable&, std::uint64_t number) { return kLong + std::to_string(number); }
uuids::uuid keyOf(const UuidKeyTable&, std::uint64_t number) {
  std::array<unsigned char, 16> bytes{};
  for (std::size_t i = 0; i < 8; ++i) bytes[i] = static_cast<unsigned char>(number >> (8 * i));
  return uuids::uuid(bytes);
}

template <class Table>
Table tableOf(std::uint64_t count) {
  Table table;
  for (std::uint64_t token = 0; token < count; ++token) table.addEntry(token, keyOf(table, token));
  return table;
}

std::uint64_t tokenAt(const KeyTable&, std::uint64_t position) { return position; }
std::uint64_t tokenAt(const UuidKeyTable& table, std::uint64_t position) { return table.getToken(position); }

// Whether it holds the tokens below the count and nothing else, found in each way.
template <class Table>
bool holds(const Table& table, std::uint64_t count) {
  bool result =
      table.getNumElements() == count && !table.tokenToKey(count) && table.keyToToken(keyOf(table, count)) > count;
  for (std::uint64_t token = 0; token < count; ++token) {
    const auto key = keyOf(table, token);
    result =
        result && table.keyToToken(key) == token && table.tokenToKey(token) == key && tokenAt(table, token) == token;
  }
  return result;
}

template <class Table>
class TableAllocation : public Allocation {};
using Tables = testing::Types<KeyTable, UuidKeyTable>;
TYPED_TEST_SUITE(TableAllocation, Tables);

// With sizes at which indexes, store and blocks of tokens grow.
TYPED_TEST(TableAllocation, FailedChangesChangeNothing) {
  for (const std::uint64_t size : {0U, 6U, 7U, 13U, 14U, 511U, 512U, 1023U, 1024U}) {
    const auto before = tableOf<TypeParam>(size);
    attempts([&](long count) {
      TypeParam table = before;
      const bool failed = failsAfter(count, [&] { table.addEntry(size, keyOf(table, size)); });
      EXPECT_TRUE(holds(table, size + (failed ? 0 : 1))) << size;
      EXPECT_EQ(table.addEntry(size, keyOf(table, size)), failed);
      EXPECT_TRUE(holds(table, size + 1)) << size;
      return failed;
    });
    const auto source = tableOf<TypeParam>(500);
    attempts([&](long count) {
      TypeParam table = before;
      const bool failed = failsAfter(count, [&] { table = source; });
      EXPECT_TRUE(holds(table, failed ? size : 500)) << size;
      return failed;
    });
  }
}

// Removals need no memory, though they give some back where there is enough to move to.
TYPED_TEST(TableAllocation, RemovalsNeverFail) {
  auto table = tableOf<TypeParam>(3000);
  for (std::uint64_t token = 3000; token-- > 10;) {
    const auto key = keyOf(table, token);
    EXPECT_FALSE(failsAfter(0, [&] { table.rmEntry(token, key); }));
  }
  EXPECT_TRUE(holds(table, 10));
}

// The bytes of what a call leaves.
long bytesOf(const std::function<void()>& call) {
  const long before = liveBytes;
  call();
  return liveBytes - before;
}

// Whatever came before, a table takes at most twice what the same pairs take in a new one.
TYPED_TEST(TableAllocation, HoldsAtMostTwiceWhatItsPairsNeed) {
  constexpr std::uint64_t kMost = 20000;
  using Keeps = bool (*)(std::uint64_t);
  constexpr Keeps kKept[] = {
      [](std::uint64_t) { return false; },
      [](std::uint64_t token) { return token == 7; },
      [](std::uint64_t token) { return token * 0x9E3779B97F4A7C15 >> 60U == 0; },  // Any sixteenth of them,
      [](std::uint64_t token) { return token * 0x9E3779B97F4A7C15 >> 63U == 0; },  // or half;
      [](std::uint64_t token) { return token % 512 < 129; },                       // neighbours;
      [](std::uint64_t token) { return token >= kMost / 10 * 9; },                 // the last,
      [](std::uint64_t token) { return token < kMost / 10; },                      // and the first.
  };
  for (const Keeps keeps : kKept) {
    for (const bool isUpwards : {true, false}) {
      TypeParam table;
      const long grown = bytesOf([&] {
        for (std::uint64_t token = 0; token < kMost; ++token) table.addEntry(token, keyOf(table, token));
        for (std::uint64_t i = 0; i < kMost; ++i) {
          const std::uint64_t token = isUpwards ? i : kMost - 1 - i;
          if (!keeps(token)) table.rmEntry(token, keyOf(table, token));
        }
      });
      TypeParam fresh;
      const long needed = bytesOf([&] {
        for (std::uint64_t token = 0; token < kMost; ++token) {
          if (keeps(token)) fresh.addEntry(token, keyOf(fresh, token));
        }
      });
      EXPECT_LE(grown, 2 * needed + 2048) << "kept number " << &keeps - kKept << ' ' << fresh.getNumElements();
    }
  }
}

// What the headers promise, where tables have grown just now and just before they grow.
TEST_F(Allocation, TablesTakeAFewBytesAPair) {
  for (const long count : {7000L, 7169L, 10000L, 14336L, 14337L, 20000L}) {
    KeyTable names;
    UuidKeyTable ids;
    const auto size = static_cast<std::uint64_t>(count);
    const long ofNames = bytesOf([&] {
      for (std::uint64_t token = 0; token < size; ++token) names.addEntry(token, std::to_string(10000000 + token));
    });
    const long ofIds = bytesOf([&] { ids = tableOf<UuidKeyTable>(size); });
    EXPECT_TRUE(34 * count <= ofNames + 8 * count && ofNames <= 76 * count) << count << ": " << ofNames / count;
    EXPECT_TRUE(60 * count <= ofIds && ofIds <= 100 * count) << count << ": " << ofIds / count;
  }
  KeyTable table;
  const std::vector<KeyTableEntry> same(100000, {1, "one"});
  EXPECT_LT(bytesOf([&] { table.addTable(same); }), 1024);
}

// Pairs that come and go, whether their two directions are removed together or crosswise.
TEST_F(Allocation, KeyTableTakesTheSpaceOfRemovedPairsAgain) {
  const std::string keys[] = {kLong + "a", kLong + "b"};
  for (const bool isCrossed : {false, true}) {
    KeyTable table;
    const long bytes = bytesOf([&] {
      for (int i = 0; i < 10000; ++i) {
        for (const std::size_t token : {0U, 1U}) table.addEntry(token, keys[token]);
        for (const std::size_t token : {0U, 1U}) table.rmEntry(token, keys[isCrossed ? 1 - token : token]);
      }
    });
    EXPECT_EQ(table.getNumElements(), 0U);
    EXPECT_LE(bytes, 2048) << isCrossed;
  }
}

TEST_F(Allocation, ProgressKeepsAChangeThatNobodyWasToldOf) {
  const std::string step = "short";  // An observer gets a copy, which needs no allocation then.
  attempts([&](long count) {
    int seen = 0;
    // Copies of this observer allocate.
    const auto observer = [&seen, text = kLong](const auto&) { ++seen; };
    const auto root = std::make_shared<Progress>(observer, observer);
    PartialProgress part(root, 0.5);
    const bool setFailed = failsAfter(count, [&] { part.setProgress(2.0); });
    EXPECT_EQ(seen, setFailed ? 0 : 1);
    EXPECT_EQ(root->addProgress(0.0), 1.0);
    seen = 0;
    const bool stepFailed = failsAfter(count, [&] { root->setStep(step); });
    EXPECT_EQ(seen, stepFailed ? 0 : 1);
    root->setStep(step);
    EXPECT_EQ(seen, stepFailed ? 0 : 1);  // It is the step already.
    const bool addFailed = failsAfter(count, [&] { root->addObserver(std::function<void(double)>(observer)); });
    seen = 0;
    root->addProgress(1.0);
    EXPECT_EQ(seen, addFailed ? 1 : 2);
    return setFailed || stepFailed || addFailed;
  });
}

TEST_F(Allocation, StatisticsAreResetOrAsBefore) {
  ScanStatistics before;
  before.distance.sums.count = before.intensity.sums.count = before.incidence.sums.count = 7;
  before.distance.frequentValues[1.0] = 2;
  before.incidence.histogram.resize(5000, 3);
  before.echoes.counts[1] = 2;
  attempts([&](long count) {
    ScanStatistics statistics = before;
    const bool failed = failsAfter(count, [&] { statistics.reset(); });
    for (const auto* block : {&statistics.distance, &statistics.intensity, &statistics.incidence}) {
      EXPECT_EQ(block->sums.count, failed ? 7U : 0U);
    }
    EXPECT_EQ(statistics.distance.frequentValues.empty(), !failed);
    EXPECT_EQ(statistics.echoes.counts.empty(), !failed);
    EXPECT_EQ(statistics.incidence.histogram.size(), failed ? 5000U : 2048U);
    return failed;
  });
}

}  // namespace
