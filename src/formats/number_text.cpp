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

/// True for digits in groups of three between `group`, with at most one `point` behind them all.
bool IsGrouped(std::string_view digits, char group, char point) {
  const std::string_view whole = digits.substr(0, digits.find(point));
  if (digits.find_first_of(",.", whole.size() + 1) != std::string_view::npos) {
    return false;
  }
  std::size_t start = whole.find(group);
  if (start == std::string_view::npos || start == 0 || start > 3) {
    return false;
  }
  for (; start < whole.size(); start += 4) {
    if (whole[start] != group || whole.substr(start + 1, 3).size() < 3 ||
        !std::all_of(whole.begin() + static_cast<std::ptrdiff_t>(start) + 1,
                     whole.begin() + static_cast<std::ptrdiff_t>(start) + 4, IsDigit)) {
      return false;
    }
  }
  return true;
}

/// `text` with the first number's comma as a point: a lone comma stands for one, and where commas
/// or points part groups of three digits they are left out. Anything else stays as it is.
std::string WithPoint(std::string_view text) {
  const std::size_t start = text.find_first_not_of("+-");
  const std::size_t end = std::min(text.find_first_not_of("0123456789.,", start), text.size());
  if (start == std::string_view::npos || start > 1) {
    return std::string(text);
  }
  std::string number(text.substr(start, end - start));
  const auto commas = std::count(number.begin(), number.end(), ',');
  const auto points = std::count(number.begin(), number.end(), '.');
  const auto drop = [&](char group) { std::erase(number, group); };
  if (commas > 0 && (commas > 1 || points > 0)) {
    if (IsGrouped(number, ',', '.')) {
      drop(',');
    } else if (IsGrouped(number, '.', ',')) {
      drop('.');
    } else {
      return std::string(text);
    }
  }
  std::replace(number.begin(), number.end(), ',', '.');
  return std::string(text.substr(0, start)) + number + std::string(text.substr(end));
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
  const std::string pointed = WithPoint(text.substr(start));
  text = std::string_view(pointed).substr(0, NumberLength(pointed));
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
