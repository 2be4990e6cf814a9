#include "core/side_file.h"

#include <filesystem>

#include "core/path_bytes.h"

namespace tessa {

QString FindSideFile(const QString& imagePath, const QString& name) {
  namespace fs = std::filesystem;
  const QString folder = FolderOfPath(imagePath);
  const QString exact = JoinPath(folder, name);
  std::error_code error;
  if (fs::exists(fs::symlink_status(PathToBytes(exact).toStdString(), error))) {
    return exact;
  }
  QString found;
  const QString folded = name.toCaseFolded();
  fs::directory_iterator entry(PathToBytes(folder).toStdString(), error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const QString other =
        PathFromBytes(QByteArray::fromStdString(entry->path().filename().string()));
    if (other.toCaseFolded() == folded) {
      if (!found.isEmpty()) {
        return {};
      }
      found = other;
    }
  }
  return found.isEmpty() ? exact : JoinPath(folder, found);
}

}  // namespace tessa
