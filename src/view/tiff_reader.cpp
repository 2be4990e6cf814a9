#include "view/tiff_reader.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>

#include "formats/bmp.h"
#include "formats/byte_writer.h"
#include "formats/float_tiff.h"
#include "view/loaded_picture.h"

namespace tessa {
namespace {

/// Bytes that the library may decode, at up to 3 ns each: three for each of the most pixels, and
/// what a larger file can justify for each of its bytes.
constexpr std::uint64_t kDecodedBase = 3 * kMaxPicturePixels;
constexpr std::uint64_t kDecodedPerByte = 8;
/// Memory beside the picture for rows of tiles and for scans of JPEG strips.
constexpr std::uint64_t kWorkMemory = 48ULL << 20;
/// Compressed bytes that strips and tiles may name together, for each byte of the file: equal tiles
/// may share theirs, but nothing like thousands of them the whole file.
constexpr std::uint64_t kNamedPerByte = 2;
/// The same for bytes that are copied as they are, where careless writers name too many.
constexpr std::uint64_t kCopiedBase = 1ULL << 30;
/// Small tiles cost their own time each.
constexpr std::uint32_t kSmallestTile = 16;
constexpr std::uint64_t kMostBlockVisits = 8'000'000;

TiffHandle::State& StateOf(thandle_t handle) {
  return *static_cast<TiffHandle::State*>(handle);
}

tmsize_t ReadBytes(thandle_t handle, void* to, tmsize_t count) {
  TiffHandle::State& state = StateOf(handle);
  const std::size_t got = state.File->ReadAt(
      state.Position, {static_cast<std::uint8_t*>(to), static_cast<std::size_t>(count)});
  state.Position += got;
  return static_cast<tmsize_t>(got);
}

tmsize_t WriteNothing(thandle_t, void*, tmsize_t) {
  return 0;
}

toff_t SeekTo(thandle_t handle, toff_t offset, int from) {
  TiffHandle::State& state = StateOf(handle);
  const std::uint64_t base = from == SEEK_CUR   ? state.Position
                             : from == SEEK_END ? state.File->Size()
                                                : 0;
  state.Position = base + offset;
  return state.Position;
}

int CloseNothing(thandle_t) {
  return 0;
}

toff_t SizeOf(thandle_t handle) {
  return StateOf(handle).File->Size();
}

int KeepMessage(TIFF*, void* user, const char*, const char* format, va_list values) {
  auto& message = static_cast<TiffHandle::State*>(user)->Message;
  if (message[0] == '\0') {
    std::vsnprintf(message.data(), message.size(), format, values);
    const std::size_t length = std::strlen(message.data());
    if (length > 0 && message[length - 1] == '.') {
      message[length - 1] = '\0';
    }
  }
  return 1;
}

int DropMessage(TIFF*, void*, const char*, const char*, va_list) {
  return 1;
}

/// The words for a compression; those that are read here come first.
struct Compression {
  std::uint16_t Code;
  const char* Name;
  bool IsRead;
};
constexpr std::array<Compression, 21> kCompressions = {{
    {COMPRESSION_NONE, "none", true},
    {COMPRESSION_CCITTRLE, "CCITT run lengths", true},
    {COMPRESSION_CCITTFAX3, "fax group 3", true},
    {COMPRESSION_CCITTFAX4, "fax group 4", true},
    {COMPRESSION_LZW, "LZW", true},
    {COMPRESSION_JPEG, "JPEG", true},
    {COMPRESSION_ADOBE_DEFLATE, "deflate", true},
    {COMPRESSION_DEFLATE, "deflate", true},
    {COMPRESSION_CCITTRLEW, "CCITT run lengths", true},
    {COMPRESSION_PACKBITS, "PackBits", true},
    {COMPRESSION_OJPEG, "JPEG of the old form", false},
    {COMPRESSION_NEXT, "NeXT", false},
    {COMPRESSION_THUNDERSCAN, "ThunderScan", false},
    {COMPRESSION_PIXARLOG, "PixarLog", false},
    {COMPRESSION_JBIG, "JBIG", false},
    {COMPRESSION_SGILOG, "SGILog", false},
    {COMPRESSION_JP2000, "JPEG 2000", false},
    {COMPRESSION_LERC, "LERC", false},
    {COMPRESSION_LZMA, "LZMA", false},
    {COMPRESSION_ZSTD, "Zstandard", false},
    {COMPRESSION_WEBP, "WebP", false},
}};

bool Refuse(Problems& faults, ProblemKind kind, std::string field, std::string text) {
  faults.push_back({kind, 0, std::move(field), std::move(text), true});
  return false;
}

bool CheckCompression(std::uint16_t code, Problems& faults) {
  const auto known = std::find_if(kCompressions.begin(), kCompressions.end(),
                                  [&](const Compression& c) { return c.Code == code; });
  if (known == kCompressions.end() || !known->IsRead) {
    const std::string name = known == kCompressions.end() ? std::string() : known->Name;
    return Refuse(
        faults, ProblemKind::kUnsupported, "Compression",
        "the TIFF compression " +
            (name.empty() ? std::to_string(code) : name + " (" + std::to_string(code) + ")") +
            " is not read here");
  }
  if (TIFFIsCODECConfigured(code) == 0) {
    return Refuse(
        faults, ProblemKind::kUnsupported, "Compression",
        std::string("the system's TIFF library was built without the compression ") + known->Name);
  }
  return true;
}

/// Colour model, and how many samples it takes.
bool CheckPhotometric(TiffFacts& facts, std::uint16_t inkSet, Problems& faults) {
  const auto refuse = [&](const std::string& text) {
    return Refuse(faults, ProblemKind::kUnsupported, "PhotometricInterpretation", text);
  };
  switch (facts.Photometric) {
    case PHOTOMETRIC_MINISWHITE:
    case PHOTOMETRIC_MINISBLACK:
    case PHOTOMETRIC_PALETTE:
      facts.Used = 1;
      break;
    case PHOTOMETRIC_YCBCR:
      if (facts.Compression != COMPRESSION_JPEG || facts.Planar != PLANARCONFIG_CONTIG) {
        return refuse("YCbCr colours are read in JPEG-compressed TIFFs only");
      }
      facts.Used = 3;
      break;
    case PHOTOMETRIC_RGB:
      facts.Used = 3;
      break;
    case PHOTOMETRIC_SEPARATED:
      if (inkSet != INKSET_CMYK) {
        return refuse("the TIFF has inks other than cyan, magenta, yellow and black");
      }
      facts.Used = 4;
      break;
    default:
      return refuse("the TIFF colour model " + std::to_string(facts.Photometric) +
                    " is not read here");
  }
  if (facts.Samples < facts.Used || facts.Samples > 4) {
    return Refuse(faults, ProblemKind::kUnsupported, "SamplesPerPixel",
                  "TIFF pictures of " + std::to_string(facts.Samples) +
                      " samples a pixel are not read here with this colour model");
  }
  return true;
}

bool CheckSamples(const TiffFacts& facts, Problems& faults) {
  const std::uint16_t bits = facts.Bits;
  const bool isFloat = facts.Format == SAMPLEFORMAT_IEEEFP;
  const bool isSigned = facts.Format == SAMPLEFORMAT_INT;
  const bool isUnsigned = facts.Format == SAMPLEFORMAT_UINT || facts.Format == SAMPLEFORMAT_VOID;
  if (!isFloat && !isSigned && !isUnsigned) {
    return Refuse(faults, ProblemKind::kUnsupported, "SampleFormat",
                  "TIFF samples that are complex numbers are not read here");
  }
  const bool plain = bits == 8 || bits == 16 || bits == 32;
  const bool narrow = bits == 1 || bits == 2 || bits == 4;
  const bool isIndex = facts.Photometric == PHOTOMETRIC_PALETTE;
  const bool fits = isIndex    ? isUnsigned && (narrow || bits == 8)
                    : isFloat  ? facts.Used == 1 && (bits == 32 || bits == 64)
                    : isSigned ? plain
                               : plain || (narrow && facts.Used == 1);
  if (!fits) {
    return Refuse(faults, ProblemKind::kUnsupported, isFloat ? "SampleFormat" : "BitsPerSample",
                  std::string("TIFF ") +
                      (isIndex           ? "palettes"
                       : facts.Used == 1 ? "greys"
                                         : "colours") +
                      " of " + std::to_string(bits) + " bits a sample, " +
                      (isFloat    ? "floating point"
                       : isSigned ? "signed"
                                  : "unsigned") +
                      ", are not read here");
  }
  if (facts.Compression == COMPRESSION_JPEG && bits != 8) {
    return Refuse(faults, ProblemKind::kUnsupported, "BitsPerSample",
                  "JPEG-compressed TIFFs are read with 8 bits a sample only");
  }
  return true;
}

/// The library reads all the bytes that a strip or tile names, also when others name them too.
bool CheckNamedBytes(TIFF* tiff, const ByteSource& file, const TiffFacts& facts, Problems& faults) {
  const std::uint32_t parts = facts.Tiled ? TIFFNumberOfTiles(tiff) : TIFFNumberOfStrips(tiff);
  std::uint64_t room = kNamedPerByte * file.Size() + (1 << 16) +
                       (facts.Compression == COMPRESSION_NONE ? kCopiedBase : 0);
  for (std::uint32_t part = 0; part < parts; ++part) {
    const std::uint64_t at = std::min(TIFFGetStrileOffset(tiff, part), file.Size());
    const std::uint64_t named = std::min(TIFFGetStrileByteCount(tiff, part), file.Size() - at);
    if (named > room) {
      return Refuse(faults, ProblemKind::kTooLarge, "StripByteCounts",
                    "the picture's parts claim more bytes than the file holds");
    }
    room -= named;
  }
  return true;
}

/// Several scans in a strip make the library keep all its coefficients and go over them as often.
bool CheckJpegParts(TIFF* tiff, const ByteSource& file, const TiffFacts& facts, Problems& faults) {
  const std::uint32_t parts = facts.Tiled ? TIFFNumberOfTiles(tiff) : TIFFNumberOfStrips(tiff);
  std::uint32_t partWidth = facts.Width;
  std::uint32_t partHeight = facts.Height;
  if (facts.Tiled) {
    TIFFGetField(tiff, TIFFTAG_TILEWIDTH, &partWidth);
    TIFFGetField(tiff, TIFFTAG_TILELENGTH, &partHeight);
  } else {
    TIFFGetFieldDefaulted(tiff, TIFFTAG_ROWSPERSTRIP, &partHeight);
    partHeight = std::min(partHeight, facts.Height);
  }
  const std::uint64_t partSamples = std::uint64_t{partWidth} * partHeight *
                                    (facts.Planar == PLANARCONFIG_CONTIG ? facts.Samples : 1U);
  Bytes piece(1 << 16);
  std::uint64_t room = file.Size() + (1 << 16);
  std::uint64_t visits = 0;
  for (std::uint32_t part = 0; part < parts; ++part) {
    std::uint64_t at = TIFFGetStrileOffset(tiff, part);
    const std::uint64_t end = at + std::min(TIFFGetStrileByteCount(tiff, part), file.Size());
    if (end - at > room) {
      return Refuse(faults, ProblemKind::kTooLarge, "StripByteCounts",
                    "the picture's parts claim more bytes than the file holds");
    }
    room -= end - at;
    std::uint64_t scans = 0;
    std::uint8_t before = 0;
    while (at < end) {
      const std::size_t got = file.ReadAt(
          at, std::span(piece).first(
                  static_cast<std::size_t>(std::min<std::uint64_t>(piece.size(), end - at))));
      if (got == 0) {
        break;
      }
      at += got;
      for (std::size_t i = 0; i < got; ++i) {
        scans += before == 0xFF && piece[i] == 0xDA ? 1 : 0;
        if (before == 0xFF && (piece[i] == 0xC9 || piece[i] == 0xCA)) {
          return Refuse(faults, ProblemKind::kUnsupported, "Compression",
                        "JPEG pictures in arithmetic coding are not read here");
        }
        before = piece[i];
      }
    }
    visits += scans * (partSamples / 64);
    if ((scans > 1 && visits > kMostBlockVisits + 2 * file.Size()) ||
        (scans > 1 && partSamples * 2 > kWorkMemory)) {
      return Refuse(faults, ProblemKind::kTooLarge, "Compression",
                    "the scans of its JPEG parts are more work than a photograph is");
    }
  }
  return true;
}

/// Sizes of tiles, and all that the library would decode.
bool CheckWork(TIFF* tiff, const ByteSource& file, const TiffFacts& facts, Problems& faults) {
  const std::uint64_t planes = facts.Planar == PLANARCONFIG_CONTIG ? 1 : facts.Samples;
  std::uint64_t decoded = TIFFScanlineSize64(tiff) * facts.Height * planes;
  if (facts.Tiled) {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    TIFFGetField(tiff, TIFFTAG_TILEWIDTH, &width);
    TIFFGetField(tiff, TIFFTAG_TILELENGTH, &height);
    const std::uint64_t bitsAcross =
        std::uint64_t{width} * facts.Bits * (planes == 1 ? facts.Samples : 1U);
    const std::uint64_t across = width == 0 ? 0 : (facts.Width + width - 1) / width;
    if (width < kSmallestTile || height < kSmallestTile || bitsAcross % 8 != 0 ||
        width > kMaxPictureSide || height > kMaxPictureSide) {
      return Refuse(faults, ProblemKind::kBadValue, "TileWidth",
                    "no TIFF has tiles of " + std::to_string(width) + " by " +
                        std::to_string(height) + " pixels");
    }
    const std::uint64_t band = bitsAcross / 8 * height * across * planes;
    if (band > kWorkMemory + file.Size()) {
      return Refuse(faults, ProblemKind::kTooLarge, "TileLength",
                    "a row of the picture's tiles is larger than the file can justify");
    }
    decoded = band * ((facts.Height + height - 1) / height);
  }
  // Values that are spread over the levels are decoded twice.
  const bool twice = facts.Used == 1 && facts.Photometric != PHOTOMETRIC_PALETTE &&
                     !facts.HoldsDegrees && (facts.Bits > 8 || facts.Format == SAMPLEFORMAT_INT);
  if (decoded + (twice ? decoded / 2 : 0) > kDecodedBase + kDecodedPerByte * file.Size()) {
    return Refuse(faults, ProblemKind::kTooLarge, "Size",
                  "the picture claims to be far larger than its file can justify");
  }
  return CheckNamedBytes(tiff, file, facts, faults) &&
         (facts.Compression != COMPRESSION_JPEG || CheckJpegParts(tiff, file, facts, faults));
}

/// JPEG strips of YCbCr colours come out as red, green, blue.
void AskForColours(TIFF* tiff, const TiffFacts& facts) {
  if (facts.Photometric == PHOTOMETRIC_YCBCR) {
    TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
  }
}

}  // namespace

TiffHandle::TiffHandle(const ByteSource& file) {
  state_.File = &file;
  const std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> options(TIFFOpenOptionsAlloc(),
                                                                             TIFFOpenOptionsFree);
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), KeepMessage, &state_);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), DropMessage, nullptr);
  tiff_ = TIFFClientOpenExt("TIFF", "rm", &state_, ReadBytes, WriteNothing, SeekTo, CloseNothing,
                            SizeOf, nullptr, nullptr, options.get());
}

TiffHandle::~TiffHandle() {
  if (tiff_ != nullptr) {
    TIFFClose(tiff_);
  }
}

bool ReadTiffFacts(const TiffHandle& handle, const ByteSource& file, TiffFacts& facts,
                   Problems& faults) {
  TIFF* const tiff = handle.Get();
  TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &facts.Width);
  TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &facts.Height);
  TIFFGetFieldDefaulted(tiff, TIFFTAG_BITSPERSAMPLE, &facts.Bits);
  TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLESPERPIXEL, &facts.Samples);
  TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLEFORMAT, &facts.Format);
  TIFFGetFieldDefaulted(tiff, TIFFTAG_PLANARCONFIG, &facts.Planar);
  TIFFGetFieldDefaulted(tiff, TIFFTAG_COMPRESSION, &facts.Compression);
  TIFFGetFieldDefaulted(tiff, TIFFTAG_ORIENTATION, &facts.Orientation);
  std::uint16_t inkSet = INKSET_CMYK;
  TIFFGetFieldDefaulted(tiff, TIFFTAG_INKSET, &inkSet);
  if (TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &facts.Photometric) == 0) {
    facts.Photometric = facts.Samples >= 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK;
  }
  facts.Tiled = TIFFIsTiled(tiff) != 0;
  if (!CheckPictureSize(facts.Width, facts.Height, faults) ||
      !CheckCompression(facts.Compression, faults) || !CheckPhotometric(facts, inkSet, faults) ||
      !CheckSamples(facts, faults)) {
    return false;
  }
  const char* description = nullptr;
  facts.HoldsDegrees = TIFFGetField(tiff, TIFFTAG_IMAGEDESCRIPTION, &description) != 0 &&
                       description != nullptr && description == kDegreesDescription &&
                       facts.Photometric == PHOTOMETRIC_MINISBLACK && facts.Samples == 1 &&
                       facts.Bits == 32 && facts.Format == SAMPLEFORMAT_IEEEFP;
  AskForColours(tiff, facts);
  return CheckWork(tiff, file, facts, faults);
}

TiffRows::TiffRows(const ByteSource& file, const TiffFacts& facts) : facts_(facts) {
  const int count = facts.Planar == PLANARCONFIG_CONTIG ? 1 : facts.Used;
  for (int i = 0; i < count; ++i) {
    planes_.push_back({std::make_unique<TiffHandle>(file), {}});
  }
  TIFF* const first = planes_.front().Handle->Get();
  if (first == nullptr) {
    return;
  }
  for (const Plane& plane : planes_) {
    AskForColours(plane.Handle->Get(), facts_);
  }
  std::size_t held = rowBytes_ = static_cast<std::size_t>(TIFFScanlineSize64(first));
  if (facts_.Tiled) {
    TIFFGetField(first, TIFFTAG_TILEWIDTH, &tileWidth_);
    TIFFGetField(first, TIFFTAG_TILELENGTH, &tileHeight_);
    tile_.resize(static_cast<std::size_t>(TIFFTileSize64(first)));
    rowBytes_ = static_cast<std::size_t>(TIFFTileRowSize64(first)) *
                ((facts_.Width + tileWidth_ - 1) / tileWidth_);
    held = rowBytes_ * tileHeight_;
  }
  for (Plane& plane : planes_) {
    plane.Rows.resize(held);
  }
}

bool TiffRows::ReadTiles(Plane& plane, std::uint16_t sample) {
  TIFF* const tiff = plane.Handle->Get();
  const auto tileRowBytes = static_cast<std::size_t>(TIFFTileRowSize64(tiff));
  const auto row = static_cast<std::uint32_t>(row_);
  for (std::uint32_t column = 0; column < facts_.Width; column += tileWidth_) {
    if (TIFFReadTile(tiff, tile_.data(), column, row, 0, sample) < 0) {
      return false;
    }
    std::uint8_t* const to = plane.Rows.data() + column / tileWidth_ * tileRowBytes;
    for (std::uint32_t line = 0; line < tileHeight_; ++line) {
      std::copy_n(tile_.data() + line * tileRowBytes, tileRowBytes, to + line * rowBytes_);
    }
  }
  return true;
}

bool TiffRows::Next() {
  ++row_;
  std::uint16_t sample = 0;
  for (Plane& plane : planes_) {
    TIFF* const tiff = plane.Handle->Get();
    if (tiff == nullptr) {
      return false;
    }
    if (facts_.Tiled) {
      if (row_ % tileHeight_ == 0 && !ReadTiles(plane, sample)) {
        return false;
      }
    } else if (TIFFReadScanline(tiff, plane.Rows.data(), static_cast<std::uint32_t>(row_), sample) <
               0) {
      return false;
    }
    ++sample;
  }
  return true;
}

const std::uint8_t* TiffRows::Samples(int sample) const {
  const Plane& plane = planes_[planes_.size() == 1 ? 0 : static_cast<std::size_t>(sample)];
  const std::size_t line =
      facts_.Tiled ? static_cast<std::size_t>(row_) % tileHeight_ : std::size_t{0};
  return plane.Rows.data() + line * rowBytes_;
}

std::string TiffRows::Reason() const {
  for (const Plane& plane : planes_) {
    if (const std::string reason = plane.Handle->Reason(); !reason.empty()) {
      return reason;
    }
  }
  return "the library gives no reason";
}

}  // namespace tessa
