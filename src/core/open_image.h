#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <vector>

#include "core/kinds.h"
#include "core/pixel_stores.h"
#include "formats/bmp.h"
#include "formats/sequence.h"
#include "formats/sit.h"
#include "formats/tmp_image.h"

namespace tessa {

/// A pair of temperatures, degrees Celsius.
struct TemperaturePair {
  float Minimum = 0.0F;
  float Maximum = 0.0F;
};

/// A temperature that may be unset; kept in step with the unit of display.
struct OptionalTemperature {
  static constexpr int kUnset = 999;
  float Value = 0.0F;
  int Mark = kUnset;
};

/// Everything known about the one open image. Loaders fill it in place, every other part reads it
/// directly. A failed step of a load leaves its field as it was, a load that gives no picture
/// leaves the names and the kind alone, and closing an image only empties its names. All
/// temperatures are degrees Celsius whatever the user sees.
struct OpenImage {
  // Identity of the file. The upper-cased texts are for showing and for tests of the kind; every
  // access to the disk goes through CurrentFilePath.
  QString CurrentFile;      // Full path in upper case; empty: nothing is open.
  QString CurrentFileName;  // Its name and extension.
  QString CurrentFilePath;  // Exactly as it is on disk.
  std::int16_t ImageKind = KindBmp;
  bool HasTemperature = false;         // TempGrid holds degrees for this image.
  std::int16_t PreviousKindIndex = 1;  // 1-based entry of the open dialog's filter: kind + 1.
  /// The kind that the load button offers.
  int OfferedKind() const { return PreviousKindIndex - 1; }

  // Frame geometry, pixels; that of the buffer and of the file's header is the same.
  int ImageWidth = 0;
  int ImageHeight = 0;
  int BufferWidth() const { return ImageWidth; }
  int BufferHeight() const { return ImageHeight; }
  int HeaderWidth() const { return ImageWidth; }
  int HeaderHeight() const { return ImageHeight; }

  TemperatureGrid TempGrid;
  TemperatureGrid SavedTempGrid;  // Kept while the thumbnail browser uses TempGrid.
  RowCells RowBuffers;            // Displayed 8-bit values.

  // Temperatures. SIT images use the Sit twins of the first four; all others the plain ones.
  float TempMin = 0.0F;  // Extremes of the image.
  float TempMax = 0.0F;
  float ScaleMin = 0.0F;  // Stored display scale: what palette entries 0 and 255 stand for.
  float ScaleMax = 0.0F;
  float SitTempMin = 0.0F;
  float SitTempMax = 0.0F;
  float SitScaleMin = 0.0F;
  float SitScaleMax = 0.0F;
  float CalRangeMin = 0.0F;  // The camera's calibrated measuring range.
  float CalRangeMax = 0.0F;
  float Emissivity = 0.0F;
  float PixelOffset = 0.0F;          // Degrees at raw value 0.
  float PixelGain = 0.0F;            // Degrees per raw step.
  std::int16_t PaletteIndexLow = 0;  // Bitmap trailer: two indices and their temperatures.
  std::int16_t PaletteIndexHigh = 0;
  float PaletteTempLow = 0.0F;
  float PaletteTempHigh = 0.0F;
  float PaletteTempAt0 = 0.0F;  // The same line at indices 0 and 255.
  float PaletteTempAt255 = 0.0F;
  // The range in force, in DisplayUnits: texts of at most 6 characters, and the numbers that they
  // stand for. Only the procedures below set them, always together.
  QString ScaleHighText = QStringLiteral("255");
  QString ScaleLowText = QStringLiteral("0");
  double ShownHigh = 255.0;
  double ShownLow = 0.0;
  char DisplayUnits = 'C';
  char FileUnits = 'C';
  std::array<OptionalTemperature, 2> SpotTemperatures;

  QString ImageDate;  // "m/dd/yyyy"; empty when the file has none.
  QString ImageTime;  // "h:nn:ss AM/PM"

  // Sequences.
  int FrameCount = 0;    // 0: no sequence, or one that could not be read.
  int CurrentFrame = 0;  // 1-based.
  float SeqVersion = 0.0F;
  bool SeqIsContainer = false;         // Frames are read from the file one by one.
  std::int64_t SeqFrameStride = 0;     // Bytes from one frame to the next in a container.
  int SeqDepth = 0;                    // Bits a pixel, containers only.
  std::vector<QString> SeqFrameTimes;  // Stamps of a snapshot's frames.
  std::vector<Bytes> SeqFrames;        // A snapshot's frame arrays as stored; empty: none there.

  // Side data.
  bool HasVisibleImage = false;
  bool VisibleWindowOpen = false;
  QString SoundFile;  // Path of the sound note; empty: none.
  bool SoundEmbedded = false;
  QString SoundTempFile;
  QString SoundFileTitle;
  bool CanEmbedSound = false;
  std::int64_t SitFileLength = 0;
  float SitVersion = 0.0F;
  bool IsLegacy8Bit = false;
  bool PaletteReversed = false;  // Entry 0 of the file's palette is the brighter end.

  // Busy flags: what keeps user events out while a load lets events run.
  bool ImageBusy = false;
  bool UiLocked = false;
  int ThumbBrowserActive = 0;  // 99 while the thumbnail browser is up.

  // Header records as the file gave them; saving rewrites the same instance.
  tessa::SitHeader SitHeader;
  tessa::TmpHeader TmpHeader;
  tessa::LegacyHeader LegacyHeader;
  tessa::SeqHeader SeqHeader;
  tessa::BmpFileHeader BmpFileHeader;
  tessa::BmpInfoHeader BmpInfoHeader;
};

/// Makes `path` (as on disk) the open image's file, in all three forms.
void SetCurrentFile(OpenImage& image, const QString& path);

/// The rules for the open image by its file's name, and by its ImageKind.
const KindRules& RulesByName(const OpenImage& image);
const KindRules& RulesByImageKind(const OpenImage& image);

/// Whether a rule holds for an image, measured or not.
bool Holds(When rule, const OpenImage& image);

/// True for the images whose range the user may move.
bool CanMoveRange(const OpenImage& image);

/// Sets the range in force from degrees Celsius: one decimal in the unit of display.
void SetRangeInForce(double low, double high, OpenImage& image);
/// The same from numbers that are in the unit of display already.
void SetRangeAsShown(double low, double high, OpenImage& image);
/// The range of images without temperatures, "0" to "255": palette entries.
void SetRangeOfEntries(OpenImage& image);
/// No range: empty texts, numbers 0.
void SetNoRange(OpenImage& image);

}  // namespace tessa
