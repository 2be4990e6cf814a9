#pragma once

#include <QString>
#include <optional>

#include "browser/thumbnail_pages.h"
#include "open/session.h"

namespace tessa {

/// What the information dialog says of an image. A line that is empty is not shown.
struct ImageInfo {
  QString FileName;    // lblFilename: the full path.
  QString Type;        // lblType: "SIT Image"
  QString Size;        // lblSize: " 320 x 240 Pixels"
  QString Date;        // lblDate
  QString Time;        // lblTime
  QString Emissivity;  // lblEmissivity
  QString Sound;       // lblSoundFile
  QString Frames;      // lblFrames
  QString Comment;     // txtComment
  QString Memo;        // txtMemo
  bool ReadOnlyTexts = true;
  int CommentLimit = 0;  // Characters; 0: none.
  QString Origin;        // Text1: a tile's number, "-1" for the open image, or empty.

  LoadedPicture Photograph;  // 24 bits; width 0: none.
};

/// ShowThumbnailInfo: the facts of tile `tile` of the page on show.
ImageInfo InfoOfTile(const ThumbnailPages& pages, int tile, const Strings& words);

/// The facts of the open image.
ImageInfo InfoOfOpenImage(const Session& session);

}  // namespace tessa
