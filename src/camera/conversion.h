#pragma once

#include <QString>

#include "camera/download_options.h"
#include "core/language_strings.h"
#include "view/palettes.h"
#include "view/picbuf.h"

namespace tessa {

/// Makes the picture of a downloaded camera image (a SIT file of 320 x 240 pixels) with palette
/// bar, photograph and text band. Owns all its buffers and touches no open image, so several may
/// work in threads of their own.
class DownloadConversion {
 public:
  /// Words and palettes are not changed and have to stay for as long as the conversion.
  DownloadConversion(const Strings& words, const Palettes& palettes);

  /// Used by all conversions that follow.
  DownloadOptions Options;

  /// Leaves the picture of the file at `path` in PicBuf2.
  void dwnLoadThumbSIT(const QString& path);
  /// Adds the band of text below PicBuf2; `lineCount` lines high, the right block ending at column
  /// `rightEdge`.
  void dwnBuildOvl(int lineCount, int rightEdge);
  /// Lets all pictures go.
  void dwnCleanUp();

  Picbuf PicBuf2;  // The finished picture.

 private:
  const Strings& words_;
  const Palettes& palettes_;
};

}  // namespace tessa
