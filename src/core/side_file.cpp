#include "core/side_file.h"

#include <QDir>
#include <QFileInfo>

namespace tessa {

QString FindSideFile(const QString& imagePath, const QString& name) {
  const QString folder = QFileInfo(imagePath).absolutePath() + QDir::separator();
  const QFileInfo exact(folder + name);
  if (exact.exists() || exact.isSymLink()) {
    return folder + name;
  }
  QString found;
  const QString folded = name.toCaseFolded();
  for (const QString& other : QDir(folder).entryList(QDir::AllEntries | QDir::Hidden |
                                                     QDir::System | QDir::NoDotAndDotDot)) {
    if (other.toCaseFolded() == folded) {
      if (!found.isEmpty()) {
        return {};
      }
      found = other;
    }
  }
  return folder + (found.isEmpty() ? name : found);
}

}  // namespace tessa
