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
void onManyThreads(auto work) {
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

// Whole numbers, so that sums are exact in any order.
TEST(Threads, MoveOneHubAndNothingIsLost) {
  constexpr int kMoves = 400;
  Progress hub;
  std::atomic<int> seen = 0;
  std::atomic<int> again = 100;  // As many moves an observer makes itself.
  std::atomic<int> steps = 0;
  std::atomic<int> moves = 0;
  std::atomic<long long> sum = 0;
  hub.addObserver([&](double) { ++seen; });
  hub.addObserver([&](double) {
    if (again.fetch_sub(1) <= 0) return;
    hub.addProgress(1.0);
    hub.setStep("from an observer");
    hub.addObserver([&steps](const std::string&) { ++steps; });
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
    }
  });
  EXPECT_EQ(hub.addProgress(0.0), static_cast<double>(sum));
  EXPECT_EQ(seen, moves);
  steps = 0;
  hub.setStep("last");
  EXPECT_EQ(steps, 100);
}

// So fast, and registrations so near to moves, that one without the lock meets another.
TEST(Threads, CallOneHubFast) {
  Progress hub;
  std::atomic<int> told = 0;
  onManyThreads([&hub](int) {
    for (int i = 0; i < 30000; ++i) hub.addProgress(1.0);
  });
  EXPECT_EQ(hub.addProgress(0.0), kThreads * 30000.0);
  onManyThreads([&](int n) {
    for (int i = 0; i < 400; ++i) {
      hub.addObserver([&told](double) { ++told; });
      std::this_thread::yield();
      hub.addProgress(1.0);
      hub.addObserver([&told](const std::string&) { ++told; });
      std::this_thread::yield();
      hub.setStep(std::to_string(n));
    }
  });
  told = 0;
  hub.addProgress(1.0);
  hub.setStep("last");
  EXPECT_EQ(told, kThreads * 800);
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
  KeyTable names;
  UuidKeyTable ids;
  std::string text;
  for (unsigned char i = 0; i < 200; ++i) {
    names.addEntry(i, std::string(i % 50, 'x') + std::to_string(i));
    ids.addEntry(i, uuids::uuid(std::array<unsigned char, 16>{i}));
    text << int{i} << '\n';
  }
  Time time;
  time.setTime(1709644029.042);
  const auto texts = [&time] { return time.getTimeStr() + time.getTimeStr2() + time.getTimeStr3() + isoText(time); };
  onManyThreads([&, expected = texts()](int) {
    std::istringstream stream(text);
    ValueReader reader(text);
    for (std::uint64_t i = 0; i < 200; ++i) {
      EXPECT_TRUE(names.keyToToken(*names.tokenToKey(i)) == i && ids.keyToToken(*ids.getKey(i)) == ids.getToken(i));
      EXPECT_EQ(ids.getNumElements(), names.getNumElements());
      Time local;
      local.setTime(time.getYear(), time.getMonth(), time.getDay(), time.getHour(), time.getMin(), time.getSec(), 42);
      EXPECT_TRUE(texts() == expected && Time::compare(local, time) == 0);
      std::uint64_t streamed = 0;
      std::uint64_t read = 0;
      stream >> eatWS >> streamed;
      reader >> read;
      EXPECT_TRUE(streamed == i && read == i && !uuids::uuid::generate().is_nil());
    }
  });
}

}  // namespace
