#pragma once

#include <QString>
#include <cstdint>
#include <string>

namespace tessa {

/// The name of the storage's root among the camera's folders, and the one that it is shown by.
inline const QString kCameraRoot = QStringLiteral("CF:\\");
inline const QString kCameraRootShown = QStringLiteral("ROOT");

/// A camera and its images: a list of folders, each with a list of images, all counted from 0.
/// Calls block and come from one thread, in this order: OpenLink, ReadCameraInfo, then the rest,
/// and CloseLink at the end, also after an OpenLink that failed.
class CameraLink {
 public:
  CameraLink() = default;
  CameraLink(const CameraLink&) = delete;
  CameraLink& operator=(const CameraLink&) = delete;
  virtual ~CameraLink() = default;

  /// True when the camera answered.
  virtual bool OpenLink() = 0;
  virtual void CloseLink() = 0;
  /// Reads the tables of folders and images. What follows is valid after it.
  virtual bool ReadCameraInfo() = 0;
  virtual int FolderCount() = 0;
  virtual int ImageCount(int folderIndex) = 0;
  /// kCameraRoot for the root.
  virtual QString FolderName(int folderIndex) = 0;
  /// A file name without a path: a stem, a dot and three letters.
  virtual QString ImageFileName(int folderIndex, int imageIndex) = 0;
  /// Writes the image as a SIT file to the full path `targetPath`, where nothing stands yet. After
  /// a failure nothing stands there either.
  virtual bool DownloadImage(int folderIndex, int imageIndex, const QString& targetPath) = 0;
  /// Removes all images that the tables hold; true when none of them is left.
  virtual bool DeleteAllImages() = 0;

  /// Length of an image in bytes, 0 where the camera does not tell.
  virtual std::uint64_t ImageSize(int /*folderIndex*/, int /*imageIndex*/) { return 0; }
  /// Why not all of a folder could be listed, with its path; empty for one that was.
  virtual std::string FolderFault(int /*folderIndex*/) { return {}; }
  /// True when the camera itself keeps one of its images at `path`. Nothing is written or deleted
  /// there.
  virtual bool KeepsImageAt(const QString& /*path*/) { return false; }
  /// True when that is this very image.
  virtual bool IsPlaceOf(int /*folderIndex*/, int /*imageIndex*/, const QString& /*path*/) {
    return false;
  }
  /// Why the last call failed, in plain words; empty where the camera does not tell.
  virtual std::string Fault() const { return {}; }
};

}  // namespace tessa
