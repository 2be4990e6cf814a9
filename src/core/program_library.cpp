#include "core/program_library.h"

#include <QCoreApplication>
#include <QLibrary>

#include "core/file_access.h"
#include "core/steps.h"

namespace tessa {

QFunctionPointer LoadProgramFunction(const char* library, const char* function) {
  const QString program = QCoreApplication::applicationDirPath() + QLatin1Char('/');
  const QString name = QLatin1String(library) + QLatin1String(".so");
  QString file = program + name;
  if (!PathExists(file)) {
    file = program + QStringLiteral(TESSA_LIBRARY_FOLDER "/") + name;
  }
  QLibrary loaded(file);
  loaded.setLoadHints(QLibrary::PreventUnloadHint);  // What it made may outlive all else.
  const QFunctionPointer found = loaded.resolve(function);
  if (found == nullptr) {
    throw StepFailure("a library of the program cannot be loaded: " +
                      loaded.errorString().toStdString());
  }
  return found;
}

}  // namespace tessa
