#include "formats/sequence.h"

#include <algorithm>
#include <bit>

namespace tessa {
namespace {

constexpr std::size_t kCommentSize = 760;
constexpr std::size_t kMarkedCommentSize = 700;
constexpr unsigned char kCommentMark = 164;

float Single(ByteReader& reader) {
  return std::bit_cast<float>(reader.U32Le());
}

double Double(ByteReader& reader) {
  const std::uint64_t low = reader.U32Le();
  const std::uint64_t high = reader.U32Le();
  return std::bit_cast<double>(high << 32U | low);
}

void WriteSingle(ByteWriter& writer, float value) {
  writer.U32Le(std::bit_cast<std::uint32_t>(value));
}

void WriteDouble(ByteWriter& writer, double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  writer.U32Le(static_cast<std::uint32_t>(bits));
  writer.U32Le(static_cast<std::uint32_t>(bits >> 32U));
}

/// Writes a text field that is filled up with blanks.
void WritePadded(ByteWriter& writer, const std::string& text, std::size_t size) {
  const std::size_t end = writer.Size() + size;
  writer.Text(text, std::min(text.size(), size));
  writer.PadTo(end, ' ');
}

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  const std::size_t last = text.find_last_not_of(' ');
  return first == std::string::npos ? std::string() : text.substr(first, last - first + 1);
}

}  // namespace

float LeadingVersion(ByteSpan start) {
  ByteReader reader(start);
  return Single(reader);
}

SeqHeader DecodeSeqTrailer(ByteSpan trailer) {
  ByteReader reader(trailer);
  SeqHeader header;
  header.Version = Single(reader);
  header.Taken = Double(reader);
  reader.Skip(2);
  header.Frames = reader.I16Le();
  header.Width = reader.I16Le();
  header.Height = reader.I16Le();
  header.RangeMin = Single(reader);
  header.RangeMax = Single(reader);
  header.ScaleMin = Single(reader);
  header.ScaleMax = Single(reader);
  header.Emissivity = Single(reader);
  header.Comment = reader.Text(kCommentSize);
  return header;
}

bool CheckSeqTrailer(const SeqHeader& header, std::uint64_t fileSize, Problems& faults) {
  const std::uint64_t trailerAt = fileSize - kSeqTrailerSize;
  const auto refuse = [&](ProblemKind kind, std::uint64_t offset, const char* field,
                          std::string text) {
    faults.push_back({kind, trailerAt + offset, field, std::move(text), true});
    return false;
  };
  if (header.Version == kRefusedVersion) {
    return refuse(ProblemKind::kUnsupported, 0, "Version",
                  "snapshots of version 5.0 are not read here");
  }
  if (header.Frames <= 0) {
    return refuse(ProblemKind::kBadValue, 14, "Frames", "the snapshot says it holds no frames");
  }
  if (header.Width <= 0 || header.Height <= 0) {
    return refuse(ProblemKind::kBadValue, header.Width <= 0 ? 16 : 18,
                  header.Width <= 0 ? "Width" : "Height", "the frames have no size");
  }
  const std::uint64_t pixels =
      static_cast<std::uint64_t>(header.Width) * static_cast<std::uint64_t>(header.Height);
  constexpr std::uint64_t kSmallestFrame = 2;  // An array without content.
  if (pixels > fileSize || static_cast<std::uint64_t>(header.Frames) * kSmallestFrame > fileSize) {
    return refuse(ProblemKind::kBadValue, 14, "Frames",
                  "the frames would be larger than the file that is said to hold them");
  }
  return true;
}

std::string SeqComment(const SeqHeader& header) {
  const bool marked =
      header.Comment.size() > kMarkedCommentSize &&
      static_cast<unsigned char>(header.Comment[kMarkedCommentSize]) == kCommentMark;
  return Trimmed(marked ? header.Comment.substr(0, kMarkedCommentSize) : header.Comment);
}

ContainerHeader DecodeContainerHeader(ByteSpan start) {
  ByteReader reader(start);
  ContainerHeader header;
  header.Version = Single(reader);
  reader.Skip(10);
  header.Frames = reader.I16Le();
  header.Depth = reader.I16Le();
  header.Width = reader.I16Le();
  header.Height = reader.I16Le();
  header.Emissivity = Single(reader);
  return header;
}

ContainerFrameHeader DecodeContainerFrameHeader(ByteSpan bytes) {
  ByteReader reader(bytes);
  ContainerFrameHeader header;
  header.Stamp = reader.Text(kStampSize);
  header.RangeLow = Single(reader);
  header.RangeHigh = Single(reader);
  header.ScaleLow = Single(reader);
  header.ScaleHigh = Single(reader);
  return header;
}

std::string StampDate(const std::string& stamp) {
  return stamp.substr(0, 10);
}

std::string StampTime(const std::string& stamp) {
  constexpr std::size_t kTimeSize = 11;
  return stamp.size() <= kTimeSize ? stamp : stamp.substr(stamp.size() - kTimeSize);
}

Bytes EncodeSnapshot(const SnapshotFields& fields) {
  ByteWriter writer;
  for (std::size_t i = 0; i < fields.Frames.size(); ++i) {
    if (fields.Header.Version == kStampedVersion) {
      WritePadded(writer, fields.Stamps.at(i), kStampSize);
    }
    writer.Append(fields.Frames[i]);
  }
  const std::size_t trailerAt = writer.Size();
  const SeqHeader& header = fields.Header;
  WriteSingle(writer, header.Version);
  WriteDouble(writer, header.Taken);
  writer.U16Le(0);
  writer.U16Le(static_cast<std::uint16_t>(header.Frames));
  writer.U16Le(static_cast<std::uint16_t>(header.Width));
  writer.U16Le(static_cast<std::uint16_t>(header.Height));
  for (const float value :
       {header.RangeMin, header.RangeMax, header.ScaleMin, header.ScaleMax, header.Emissivity}) {
    WriteSingle(writer, value);
  }
  WritePadded(writer, header.Comment, kCommentSize);
  writer.PadTo(trailerAt + kSeqTrailerSize);
  return writer.Take();
}

Bytes EncodeContainerHeader(const ContainerHeader& header) {
  ByteWriter writer;
  WriteSingle(writer, header.Version);
  writer.PadTo(14);
  writer.U16Le(static_cast<std::uint16_t>(header.Frames));
  writer.U16Le(static_cast<std::uint16_t>(header.Depth));
  writer.U16Le(static_cast<std::uint16_t>(header.Width));
  writer.U16Le(static_cast<std::uint16_t>(header.Height));
  WriteSingle(writer, header.Emissivity);
  writer.PadTo(kContainerHeaderSize);
  return writer.Take();
}

Bytes EncodeContainerFrame(const ContainerFrameHeader& header, ByteSpan frameArray) {
  ByteWriter writer;
  WritePadded(writer, header.Stamp, kStampSize);
  for (const float value : {header.RangeLow, header.RangeHigh, header.ScaleLow, header.ScaleHigh}) {
    WriteSingle(writer, value);
  }
  writer.Append(frameArray);
  return writer.Take();
}

}  // namespace tessa
