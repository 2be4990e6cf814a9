#include "core/application_folder.h"

#include <QDir>
#include <QStandardPaths>
#include <utility>

#include "core/file_access.h"
#include "core/path_bytes.h"

namespace tessa {

ApplicationFolder::ApplicationFolder(QString writable, QString installed)
    : writable_(std::move(writable)), installed_(std::move(installed)) {}

ApplicationFolder ApplicationFolder::ForExecutable(const QString& executablePath) {
  const QString own = FolderOfPath(AbsolutePath(executablePath));
  // The data stand beside the program where it was built, and in a folder of their own where it was
  // installed.
  const bool dataBeside = PathExists(own + QStringLiteral("/palette.dta"));
  const QString installed =
      dataBeside ? own : QDir::cleanPath(own + QStringLiteral("/../share/tessaview"));
  if (IsWritable(own)) {
    return {own, installed};
  }
  const QString users = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                        QStringLiteral("/tessaview");
  return {users, installed};
}

QString ApplicationFolder::FindForReading(const QString& name) const {
  const QString own = writable_ + QLatin1Char('/') + name;
  return PathExists(own) ? own : installed_ + QLatin1Char('/') + name;
}

QString ApplicationFolder::TemporaryPath() {
  if (temporary_ == nullptr) {
    temporary_ = PrivateFolder::MakeInUsualPlace();
  }
  return PathFromBytes(temporary_->Path());
}

QString ApplicationFolder::TemporaryFile(const QString& name) {
  const QString folder = TemporaryPath();
  temporary_->Register(PathToBytes(name));
  return JoinPath(folder, name);
}

}  // namespace tessa
