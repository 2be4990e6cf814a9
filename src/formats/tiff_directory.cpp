#include "formats/tiff_directory.h"

#include <array>
#include <string>
#include <utility>

#include "formats/byte_writer.h"

namespace tessa {
namespace {

constexpr std::uint16_t kClassic = 42;
constexpr std::uint16_t kBig = 43;
constexpr std::uint64_t kMostEntries = 512;
/// Values that two entries share, such as both resolutions.
constexpr std::uint64_t kShared = 1 << 16;

/// Bytes of one value by field type, TIFF 6.0 and BigTIFF; 0 for types that do not exist.
constexpr std::array<std::uint8_t, 19> kTypeSizes = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4,
                                                     8, 4, 8, 4, 0, 0, 8, 8, 8};

/// Numbers in the byte order of the file.
class OrderedReader {
 public:
  OrderedReader(ByteSpan bytes, bool bigEndian) : reader_(bytes), bigEndian_(bigEndian) {}

  std::uint64_t Number(int size) {
    std::uint64_t value = 0;
    for (int i = 0; i < size; ++i) {
      const std::uint64_t byte = reader_.U8();
      value = bigEndian_ ? value << 8 | byte : value | byte << (8 * i);
    }
    return value;
  }
  void Skip(std::uint64_t count) { reader_.Skip(count); }
  bool Failed() const { return reader_.Failed(); }

 private:
  ByteReader reader_;
  bool bigEndian_;
};

bool Refuse(Problems& faults, ProblemKind kind, std::uint64_t offset, std::string field,
            std::string text) {
  faults.push_back({kind, offset, std::move(field), std::move(text), true});
  return false;
}

Bytes ReadPart(const ByteSource& file, std::uint64_t offset, std::size_t count) {
  Bytes part(count);
  part.resize(file.ReadAt(offset, part));
  return part;
}

}  // namespace

bool CheckTiffDirectory(const ByteSource& file, Problems& faults) {
  const Bytes start = ReadPart(file, 0, 16);
  const bool bigEndian = start.size() >= 2 && start[0] == 'M' && start[1] == 'M';
  const bool littleEndian = start.size() >= 2 && start[0] == 'I' && start[1] == 'I';
  OrderedReader header(start, bigEndian);
  header.Skip(2);
  const std::uint64_t version = header.Number(2);
  if ((!bigEndian && !littleEndian) || (version != kClassic && version != kBig)) {
    return Refuse(faults, ProblemKind::kWrongKind, 0, "Signature",
                  "the file is no TIFF picture that can be read");
  }
  const bool big = version == kBig;
  if (big) {
    header.Skip(4);  // The size of offsets is always eight.
  }
  const std::uint64_t directory = header.Number(big ? 8 : 4);
  const int countSize = big ? 8 : 2;
  const int entrySize = big ? 20 : 12;
  const Bytes countBytes = ReadPart(file, directory, static_cast<std::size_t>(countSize));
  OrderedReader counter(countBytes, bigEndian);
  const std::uint64_t entries = counter.Number(countSize);
  if (header.Failed() || counter.Failed()) {
    return Refuse(faults, ProblemKind::kTruncated, file.Size(), "Directory",
                  "the file ends before the directory of its picture");
  }
  if (entries == 0) {
    return Refuse(faults, ProblemKind::kBadValue, directory, "Directory",
                  "the directory of its picture is empty");
  }
  if (entries > kMostEntries) {
    return Refuse(faults, ProblemKind::kTooLarge, directory, "Directory",
                  "the directory has " + std::to_string(entries) + " entries; 512 is the limit");
  }
  const Bytes bytes =
      ReadPart(file, directory + static_cast<std::uint64_t>(countSize),
               static_cast<std::size_t>(entries) * static_cast<std::size_t>(entrySize));
  OrderedReader reader(bytes, bigEndian);
  std::uint64_t room = file.Size() + kShared;
  for (std::uint64_t i = 0; i < entries; ++i) {
    reader.Skip(2);
    const std::uint64_t type = reader.Number(2);
    const std::uint64_t count = reader.Number(big ? 8 : 4);
    reader.Skip(big ? 8 : 4);
    const std::uint64_t size = type < kTypeSizes.size() ? kTypeSizes[type] : 0;
    if (size != 0 && count > room / size) {
      return Refuse(faults, ProblemKind::kTooLarge, directory, "Directory",
                    "the directory claims more values than the file can hold");
    }
    room -= size * count;
  }
  if (reader.Failed()) {
    return Refuse(faults, ProblemKind::kTruncated, file.Size(), "Directory",
                  "the file ends inside the directory of its picture");
  }
  return true;
}

}  // namespace tessa
