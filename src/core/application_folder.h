#pragma once

#include <QString>
#include <memory>

#include "core/private_folder.h"

namespace tessa {

/// Where the program keeps its own files. Owns the folder for temporary files and removes it at the
/// end.
class ApplicationFolder {
 public:
  /// `writable`: where settings go. `installed`: where read-only data of the installation stands.
  ApplicationFolder(QString writable, QString installed);

  /// The usual choice: the executable's folder if it can be written, else a folder of the user's.
  /// The folder itself is only made when something is written to it.
  static ApplicationFolder ForExecutable(const QString& executablePath);

  const QString& Path() const { return writable_; }
  /// Full path of the program's own file `name`: the writable one if it exists, else the installed.
  QString FindForReading(const QString& name) const;
  /// A folder that belongs to this process alone, made when first asked for (PrivateFolder); ends
  /// in no separator.
  /// Throws StepFailure when it cannot be made.
  QString TemporaryPath();
  /// Full path in TemporaryPath() for a file of this process, whose name may be any: it is kept, so
  /// that the file goes with the folder even if this process is killed. Throws StepFailure, also
  /// for a name with a separator.
  QString TemporaryFile(const QString& name);

 private:
  QString writable_;
  QString installed_;
  std::unique_ptr<PrivateFolder> temporary_;
};

}  // namespace tessa
