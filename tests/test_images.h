#pragma once

#include <gmock/gmock.h>

#include <sstream>
#include <tuple>

#include "builders.h"

namespace tessa::testing {

using ::testing::AllOf;
using ::testing::DoubleNear;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::Pointwise;
using ::testing::StartsWith;

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

/// Calls `check` with the first bytes of `whole` at every length below its own; behind `densely`
/// bytes only at every `stride`-th.
template <typename Check>
void AtEveryCut(const Bytes& whole, Check check, std::size_t densely = SIZE_MAX,
                std::size_t stride = 1) {
  for (std::size_t length = 0; length < whole.size(); length += length < densely ? 1 : stride) {
    SCOPED_TRACE(std::to_string(length) + " bytes");
    check(First(whole, length));
  }
}

}  // namespace tessa::testing
