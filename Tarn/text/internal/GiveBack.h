// How much memory a result keeps.
#ifndef TARN_TEXT_INTERNAL_GIVEBACK_H_
#define TARN_TEXT_INTERNAL_GIVEBACK_H_

#include <cstddef>

namespace Tarn::internal {

// Shrinks the capacity of a text that fills less than half of it. If there is no memory to move the text to, it stays.
template <class Text>
void giveBack(Text& text) {
  constexpr std::size_t kFew = 64;
  if (text.capacity() > kFew && text.size() < text.capacity() / 2) text.shrink_to_fit();
}

}  // namespace Tarn::internal

#endif  // TARN_TEXT_INTERNAL_GIVEBACK_H_
