#pragma once

#include <cstdio>
#include <cstdlib>

#include "formats/problem.h"

namespace tessa::fuzz {

/// Ends the fuzz run with the input at hand as its find when a promise of a decoder is broken.
inline void Require(bool holds, const char* promise) {
  if (!holds) {
    std::fprintf(stderr, "broken promise: %s\n", promise);
    std::abort();
  }
}

/// What holds for the faults of any decoder.
inline void RequireGoodReports(const Problems& faults, std::uint64_t fileSize) {
  for (const Problem& fault : faults) {
    Require(fault.Offset <= fileSize, "a fault lies in the file");
    Require(!fault.Field.empty() && !fault.Text.empty(), "a fault has a field and a sentence");
    Require(fault.Text.back() != '.', "a sentence has no final full stop");
  }
  Require(faults.size() < 16, "a file is not buried under faults");
}

}  // namespace tessa::fuzz
