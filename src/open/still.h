#pragma once

#include <QString>
#include <cstdint>
#include <optional>
#include <variant>

#include "core/open_image.h"
#include "core/pixel_stores.h"
#include "formats/problem.h"
#include "formats/sit.h"
#include "formats/tmp_image.h"

namespace tessa {

/// Where an image's sound note lies, from its header and the names in its folder alone.
struct SoundFacts {
  bool Embedded = false;  // The camera's own sound, inside the image file.
  bool IsBeside = false;  // File is a sound file beside the image.
  QString File;           // Path of that file, or name and "WAV" of a wave inside the image file.
  bool CanEmbed = false;  // A wave may be put into the image file and would be found again.
};

/// What a radiometric still file holds, apart from any window or open image. All temperatures are
/// degrees Celsius. Plain data that may be moved between threads.
struct Still {
  ImageKindValue Kind = KindSit;  // KindSit (SIT and BIN files) or KindTmp.
  bool IsLegacy8Bit = false;      // The 8-bit kind of TMP.

  // Pixels that the file does not have are 0 degrees.
  TemperatureGrid Grid;
  TemperaturePair Extremes;     // By the rules of the kind; upside down where no pixel took part.
  TemperaturePair StoredScale;  // What palette entries 0 and 255 stand for.
  TemperaturePair CalibratedRange;

  /// From raw values to degrees; a file whose values are degrees already has none.
  struct CameraCalibration {
    float Emissivity = 0.0F;
    float Offset = 0.0F;  // Degrees at raw value 0 (at 128 in the 8-bit kind).
    float Gain = 0.0F;    // Degrees per raw step (per eight steps in the 8-bit kind).
  };
  std::optional<CameraCalibration> Camera;

  QString Date;  // "m/dd/yyyy"
  QString Time;  // "h:nn:ss AM/PM"
  QString Comment;
  QString Memo;

  /// The header record as the file gave it; none for BIN and for a file that could not be read.
  std::variant<std::monostate, SitHeader, TmpHeader, LegacyHeader> Header;

  // SIT files alone.
  float Version = 0.0F;
  SoundFacts Sound;
  std::uint64_t PhotographPosition = 0;  // Of its JPEG, counted from byte 1; 0: none promised.

  std::uint64_t FileSize = 0;
  Problems Faults;
};

/// Reads the radiometric still at `path` (as on disk): SIT, TMP of both kinds, or BIN, by the last
/// three characters in either case. Never fails as a whole: what is not there stays at its default
/// and the reason stands in Faults (FindNoImage tells whether there is a picture at all). Touches
/// nothing but the file, so several threads may read at a time.
Still ReadStill(const QString& path);

}  // namespace tessa
