// Calls of the system that fail when they are told to. These stand in the place of the runtime's own, for the library,
// too, where the system binds names across libraries.
#include <gtest/gtest.h>
#include <sys/random.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

#include "Tarn/Tarn.h"

namespace {

std::vector<int> randomErrors;  // Of the next calls, the last one first.
std::size_t mostRandomBytes = SIZE_MAX;
bool knowsLocalTime = true;
bool areClocksStill = false;
std::timespec wallClock{1700000000, 0};
std::timespec steadyClock{500, 0};

}  // namespace

[[gnu::visibility("default")]] ssize_t getrandom(void* bytes, std::size_t size, unsigned flags) {
  if (!randomErrors.empty()) {
    errno = randomErrors.back();
    randomErrors.pop_back();
    return -1;
  }
  if (flags != 0) return -1;  // Other than by default it does not wait until there are some.
  size = std::min(size, mostRandomBytes);
  for (std::size_t i = 0; i < size; ++i) static_cast<unsigned char*>(bytes)[i] = static_cast<unsigned char>(0xF0 + i);
  return static_cast<ssize_t>(size);
}

[[gnu::visibility("default")]] std::tm* localtime_r(const std::time_t* time, std::tm* fields) noexcept {
  if (!knowsLocalTime) return nullptr;
  *fields = *std::localtime(time);
  return fields;
}

[[gnu::visibility("default")]] int clock_gettime(clockid_t clock, std::timespec* time) noexcept {
  if (!areClocksStill) return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
  *time = clock == CLOCK_REALTIME ? wallClock : steadyClock;
  return 0;
}

namespace {

using namespace Tarn;

TEST(FailingSystem, GivesNoUuidWithoutRandomBytes) {
  randomErrors = {EINTR, EINTR};
  EXPECT_EQ(uuids::uuid::generate().string(), "f0f1f2f3-f4f5-46f7-b8f9-fafbfcfdfeff");
  mostRandomBytes = 24;  // Systems may give less than they are asked for.
  std::array<uuids::uuid, 2> ids;
  uuids::uuid::generate(ids);
  mostRandomBytes = SIZE_MAX;
  EXPECT_EQ(ids[1].string(), "00010203-0405-4607-b0f1-f2f3f4f5f6f7");
  randomErrors = {EIO, EINTR};
  try {
    static_cast<void>(uuids::uuid::generate());
    ADD_FAILURE() << "a uuid without random bytes";
  } catch (const std::system_error& error) {
    EXPECT_EQ(error.code().value(), EIO);
    EXPECT_TRUE(std::string(error.what()).starts_with("no random bytes for a uuid")) << error.what();
  }
}

TEST(FailingSystem, ShowsNoLocalTimeThatIsNotKnown) {
  setenv("TZ", "EST5", 1);
  tzset();
  Time time;
  time.setTime(2024, 3, 5, 14, 7, 9, 42);
  EXPECT_EQ(time.getIsoTimeStr() + ' ' + time.getTimeStr9(), "2024-03-05T14:07:09-05:00 2024-03-05T19:07:09Z");
  knowsLocalTime = false;
  EXPECT_EQ(time.getIsoTimeStr() + ' ' + time.getTimeStr9(), "0000-00-00T00:00:00Z 2024-03-05T19:07:09Z");
  EXPECT_EQ(time.getTimeStr(), "");
  EXPECT_EQ(time.getTimeStruct().tm_mday, 0);
  time.setTime(2024, 3, 5, 14, 7, 9, 42);  // The other direction still knows it.
  EXPECT_EQ(time.getTimeStr9(), "2024-03-05T19:07:09Z");
  knowsLocalTime = true;
}

// 30.25 s by the steady clock, whatever the system's is set to meanwhile.
TEST(FailingSystem, EachWayToSetATimeSetsItsSteadyHalf) {
  areClocksStill = true;
  for (const int ahead : {-3600, 0, 3600}) {
    wallClock.tv_sec = 1700000000;
    const int seconds = 1700000000 + ahead;
    const Time whole(std::chrono::system_clock::from_time_t(seconds));
    std::vector<Time> times(7, whole);
    times[1].setTime(static_cast<long long>(seconds));
    times[2].setTime(seconds);
    times[3] = *parseTime(isoText(whole));
    times[4] = Time::fromIsoTimeStrIgnoringTimeZone(whole.getIsoTimeStr());
    std::string text;
    text << whole;
    std::istringstream(text) >> times[5];
    text >> times[6];
    if (ahead == 0) {
      times.insert(times.end(), {Time::now(), Time()});
      EXPECT_EQ(times.back().getCurrentTime(), seconds);
    }
    wallClock.tv_sec += 12345;
    steadyClock.tv_sec += 30;
    steadyClock.tv_nsec += 250000000;
    for (const Time& time : times) {
      EXPECT_EQ(time.getAbsLastTime(), seconds);
      EXPECT_TRUE(time.isTimeOut(30.249 - ahead) && !time.isTimeOut(30.251 - ahead));
    }
  }
  EXPECT_TRUE(Time().isTimeOut(1700012344.999) && !Time().isTimeOut(1700012345.001));
  areClocksStill = false;
}

TEST(FailingSystem, PrintsNothingThatCannotBeFormatted) { EXPECT_EQ(std::string(PrintF("before %lc", 0x110000)), ""); }

}  // namespace
