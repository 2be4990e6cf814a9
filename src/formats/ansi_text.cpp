#include "formats/ansi_text.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tessa {
namespace {

// Code points of the bytes 0x80 to 0x9F; all other bytes stand for the code point of their number.
constexpr std::array<char32_t, 32> kHighCodes = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void AppendUtf8(std::string& text, char32_t code) {
  if (code < 0x80) {
    text.push_back(static_cast<char>(code));
  } else if (code < 0x800) {
    text.push_back(static_cast<char>(0xC0 | code >> 6));
    text.push_back(static_cast<char>(0x80 | (code & 0x3F)));
  } else {
    text.push_back(static_cast<char>(0xE0 | code >> 12));
    text.push_back(static_cast<char>(0x80 | (code >> 6 & 0x3F)));
    text.push_back(static_cast<char>(0x80 | (code & 0x3F)));
  }
}

/// The code point that starts at `at`, which moves behind it. Broken sequences give 0xFFFD.
char32_t NextCode(std::string_view utf8, std::size_t& at) {
  constexpr char32_t kBroken = 0xFFFD;
  const auto lead = static_cast<std::uint8_t>(utf8[at++]);
  if (lead < 0x80) {
    return lead;
  }
  const int following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : -1;
  if (following < 0) {
    return kBroken;
  }
  char32_t code = lead & (0x3F >> following);
  for (int i = 0; i < following; ++i) {
    if (at >= utf8.size() || (static_cast<std::uint8_t>(utf8[at]) & 0xC0) != 0x80) {
      return kBroken;
    }
    code = code << 6 | (static_cast<std::uint8_t>(utf8[at++]) & 0x3F);
  }
  return code;
}

}  // namespace

std::string AnsiToUtf8(std::string_view ansi) {
  std::string text;
  text.reserve(ansi.size());
  for (const char character : ansi) {
    const auto byte = static_cast<std::uint8_t>(character);
    AppendUtf8(text, byte >= 0x80 && byte < 0xA0 ? kHighCodes[byte - 0x80U] : byte);
  }
  return text;
}

std::string Utf8ToAnsi(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  for (std::size_t at = 0; at < utf8.size();) {
    const char32_t code = NextCode(utf8, at);
    const auto* const high = std::find(kHighCodes.begin(), kHighCodes.end(), code);
    if (high != kHighCodes.end()) {
      bytes.push_back(static_cast<char>(0x80 + (high - kHighCodes.begin())));
    } else if (code < 0x80 || (code >= 0xA0 && code <= 0xFF)) {
      bytes.push_back(static_cast<char>(code));
    } else {
      bytes.push_back('?');
    }
  }
  return bytes;
}

std::string WithoutZeroBytes(std::string_view field) {
  std::string text(field);
  std::erase(text, '\0');
  return text;
}

}  // namespace tessa
