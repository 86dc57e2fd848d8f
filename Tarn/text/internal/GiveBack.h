// What a result keeps of memory.
#ifndef TARN_TEXT_INTERNAL_GIVEBACK_H_
#define TARN_TEXT_INTERNAL_GIVEBACK_H_

#include <cstddef>

namespace Tarn::internal {

// Gives memory back where less than half of it is used, if there is any to move to.
template <class Text>
void giveBack(Text& text) {
  constexpr std::size_t kFew = 64;
  if (text.capacity() > kFew && text.size() < text.capacity() / 2) text.shrink_to_fit();
}

}  // namespace Tarn::internal

#endif  // TARN_TEXT_INTERNAL_GIVEBACK_H_
