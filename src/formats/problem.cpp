#include "formats/problem.h"

#include <algorithm>

namespace tessa {

std::string_view ProblemKindWord(ProblemKind kind) {
  switch (kind) {
    case ProblemKind::kUnreadable:
      return "unreadable";
    case ProblemKind::kWrongKind:
      return "wrong-kind";
    case ProblemKind::kTruncated:
      return "truncated";
    case ProblemKind::kBadValue:
      return "bad-value";
    case ProblemKind::kUnsupported:
      return "unsupported";
    case ProblemKind::kTooLarge:
      return "too-large";
  }
  return "unknown";
}

const Problem* FindNoImage(const Problems& problems) {
  const auto found = std::find_if(problems.begin(), problems.end(),
                                  [](const Problem& problem) { return problem.NoImage; });
  return found == problems.end() ? nullptr : &*found;
}

}  // namespace tessa
