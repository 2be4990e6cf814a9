#include "formats/txi_words.h"

#include <cmath>

namespace tessa {
namespace {

constexpr double kFold = 32767.0;

double Unfold(std::int16_t word) {
  return (std::fabs(static_cast<double>(word)) + kFold) / 10.0;
}

}  // namespace

TxiScale DecodeTxiWords(std::int16_t lowWord, std::int16_t highWord) {
  TxiScale scale;
  scale.High = highWord >= 0 ? highWord / 10.0 : Unfold(highWord);
  const bool lowIsFolded = lowWord < 0 && highWord < 0 && highWord > lowWord;
  scale.Low = lowIsFolded ? Unfold(lowWord) : lowWord / 10.0;
  return scale;
}

std::optional<std::int16_t> EncodeTxiWord(double celsius) {
  double tenths = celsius * 10.0;
  if (tenths > kFold) {
    tenths = -(tenths - kFold);
  }
  const double rounded = std::nearbyint(tenths);
  if (!(rounded >= -32768.0 && rounded <= 32767.0)) {
    return std::nullopt;
  }
  return static_cast<std::int16_t>(rounded);
}

}  // namespace tessa
