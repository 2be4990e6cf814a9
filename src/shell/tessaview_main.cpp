#include <QApplication>

#include "core/session.h"
#include "shell/main_window.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("tessaview"));
  QApplication::setDesktopFileName(QStringLiteral("tessaview"));

  tessa::Session session(
      tessa::ApplicationFolder::ForExecutable(QApplication::applicationFilePath()));
  tessa::PrepareSession(session);
  tessa::ApplySettings(session);
  tessa::MainWindow window(session);
  const QString path = QApplication::arguments().value(1);
  if (!path.isEmpty()) {
    window.OpenFile(path);
  }
  window.show();
  return QApplication::exec();
}
