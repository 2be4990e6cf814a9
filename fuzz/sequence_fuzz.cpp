#include <algorithm>

#include "formats/sequence.h"
#include "require.h"

FUZZ_ENTRY {
  const ByteSpan file(data, size);
  const auto header = DecodeContainerHeader(file);
  Require(header.Frames >= -32768 && header.Frames <= 32767, "counts are 16-bit values");
  const auto frame = DecodeContainerFrameHeader(file);
  Require(frame.Stamp.empty() || frame.Stamp.size() == kStampSize, "a stamp or none");
  Require(StampDate(frame.Stamp).size() <= 10, "a date has ten characters");
  Require(StampTime(frame.Stamp).size() <= 11, "a time has eleven characters");
  if (size < kSeqTrailerSize) {
    return;
  }
  const auto trailer = DecodeSeqTrailer(file.last(kSeqTrailerSize));
  Require(trailer.Comment.size() == 760, "the comment has its field's size");
  const std::string comment = SeqComment(trailer);
  Require(trailer.Comment.find(comment) != std::string::npos, "the comment comes from the field");
  Require(comment.empty() || (comment.front() != ' ' && comment.back() != ' '), "it is trimmed");
  Problems faults;
  const bool isGood = CheckSeqTrailer(trailer, size, faults);
  Require(isGood == faults.empty(), "a believable trailer or a reason");
  Require(isGood == (FindNoImage(faults) == nullptr), "the reason costs the image");
  RequireGoodReports(faults, size);
  if (isGood) {
    const auto pixels =
        static_cast<std::size_t>(trailer.Width) * static_cast<std::size_t>(trailer.Height);
    Require(trailer.Frames > 0 && trailer.Width > 0 && trailer.Height > 0, "there are frames");
    Require(pixels <= size, "the file can hold a frame");
  }
}
