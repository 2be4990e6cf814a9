#include <bit>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "formats/ansi_text.h"
#include "formats/number_text.h"
#include "require.h"

static void TryFormats(double value, int decimals) {
  const std::string text = FormatFixed(value, decimals);
  const std::size_t point = text.find('.');
  Require(decimals == 0 ? point == std::string::npos
                        : point + 1 + static_cast<std::size_t>(decimals) == text.size(),
          "as many decimals as asked for");
  Require(text.find_first_not_of("-0123456789.") == std::string::npos, "digits alone");
  Require(text[0] != '-' || text.find_first_of("123456789") != std::string::npos, "no minus zero");
  if (std::fabs(value) > 1e308) {
    return;  // Fifteen digits may round it up to what no double holds.
  }
  // Half a step, and what the 16th digit and reading back may add.
  const double expected = std::isfinite(value) ? value : 0.0;
  const double slack = 0.5 * std::pow(10.0, -decimals) + std::fabs(expected) * 1e-14;
  Require(std::fabs(ParseLeadingNumber(text) - expected) <= slack, "the value is kept");
}

FUZZ_ENTRY {
  const std::string text(reinterpret_cast<const char*>(data), size);
  Require(Utf8ToAnsi(AnsiToUtf8(text)) == text, "every byte survives");
  Require(Utf8ToAnsi(text).size() <= text.size(), "a character is at most one byte");
  Require(WithoutZeroBytes(text).find('\0') == std::string::npos, "no zero is left");

  const double parsed = ParseLeadingNumber(text);
  Require(std::isfinite(parsed), "a parsed number is finite");
  TryFormats(parsed, static_cast<int>(size % 8));
  std::uint64_t bits = 0;
  std::memcpy(&bits, data, std::min(size, sizeof bits));
  TryFormats(std::bit_cast<double>(bits), static_cast<int>(size % 8));
  const auto single = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
  const float back = std::strtof(FormatShortest(single).c_str(), nullptr);
  Require(back == single || std::isnan(single), "the shortest digits give the value back");
}
