#include "view/tiff_picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "formats/tiff_directory.h"
#include "view/tiff_reader.h"

namespace tessa {
namespace {

/// Number `index` of an array of `Sample` values in the machine's byte order.
template <typename Sample>
Sample At(const std::uint8_t* samples, std::size_t index) {
  Sample value;
  std::memcpy(&value, samples + index * sizeof value, sizeof value);
  return value;
}

/// Where the pixels of a stored row belong once the orientation is applied.
class Placement {
 public:
  explicit Placement(const TiffFacts& facts) : width_(facts.Width), height_(facts.Height) {
    const int way = facts.Orientation;
    mirrored_ = way == 2 || way == 3 || way == 7 || way == 8;
    upsideDown_ = way == 3 || way == 4 || way == 6 || way == 7;
    onSide_ = way >= 5 && way <= 8;
  }

  int Width() const { return static_cast<int>(onSide_ ? height_ : width_); }
  int Height() const { return static_cast<int>(onSide_ ? width_ : height_); }

  /// Copies row `row` of `Channels` values a pixel into a picture whose rows are `stride` values
  /// apart.
  template <std::size_t Channels, typename Value>
  void Put(const Value* from, std::size_t row, std::size_t stride, Value* picture) const {
    const std::size_t line = upsideDown_ ? height_ - 1 - row : row;
    if (!mirrored_ && !onSide_) {
      std::copy_n(from, width_ * Channels, picture + line * stride);
      return;
    }
    for (std::size_t column = 0; column < width_; ++column, from += Channels) {
      const std::size_t across = mirrored_ ? width_ - 1 - column : column;
      const std::size_t at =
          onSide_ ? across * stride + line * Channels : line * stride + across * Channels;
      std::copy_n(from, Channels, picture + at);
    }
  }

 private:
  std::size_t width_;
  std::size_t height_;
  bool mirrored_ = false;
  bool upsideDown_ = false;
  bool onSide_ = false;
};

/// Samples of one kind in a row as levels 0 to 255, or as they are for palette indices.
class LevelReader {
 public:
  explicit LevelReader(const TiffFacts& facts)
      : facts_(facts),
        step_(facts.Planar == PLANARCONFIG_CONTIG ? facts.Samples : 1),
        isIndex_(facts.Photometric == PHOTOMETRIC_PALETTE) {}

  /// Level of sample `sample` of each pixel into every `stride`-th byte from `to` on.
  void Read(const TiffRows& rows, int sample, std::uint8_t* to, std::size_t stride) const {
    const std::uint8_t* const from = rows.Samples(sample);
    const std::size_t first = step_ == 1 ? 0 : static_cast<std::size_t>(sample);
    const bool isSigned = facts_.Format == SAMPLEFORMAT_INT;
    if (facts_.Bits == 8) {
      const std::uint8_t flip = isSigned ? 0x80 : 0;
      Each(to, stride, first, [&](std::size_t i) { return from[i] ^ flip; });
    } else if (facts_.Bits == 16) {
      const unsigned flip = isSigned ? 0x8000 : 0;
      Each(to, stride, first,
           [&](std::size_t i) { return ((At<std::uint16_t>(from, i) ^ flip) + 128U) / 257U; });
    } else if (facts_.Bits == 32) {
      const unsigned flip = isSigned ? 0x80000000U : 0;
      Each(to, stride, first,
           [&](std::size_t i) { return (At<std::uint32_t>(from, i) ^ flip) >> 24; });
    } else {
      const unsigned bits = facts_.Bits;
      const unsigned highest = (1U << bits) - 1;
      const unsigned scale = isIndex_ ? 1 : 255 / highest;
      Each(to, stride, first, [&](std::size_t i) {
        const std::size_t bit = i * bits;
        return (static_cast<unsigned>(from[bit / 8]) >> (8 - bits - bit % 8) & highest) * scale;
      });
    }
  }

 private:
  template <typename Level>
  void Each(std::uint8_t* to, std::size_t stride, std::size_t first, Level&& level) const {
    for (std::size_t i = 0; i < facts_.Width; ++i) {
      to[i * stride] = static_cast<std::uint8_t>(level(first + i * step_));
    }
  }

  TiffFacts facts_;
  std::size_t step_;
  bool isIndex_;
};

bool IsSpread(const TiffFacts& facts) {
  return facts.Used == 1 && facts.Photometric != PHOTOMETRIC_PALETTE &&
         (facts.Bits > 8 || facts.Format == SAMPLEFORMAT_INT);
}

/// Calls `use` with the number of each row behind its decoding; false when the library fails.
template <typename Use>
bool ForEachRow(const TiffFacts& facts, TiffRows& rows, Use&& use) {
  for (std::size_t row = 0; row < facts.Height; ++row) {
    if (!rows.Next()) {
      return false;
    }
    use(row);
  }
  return true;
}

/// Greys that have more steps than a picture: the lowest value becomes 0, the highest 255.
template <typename Value>
bool SpreadGreys(const TiffFacts& facts, const Placement& placement, TiffRows& firstPass,
                 TiffRows& secondPass, LoadedPicture& picture) {
  const std::size_t step = facts.Planar == PLANARCONFIG_CONTIG ? facts.Samples : 1;
  Value low = std::numeric_limits<Value>::max();
  Value high = std::numeric_limits<Value>::lowest();
  if (!ForEachRow(facts, firstPass, [&](std::size_t) {
        const std::uint8_t* const from = firstPass.Samples(0);
        for (std::size_t i = 0; i < facts.Width; ++i) {
          const auto value = At<Value>(from, i * step);
          if (!std::is_floating_point_v<Value> || std::isfinite(static_cast<double>(value))) {
            low = std::min(low, value);
            high = std::max(high, value);
          }
        }
      })) {
    return false;
  }
  // Halves, since the span of two finite numbers need not be finite.
  const double halfLow = static_cast<double>(low) / 2;
  const double halfSpan = static_cast<double>(high) / 2 - halfLow;
  const double gain = high > low ? 255.0 / halfSpan : 0.0;
  const std::uint8_t flip = facts.Photometric == PHOTOMETRIC_MINISWHITE ? 0xFF : 0;
  std::vector<std::uint8_t> levels(facts.Width);
  return ForEachRow(facts, secondPass, [&](std::size_t row) {
    const std::uint8_t* const from = secondPass.Samples(0);
    for (std::size_t i = 0; i < facts.Width; ++i) {
      const double level =
          (static_cast<double>(At<Value>(from, i * step)) / 2 - halfLow) * gain + 0.5;
      // What is no finite number fails the first test or exceeds the span.
      const bool isLevel = level >= 0.0 && level < 256.0;
      levels[i] = static_cast<std::uint8_t>((isLevel ? static_cast<int>(level) : 0) ^ flip);
    }
    placement.Put<1>(levels.data(), row, picture.Stride, picture.Pixels.data());
  });
}

bool ReadSpreadGreys(const TiffFacts& facts, const Placement& placement, TiffRows& firstPass,
                     TiffRows& secondPass, LoadedPicture& picture) {
  const auto spread = [&](auto value) {
    return SpreadGreys<decltype(value)>(facts, placement, firstPass, secondPass, picture);
  };
  const bool isSigned = facts.Format == SAMPLEFORMAT_INT;
  if (facts.Format == SAMPLEFORMAT_IEEEFP) {
    return facts.Bits == 64 ? spread(double{}) : spread(float{});
  }
  if (facts.Bits == 32) {
    return isSigned ? spread(std::int32_t{}) : spread(std::uint32_t{});
  }
  if (facts.Bits == 16) {
    return isSigned ? spread(std::int16_t{}) : spread(std::uint16_t{});
  }
  return spread(std::int8_t{});
}

bool ReadDegrees(const TiffFacts& facts, const Placement& placement, TiffRows& rows,
                 TemperatureGrid& degrees) {
  degrees.Allocate(placement.Width(), placement.Height());
  std::vector<float> line(facts.Width);
  return ForEachRow(facts, rows, [&](std::size_t row) {
    std::memcpy(line.data(), rows.Samples(0), line.size() * sizeof(float));
    placement.Put<1>(line.data(), row, static_cast<std::size_t>(placement.Width()),
                     degrees.Cells().data());
  });
}

/// Greys and palette indices of up to eight bits.
bool ReadLevels(const TiffFacts& facts, const Placement& placement, TiffRows& rows,
                LoadedPicture& picture) {
  const LevelReader reader(facts);
  const std::uint8_t flip = facts.Photometric == PHOTOMETRIC_MINISWHITE ? 0xFF : 0;
  std::vector<std::uint8_t> levels(facts.Width);
  return ForEachRow(facts, rows, [&](std::size_t row) {
    reader.Read(rows, 0, levels.data(), 1);
    for (std::uint8_t& level : levels) {
      level ^= flip;
    }
    placement.Put<1>(levels.data(), row, picture.Stride, picture.Pixels.data());
  });
}

bool ReadColours(const TiffFacts& facts, const Placement& placement, TiffRows& rows,
                 LoadedPicture& picture) {
  const LevelReader reader(facts);
  const auto used = static_cast<std::size_t>(facts.Used);
  std::vector<std::uint8_t> samples(facts.Width * used);
  std::vector<std::uint8_t> colours(facts.Width * std::size_t{3});
  const bool isPlain = facts.Bits == 8 && facts.Format != SAMPLEFORMAT_INT && facts.Samples == 3 &&
                       facts.Planar == PLANARCONFIG_CONTIG;
  return ForEachRow(facts, rows, [&](std::size_t row) {
    if (isPlain && picture.Depth == 8) {
      ReduceRow(rows.Samples(0), facts.Width, colours.data());
      placement.Put<1>(colours.data(), row, picture.Stride, picture.Pixels.data());
      return;
    }
    std::uint8_t* const to = used == 3 ? colours.data() : samples.data();
    for (int sample = 0; sample < facts.Used; ++sample) {
      reader.Read(rows, sample, to + sample, used);
    }
    if (used == 4) {
      for (std::size_t i = 0; i < facts.Width; ++i) {
        const int white = 255 - samples[i * 4 + 3];
        for (std::size_t channel = 0; channel < 3; ++channel) {
          colours[i * 3 + channel] =
              static_cast<std::uint8_t>(((255 - samples[i * 4 + channel]) * white + 127) / 255);
        }
      }
    }
    if (picture.Depth == 8) {
      ReduceRow(colours.data(), facts.Width, colours.data());
      placement.Put<1>(colours.data(), row, picture.Stride, picture.Pixels.data());
    } else {
      placement.Put<3>(colours.data(), row, picture.Stride, picture.Pixels.data());
    }
  });
}

/// The colours of a palette picture; 16 bits each, though some writers fill only the low eight.
bool TakePalette(TIFF* tiff, const TiffFacts& facts, LoadedPicture& picture) {
  std::array<std::uint16_t*, 3> channels{};
  if (TIFFGetField(tiff, TIFFTAG_COLORMAP, &channels[0], &channels[1], &channels[2]) == 0) {
    return false;
  }
  const std::size_t count = std::size_t{1} << facts.Bits;
  bool isWide = false;
  for (const std::uint16_t* channel : channels) {
    isWide = isWide || std::any_of(channel, channel + count, [](auto v) { return v > 255; });
  }
  picture.Palette = {};
  for (std::size_t i = 0; i < count; ++i) {
    const auto part = [&](std::size_t channel) {
      const unsigned value = channels[channel][i];
      return static_cast<std::uint8_t>(isWide ? value >> 8 : value);
    };
    picture.Palette[i] = Rgb(part(0), part(1), part(2));
  }
  return true;
}

Problem CannotDecode(ProblemKind kind, const std::string& reason) {
  return {kind, 0, "Pixels", "the TIFF data cannot be decoded: " + reason, true};
}

bool ReadPixels(const TiffFacts& facts, const ByteSource& file, PictureUse use, TiffRows& rows,
                LoadedPicture& picture) {
  const Placement placement(facts);
  const bool isColour = facts.Used > 1;
  picture.Allocate(placement.Width(), placement.Height(),
                   isColour && use == PictureUse::kColours ? 24 : 8);
  if (facts.HoldsDegrees) {
    return ReadDegrees(facts, placement, rows, picture.Degrees);
  }
  if (isColour) {
    return ReadColours(facts, placement, rows, picture);
  }
  if (IsSpread(facts)) {
    TiffRows secondPass(file, facts);
    return ReadSpreadGreys(facts, placement, rows, secondPass, picture);
  }
  return ReadLevels(facts, placement, rows, picture);
}

}  // namespace

LoadedPicture LoadTiffPicture(const ByteSource& file, PictureUse use, Problems& faults) {
  LoadedPicture picture;
  if (!CheckTiffDirectory(file, faults)) {
    return picture;
  }
  const TiffHandle handle(file);
  if (handle.Get() == nullptr) {
    faults.push_back(CannotDecode(ProblemKind::kBadValue, handle.Reason()));
    return picture;
  }
  TiffFacts facts;
  if (!ReadTiffFacts(handle, file, facts, faults)) {
    return picture;
  }
  TiffRows rows(file, facts);
  if (!ReadPixels(facts, file, use, rows, picture)) {
    faults.push_back(CannotDecode(ProblemKind::kTruncated, rows.Reason()));
    return {};
  }
  if (facts.Photometric == PHOTOMETRIC_PALETTE) {
    if (!TakePalette(handle.Get(), facts, picture)) {
      faults.push_back(CannotDecode(ProblemKind::kBadValue, "its palette is missing"));
      return {};
    }
    SettlePalette(use, 1 << facts.Bits, picture);
  }
  return picture;
}

}  // namespace tessa
