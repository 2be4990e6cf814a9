#include <QApplication>
#include <QFile>
#include <QLocale>
#include <QTimer>
#include <algorithm>
#include <span>

#include "core/platform_failure.h"
#include "core/user_settings.h"
#include "core/viewer_ini.h"
#include "open/command_line.h"
#include "open/session.h"
#include "widgets/icons.h"
#include "windows/main_window.h"
#include "windows/splash_window.h"

namespace {

/// How long the splash stands when nothing waits to be opened.
constexpr int kSplashMilliseconds = 350;

/// Language, words, settings, palettes, and the file named on the command line.
void StartSession(tessa::Session& session, const tessa::UserSettings& user,
                  std::span<const char* const> arguments) {
  tessa::RegisterResources();
  QFile table(QStringLiteral(":/strings.tsv"));
  if (table.open(QIODevice::ReadOnly)) {
    session.Words.ReadTable(table.readAll());
  }
  session.Words.SetLanguage(tessa::LanguageAtStart(user, QLocale::system().name()));
  session.Settings = tessa::ReadViewerIni(session.Folder.FindForReading(tessa::kViewerIniName));
  tessa::PrepareSession(session);
  tessa::ApplySettings(session);
  session.PendingCommandFile = tessa::PendingFileFromArguments(arguments);
}

}  // namespace

int main(int argc, char** argv) {
  tessa::BeginPlatformStart("tessaview");
  QApplication application(argc, argv);  // Takes its own arguments away.
  tessa::EndPlatformStart();
  QApplication::setApplicationName(QStringLiteral("tessaview"));
  QApplication::setDesktopFileName(QStringLiteral("tessaview"));

  tessa::Session session(
      tessa::ApplicationFolder::ForExecutable(QApplication::applicationFilePath()));
  tessa::UserSettings user;
  const std::span<const char* const> arguments(argv, static_cast<std::size_t>(argc));
  StartSession(session, user, arguments.subspan(std::min<std::size_t>(1, arguments.size())));

  // A named file is shown at once; the splash would only delay it.
  std::unique_ptr<tessa::SplashWindow> splash;
  if (session.PendingCommandFile.isEmpty()) {
    splash = std::make_unique<tessa::SplashWindow>(session.Words);
    splash->show();
  }
  tessa::MainWindow window(session, user);
  QTimer handOver;
  handOver.setSingleShot(true);
  QObject::connect(&handOver, &QTimer::timeout, &window, [&] {
    window.show();
    splash.reset();
  });
  handOver.start(splash ? kSplashMilliseconds : 0);
  return QApplication::exec();
}
