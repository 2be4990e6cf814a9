#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <span>

#include "core/session.h"

namespace tessa::testing {

/// A folder of its own for one test, gone with it.
class TestFolder {
 public:
  QString Path(const QString& name) const { return folder_.filePath(name); }

  /// Writes a file into the folder and returns its path.
  QString Write(const QString& name, std::span<const std::uint8_t> bytes) const {
    QFile file(Path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
    return file.fileName();
  }

  QStringList Names() const {
    return QDir(folder_.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  }

 private:
  QTemporaryDir folder_;
};

inline QByteArray ReadAll(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The folder of the built program, with its palette file.
inline ApplicationFolder BuiltProgramFolder() {
  const QString folder = QStringLiteral(TESSA_BINARY_FOLDER);
  return {folder, folder};
}

}  // namespace tessa::testing
