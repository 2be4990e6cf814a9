#pragma once

#include <span>
#include <string>

#include "formats/byte_writer.h"
#include "scene.h"

/// Scenes as files of every kind that the program reads. A function whose kind cannot hold the
/// temperatures of its scene throws std::runtime_error with one plain line.
namespace tessa::tools {

/// What a camera would have written beside the picture.
struct SampleFacts {
  std::string Comment;  // Code page 1252.
  std::string Memo;
  std::string DateText = "260115";  // YYMMDD
  std::string TimeText = "163005";  // HHMMSS; of the first frame.
  int SecondsBetweenFrames = 2;
  double Emissivity = 0.95;
  double RangeLow = -40.0;  // Calibrated range, degrees Celsius; widened to hold the scene.
  double RangeHigh = 120.0;
};

/// What a SIT file can carry behind its picture. Empty: none.
struct SampleAttachments {
  Bytes Photo;  // A whole JPEG.
  Bytes Sound;  // A whole block in the camera's own sound format.
};

// Stills of fixed size: the scene is cut about its centre and resampled. Gains are as fine as the
// scene's span allows; stored scales cover all but the most extreme half percent at each end.

/// 320 x 240.
Bytes SceneAsSit(const Scene& scene, const SampleFacts& facts,
                 const SampleAttachments& attachments = {});
/// 255 x 223, 16-bit.
Bytes SceneAsTmp(const Scene& scene, const SampleFacts& facts);
/// 255 x 207, 8-bit.
Bytes SceneAsLegacyTmp(const Scene& scene, const SampleFacts& facts);
/// 320 x 240 tenths of a kelvin.
Bytes SceneAsBin(const Scene& scene);

// Pictures in the scene's own size, from its coldest to its hottest pixel.

/// 8-bit grey without temperatures in the format of `ending`: "bmp", "tif" or "jpg".
Bytes SceneAsPicture(const Scene& scene, const std::string& ending);
Bytes SceneAsTxi(const Scene& scene);
/// A bitmap with a temperature trailer.
Bytes SceneAsRadiometricBmp(const Scene& scene);

// Sequences of at least one frame, all of one size.

enum class Stamps { kNone, kEachFrame };
Bytes FramesAsSnapshot(std::span<const Scene> frames, const SampleFacts& facts, Stamps stamps);
/// `depth` is 16, or 8 for levels between the coldest and the hottest pixel of all frames.
Bytes FramesAsContainer(std::span<const Scene> frames, const SampleFacts& facts, int depth);
/// One frame in a file of its own, for beside a snapshot or sequence.
Bytes SceneAsFrameFile(const Scene& scene);

}  // namespace tessa::tools
