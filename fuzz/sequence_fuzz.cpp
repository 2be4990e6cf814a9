#include <algorithm>

#include "formats/sequence.h"
#include "require.h"

using tessa::fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const tessa::ByteSpan file(data, size);
  const auto header = tessa::DecodeContainerHeader(file);
  Require(header.Frames >= -32768 && header.Frames <= 32767, "counts are 16-bit values");
  const auto frame = tessa::DecodeContainerFrameHeader(file);
  Require(frame.Stamp.empty() || frame.Stamp.size() == tessa::kStampSize, "a stamp or none");
  Require(tessa::StampDate(frame.Stamp).size() <= 10, "a date has ten characters");
  Require(tessa::StampTime(frame.Stamp).size() <= 11, "a time has eleven characters");
  if (size < tessa::kSeqTrailerSize) {
    return 0;
  }
  const auto trailer = tessa::DecodeSeqTrailer(file.last(tessa::kSeqTrailerSize));
  Require(trailer.Comment.size() == 760, "the comment has its field's size");
  const std::string comment = tessa::SeqComment(trailer);
  Require(trailer.Comment.find(comment) != std::string::npos, "the comment comes from the field");
  Require(comment.empty() || (comment.front() != ' ' && comment.back() != ' '), "it is trimmed");
  tessa::Problems faults;
  const bool isGood = tessa::CheckSeqTrailer(trailer, size, faults);
  Require(isGood == faults.empty(), "a believable trailer or a reason");
  Require(isGood == (tessa::FindNoImage(faults) == nullptr), "the reason costs the image");
  tessa::fuzz::RequireGoodReports(faults, size);
  if (isGood) {
    const auto pixels =
        static_cast<std::size_t>(trailer.Width) * static_cast<std::size_t>(trailer.Height);
    Require(trailer.Frames > 0 && trailer.Width > 0 && trailer.Height > 0, "there are frames");
    Require(pixels <= size, "the file can hold a frame");
  }
  return 0;
}
