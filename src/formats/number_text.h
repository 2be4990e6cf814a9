#pragma once

#include <string>
#include <string_view>

namespace tessa {

/// The number at the start of `text` (blanks around it, a sign, a decimal point and an exponent are
/// understood), or 0 when there is none or it has no finite value. Stops at the first character
/// that cannot continue a number. The rules are the same in every locale: a lone comma is a decimal
/// point ("20,5", "1,234" is 1.234); beside a point, or more than once, commas and points may part
/// groups of three digits ("1,234.5", "1.234,5", "1,234,567"). Otherwise a comma ends the number.
double ParseLeadingNumber(std::string_view text);

/// `value` with exactly `decimals` decimals. Works on the value's first 15 significant digits and
/// rounds half away from zero, as people do on paper: 0.25 gives "0.3", 0.15 gives "0.2". A zero
/// never carries a sign. A value that is not finite gives "0" with its decimals.
std::string FormatFixed(double value, int decimals);

/// The shortest digits that read back as the same 32-bit value, without an exponent where that is
/// no longer than 24 characters.
std::string FormatShortest(float value);

}  // namespace tessa
