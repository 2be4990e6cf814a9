#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "formats/byte_writer.h"
#include "open/session.h"
#include "view/range_control.h"

namespace tessa {

/// Which temperatures span the palette of an exported picture.
struct ExportRange {
  enum class Choice { kStored, kImage, kEntered };
  Choice From = Choice::kStored;
  double Low = 0.0;  // Entered, in the unit of the export.
  double High = 0.0;
};

/// What of an image becomes the picture.
enum class ExportView {
  kImage,
  kWithBar,    // The image and its palette bar.
  kComposite,  // Image, palette bar and visible-light picture.
  kVisible,    // The visible-light picture alone.
};

struct ExportOptions {
  ExportView View = ExportView::kImage;
  int Palette = 0;  // Position in the palette list.
  bool Reverse = false;
  ExportRange Range;
  char Unit = 'C';  // 'C' or 'F', for entered ranges and temperatures in text.
  int Frame = 0;    // 1-based frame of a snapshot or sequence; 0: the one that a load shows.
};

/// The endings that an image can be exported to, in lower case.
const QStringList& ExportEndings();

/// "stored", "image" or "LOW:HIGH"; nothing when the text is none of them.
std::optional<ExportRange> ParseExportRange(const QString& text);

/// Gives a fresh session the palettes that exports draw with.
void PrepareForExport(const ExportOptions& options, const Palettes& palettes, Session& session);

/// Loads `path` into a prepared session as the options say. Throws StepFailure with the plain
/// reason when there is no image in it, or the frame or the range cannot be had.
void LoadForExport(const QString& path, const ExportOptions& options, Session& session);

/// Shows 1-based frame `number` of a loaded snapshot or sequence. Throws StepFailure when there is
/// none, or it cannot be read.
void ShowFrameForExport(int number, Session& session);

/// Frames that the open snapshot or sequence says it has; 0 for other images.
int FrameSlots(const OpenImage& image);

/// Extremes of the temperatures on show.
TemperaturePair GridExtremes(const OpenImage& image);

/// The open image's bytes in the format of `ending`: bmp (8-bit indices and palette), png, jpg
/// (quality 95), csv (temperatures, shortest digits that give the single back), tif (one 32-bit
/// float a pixel, degrees Celsius) or txi (a bitmap whose header carries the range; the picture is
/// drawn anew in the range as the header can say it). Throws StepFailure.
Bytes EncodeForExport(Session& session, const QString& ending, const ExportOptions& options);

}  // namespace tessa
