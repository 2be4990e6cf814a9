#include <cmath>

#include "formats/byte_reader.h"
#include "formats/txi_words.h"
#include "require.h"

FUZZ_ENTRY {
  ByteReader reader({data, size});
  const std::int16_t low = reader.I16Le();
  const std::int16_t high = reader.I16Le();
  const TxiScale scale = DecodeTxiWords(low, high);
  Require(scale.High >= 0.0 && scale.High <= 6553.5, "the high limit is never below zero");
  Require(scale.Low >= -3276.8 && scale.Low <= 6553.5, "the low limit fits a word");
  Require(EncodeTxiWord(scale.High) == high, "the high limit survives a round trip");
  Require(EncodeTxiWord(scale.Low) == low, "so does the low one");
}
