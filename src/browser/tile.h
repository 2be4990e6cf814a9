#pragma once

#include <QString>

#include "core/kinds.h"
#include "core/language_strings.h"
#include "formats/problem.h"
#include "sound/sound_note.h"
#include "view/loaded_picture.h"

namespace tessa {

/// What a tile of the browser knows of a file. Plain data; nothing of the open image is in it.
struct Tile {
  FileKind Kind = FileKind::kOther;

  /// Palette indices, 8 bits; width 0: the file has no picture to show.
  LoadedPicture Picture;
  int FullWidth = 0;  // Of the picture in the file, pixels, however small Picture was made.
  int FullHeight = 0;

  /// False for the kinds that carry no texts; comment and memo are then none of the tile's lines.
  bool HasTexts = false;
  QString Comment;     // Empty: the file says none.
  QString Memo;        // Empty: the file says none.
  QString Date;        // txtDate
  QString Time;        // txtTime
  QString Emissivity;  // txtEmiss, "0.95"

  /// txtVisOffset: position of the photograph's JPEG, counted from byte 1; 0: none promised.
  std::uint64_t VisibleOffset = 0;

  SoundKind Sound = SoundKind::kNone;
  QString SoundReference;      // txtSound; see SoundNote.
  bool IsBlueCaption = false;  // There is a note, or the file says that it carries a photograph.

  int SequenceFrames = 0;  // Of a sequence container, which shows no picture.
  Problems Faults;
};

/// Reads the file at `path` (as on disk) the way its ending asks for. Never fails as a whole: what
/// is not there stays at its default and Faults say why. Touches no session, so several threads may
/// decode at a time; with kRemove an empty sound file beside a SIT image is deleted.
Tile DecodeTile(const QString& path, EmptySound empty);

/// The picture alone. Throws StepFailure with the reason where there is none.
LoadedPicture TilePicture(const QString& path);

/// The five decoders behind it. SIT images:
Tile LoadThumbIMG(const QString& path, EmptySound empty);
/// 16-bit stills of the older cameras, and those of 8 bits under the same ending.
Tile LoadThumbTMP(const QString& path);
Tile LoadThumb3303(const QString& path);
/// The first frame of snapshots. A sequence container tells its number of frames alone, and a
/// picture of more than 600 rows and 800 columns at once is not shown.
Tile LoadThumbRTI(const QString& path);
/// Bitmaps, TIFF, JPEG and TXI, by their pixels; all are turned to the same orientation of palette.
Tile LoadImage(const QString& path);

/// The tag texts of a tile: comment and memo, or the word for none; empty without texts.
QString CommentTag(const Tile& tile, const Strings& words);
QString MemoTag(const Tile& tile, const Strings& words);

/// True when the file's content says that it is of the 8-bit kind: it is shorter than the others.
bool IsLegacyTmp(const QString& path);

/// The picture made smaller by averaging, so that no side is longer than `side` pixels; one that
/// fits already stays as it is. For pictures that are only looked at.
void ShrinkPicture(int side, LoadedPicture& picture);

}  // namespace tessa
