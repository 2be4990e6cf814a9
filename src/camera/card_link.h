#pragma once

#include <QStringList>
#include <functional>
#include <vector>

#include "camera/camera_link.h"

namespace tessa {

/// The camera's memory card, or any folder in its place: the folder is the root, and its direct
/// subfolders are the others. Images are plain files ending in .sit in any letter case, other
/// letters that only count as those in some language being none of them. Both are
/// sorted by their upper-case names. Hidden folders and files stay out, and links are not followed,
/// so that nothing outside of the card is ever touched.
class CardLink : public CameraLink {
 public:
  /// Names the folders where cards are mounted.
  using Search = std::function<QStringList()>;

  /// OpenLink() takes `folder` if it is there, else the first of those that `search` finds which
  /// holds images.
  explicit CardLink(QString folder, Search search = {});

  /// Another folder for the next OpenLink().
  void Choose(const QString& folder) { chosen_ = folder; }
  /// The card that was opened last; empty when none was found.
  const QString& Folder() const { return folder_; }

  bool OpenLink() override;
  void CloseLink() override;
  bool ReadCameraInfo() override;
  int FolderCount() override { return static_cast<int>(folders_.size()); }
  int ImageCount(int folderIndex) override;
  QString FolderName(int folderIndex) override;
  QString ImageFileName(int folderIndex, int imageIndex) override;
  bool DownloadImage(int folderIndex, int imageIndex, const QString& targetPath) override;
  bool DeleteAllImages() override;
  std::uint64_t ImageSize(int folderIndex, int imageIndex) override;
  std::string FolderFault(int folderIndex) override;
  bool KeepsImageAt(const QString& path) override;
  bool IsPlaceOf(int folderIndex, int imageIndex, const QString& path) override;
  std::string Fault() const override { return fault_; }

  /// Where the image lies; empty for indices that there are not.
  QString ImagePath(int folderIndex, int imageIndex) const;
  /// What DownloadImage() does, for any thread. Throws StepFailure with the reason.
  void BringImage(int folderIndex, int imageIndex, const QString& targetPath) const;

 private:
  struct CardFolder {
    QString Name;
    QString Path;
    QStringList Images;
    std::string Fault;  // Why not all of it could be listed.
  };
  void ReadFolder(const QString& name, const QString& path);
  const CardFolder* At(int folderIndex) const;
  bool Fail(const std::string& reason);

  QString chosen_;
  Search search_;
  QString folder_;
  std::vector<CardFolder> folders_;
  bool isRead_ = false;
  std::string fault_;
};

/// Folders where removable volumes are mounted.
QStringList RemovableVolumes();

/// True when images lie in the folder or one level below.
bool HoldsCardImages(const QString& folder);

}  // namespace tessa
