#pragma once

#include <QString>
#include <cstdint>
#include <optional>

#include "camera/conversion.h"
#include "camera/download_options.h"
#include "core/write_file.h"

namespace tessa {

// The files that become of one image. Everything here throws StepFailure with the reason.

/// Their full paths.
struct ImageTargets {
  QString Sit;
  QString Bmp;
  QString Jpeg;
};
/// `name` is what the camera calls the image; one that is no plain file name with a dot and three
/// letters is refused.
ImageTargets TargetsOf(const QString& folder, const QString& name);

/// True for a name that stays in its folder.
bool IsPlainName(const QString& name);

/// True when something stands under the path itself; links are not followed.
bool IsTaken(const QString& path);

/// Makes one folder in another.
void MakeFolder(const QString& path);

/// Removes a file that was made here; one that is not there is no failure.
void RemoveFile(const QString& path);

/// Refuses what no file may take the place of, and a file that this user may not write.
void CheckReplaceable(const QString& path);
/// Has a copy of the file at `source` take the place of the one at `path` once it is complete and
/// on the disk; after a failure the old one is as it was. Its rights stay. A link itself is
/// replaced, not what it leads to.
void ReplaceFile(const QString& source, const QString& path);

/// Makes the picture of the SIT file with all that the conversion's options want.
void MakePicture(const QString& sit, DownloadConversion& conversion);
/// Refuses the picture when it shows no image.
void CheckPicture(const DownloadConversion& conversion);
/// Each replaces an older file as ReplaceFile() does, or refuses it.
void SaveBmp(const QString& path, DownloadConversion& conversion, Overwrite overwrite);
void SaveJpeg(const QString& path, DownloadConversion& conversion, Overwrite overwrite);

/// Bytes that the files of an image of `sitSize` bytes will take beyond those that are there and
/// are replaced; a little too much rather than too little.
std::uint64_t SpaceNeeded(const ImageTargets& targets, std::uint64_t sitSize,
                          const DownloadOptions& options);
/// Bytes that are free for this user; nothing when the system does not tell.
std::optional<std::uint64_t> FreeSpace(const QString& folder);
/// Millions of bytes: what is needed is rounded up and what is free down, so that the words never
/// say that it would be enough.
QString NeededMegabytes(std::uint64_t bytes);
QString FreeMegabytes(std::uint64_t bytes);

}  // namespace tessa
