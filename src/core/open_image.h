#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <vector>

#include "core/pixel_stores.h"
#include "formats/bmp.h"
#include "formats/sequence.h"
#include "formats/sit.h"
#include "formats/tmp_image.h"

namespace tessa {

/// What kind of file the open image came from.
enum ImageKindValue : std::int16_t {
  KindBmp = 0,
  KindTiff = 1,
  KindJpeg = 2,
  KindSit = 3,
  KindTxi = 4,
  KindTmp = 5,
  KindRti = 6,
  KindRtv = 7,  // The word alone: a sequence is opened under KindRti.
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
  std::int16_t PreviousKindIndex = 1;  // ImageKind + 1 after a completed load.

  // Frame geometry, pixels. All three pairs are equal after a load.
  int BufferWidth = 0;
  int BufferHeight = 0;
  int HeaderWidth = 0;
  int HeaderHeight = 0;
  int ImageWidth = 0;
  int ImageHeight = 0;

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
  QString ScaleHighText = QStringLiteral("255");  // Range in force, in DisplayUnits, 6 characters.
  QString ScaleLowText = QStringLiteral("0");
  char DisplayUnits = 'C';
  char FileUnits = 'C';
  std::array<OptionalTemperature, 2> SpotTemperatures;

  QString ImageDate;  // "m/dd/yyyy"; empty when the file has none.
  QString ImageTime;  // "h:nn:ss AM/PM"

  // Sequences.
  int FrameCount = 0;    // 0: no sequence, or one that could not be read.
  int CurrentFrame = 0;  // 1-based.
  float SeqVersion = 0.0F;
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

/// The word for a kind with its trailing blank, "SIT " for KindSit; empty above KindRtv.
QString KindWord(int imageKind);

/// The last three characters of an upper-cased path: all that decides about a file's kind.
QString KindEnding(const QString& upperCasedPath);

/// Makes `path` (as on disk) the open image's file, in all three forms.
void SetCurrentFile(OpenImage& image, const QString& path);

/// True for the images whose range the user may move.
bool CanMoveRange(const OpenImage& image);

/// The text cut to the 6 characters that the range texts hold.
QString SixCharacters(const QString& text);

}  // namespace tessa
