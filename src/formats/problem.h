#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tessa {

enum class ProblemKind {
  kUnreadable,   // The file could not be opened or read at all.
  kWrongKind,    // The bytes belong to some other kind of file.
  kTruncated,    // Bytes that the layout promises are not there.
  kBadValue,     // A field holds something that no writer could have meant.
  kUnsupported,  // A valid form of the format that this program does not read.
  kTooLarge,     // Reading on would need more memory than the file can justify.
};

/// One thing that is wrong with a file, in terms its owner can act on.
struct Problem {
  ProblemKind Kind = ProblemKind::kBadValue;
  std::uint64_t Offset = 0;  // Byte position in the file at which the fault shows.
  std::string Field;         // Name of the field or area.
  std::string Text;          // One plain sentence without a final full stop (UTF-8).
  bool NoImage = false;      // True when the fault leaves nothing worth calling an image.
};

using Problems = std::vector<Problem>;

/// The word for a kind of problem in reports: "truncated", "bad-value" and so on.
std::string_view ProblemKindWord(ProblemKind kind);

/// The first problem that leaves no image, or null.
const Problem* FindNoImage(const Problems& problems);

}  // namespace tessa
