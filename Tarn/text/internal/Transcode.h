// Transcoding a text of which most bytes become a unit each, sixteen at once.
#ifndef TARN_TEXT_INTERNAL_TRANSCODE_H_
#define TARN_TEXT_INTERNAL_TRANSCODE_H_

#include <algorithm>

#include "Tarn/text/internal/Blocks.h"

namespace Tarn::internal {

// How far a text has been read, and the end of what was written for it.
template <class Unit>
struct Transcoded {
  const char* at;
  Unit* out;
};

// Transcodes a text up to `stop`, or little further but not beyond `end`. `putBlock` writes sixteen units for sixteen
// bytes, of which those in front of the first byte of the class `special` are kept. `putSequence` takes the sequence
// that such a byte begins and returns how far it came. Fewer than sixteen bytes are taken one by one, and those that
// are not special become units of the same value.
template <class Unit, class Class, class PutBlock, class PutSequence>
Transcoded<Unit> transcode(Transcoded<Unit> done, const char* stop, const char* end, Class special, PutBlock putBlock,
                           PutSequence putSequence) {
  const char* const blocks = end - done.at < kBlockSize ? done.at : std::min(stop, end - (kBlockSize - 1));
  while (done.at < blocks) {
    const Block found = special.in(Block::load(done.at));
    putBlock(done.at, done.out);
    if (!found.any()) {
      done = {done.at + kBlockSize, done.out + kBlockSize};
      continue;
    }
    done = {done.at + found.first(), done.out + found.first()};
    do {
      done = putSequence(done);
    } while (done.at < stop && special.holds(*done.at));
  }
  while (done.at < stop) {
    if (special.holds(*done.at)) {
      done = putSequence(done);
    } else {
      *done.out++ = static_cast<Unit>(static_cast<unsigned char>(*done.at++));
    }
  }
  return done;
}

}  // namespace Tarn::internal

#endif  // TARN_TEXT_INTERNAL_TRANSCODE_H_
