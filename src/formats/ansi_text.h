#pragma once

#include <string>
#include <string_view>

namespace tessa {

/// Bytes of code page 1252 as UTF-8. The five unassigned codes become the control characters of
/// the same number, so that every byte survives a round trip.
std::string AnsiToUtf8(std::string_view ansi);

/// UTF-8 as bytes of code page 1252; what has no place there becomes "?".
std::string Utf8ToAnsi(std::string_view utf8);

/// All bytes of a zero-padded field that are not zero, in order. Zeros inside do not end the text.
std::string WithoutZeroBytes(std::string_view field);

}  // namespace tessa
