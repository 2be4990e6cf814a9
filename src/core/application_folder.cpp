#include "core/application_folder.h"

#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <cerrno>
#include <csignal>
#include <utility>

#include "core/steps.h"

namespace tessa {
namespace {

/// Removes the folders of processes that ended without doing so themselves.
void RemoveLeftovers(const QString& folder) {
  const QStringList names =
      QDir(folder).entryList({QStringLiteral("tmp-*-*")}, QDir::Dirs | QDir::NoSymLinks);
  for (const QString& name : names) {
    bool isNumber = false;
    const int owner = name.section(QLatin1Char('-'), 1, 1).toInt(&isNumber);
    if (isNumber && owner > 0 && ::kill(owner, 0) != 0 && errno == ESRCH) {
      QDir(folder + QLatin1Char('/') + name).removeRecursively();
    }
  }
}

}  // namespace

ApplicationFolder::ApplicationFolder(QString writable, QString installed)
    : writable_(std::move(writable)), installed_(std::move(installed)) {}

ApplicationFolder ApplicationFolder::ForExecutable(const QString& executablePath) {
  const QString own = QFileInfo(executablePath).absolutePath();
  // The data stand beside the program where it was built, and in a folder of their own where it was
  // installed.
  const bool dataBeside = QFile::exists(own + QStringLiteral("/palette.dta"));
  const QString installed =
      dataBeside ? own : QDir::cleanPath(own + QStringLiteral("/../share/tessaview"));
  if (QFileInfo(own).isWritable()) {
    return {own, installed};
  }
  const QString users = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                        QStringLiteral("/tessaview");
  return {users, installed};
}

QString ApplicationFolder::FindForReading(const QString& name) const {
  const QString own = writable_ + QLatin1Char('/') + name;
  return QFile::exists(own) ? own : installed_ + QLatin1Char('/') + name;
}

QString ApplicationFolder::TemporaryPath() {
  if (temporary_ == nullptr) {
    QDir().mkpath(writable_);
    RemoveLeftovers(writable_);
    auto made = std::make_unique<QTemporaryDir>(writable_ +
                                                QStringLiteral("/tmp-%1-XXXXXX").arg(::getpid()));
    if (!made->isValid()) {
      throw StepFailure("no folder for temporary files: " + made->errorString().toStdString());
    }
    temporary_ = std::move(made);
  }
  return temporary_->path();
}

}  // namespace tessa
