// Rewriting a text of which most is taken byte by byte, sixteen at once.
#ifndef TARN_TEXT_INTERNAL_TRANSCODE_H_
#define TARN_TEXT_INTERNAL_TRANSCODE_H_

#include <algorithm>
#include <array>
#include <cstddef>

#include "Tarn/text/internal/Blocks.h"

namespace Tarn::internal {

// How far a text is rewritten, and the end of what was written for it.
template <class Unit>
struct Transcoded {
  const char* at;
  Unit* out;
};

// How far `transcode` may read behind the text, and write behind the units.
inline constexpr std::ptrdiff_t kBehind = kBlockSize - 1;

// Rewrites what begins before `stop`: sixteen bytes to sixteen units by `putBlock`, of which those count that come
// before a byte of the class, and such bytes by `putSequence`, which takes one or more and gives how far it came.
template <class Unit, class Class, class PutBlock, class PutSequence>
Transcoded<Unit> transcode(Transcoded<Unit> done, const char* stop, Class special, PutBlock putBlock,
                           PutSequence putSequence) {
  while (done.at < stop) {
    const Block found = special.in(Block::load(done.at));
    putBlock(done.at, done.out);
    // Not `first()` for both: the next block would wait for it.
    const std::size_t plain = found.any() ? found.first() : kBlockSize;
    done = {done.at + plain, done.out + plain};
    if (done.at >= stop) return {stop, done.out - (done.at - stop)};
    if (plain == kBlockSize) continue;
    while (done.at < stop && special.holds(*done.at)) done = putSequence(done);
  }
  return done;
}

// The end of a text, too short to be read in blocks, and zeros behind it.
class PaddedEnd {
 public:
  PaddedEnd(const char* at, const char* end) : size_(std::copy(at, end, bytes_.data()) - bytes_.data()) {}
  [[nodiscard]] const char* begin() const { return bytes_.data(); }
  [[nodiscard]] const char* end() const { return bytes_.data() + size_; }

 private:
  std::array<char, 2 * kBehind> bytes_{};
  std::ptrdiff_t size_;
};

}  // namespace Tarn::internal

#endif  // TARN_TEXT_INTERNAL_TRANSCODE_H_
