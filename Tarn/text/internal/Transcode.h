// Rewriting a text of which most is taken byte by byte, sixteen at once.
#ifndef TARN_TEXT_INTERNAL_TRANSCODE_H_
#define TARN_TEXT_INTERNAL_TRANSCODE_H_

#include "Tarn/text/internal/Blocks.h"

namespace Tarn::internal {

// How far a text is rewritten, and the end of what was written for it.
template <class Unit>
struct Transcoded {
  const char* at;
  Unit* out;
};

// Rewrites a text up to `stop` or little further, not beyond its end: sixteen bytes to sixteen units by `putBlock`, of
// which those count that come before a byte of the class, and such bytes by `putSequence`, which takes one or more and
// gives how far it came. Each of the last fifteen bytes that is not of the class becomes the unit of its value.
template <class Unit, class Class, class PutBlock, class PutSequence>
Transcoded<Unit> transcode(Transcoded<Unit> done, const char* stop, const char* end, Class special, PutBlock putBlock,
                           PutSequence putSequence) {
  while (done.at < stop && end - done.at >= kBlockSize) {
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
