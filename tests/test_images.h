#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "formats/bmp.h"
#include "formats/camera_header.h"

namespace tessa::testing {

inline Bytes ToBytes(std::string_view text) {
  return {text.begin(), text.end()};
}

inline void Put(Bytes& file, std::size_t at, std::string_view text) {
  std::copy(text.begin(), text.end(), file.begin() + static_cast<std::ptrdiff_t>(at));
}

inline Bytes First(const Bytes& file, std::size_t size) {
  return {file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)};
}

inline Bytes Joined(Bytes first, const Bytes& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

/// The first `present` counts, the others zero.
inline std::vector<std::int16_t> KeepFirst(std::vector<std::int16_t> counts, std::size_t present) {
  std::fill(counts.begin() + static_cast<std::ptrdiff_t>(present), counts.end(), std::int16_t{0});
  return counts;
}

/// Kind, offset, field and whether it costs the image: all of a fault but its words.
using FaultFacts = std::tuple<ProblemKind, std::uint64_t, std::string, bool>;

inline std::vector<FaultFacts> FactsOf(const Problems& faults) {
  std::vector<FaultFacts> facts;
  for (const Problem& fault : faults) {
    facts.emplace_back(fault.Kind, fault.Offset, fault.Field, fault.NoImage);
  }
  return facts;
}

inline FaultFacts BadValue(std::uint64_t offset, std::string field) {
  return {ProblemKind::kBadValue, offset, std::move(field), false};
}

inline FaultFacts Truncated(std::uint64_t offset, std::string field, bool noImage) {
  return {ProblemKind::kTruncated, offset, std::move(field), noImage};
}

/// The fields that all camera headers share, in their order.
inline std::string SharedFields(const CameraHeader& header) {
  std::ostringstream text;
  text.precision(17);
  text << header.Signature;
  for (const double value : {header.RangeLow, header.RangeHigh, header.Offset, header.Gain,
                             header.ScaleCenter, header.ScaleStep}) {
    text << '|' << value;
  }
  text << '|' << header.EmissivityX100 << '|' << header.DateText << '|' << header.TimeText;
  return text.str();
}

/// Greys from black to white, or the other way round.
inline ColourTable Ramp(bool reversed) {
  ColourTable table{};
  for (std::uint32_t i = 0; i < 256; ++i) {
    table[reversed ? 255 - i : i] = i * 0x010101;
  }
  return table;
}

}  // namespace tessa::testing
