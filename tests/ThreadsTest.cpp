// What many threads may do at once. The thread sanitizer watches it in CI; the sums are checked in every build.
#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <sstream>
#include <thread>
#include <vector>

#include "Tarn/Tarn.h"

namespace {

using namespace Tarn;
using namespace Tarn::DataStructures;

constexpr int kThreads = 6;

// Runs the work on each thread, all of them at once. It gets the thread's number.
template <class Work>
void onManyThreads(Work work) {
  std::barrier start(kThreads);
  std::vector<std::thread> threads;
  for (int n = 0; n < kThreads; ++n) {
    threads.emplace_back([&start, work, n] {
      start.arrive_and_wait();
      work(n);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

// Whole numbers and halves of them, so that sums are exact in any order.
TEST(Threads, MoveOneHubAndNothingIsLost) {
  constexpr int kMoves = 400;
  Progress hub;
  std::atomic<int> seen = 0;
  std::atomic<int> again = 100;  // As many moves an observer makes itself.
  std::atomic<int> late = 0;
  std::atomic<int> moves = 0;
  std::atomic<long long> sum = 0;
  hub.addObserver([&](double) { ++seen; });
  hub.addObserver([&](double) {
    if (again.fetch_sub(1) <= 0) return;
    hub.addProgress(1.0);
    hub.setStep("from an observer");
    hub.addObserver([&late](const std::string&) { ++late; });
    ++moves;
    ++sum;
  });
  hub.addObserver([&hub](const std::string&) { hub.addProgress(0.0); });
  onManyThreads([&](int n) {
    for (int i = 0; i < kMoves; ++i) {
      const auto difference = static_cast<long long>(hub.setProgress(n * kMoves + i));
      moves += difference != 0 ? 1 : 0;
      sum += difference + n;
      hub.addProgress(n);
      moves += n != 0 ? 1 : 0;
      hub.setStep(std::to_string(i % 3));
      if (i % 100 == 0) hub.addObserver([&late](double) { ++late; });
    }
  });
  EXPECT_EQ(hub.addProgress(0.0), static_cast<double>(sum));
  EXPECT_EQ(seen, moves);
  late = 0;
  hub.addProgress(1.0);
  EXPECT_EQ(late, kThreads * kMoves / 100);
  hub.setStep("last");
  EXPECT_EQ(late, kThreads * kMoves / 100 + 100);
}

// Many of each, in turns with moves, so that a registration without the lock meets another or a pass.
TEST(Threads, RegisterObserversWhileOthersMove) {
  constexpr int kObservers = 100;
  Progress hub;
  std::atomic<int> values = 0;
  std::atomic<int> steps = 0;
  onManyThreads([&](int n) {
    for (int i = 0; i < kObservers; ++i) {
      hub.addObserver([&values](double) { ++values; });
      std::this_thread::yield();
      hub.addProgress(1.0);
      hub.addObserver([&steps](const std::string&) { ++steps; });
      std::this_thread::yield();
      hub.setStep(std::to_string(n));
    }
  });
  values = steps = 0;
  hub.addProgress(1.0);
  hub.setStep("last");
  EXPECT_EQ(values, kThreads * kObservers);
  EXPECT_EQ(steps, kThreads * kObservers);
}

TEST(Threads, MoveChainsOfPartsAndTheSumsComeOut) {
  const auto root = std::make_shared<Progress>();
  const auto shared = std::make_shared<PartialProgress>(root, 0.5);
  std::atomic<int> seen = 0;
  root->addObserver([&seen](double) { ++seen; });
  shared->addObserver([&root](double) { root->setStep("part"); });
  onManyThreads([&](int n) {
    PartialProgress part(std::make_shared<PartialProgress>(shared, 2.0), 0.5);
    for (int i = 1; i <= 200; ++i) {
      part.setProgress(2.0 * i);
      shared->addProgress(2.0);
      part.setStep(std::to_string(n));
    }
  });
  EXPECT_EQ(shared->addProgress(0.0), kThreads * 800.0);
  EXPECT_EQ(root->addProgress(0.0), kThreads * 400.0);
  EXPECT_EQ(seen, kThreads * 400);
}

TEST(Threads, AskTablesTimesAndStreams) {
  constexpr std::uint64_t kEntries = 200;
  KeyTable names;
  UuidKeyTable ids;
  std::string text;
  for (std::uint64_t i = 0; i < kEntries; ++i) {
    std::array<unsigned char, 16> bytes{static_cast<unsigned char>(i)};
    names.addEntry(i, std::string(i % 50, 'x') + std::to_string(i));
    ids.addEntry(i, uuids::uuid(bytes));
    text << std::string(i % 7, ' ') << i << '\n';
  }
  Time time;
  time.setTime(1709644029.042);
  const std::string texts = time.getTimeStr() + time.getTimeStr2() + time.getTimeStr3() + time.getIsoTimeStr();
  onManyThreads([&](int) {
    std::istringstream stream(text);
    ValueReader reader(text);
    for (std::uint64_t i = 0; i < kEntries; ++i) {
      EXPECT_EQ(names.keyToToken(*names.tokenToKey(i)), i);
      EXPECT_EQ(ids.keyToToken(*ids.getKey(i)), ids.getToken(i));
      EXPECT_EQ(ids.getNumElements(), names.getNumElements());
      EXPECT_EQ(time.getTimeStr() + time.getTimeStr2() + time.getTimeStr3() + time.getIsoTimeStr(), texts);
      Time local;
      local.setTime(time.getYear(), time.getMonth(), time.getDay(), time.getHour(), time.getMin(), time.getSec(), 42);
      EXPECT_EQ(Time::compare(local, time), 0);
      std::uint64_t number = kEntries;
      stream >> eatWS >> number;
      EXPECT_EQ(number, i);
      reader >> number;
      EXPECT_EQ(number, i);
      EXPECT_FALSE(uuids::uuid::generate().is_nil());
    }
  });
}

}  // namespace
