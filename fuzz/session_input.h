#pragma once

#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>

#include "open/load_image.h"
#include "require.h"

/// What the entries share that take a file through the whole program.
namespace tessa::fuzz {

/// The application object that drawing texts needs, made on the first call.
inline void MakeApplication() {
  static int count = 1;
  static char name[] = "fuzz";
  static char* arguments[] = {name, nullptr};
  qputenv("QT_QPA_PLATFORM", "offscreen");
  static QGuiApplication application(count, arguments);
}

/// A folder in memory that belongs to this process alone. Removed at the end.
inline const QString& Folder() {
  struct OwnFolder {
    OwnFolder() : Path(QStringLiteral("/dev/shm/tessa-fuzz-%1").arg(::getpid())) {
      QDir().mkpath(Path);
    }
    ~OwnFolder() { QDir(Path).removeRecursively(); }
    QString Path;
  };
  static const OwnFolder folder;
  return folder.Path;
}

/// Writes `content` as the file `name` of that folder and gives its path.
inline QString WriteInput(const char* name, ByteSpan content) {
  const QString path = Folder() + QLatin1Char('/') + QLatin1String(name);
  QFile file(path);
  Require(file.open(QIODevice::WriteOnly), "the input can be written");
  file.write(reinterpret_cast<const char*>(content.data()), static_cast<qint64>(content.size()));
  return path;
}

inline ApplicationFolder InputFolder() {
  return ApplicationFolder{Folder(), Folder()};
}

/// What holds for the open image after every step.
inline void RequireGoodImage(const Session& session) {
  const OpenImage& image = session.Image;
  const Picbuf& picture = session.Buffers.Picbuf1;
  Require(image.ImageWidth == picture.BufWidth() && image.ImageHeight == picture.BufHeight(),
          "the sizes are the buffer's");
  if (image.HasTemperature) {
    Require(
        image.TempGrid.Width() == image.ImageWidth && image.TempGrid.Height() == image.ImageHeight,
        "the grid has the picture's size");
  }
  for (int row = 0; row < image.RowBuffers.Rows(); ++row) {
    for (const std::int32_t cell : image.RowBuffers.Row(row)) {
      Require(cell >= 0 && cell <= 255, "cells are palette indices");
    }
  }
}

}  // namespace tessa::fuzz
