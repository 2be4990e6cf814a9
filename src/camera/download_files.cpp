#include "camera/download_files.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/plain_line.h"
#include "core/steps.h"
#include "core/transfer_files.h"
#include "view/jpeg_picture.h"

namespace tessa {
namespace {

constexpr int kThreeLetters = 3;
constexpr std::uint64_t kMillion = 1'000'000;

// Where the right block of the text ends: the last column of the thermal picture.
constexpr int kRightEdge = 320;

// For guessing sizes of pictures, pixels.
constexpr std::uint64_t kWidth = 320;
constexpr std::uint64_t kHeight = 240;
constexpr std::uint64_t kBarWidth = 75;
constexpr std::uint64_t kVisibleWidth = 325;
constexpr std::uint64_t kLineHeight = 24;
constexpr std::uint64_t kBmpStart = 1200;

std::uint64_t PixelCount(const DownloadOptions& options) {
  const bool hasVisible = options.Overlay[DownloadOptions::kVisible] == 1;
  return (kWidth + (options.PaletteBar == 1 ? kBarWidth : 0) + (hasVisible ? kVisibleWidth : 0)) *
         (kHeight + static_cast<std::uint64_t>(OverlayLines(options)) * kLineHeight);
}

bool IsLink(const QString& path) {
  struct stat status {};
  return ::lstat(PathToBytes(path).constData(), &status) == 0 && S_ISLNK(status.st_mode);
}

/// Moves a complete file's copy into the place of another one.
void PutInPlace(const SourceFile& source, const QString& path) {
  const TargetFolder folder(FolderOfPath(path));
  const QByteArray name = PathToBytes(FileNameOf(path));
  StagedFile copy(source, folder);
  copy.TakeRightsOf(name);
  copy.GiveName(name, Overwrite::kReplace);
}

/// Replaces a link by a file of these bytes.
void ReplaceLink(const QString& path, const Bytes& content) {
  // A file without a name there gets the rights that a new one has there.
  SourceFile made{FileDescriptor(::open(PathToBytes(FolderOfPath(path)).constData(),
                                        O_TMPFILE | O_RDWR | O_CLOEXEC, 0666)),
                  {}};
  const bool isOnDisk = static_cast<bool>(made.File);
  if (!isOnDisk) {
    made.File = FileDescriptor(::memfd_create("picture", MFD_CLOEXEC));
  }
  if (!made.File || !WriteAllAt(made.File.Get(), content, 0) ||
      ::fstat(made.File.Get(), &made.Status) != 0) {
    throw StepFailure(SystemErrorText(errno));
  }
  if (!isOnDisk) {
    made.Status.st_mode = S_IFREG | S_IRUSR | S_IWUSR;
  }
  PutInPlace(made, path);
}

void SavePicture(const QString& path, const Bytes& content, Overwrite overwrite) {
  if (overwrite == Overwrite::kRefuse || !IsLink(path)) {
    WriteWholeFile(path, content, overwrite);
    return;
  }
  try {
    ReplaceLink(path, content);
  } catch (const StepFailure& reason) {
    throw StepFailure(PlainUtf8(path) + " cannot be written: " + reason.what());
  }
}

}  // namespace

bool IsPlainName(const QString& name) {
  return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..") &&
         !name.contains(QLatin1Char('/')) && !name.contains(QChar::Null);
}

ImageTargets TargetsOf(const QString& folder, const QString& name) {
  if (!IsPlainName(name) || name.size() <= kThreeLetters ||
      name[name.size() - kThreeLetters - 1] != QLatin1Char('.')) {
    throw StepFailure("the camera names an image \"" + PlainUtf8(name) +
                      "\", which is no name of a file");
  }
  const QString stem = name.chopped(kThreeLetters);
  return {JoinPath(folder, name), JoinPath(folder, stem + QLatin1String("bmp")),
          JoinPath(folder, stem + QLatin1String("jpg"))};
}

bool IsTaken(const QString& path) {
  struct stat status {};
  return ::lstat(PathToBytes(path).constData(), &status) == 0;
}

void MakeFolder(const QString& path) {
  if (::mkdir(PathToBytes(path).constData(), 0777) != 0) {
    throw StepFailure(PlainUtf8(path) + " cannot be made: " + SystemErrorText(errno));
  }
}

void RemoveFile(const QString& path) {
  if (::unlink(PathToBytes(path).constData()) != 0 && errno != ENOENT) {
    throw StepFailure(PlainUtf8(path) + " cannot be removed: " + SystemErrorText(errno));
  }
}

void CheckReplaceable(const QString& path) {
  try {
    TargetFolder(FolderOfPath(path)).CheckReplaceable(PathToBytes(FileNameOf(path)));
    // A rename would replace even a write-protected file.
    if (!IsLink(path) && ::faccessat(AT_FDCWD, PathToBytes(path).constData(), W_OK, 0) != 0) {
      throw StepFailure(SystemErrorText(errno));
    }
  } catch (const StepFailure& reason) {
    throw StepFailure(PlainUtf8(path) + " cannot be replaced: " + reason.what());
  }
}

void ReplaceFile(const QString& source, const QString& path) {
  CheckReplaceable(path);
  PutInPlace(OpenSource(source), path);
}

void MakePicture(const QString& sit, DownloadConversion& conversion) {
  conversion.PicBuf2.FreeBuffer();
  conversion.dwnLoadThumbSIT(sit);
  if (conversion.PicBuf2.BufWidth() == 0) {
    throw StepFailure("no picture can be made of it");
  }
  const int lines = OverlayLines(conversion.Options);
  if (lines > 0) {
    conversion.dwnBuildOvl(lines, kRightEdge);
  }
}

void CheckPicture(const DownloadConversion& conversion) {
  if (const Problem* const reason = FindNoImage(conversion.Faults)) {
    throw StepFailure(reason->Text);
  }
}

void SaveBmp(const QString& path, DownloadConversion& conversion, Overwrite overwrite) {
  const Picbuf& picture = conversion.PicBuf2;
  const int width = picture.BufWidth();
  const int height = picture.BufHeight();
  SavePicture(path,
              picture.BufDepth() == 8
                  ? EncodeBmp8(width, height, picture.Pixels(), picture.Stride(), picture.Palette())
                  : EncodeBmp24(width, height, picture.Pixels(), picture.Stride()),
              overwrite);
}

void SaveJpeg(const QString& path, DownloadConversion& conversion, Overwrite overwrite) {
  Picbuf& picture = conversion.PicBuf2;
  if (picture.BufDepth() < 24) {
    picture.ConvertDepth(24);
  }
  SavePicture(path, EncodeJpeg(picture.ToImage(), JpegQualityOf(conversion.Options)), overwrite);
}

std::uint64_t SpaceNeeded(const ImageTargets& targets, std::uint64_t sitSize,
                          const DownloadOptions& options) {
  const std::uint64_t pixels = PixelCount(options);
  std::uint64_t needed = 0;
  if (options.Sit != 0 && !IsTaken(targets.Sit)) {
    needed += sitSize;
  }
  if (options.Bmp == 1 && !IsTaken(targets.Bmp)) {
    // Colours instead of indices as soon as anything is added to the picture.
    needed += kBmpStart + (pixels == kWidth * kHeight ? pixels : pixels * 3);
  }
  if (options.Jpeg == 1 && !IsTaken(targets.Jpeg)) {
    needed += pixels * static_cast<std::uint64_t>(JpegQualityOf(options)) / 100;
  }
  return needed;
}

std::optional<std::uint64_t> FreeSpace(const QString& folder) {
  struct statvfs status {};
  if (::statvfs(PathToBytes(folder).constData(), &status) != 0) {
    return std::nullopt;
  }
  return std::uint64_t{status.f_bavail} * status.f_frsize;
}

QString NeededMegabytes(std::uint64_t bytes) {
  return QString::number((bytes + kMillion - 1) / kMillion);
}

QString FreeMegabytes(std::uint64_t bytes) {
  return QString::number(bytes / kMillion);
}

}  // namespace tessa
