#pragma once

#include <cstdint>
#include <optional>

namespace tessa {

/// Limits of a TXI scale, degrees Celsius.
struct TxiScale {
  double Low = 0.0;
  double High = 0.0;
};

/// The scale in the two reserved words of a bitmap's file header, tenths of a degree. Limits above
/// 3276.7 degrees are folded into negative words. The rules differ on purpose: a negative high word
/// is always a folded one, a negative low word only beside a lower, negative high word.
TxiScale DecodeTxiWords(std::int16_t lowWord, std::int16_t highWord);

/// The word for a limit, ties to even; nothing when no word can hold it.
std::optional<std::int16_t> EncodeTxiWord(double celsius);

}  // namespace tessa
