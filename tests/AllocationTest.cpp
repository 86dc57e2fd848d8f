// Every allocation of every operation fails once: nothing leaks, what is promised to stay has stayed, and the operation
// then does what it would have done.
#include <gtest/gtest.h>

#include <functional>
#include <limits>
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

// Written by stream operators only.
struct Word {
  std::string text;
};
std::ostream& operator<<(std::ostream& stream, const Word& word) { return stream << word.text; }

}  // namespace foreign

namespace Tarn::DataStructures {

static bool operator==(const ScanStatistics& a, const ScanStatistics& b) {
  const auto parts = [](const ScanStatistics& s) {
    return std::tuple(s.distance.sums.count, s.intensity.sums.count, s.echoes.sums.count, s.incidence.sums.count,
                      s.distance.frequentValues, s.echoes.counts, s.distance.histogram, s.incidence.histogram);
  };
  return parts(a) == parts(b);
}

}  // namespace Tarn::DataStructures

namespace {

using namespace Tarn;
using namespace Tarn::DataStructures;
using uuids::uuid;

const std::string kLong = "a text that is too long for a string's own room";
const std::wstring kWideLong(kLong.begin(), kLong.end());

// Whether a call throws when the allocation behind the first `count` fails, or all behind them.
bool failsAfter(long count, auto call) {
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

// Acts on copies of a state with no allocation, with one and so on, until it goes through. An act that fails has to
// keep the state as it was, so that it goes through when it is done again, or what `isKept` says of it.
template <class State>
void expectSafe(int line, const State& before, auto act, bool (*isKept)(const State&) = nullptr) {
  testing::ScopedTrace at(__FILE__, line, "");
  State result = before;
  act(result);  // Makes what is made once, such as a locale's facets.
  for (const bool once : {true, false}) {
    failsOnce = once;
    long count = 0;
    for (bool failed = true; failed && !testing::Test::HasFailure(); ++count) {
      const long held = live;
      {
        State state = before;
        failed = failsAfter(count, [&] { act(state); });
        EXPECT_TRUE(!failed || (isKept != nullptr ? isKept(state) : state == before)) << "at allocation " << count;
        if (failed && isKept == nullptr) act(state);
        EXPECT_TRUE(isKept != nullptr || state == result) << "again after " << count << " allocations";
      }
      EXPECT_EQ(live, held) << "leaks after " << count << " allocations";
    }
    EXPECT_GT(count, 1) << "allocates nothing";
  }
}

class Allocation : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(failsAfter(0, [] { static_cast<void>(uuid().string()); })) << "the library has its own operator new";
  }
};

TEST_F(Allocation, ChangedTextsStay) {
  const std::string accented = kLong + "\n\xC3\xA9";
  const std::pair<std::string, void (*)(std::string&)> changes[] = {
      {accented, [](auto& text) { controlsToEsc(text, true); }},
      {accented, [](auto& text) { controlsToEsc(text, false); }},
      {kLong, [](auto& text) { replaceAll(text, "t", "tt"); }},
      {kLong, [](auto& text) { replaceAll(text, "t", text); }},
      {std::string(40, '9'), incrementIndex},
      {kLong, incrementIndex}};
  for (const auto& [before, act] : changes) expectSafe(__LINE__, before, act);
  const auto append = [](const auto&... values) {
    (expectSafe(__LINE__, kLong, [&](std::string& text) { text << values; }), ...);
  };
  append('c', true, 42, -7LL, 1e300, 0.1F, 1e300L, exact(0.1), exact(0.1F), exact(0.1L), kLong, kLong.c_str(),
         JsonValue{kLong}, uuid(), kWideLong, foreign::Word{kLong + kLong}, PrintF("%s", kLong), Time::now());
  const StringMap map = {{"a", kLong}, {kLong, "b\n"}};
  expectSafe<std::string>(
      __LINE__, kLong, [&](auto& text) { text << map; }, [](const auto& text) { return text.starts_with(kLong); });
  expectSafe(__LINE__, kWideLong, [](auto& text) { replaceAll(text, L"t", L"tt"); });
}

// What a stream writes that throws what its buffer throws.
std::string streamed(const auto& value) {
  std::ostringstream stream;
  stream.exceptions(std::ios::badbit);
  stream << value;
  return stream.str();
}

TEST_F(Allocation, NewTexts) {
  static const Time time = Time::now();
  static const KeyTable table({{1, kLong}});
  std::string (*const texts[])() = {
      [] { return narrow(kWideLong, '?'); },
      [] {
        return implode({kLong, kLong}, ", ");
      },
      [] { return trim_copy(kLong) + ltrim_copy(kLong) + rtrim_copy(kLong); },
      [] { return std::string(PrintF("%s", kLong)) + "x" + PrintF(kLong) + PrintF("%s", kLong.c_str()); },
      [] { return uuid().string() + uuid().toShortString(); },
      [] { return time.getTimeStr() + time.getTimeStr2() + time.getTimeStr3() + time.getTimeStr8(); },
      [] { return time.getTimeStr9() + time.getIsoTimeStr() + isoText(time); },
      [] { return streamed(time); },
      [] { return streamed(uuid()); },
      [] { return streamed(PrintF("%s", kLong)); },
      [] { return streamed(kWideLong) + streamed(kWideLong.c_str()); },
      [] { return std::string(compareIgnoreCase(kLong, kWideLong) == 0, 'x'); },
      [] { return std::string(compareIgnoreCase(kWideLong, kLong) == 0, 'x'); },
      [] { return *table.tokenToKey(1); },
      [] {
        return *KeyTable({{1, kLong}, {2, kLong}}).tokenToKey(2);
      }};
  for (const auto& make : texts) expectSafe(__LINE__, std::string(), [make](auto& text) { text = make(); });
  const auto* const bytes = reinterpret_cast<const unsigned char*>(kLong.c_str());
  expectSafe(__LINE__, std::wstring(), [&](auto& text) { text = wide(kLong) + wide(bytes) + wide(bytes, 20); });
}

// A buffer, reader or stream and the value read from it.
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
  const Reading<ValueReader, T> reading{ValueReader(text), before};
  expectSafe(line, Reading<std::string, T>{text, before}, [](auto& r) { r.source >> r.value; });
  expectSafe(line, reading, [](auto& r) { r.source >> r.value; });
  expectSafe(line, reading, [](auto& r) { r.value = r.source.template tryRead<T>().value(); });
}

template <class T>
void expectSafeStreaming(int line, const std::string& text, const T& before) {
  expectSafe(line, before, [&text](T& value) {
    std::istringstream stream(text);
    stream.exceptions(std::ios::badbit);
    stream >> value;
  });
}

TEST_F(Allocation, ReadersStayWhereTheyWere) {
  expectSafeReading<std::string>(__LINE__, '"' + kLong + "\" rest", "before");
  expectSafeReading<std::string>(__LINE__, kLong + "\nrest", "before");
  expectSafeReading<StringMap>(__LINE__, "  { \"a\"=>\"" + kLong + "\" \"" + kLong + "\"=>\"b\" } rest",
                               {{"old", kLong}});
  expectSafeReading<long double>(__LINE__, ", 1234567890.0987654321e-5 rest", 7.0L);
  expectSafeStreaming<std::optional<std::string>>(__LINE__, '"' + kLong + "\" rest", "before");
  expectSafeStreaming(__LINE__, "00010203-0405-0607-0809-0a0b0c0d0e0f rest", uuid());
  expectSafeStreaming(__LINE__, "5.3.2024 14:7:9:42 and what is behind it", Time());
}

TEST_F(Allocation, SomeOperationsNeedNone) {
  std::string text = R"(  "a\n\u00e9" 7 )" + kLong;
  std::string numbers = " 7 0.5 true x 5.3.2024 14:7:9:42 " + kLong;
  const std::string isoTime = kLong + "\n2024-03-05T14:07:09Z";
  const std::string id = uuid::generate().string();
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
           parseUuid(id) && time.getYear() == 2024 && time.getTimeStr7() == time.getTimeStr6() + "_140709" &&
           time.getTimeStr4() == "14:07:09:042" && time.getTimeStr5() == "05.03.2024" && table.keyToToken(kLong) == 1 &&
           !table.addEntry(1, isoTime) && table.rmEntry(1, kLong) && !table.rmAll() && findLastOf(isoTime, "Z") > 0 &&
           compareIgnoreCase(kLong, isoTime) < 0 && compareIgnoreCase(kWideLong, kWideLong) == 0 &&
           ValueReader(kLong).takeLine() && !uuid::generate().is_nil();
  };
  bool holds = false;
  EXPECT_FALSE(failsAfter(0, [&] { holds = call(); }));
  EXPECT_TRUE(holds);
}

// Texts that repeat themselves are searched in linear time with some memory, and for the same result without.
TEST_F(Allocation, SearchesFindWithoutMemory) {
  const std::string run(300, 'a');
  const std::string around(3000, 'a');
  const std::string needle = run + 'b' + run;
  std::string replaced = around + needle + around;
  std::wstring wideReplaced = wide(replaced);
  int last = 0;
  EXPECT_FALSE(failsAfter(0, [&, text = replaced, wideNeedle = wide(needle)] {
    last = findLastOf(text, needle);
    replaceAll(replaced, needle, "c");
    replaceAll(wideReplaced, wideNeedle, L"c");
  }));
  EXPECT_TRUE(last == 3000 && replaced == around + 'c' + around && wide(replaced) == wideReplaced);
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

std::uint64_t tokenAt(const KeyTable& table, std::uint64_t position) {
  return table.tokenToKey(position) ? position : std::numeric_limits<std::uint64_t>::max();
}
std::uint64_t tokenAt(const UuidKeyTable& table, std::uint64_t position) { return table.getToken(position); }

// Whether it holds the tokens below the count and nothing else, found in each way.
template <class Table>
bool holds(const Table& table, std::uint64_t count) {
  bool all = table.getNumElements() == count && !table.tokenToKey(count) && tokenAt(table, count) > count &&
             table.keyToToken(keyOf(table, count)) > count;
  for (std::uint64_t token = 0; all && token < count; ++token) {
    const auto key = keyOf(table, token);
    all = table.keyToToken(key) == token && table.tokenToKey(token) == key && tokenAt(table, token) == token;
  }
  return all;
}

template <class Table>
class TableAllocation : public Allocation {};
using Tables = testing::Types<KeyTable, UuidKeyTable>;
TYPED_TEST_SUITE(TableAllocation, Tables);

// A table that holds the tokens below some number, and can take the next.
template <class Table>
struct Held {
  Table table;
  bool operator==(const Held& other) const {
    const std::uint64_t count = other.table.getNumElements();
    Table next = table;
    return holds(table, count) && next.addEntry(count, keyOf(next, count)) && holds(next, count + 1);
  }
};

// With sizes at which indexes, store and blocks of tokens grow.
TYPED_TEST(TableAllocation, FailedChangesChangeNothing) {
  const auto source = tableOf<TypeParam>(500);
  for (const std::uint64_t size : {0U, 6U, 7U, 13U, 14U, 511U, 512U, 1023U, 1024U}) {
    const Held<TypeParam> before{tableOf<TypeParam>(size)};
    expectSafe(__LINE__, before, [size](auto& held) { held.table.addEntry(size, keyOf(held.table, size)); });
    expectSafe(__LINE__, before, [&source](auto& held) { held.table = source; });
    expectSafe(__LINE__, before, [&source](auto& held) { held = {TypeParam(source)}; });
  }
}

TEST_F(Allocation, TablesKeepTheEntriesBeforeTheOneThatFails) {
  std::vector<KeyTableEntry> entries;
  for (std::uint64_t token = 0; token < 20; ++token) entries.push_back({token, keyOf(KeyTable(), token)});
  expectSafe<Held<KeyTable>>(
      __LINE__, {}, [&](auto& held) { held.table.addTable(entries); },
      [](const auto& held) { return holds(held.table, held.table.getNumElements()); });
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
  constexpr bool (*kKept[])(std::uint64_t) = {
      [](std::uint64_t) { return false; },
      [](std::uint64_t token) { return token == 7; },
      [](std::uint64_t token) { return token * 0x9E3779B97F4A7C15 >> 60U == 0; },  // Any sixteenth of them,
      [](std::uint64_t token) { return token * 0x9E3779B97F4A7C15 >> 63U == 0; },  // or half;
      [](std::uint64_t token) { return token % 512 < 129; },                       // neighbours;
      [](std::uint64_t token) { return token >= kMost / 10 * 9; },                 // the last,
      [](std::uint64_t token) { return token < kMost / 10; },                      // and the first.
  };
  for (const auto keeps : kKept) {
    TypeParam fresh;
    const long needed = bytesOf([&] {
      for (std::uint64_t token = 0; token < kMost; ++token) {
        if (keeps(token)) fresh.addEntry(token, keyOf(fresh, token));
      }
    });
    for (const std::uint64_t last : {std::uint64_t{0}, kMost - 1}) {
      TypeParam table;
      const long grown = bytesOf([&] {
        table = tableOf<TypeParam>(kMost);
        for (std::uint64_t i = 0; i < kMost; ++i) {
          const std::uint64_t token = last == 0 ? kMost - 1 - i : i;
          if (!keeps(token)) table.rmEntry(token, keyOf(table, token));
        }
      });
      EXPECT_LE(grown, 2 * needed + 2048) << fresh.getNumElements() << " kept, up to " << last;
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
}

// Pairs that come and go, whether their two directions are removed together or crosswise.
TEST_F(Allocation, KeyTableTakesTheSpaceOfRemovedPairsAgain) {
  for (const std::uint64_t crossed : {0U, 1U}) {
    KeyTable table;
    const long bytes = bytesOf([&] {
      for (int i = 0; i < 10000; ++i) {
        for (const std::uint64_t token : {0U, 1U}) table.addEntry(token, keyOf(table, token));
        for (const std::uint64_t token : {0U, 1U}) table.rmEntry(token, keyOf(table, token ^ crossed));
      }
    });
    EXPECT_TRUE(bytes <= 2048 && table.getNumElements() == 0) << crossed;
  }
  KeyTable table;
  EXPECT_LT(bytesOf([&] { table.addTable(std::vector<KeyTableEntry>(100000, {1, "one"})); }), 1024);
}

TEST_F(Allocation, ProgressKeepsAChangeThatNobodyWasToldOf) {
  bool failed = true;
  for (long count = 0; failed; ++count) {
    failed = false;
    int seen = 0;
    const auto observer = [&seen, text = kLong](const auto&) { ++seen; };  // Copies of it allocate.
    const auto root = std::make_shared<Progress>(observer, observer);
    PartialProgress part(root, 0.5);
    const auto expectTold = [&](int told, auto call) {
      seen = 0;
      const bool fails = failsAfter(count, call);
      EXPECT_EQ(seen, fails ? 0 : told);
      failed = failed || fails;
    };
    expectTold(1, [&] { part.setProgress(2.0); });
    expectTold(1, [&] { part.addProgress(2.0); });
    expectTold(1, [&] { root->setStep("short"); });
    expectTold(0, [&] { root->setStep("short"); });  // It is the step already.
    EXPECT_EQ(root->addProgress(0.0), 2.0);
    const bool isAdded = !failsAfter(count, [&] { root->addObserver(std::function<void(double)>(observer)); });
    failed = failed || !isAdded;
    seen = 0;
    root->addProgress(1.0);
    EXPECT_EQ(seen, isAdded ? 2 : 1);
  }
}

TEST_F(Allocation, StatisticsAreResetOrAsBefore) {
  ScanStatistics before;
  before.distance.sums.count = before.intensity.sums.count = before.incidence.sums.count = 7;
  before.distance.frequentValues[1.0] = 2;
  before.incidence.histogram.resize(5000, 3);
  before.echoes.counts[1] = 2;
  expectSafe(__LINE__, before, [](auto& statistics) { statistics.reset(); });
}

}  // namespace
