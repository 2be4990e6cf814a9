#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <string_view>

#include "formats/ansi_text.h"
#include "formats/number_text.h"

namespace tessa {
namespace {

TEST(FormatFixed, RoundsHalfAwayFromZeroAsOnPaper) {
  // Value>text. The nearest doubles of 0.15 and 1.005 lie below them.
  const std::pair<int, std::string> cases[] = {
      {1, "0.25>0.3 0.15>0.2 0.149999999999999>0.1 -0.25>-0.3 0.35>0.4 36.65>36.7 36.649>36.6"},
      {0, "2.5>3 -2.5>-3 0.5>1 0.49>0 1234567890123456789>1234567890123460000"},
      {2, "1.005>1.01 95e-2>0.95 1e2>100.00"},
      // Carries.
      {1,
       "9.96>10.0 99.95>100.0 0.96>1.0 0.05>0.1 -0.05>-0.1 999999999999999.95>1000000000000000.0"},
      {0, "9.5>10 -99.5>-100 0.95>1"},
      // A zero has no sign, and what is not finite is one.
      {1, "0>0.0 -0>0.0 -0.04>0.0 -0.049999>0.0 -5e-324>0.0 inf>0.0 nan>0.0"},
      {0, "-0.4>0 1e-300>0 -inf>0"},
      // Digits far before the point, and more decimals than digits.
      {1, "-40>-40.0 1e15>1000000000000000.0 -1e21>-1000000000000000000000.0"},
      {20, "0.1>0.10000000000000000000"}};
  for (const auto& [decimals, list] : cases) {
    std::istringstream words(list);
    for (std::string word; words >> word;) {
      const double value = std::strtod(word.c_str(), nullptr);
      EXPECT_EQ(FormatFixed(value, decimals), word.substr(word.find('>') + 1)) << word;
    }
  }
  EXPECT_EQ(FormatFixed(std::numeric_limits<double>::max(), 1),
            "179769313486232" + std::string(294, '0') + ".0");
}

TEST(ParseLeadingNumber, StopsAtTheFirstCharacterThatCannotContinueANumber) {
  const std::pair<std::string_view, double> numbers[] = {
      {"36.5", 36.5}, {"-40", -40.0},  {"+12.25", 12.25},  {" \t 7", 7.0},   {"7  ", 7.0},
      {".5", 0.5},    {"-.5", -0.5},   {"5.", 5.0},        {"36.5 C", 36.5}, {"36.5, C", 36.5},
      {"1.2.3", 1.2}, {"1e3", 1000.0}, {"1E-2x", 0.01},    {"2e+1", 20.0},   {"3e", 3.0},
      {"3e+", 3.0},   {"3ex", 3.0},    {"1.5e2.5", 150.0}, {"12-3", 12.0},   {"012", 12.0}};
  for (const auto& [text, value] : numbers) {
    EXPECT_EQ(ParseLeadingNumber(text), value) << text;
  }
  // One rule for commas, whatever the language.
  const std::pair<std::string_view, double> commas[] = {{"20,5", 20.5},
                                                        {"-0,25 C", -0.25},
                                                        {",5", 0.5},
                                                        {"1,234", 1.234},
                                                        {"1,234.5", 1234.5},
                                                        {"-1.234,5", -1234.5},
                                                        {"12,345,678", 12345678.0},
                                                        {"1,234,567.8x", 1234567.8},
                                                        {"1,23.5", 1.0},
                                                        {"1,2,3", 1.0},
                                                        {"1.2.3,4", 1.2},
                                                        {"1234,567,890", 1234.0},
                                                        {"1,234.5,6", 1.0},
                                                        {"1,234.5.6", 1.0},
                                                        {",,5", 0.0}};
  for (const auto& [text, value] : commas) {
    EXPECT_EQ(ParseLeadingNumber(text), value) << text;
  }
  for (const std::string_view text :
       {"", "   ", "abc", "C 36", "-", "+-5", "-+5", "- 5", ".", "-.e5", "e5", "0x10", "inf", "nan",
        "-infinity", "1e999", "-1e999", "1e99999999999999999999"}) {
    EXPECT_EQ(ParseLeadingNumber(text), 0.0) << text;
  }
  EXPECT_EQ(ParseLeadingNumber(std::string_view("12345").substr(0, 2)), 12.0)
      << "reads past the end of its text";
}

TEST(FormatShortest, GivesTheSameValueBackAndNoDigitMore) {
  for (const char* text : {"0.1", "36.65", "-40", "16777216", "0.0001", "10000000000"}) {
    EXPECT_EQ(FormatShortest(std::strtof(text, nullptr)), text);
  }
  EXPECT_NE(FormatShortest(1e30F).find('e'), std::string::npos);
  EXPECT_NE(FormatShortest(1e-30F).find('e'), std::string::npos);
  std::mt19937 random(7);
  for (int i = 0; i < 200'000; ++i) {
    const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    if (std::isfinite(value)) {
      const std::string text = FormatShortest(value);
      ASSERT_EQ(std::strtof(text.c_str(), nullptr), value) << text;
      ASSERT_LE(text.size(), 24U) << text;
    }
  }
}

TEST(AnsiText, BytesAreTheCharactersOfTheCodePage) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) {
    all.push_back(static_cast<char>(byte));
  }
  EXPECT_EQ(Utf8ToAnsi(AnsiToUtf8(all)), all);
  EXPECT_EQ(AnsiToUtf8(all.substr(0, 128)), all.substr(0, 128));
  EXPECT_EQ(AnsiToUtf8("\x80\x82\x8A\x8E\x99\x9F\xA0\xB0\xE4\xFF"), "€‚ŠŽ™Ÿ\u00A0°äÿ");
  EXPECT_EQ(AnsiToUtf8("\x81\x8D\x8F\x90\x9D"), "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D");
  EXPECT_EQ(WithoutZeroBytes(std::string_view("\0ab\0\0c \0", 8)), "abc ");
}

TEST(AnsiText, WhatHasNoPlaceInTheCodePageBecomesOneQuestionMark) {
  // Control codes whose bytes mean other characters, sequences that break off, and bytes that
  // begin none: none of them spoils what stands behind.
  const std::pair<const char*, const char*> cases[] = {
      {"Ωhm", "?hm"}, {"a😀b", "a?b"},      {"\u0080\u0099", "??"},    {"\u0100\uFFFD", "??"},
      {"\xC3", "?"},  {"\xE2\x82|", "?|"}, {"\xC3\xC3\xA4", "?\xE4"}, {"\xA4x\xFFy", "?x?y"}};
  for (const auto& [text, ansi] : cases) {
    EXPECT_EQ(Utf8ToAnsi(text), ansi) << text;
  }
}

}  // namespace
}  // namespace tessa
