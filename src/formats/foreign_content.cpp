#include "formats/foreign_content.h"

#include <algorithm>
#include <array>
#include <string>

namespace tessa {
namespace {

struct Mark {
  std::string_view Bytes;
  std::string_view Kind;
};

constexpr std::array<Mark, 11> kMarks = {{
    {"\xFF\xD8\xFF", "a JPEG picture"},
    {"\x89PNG\r\n\x1A\n", "a PNG picture"},
    {"GIF8", "a GIF picture"},
    {std::string_view("II\x2A\0", 4), "a TIFF picture"},
    {std::string_view("MM\0\x2A", 4), "a TIFF picture"},
    {"%PDF-", "a PDF document"},
    {"PK\x03\x04", "a ZIP archive"},
    {"\x1F\x8B\x08", "a compressed archive"},
    {"RIFF", "a RIFF file, such as a sound"},
    {"\x7F"
     "ELF",
     "a program"},
    {"\xEF\xBB\xBF", "text"},
}};

constexpr std::size_t kTextProbe = 512;

bool StartsWith(ByteSpan start, std::string_view mark) {
  return start.size() >= mark.size() &&
         std::equal(mark.begin(), mark.end(), start.begin(), [](char wanted, std::uint8_t byte) {
           return static_cast<std::uint8_t>(wanted) == byte;
         });
}

/// A raster of little-endian words whose high bytes all happen to be line ends, as those of pixels
/// between -14 and 8 degrees are, has one in every second place and other bytes between them.
bool LooksLikeWords(ByteSpan probe) {
  bool onlyControlsAtOdd = probe.size() > 1;
  bool onlyControlsAtEven = true;
  for (std::size_t i = 0; i < probe.size(); ++i) {
    bool& onlyControls = i % 2 == 1 ? onlyControlsAtOdd : onlyControlsAtEven;
    onlyControls = onlyControls && probe[i] < 0x20;
  }
  return onlyControlsAtOdd && !onlyControlsAtEven;
}

/// Plain text has line ends and no control characters or zeros in its first half kilobyte; the
/// headers of the cameras have zeros everywhere.
bool LooksLikeText(ByteSpan start) {
  const ByteSpan probe = start.first(std::min(start.size(), kTextProbe));
  const bool clean = std::all_of(probe.begin(), probe.end(), [](std::uint8_t byte) {
    return byte >= 0x20 || byte == '\t' || byte == '\r' || byte == '\n' || byte == '\f';
  });
  const bool hasLineEnd = std::find(probe.begin(), probe.end(), '\n') != probe.end();
  return clean && hasLineEnd && !LooksLikeWords(probe);
}

}  // namespace

std::optional<std::string_view> RecogniseContent(ByteSpan start) {
  for (const Mark& mark : kMarks) {
    if (StartsWith(start, mark.Bytes)) {
      return mark.Kind;
    }
  }
  if (LooksLikeText(start)) {
    return "text";
  }
  return std::nullopt;
}

std::optional<Problem> ForeignContentProblem(ByteSpan start, std::string_view expected) {
  const auto content = RecogniseContent(start);
  if (!content) {
    return std::nullopt;
  }
  return Problem{ProblemKind::kWrongKind, 0, "Signature",
                 "the file is " + std::string(*content) + ", not " + std::string(expected), true};
}

}  // namespace tessa
