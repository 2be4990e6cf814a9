#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "formats/bmp.h"
#include "formats/camera_header.h"
#include "formats/frame_array.h"
#include "formats/if_sound.h"
#include "formats/sequence.h"
#include "formats/sit.h"
#include "formats/tmp_image.h"
#include "formats/wave.h"

// Files of every kind from described fields, for tests and for the inputs that fuzzers start from.

namespace tessa::testing {

using namespace std::string_view_literals;

inline Bytes ToBytes(std::string_view text) {
  return {text.begin(), text.end()};
}

inline void Put(Bytes& file, std::size_t at, std::string_view text) {
  std::copy(text.begin(), text.end(), file.begin() + static_cast<std::ptrdiff_t>(at));
}

inline Bytes First(const Bytes& file, std::size_t size) {
  return {file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)};
}

inline Bytes Joined(Bytes first, const Bytes& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

/// Bytes written as pairs of hexadecimal digits, blanks between them as they please.
inline Bytes Hex(std::string_view digits) {
  std::string text(digits);
  std::erase(text, ' ');
  Bytes bytes;
  for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
    bytes.push_back(static_cast<std::uint8_t>(std::stoi(text.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

/// The first `present` counts, the others zero.
inline std::vector<std::int16_t> KeepFirst(std::vector<std::int16_t> counts, std::size_t present) {
  std::fill(counts.begin() + static_cast<std::ptrdiff_t>(present), counts.end(), std::int16_t{0});
  return counts;
}

/// A raster whose value is rule(column, row).
template <typename Value = std::int16_t, typename Rule>
std::vector<Value> Raster(int width, int height, Rule rule) {
  std::vector<Value> values;
  for (int i = 0; i < width * height; ++i) {
    values.push_back(static_cast<Value>(rule(i % width, i / width)));
  }
  return values;
}

/// Words of 16 bits from byte 1024 on, `stored` in a row, each with its row in the high byte and
/// its column in the low one, so that row 128 opens with 0x8000.
inline void PutCounts(Bytes& file, std::size_t stored, std::size_t rows) {
  for (std::size_t i = 0; i < stored * rows; ++i) {
    file[1024 + 2 * i] = static_cast<std::uint8_t>(i / stored);
    file[1024 + 2 * i + 1] = static_cast<std::uint8_t>(i % stored);
  }
}
/// The first `width` of each row of them.
inline std::vector<std::int16_t> CountsOfPlaces(int width, int height) {
  return Raster(width, height, [](int column, int row) { return row * 256 + column % 256; });
}

/// The count of `celsius` in an image of gain 1/64 and offset -20.
inline std::int16_t Count64(double celsius) {
  return static_cast<std::int16_t>((celsius + 20.0) * 64.0);
}

/// 20 degrees all over, a 64th a count, scale 20 to 40, calibrated from -40 to 120.
inline SitFields PlainSit() {
  SitFields fields;
  fields.Offset = -20.0;
  fields.Gain = 0.015625;
  fields.ScaleCenter = 30.0;
  fields.ScaleStep = 2.5;
  fields.Counts.assign(std::size_t{kSitWidth} * kSitHeight, Count64(20.0));
  return fields;
}

inline void PutDegrees(SitFields& fields, std::size_t column, std::size_t row, double celsius) {
  fields.Counts[row * kSitWidth + column] = Count64(celsius);
}

/// A SIT image by the fields that tell of its sound and photograph.
inline SitFields SoundSit(const char* signature, const char* name = "", const char* extension = "",
                          const Bytes& attachment = {}) {
  SitFields fields = PlainSit();
  fields.Signature = signature;
  fields.SoundName = name;
  fields.SoundExt = extension;
  fields.Attachment = attachment;
  return fields;
}
inline Bytes NoteSit(const char* signature, const char* name = "", const char* extension = "",
                     const Bytes& attachment = {}) {
  return EncodeSit(SoundSit(signature, name, extension, attachment));
}

/// An 8-bit TMP image of one value.
inline LegacyFields PlainLegacy(std::uint8_t value) {
  LegacyFields fields;
  fields.Values.assign(std::size_t{kTmpWidth} * kLegacyHeight, value);
  return fields;
}

/// Frame arrays of the same size, one for each list of tenths of a kelvin.
inline SnapshotFields SnapshotOf(int width, int height,
                                 const std::vector<std::vector<std::int16_t>>& frames,
                                 float version = 1.0F) {
  SnapshotFields fields;
  fields.Header.Version = version;
  fields.Header.Frames = static_cast<int>(frames.size());
  fields.Header.Width = width;
  fields.Header.Height = height;
  for (const auto& tenths : frames) {
    fields.Frames.push_back(EncodeFrameArray(width, height, tenths));
  }
  return fields;
}

using TiffNumbers = std::vector<std::uint32_t>;

/// An uncompressed little-endian TIFF. Each entry of `tags` is an array of 32-bit numbers; the
/// strips follow one another; the directory names each of them `uses` times.
inline Bytes Tiff(std::map<int, TiffNumbers> tags, const std::vector<Bytes>& strips,
                  std::size_t uses = 1) {
  tags[273] = TiffNumbers(strips.size() * uses);
  tags[279] = TiffNumbers(strips.size() * uses);
  std::size_t at = 8 + 2 + 12 * tags.size() + 4;
  for (const auto& [tag, values] : tags) {
    at += values.size() > 1 ? 4 * values.size() : 0;
  }
  for (std::size_t i = 0; i < strips.size(); ++i) {
    for (std::size_t use = 0; use < uses; ++use) {
      tags[273][i * uses + use] = static_cast<std::uint32_t>(at);
      tags[279][i * uses + use] = static_cast<std::uint32_t>(strips[i].size());
    }
    at += strips[i].size();
  }
  ByteWriter directory;
  ByteWriter values;
  const std::size_t valuesAt = 8 + 2 + 12 * tags.size() + 4;
  directory.Text("II*", 4);
  directory.U32Le(8);
  directory.U16Le(static_cast<std::uint16_t>(tags.size()));
  for (const auto& [tag, numbers] : tags) {
    directory.U16Le(static_cast<std::uint16_t>(tag));
    directory.U16Le(4);
    directory.U32Le(static_cast<std::uint32_t>(numbers.size()));
    directory.U32Le(numbers.size() > 1 ? static_cast<std::uint32_t>(valuesAt + values.Size())
                                       : numbers.at(0));
    for (const std::uint32_t number : numbers) {
      if (numbers.size() > 1) {
        values.U32Le(number);
      }
    }
  }
  directory.U32Le(0);
  directory.Append(values.Take());
  for (const Bytes& strip : strips) {
    directory.Append(strip);
  }
  return directory.Take();
}

inline std::map<int, TiffNumbers> TiffTags(std::uint32_t width, std::uint32_t height,
                                           std::uint32_t bits, std::uint32_t samples,
                                           std::uint32_t photometric) {
  return {{256, {width}}, {257, {height}},      {258, TiffNumbers(samples, bits)},
          {259, {1}},     {262, {photometric}}, {277, {samples}},
          {278, {height}}};
}

inline std::map<int, TiffNumbers> WithTag(std::map<int, TiffNumbers> tags, int tag,
                                          TiffNumbers values) {
  tags[tag] = std::move(values);
  return tags;
}

/// Greys from black to white, or the other way round.
inline ColourTable Ramp(bool reversed) {
  ColourTable table{};
  for (std::uint32_t i = 0; i < 256; ++i) {
    table[reversed ? 255 - i : i] = i * 0x010101;
  }
  return table;
}

}  // namespace tessa::testing
