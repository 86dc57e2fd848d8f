#include "Tarn/uuids/internal/SeededHash.h"

#include <chrono>
#include <exception>
#include <random>

namespace Tarn::internal {
namespace {

std::uint64_t drawSeed() noexcept {
  try {
    std::random_device device;
    return std::uint64_t{device()} << 32U | device();
  } catch (const std::exception&) {
    // No random numbers on this system: what remains hard to guess is when the process began, and where it lies.
    static const char kPlace = 0;
    const auto now = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    return platform::foldedProduct(now, reinterpret_cast<std::uintptr_t>(&kPlace) | 1U);
  }
}

}  // namespace

constinit HashSeeds drawnSeeds{};
constinit std::atomic<bool> areSeedsDrawn = false;

void drawSeeds() noexcept {
  static const bool kOnce = [] {
    drawnSeeds = {drawSeed(), drawSeed() | 1U};
    areSeedsDrawn.store(true, std::memory_order_release);
    return true;
  }();
  static_cast<void>(kOnce);
}

}  // namespace Tarn::internal
