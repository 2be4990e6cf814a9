#pragma once

#include <QString>
#include <cstdint>

namespace tessa {

/// What kind of file the open image came from, as the record keeps it.
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

/// The kinds of file that the end of a name tells apart.
enum class FileKind { kBmp, kTif, kJpg, kSit, kTxi, kTmp, kRti, kRtv, kBin, kSeq, kOther };

/// What reads a file of a kind.
enum class Loader { kNone, kStill, kSequence, kBitmap, kTiff, kJpeg };

/// When a rule holds for an image.
enum class When {
  kNever,
  kMeasured,  // Where the image has temperatures.
  kAlways,
};

/// What the program does differently from kind to kind. The open image has two kinds: that of its
/// file's name, and ImageKind, which a conversion of frames changes while the name stays. Each
/// column says by which of them it is asked.
struct KindRules {
  FileKind Name = FileKind::kOther;
  const char* Ending = "";  // The last three characters of the upper-cased path.
  int ImageKind = -1;       // The ImageKindValue that this row speaks for; -1: none.
  const char* Word = "";    // For captions, with its trailing blank; by ImageKind.

  // By the file's name.
  Loader LoadedBy = Loader::kNone;
  bool HasRowPass = true;               // The loader leaves indices in the buffer, read row by row.
  bool ReadsGrid = false;               // The readout takes the grid, not the palette entry.
  bool RendersAllColumns = false;       // RenderRows draws all columns, not the first 255 alone.
  bool MovesRangeByName = false;        // The range may be moved whatever ImageKind says.
  When OpensByToggle = When::kNever;    // A load ends with a flip of the toggle to red.
  When PlainPairAtLoad = When::kNever;  // That flip uses the plain pairs, not the Sit twins.
  When PlainPairAtClick = When::kNever;  // So does the toggle's button.

  // By ImageKind.
  bool MovesRange = false;         // The range may be moved.
  bool UsesSitPairs = false;       // Extremes and scale stand in the Sit twins.
  bool MarksStoredScale = false;   // The markers beside the scale show the stored scale.
  bool ResetsByToggle = false;     // "Reset" goes to the pair of the toggle's colour.
  When HasMarkers = When::kNever;  // There are markers beside the scale.
  When TakesEnteredRange = When::kNever;
};

/// The rules for the kind that an upper-cased path's last three characters name; the longer endings
/// ".JPEG" and ".TIFF" name those of "JPG" and "TIF".
const KindRules& KindOfName(const QString& upperCasedPath);

/// The rules for an ImageKind; those of kOther above KindRtv.
const KindRules& KindOfImage(int imageKind);

/// The word for a kind with its trailing blank, "SIT " for KindSit; empty above KindRtv.
QString KindWord(int imageKind);

}  // namespace tessa
