#include "camera/card_link.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QStorageInfo>
#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/plain_line.h"
#include "core/steps.h"
#include "core/transfer_files.h"

namespace tessa {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostReasons = 5;

/// Names in a folder that are not hidden and whose kind is `wanted`, links being a kind of their
/// own. What cannot be read has none.
QStringList NamesIn(const QString& folder, fs::file_type wanted, std::error_code& error) {
  QStringList names;
  std::error_code hidden;  // Why the kind of an entry is not known.
  fs::directory_iterator entry(fs::path(PathToBytes(folder).toStdString()), error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (name.starts_with('.')) {
      continue;
    }
    std::error_code unreadable;
    const fs::file_type kind = entry->symlink_status(unreadable).type();
    if (kind == wanted) {
      names += PathFromBytes(QByteArray::fromStdString(name));
    } else if (kind == fs::file_type::none) {
      hidden = unreadable;
    }
  }
  error = error ? error : hidden;
  std::sort(names.begin(), names.end(), [](const QString& first, const QString& second) {
    const int order = first.toUpper().compare(second.toUpper());
    return order == 0 ? first < second : order < 0;
  });
  return names;
}

QStringList ImagesIn(const QString& folder, std::error_code& error) {
  QStringList images = NamesIn(folder, fs::file_type::regular, error);
  images.removeIf([](const QString& name) {
    return PathToBytes(name).right(4).toLower() != ".sit";  // Of bytes, ASCII letters alone.
  });
  return images;
}

/// True when both are the same name in the same folder; cards know no letter case.
bool IsOneName(const QString& first, const QString& second) {
  return FileNameOf(first).compare(FileNameOf(second), Qt::CaseInsensitive) == 0 &&
         IsSameFile(FolderOfPath(first), FolderOfPath(second)) && IsSameFile(first, second);
}

}  // namespace

CardLink::CardLink(QString folder, Search search)
    : chosen_(std::move(folder)), search_(std::move(search)) {}

bool CardLink::Fail(const std::string& reason) {
  fault_ = reason;
  return false;
}

bool CardLink::OpenLink() {
  CloseLink();
  if (!chosen_.isEmpty() && IsFolder(chosen_)) {
    folder_ = chosen_;
    return true;
  }
  for (const QString& volume : search_ ? search_() : QStringList()) {
    if (HoldsCardImages(volume)) {
      folder_ = volume;
      return true;
    }
  }
  return Fail(chosen_.isEmpty() ? "no memory card was found"
                                : PlainUtf8(chosen_) + ": there is no such folder");
}

void CardLink::CloseLink() {
  folder_.clear();
  folders_.clear();
  isRead_ = false;
  fault_.clear();
}

bool CardLink::ReadCameraInfo() {
  folders_.clear();
  isRead_ = false;
  fault_.clear();
  if (folder_.isEmpty()) {
    return Fail("no memory card was found");
  }
  std::error_code error;
  const QStringList subfolders = NamesIn(folder_, fs::file_type::directory, error);
  if (error) {
    return Fail(PlainUtf8(folder_) + ": " + error.message());
  }
  ReadFolder(kCameraRoot, folder_);
  for (const QString& name : subfolders) {
    ReadFolder(name, JoinPath(folder_, name));
  }
  isRead_ = true;
  return true;
}

void CardLink::ReadFolder(const QString& name, const QString& path) {
  std::error_code error;
  CardFolder folder{name, path, ImagesIn(path, error), {}};
  if (error) {
    folder.Fault = PlainUtf8(path) + " cannot be listed: " + error.message();
  }
  folders_.push_back(std::move(folder));
}

std::string CardLink::FolderFault(int folderIndex) {
  const CardFolder* const folder = At(folderIndex);
  return folder == nullptr ? std::string() : folder->Fault;
}

const CardLink::CardFolder* CardLink::At(int folderIndex) const {
  const auto index = static_cast<std::size_t>(folderIndex);
  return folderIndex >= 0 && index < folders_.size() ? &folders_[index] : nullptr;
}

int CardLink::ImageCount(int folderIndex) {
  const CardFolder* const folder = At(folderIndex);
  return folder == nullptr ? 0 : static_cast<int>(folder->Images.size());
}

QString CardLink::FolderName(int folderIndex) {
  const CardFolder* const folder = At(folderIndex);
  return folder == nullptr ? QString() : folder->Name;
}

QString CardLink::ImageFileName(int folderIndex, int imageIndex) {
  const CardFolder* const folder = At(folderIndex);
  return folder == nullptr ? QString() : folder->Images.value(imageIndex);
}

QString CardLink::ImagePath(int folderIndex, int imageIndex) const {
  const CardFolder* const folder = At(folderIndex);
  const QString name = folder == nullptr ? QString() : folder->Images.value(imageIndex);
  return name.isEmpty() ? QString() : JoinPath(folder->Path, name);
}

void CardLink::BringImage(int folderIndex, int imageIndex, const QString& targetPath) const {
  const QString path = ImagePath(folderIndex, imageIndex);
  if (path.isEmpty()) {
    throw StepFailure("the card has no such image");
  }
  const TargetFolder folder(FolderOfPath(targetPath));
  StagedFile copy(OpenSource(path), folder);
  copy.GiveName(PathToBytes(FileNameOf(targetPath)), Overwrite::kRefuse);
}

bool CardLink::DownloadImage(int folderIndex, int imageIndex, const QString& targetPath) {
  try {
    BringImage(folderIndex, imageIndex, targetPath);
    return true;
  } catch (const StepFailure& reason) {
    return Fail(reason.what());
  }
}

bool CardLink::DeleteAllImages() {
  if (!isRead_) {
    return Fail("the card was not read");
  }
  // Copies of these images may not be on their disk yet.
  ::sync();
  std::string reasons;
  std::size_t failed = 0;
  for (const CardFolder& folder : folders_) {
    for (const QString& name : folder.Images) {
      const QString image = JoinPath(folder.Path, name);
      const QByteArray path = PathToBytes(image);
      struct stat status {};
      const bool isImage = ::lstat(path.constData(), &status) == 0 && S_ISREG(status.st_mode);
      if (isImage && ::unlink(path.constData()) != 0 && ++failed <= kMostReasons) {
        const std::string reason = SystemErrorText(errno);
        reasons += (failed > 1 ? "; " : "") + PlainUtf8(image) + ": " + reason;
      }
    }
  }
  if (failed > kMostReasons) {
    reasons += " and " + std::to_string(failed - kMostReasons) + " more";
  }
  const std::vector<CardFolder> listed = std::move(folders_);
  if (!ReadCameraInfo()) {
    return false;
  }
  const bool isLeft = std::any_of(listed.begin(), listed.end(), [&](const CardFolder& folder) {
    return std::any_of(folder.Images.begin(), folder.Images.end(), [&](const QString& name) {
      return PathExists(JoinPath(folder.Path, name));
    });
  });
  return isLeft ? Fail(reasons.empty() ? "images are left on the card" : reasons) : true;
}

std::uint64_t CardLink::ImageSize(int folderIndex, int imageIndex) {
  const QString path = ImagePath(folderIndex, imageIndex);
  return path.isEmpty() ? 0 : FileSize(path).value_or(0);
}

bool CardLink::IsPlaceOf(int folderIndex, int imageIndex, const QString& path) {
  const QString own = ImagePath(folderIndex, imageIndex);
  return !own.isEmpty() && IsOneName(own, path);
}

bool CardLink::KeepsImageAt(const QString& path) {
  return std::any_of(folders_.begin(), folders_.end(), [&](const CardFolder& folder) {
    return IsSameFile(folder.Path, FolderOfPath(path)) &&
           std::any_of(folder.Images.begin(), folder.Images.end(), [&](const QString& name) {
             return IsOneName(JoinPath(folder.Path, name), path);
           });
  });
}

QStringList RemovableVolumes() {
  QStringList folders;
  for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
    const QString root = volume.rootPath();
    if (volume.isValid() && volume.isReady() &&
        (root.startsWith(QLatin1String("/media/")) ||
         root.startsWith(QLatin1String("/run/media/")))) {
      folders += root;
    }
  }
  return folders;
}

bool HoldsCardImages(const QString& folder) {
  std::error_code error;
  if (!ImagesIn(folder, error).isEmpty()) {
    return true;
  }
  const QStringList subfolders = NamesIn(folder, fs::file_type::directory, error);
  return std::any_of(subfolders.begin(), subfolders.end(), [&](const QString& name) {
    return !ImagesIn(JoinPath(folder, name), error).isEmpty();
  });
}

}  // namespace tessa
