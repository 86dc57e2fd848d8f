// Positions as the interfaces give them.
#ifndef TARN_TEXT_INTERNAL_POSITION_H_
#define TARN_TEXT_INTERNAL_POSITION_H_

#include <climits>
#include <cstddef>

namespace Tarn::internal {

// The position, or -1 for none (npos) and for one that an int cannot hold.
constexpr int toPosition(std::size_t position) { return position <= INT_MAX ? static_cast<int>(position) : -1; }

}  // namespace Tarn::internal

#endif  // TARN_TEXT_INTERNAL_POSITION_H_
