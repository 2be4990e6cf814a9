#include <fontconfig/fontconfig.h>

#include <QApplication>
#include <QFile>
#include <QLocale>
#include <QTimer>
#include <algorithm>
#include <clocale>
#include <iostream>
#include <span>
#include <string_view>
#include <thread>

#include "core/file_access.h"
#include "core/platform_failure.h"
#include "core/process_start.h"
#include "core/program_version.h"
#include "core/user_settings.h"
#include "core/viewer_ini.h"
#include "open/command_line.h"
#include "open/session.h"
#include "sound/note_player.h"
#include "widgets/icons.h"
#include "widgets/viewer_style.h"
#include "windows/main_window.h"
#include "windows/quit_signals.h"
#include "windows/splash_window.h"
#include "windows/wave_device.h"

namespace {

/// How long the splash stands when nothing waits to be opened.
constexpr int kSplashMilliseconds = 350;

/// Several arguments are one path with blanks in it where there is such a file.
bool NamesSeveralFiles(std::span<const char* const> arguments) {
  return arguments.size() > 1 && !tessa::PathExists(tessa::PendingFileFromArguments(arguments)) &&
         tessa::PathExists(tessa::PendingFileFromArguments(arguments.first(1)));
}

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

/// Answers that need neither a display nor a session.
bool AnswersAtOnce(int argc, char** argv) {
  const std::string_view first = argc > 1 ? argv[1] : "";
  if (first == "--version") {
    std::cout << "tessaview " << tessa::ProgramVersion().toStdString() << '\n';
    return true;
  }
  if (first == "--help" || first == "-h") {
    std::cout << "Usage: tessaview [FILE]\n"
                 "Shows infrared images and sequences: SIT, TMP, RTI, TXI, BMP, TIFF, JPEG, BIN.\n"
                 "\n"
                 "  -h, --help     print this and exit\n"
                 "      --version  print the version and exit\n"
                 "\n"
                 "A file whose name is one of these is opened as ./NAME.\n";
    return true;
  }
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  tessa::PrepareProcess();
  if (AnswersAtOnce(argc, argv)) {
    return 0;
  }
  // Reading the settings of fonts takes as long as opening the display, so both are done at a time.
  // The locale, which the settings' numbers are read in, is the one that Qt will set.
  std::setlocale(LC_ALL, "");
  std::thread fonts([] { FcInit(); });
  tessa::BeginPlatformStart("tessaview");
  QApplication application(argc, argv);  // Takes its own arguments away.
  tessa::EndPlatformStart();
  QApplication::setStyle(new tessa::ViewerStyle);
  QApplication::setApplicationName(QStringLiteral("tessaview"));
  QApplication::setDesktopFileName(QStringLiteral("tessaview"));
  const tessa::QuitSignals quitSignals;

  tessa::Session session(
      tessa::ApplicationFolder::ForExecutable(QApplication::applicationFilePath()));
  tessa::UserSettings user;
  std::span<const char* const> arguments(argv, static_cast<std::size_t>(argc));
  arguments = arguments.subspan(std::min<std::size_t>(1, arguments.size()));
  const bool several = NamesSeveralFiles(arguments);
  StartSession(session, user, several ? arguments.first(1) : arguments);

  fonts.join();
  // A named file is shown at once; the splash would only delay it.
  std::unique_ptr<tessa::SplashWindow> splash;
  if (session.PendingCommandFile.isEmpty()) {
    splash = std::make_unique<tessa::SplashWindow>(session.Words);
    splash->show();
  }
  tessa::WaveDevice viewDevice(session.Words);
  tessa::WaveDevice tileDevice(session.Words);
  tessa::NotePlayer player(session, viewDevice, tileDevice);
  tessa::MainWindow window(session, user);
  window.SetPlayer(&player);
  window.SetFurtherFilesNamed(several);
  QTimer handOver;
  handOver.setSingleShot(true);
  QObject::connect(&handOver, &QTimer::timeout, &window, [&] {
    window.show();
    splash.reset();
  });
  handOver.start(splash ? kSplashMilliseconds : 0);
  return QApplication::exec();
}
