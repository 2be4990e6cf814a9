#include "formats/sit.h"

#include <algorithm>

#include "formats/foreign_content.h"
#include "formats/sit_sound.h"

namespace tessa {
namespace {

constexpr std::size_t kSoundExtAt = kSoundNameAt + kSoundNameSize;
constexpr std::size_t kSoundExtSize = 3;
constexpr std::size_t kCommentAt = 214;
constexpr std::size_t kCommentSize = 638;
constexpr std::size_t kMemoAt = 982;
constexpr std::size_t kMemoSize = 20;

}  // namespace

int AttachmentCode(const SitHeader& header) {
  const int code = header.SoundExt.size() == 3 ? static_cast<unsigned char>(header.SoundExt[2]) : 0;
  return code >= 1 && code <= 3 ? code : 0;
}

float SitVersionOf(const SitHeader& header) {
  return AttachmentCode(header) != 0 ? 4.0F : VersionInTail(header);
}

std::uint64_t VisiblePosition(const SitHeader& header, std::uint32_t lengthWord) {
  constexpr std::uint64_t kLengthWords = 8;  // The length word and four bytes that nobody reads.
  switch (AttachmentCode(header)) {
    case 2:
      return kSitAttachmentOffset + kLengthWords + 1;
    case 3:
      return std::uint64_t{lengthWord} + kLengthWords + 1;
    default:
      return 0;
  }
}

SitHeader ReadSitHeader(ByteSpan start, Problems& faults) {
  SitHeader header;
  const std::size_t present = std::min(start.size(), kSitHeaderSize);
  std::copy_n(start.begin(), present, header.Record.begin());

  ReadCameraHeader(header.Record, header);
  header.SoundName = TextAt(header.Record, kSoundNameAt, kSoundNameSize);
  header.SoundExt = TextAt(header.Record, kSoundExtAt, kSoundExtSize);
  header.Comment = TextAt(header.Record, kCommentAt, kCommentSize);
  header.Memo = TextAt(header.Record, kMemoAt, kMemoSize);

  if (auto foreign = ForeignContentProblem(start, "a SIT image")) {
    faults.push_back(std::move(*foreign));
  } else if (present < kSitHeaderSize) {
    faults.push_back(
        {ProblemKind::kTruncated, present, "SitHeader",
         "the file ends inside its header, after " + std::to_string(present) + " of 1024 bytes",
         true});
  } else {
    CheckCameraHeader(header, faults);
  }
  return header;
}

SitImage DecodeSit(ByteSpan start, std::uint64_t fileSize) {
  SitImage image;
  image.Header = ReadSitHeader(start, image.Faults);
  image.HeaderBytes = std::min(start.size(), kSitHeaderSize);

  // The raster has one size only, so its memory is bounded whatever the file says.
  image.Raster.Width = kSitWidth;
  image.Raster.Height = kSitHeight;
  image.Raster.Counts.resize(std::size_t{kSitWidth} * kSitHeight);
  const ByteSpan behindHeader = start.subspan(image.HeaderBytes);
  const ByteSpan raster = behindHeader.first(std::min(behindHeader.size(), kSitRasterSize));
  DecodeCountsBigEndian(raster, image.Raster.Counts);
  image.Raster.Present = raster.size() / 2;
  if (raster.size() < kSitRasterSize && FindNoImage(image.Faults) == nullptr) {
    // Told first: rows that nobody measured outweigh doubts about the header.
    image.Faults.insert(
        image.Faults.begin(),
        {ProblemKind::kTruncated, fileSize, "Raster",
         "the file ends inside its picture: " + std::to_string(image.Raster.Present / kSitWidth) +
             " of 240 rows are whole",
         image.Raster.Present == 0});
  }

  if (AttachmentCode(image.Header) != 0 && fileSize <= kSitAttachmentOffset) {
    image.Faults.push_back({ProblemKind::kTruncated, fileSize, "SoundExt",
                            "the header promises a sound or a visible picture that is not there",
                            false});
  }
  if (AttachmentCode(image.Header) == 3 && start.size() >= kSitDecodeSize) {
    ByteReader reader(start, kSitAttachmentOffset);
    image.VisibleLength = reader.U32Be();
  }
  return image;
}

Bytes EncodeSit(const SitFields& fields) {
  ByteWriter writer;
  writer.Reserve(kSitAttachmentOffset + fields.Attachment.size());
  WriteCameraFields(fields, writer);
  writer.PadTo(kSoundNameAt);
  writer.Text(fields.SoundName, kSoundNameSize);
  writer.Text(fields.SoundExt, kSoundExtSize);
  writer.PadTo(kCommentAt);
  writer.Text(fields.Comment, kCommentSize);
  writer.PadTo(kMemoAt);
  writer.Text(fields.Memo, kMemoSize);
  writer.PadTo(kSitHeaderSize);
  for (const std::int16_t count : fields.Counts) {
    writer.I16Be(count);
  }
  writer.PadTo(kSitAttachmentOffset);
  writer.Append(fields.Attachment);
  return writer.Take();
}

}  // namespace tessa
