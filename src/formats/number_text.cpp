#include "formats/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace tessa {
namespace {

constexpr int kSignificantDigits = 15;

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

/// Length of the longest prefix of `text` that is a number, 0 for none.
std::size_t NumberLength(std::string_view text) {
  std::size_t at = 0;
  const auto skipDigits = [&] {
    const std::size_t start = at;
    while (at < text.size() && IsDigit(text[at])) {
      ++at;
    }
    return at - start;
  };
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
    ++at;
  }
  std::size_t digits = skipDigits();
  if (at < text.size() && text[at] == '.') {
    ++at;
    digits += skipDigits();
  }
  if (digits == 0) {
    return 0;
  }
  const std::size_t mantissaEnd = at;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
      ++at;
    }
    if (skipDigits() > 0) {
      return at;
    }
  }
  return mantissaEnd;
}

/// Adds one to a decimal number held as digits; the carry may make it one digit longer.
void Increment(std::string& digits) {
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
    if (*digit != '9') {
      ++*digit;
      return;
    }
    *digit = '0';
  }
  digits.insert(digits.begin(), '1');
}

}  // namespace

double ParseLeadingNumber(std::string_view text) {
  const std::size_t start = text.find_first_not_of(" \t");
  if (start == std::string_view::npos) {
    return 0.0;
  }
  text.remove_prefix(start);
  text = text.substr(0, NumberLength(text));
  if (!text.empty() && text.front() == '+') {
    text.remove_prefix(1);
  }
  double value = 0.0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  return result.ec == std::errc() ? value : 0.0;
}

std::string FormatFixed(double value, int decimals) {
  if (!std::isfinite(value)) {
    value = 0.0;
  }
  std::array<char, 40> scientific{};
  const auto written =
      std::to_chars(scientific.data(), scientific.data() + scientific.size(), std::fabs(value),
                    std::chars_format::scientific, kSignificantDigits - 1);
  const std::string_view text(scientific.data(),
                              static_cast<std::size_t>(written.ptr - scientific.data()));
  const std::size_t exponentMark = text.find('e');
  std::string digits;
  for (const char character : text.substr(0, exponentMark)) {
    if (IsDigit(character)) {
      digits.push_back(character);
    }
  }
  const int exponent = std::atoi(std::string(text.substr(exponentMark + 1)).c_str());

  // `digits` with the point after digit `exponent` (0-based); keep `decimals` digits behind it.
  const int kept = exponent + 1 + decimals;
  if (kept < 0) {
    digits.clear();
  } else if (kept < static_cast<int>(digits.size())) {
    const bool up = digits[static_cast<std::size_t>(kept)] >= '5';
    digits.resize(static_cast<std::size_t>(kept));
    if (up) {
      Increment(digits);
    }
  } else {
    digits.append(static_cast<std::size_t>(kept) - digits.size(), '0');
  }
  // At least one digit stands before the point.
  const auto wanted = static_cast<std::size_t>(decimals) + 1;
  if (digits.size() < wanted) {
    digits.insert(0, wanted - digits.size(), '0');
  }
  const bool isZero = digits.find_first_not_of('0') == std::string::npos;
  if (decimals > 0) {
    digits.insert(digits.size() - static_cast<std::size_t>(decimals), 1, '.');
  }
  return value < 0.0 && !isZero ? "-" + digits : digits;
}

std::string FormatShortest(float value) {
  std::array<char, 64> text{};
  auto written = std::to_chars(text.data(), text.data() + 24, value, std::chars_format::fixed);
  if (written.ec != std::errc()) {
    written = std::to_chars(text.data(), text.data() + text.size(), value);
  }
  return {text.data(), written.ptr};
}

}  // namespace tessa
