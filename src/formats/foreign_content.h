#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "formats/byte_reader.h"
#include "formats/problem.h"

namespace tessa {

/// What a file that begins with `start` plainly is ("a JPEG picture", "text"), or nothing when the
/// first bytes give no other well-known kind away. The radiometric formats carry no mark of their
/// own, so this is how a misnamed file is told from one of them.
std::optional<std::string_view> RecogniseContent(ByteSpan start);

/// A problem that leaves no image when `start` belongs to some other kind than `expected` ("a SIT
/// image").
std::optional<Problem> ForeignContentProblem(ByteSpan start, std::string_view expected);

}  // namespace tessa
