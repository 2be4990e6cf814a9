// The browser, from the click to painted tiles, and the tool that makes one small picture.

#include <QComboBox>
#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <stdexcept>

#include "bench_support.h"
#include "core/file_access.h"
#include "open/session.h"
#include "windows/browser_window.h"

namespace tessa {
namespace {

/// A browser on a folder of `images` SIT images, of which the first twenty are whole.
class BrowserOnFolder {
 public:
  explicit BrowserOnFolder(int images)
      : session_(ApplicationFolder{folder_.path(), folder_.path()}),
        user_(folder_.filePath(QStringLiteral("settings.ini"))) {
    constexpr int kWhole = 20;
    const Bytes whole = SitFile();
    for (int i = 0; i < images; ++i) {
      WriteWholeFile(folder_.filePath(QStringLiteral("image%1.sit").arg(i)),
                     i < kWhole ? whole : Bytes{0}, Overwrite::kRefuse);
    }
    PrepareSession(session_);
    session_.Settings.LastFolder = folder_.path();
    session_.Settings.TargetFolder = folder_.path();
  }
  std::unique_ptr<BrowserWindow> Open() {
    auto window = std::make_unique<BrowserWindow>(session_, memory_, user_, nullptr, nullptr);
    window->show();
    QCoreApplication::processEvents();  // A window that is not exposed yet paints nothing.
    window->repaint();
    return window;
  }

 private:
  QTemporaryDir folder_;
  Session session_;
  UserSettings user_;
  BrowserMemory memory_;
};

/// Memory of this process in KB.
double ResidentSize() {
  QFile file(QStringLiteral("/proc/self/statm"));
  file.open(QIODevice::ReadOnly);
  constexpr double kPage = 4.0;
  return kPage * file.readAll().split(' ').value(1).toDouble();
}

/// Ten SIT images each time, forth and back.
void TurnPage(benchmark::State& state) {
  BrowserOnFolder browser(20);
  const auto window = browser.Open();
  const auto* const next = window->findChild<QPushButton*>(QStringLiteral("Command5"));
  const auto turn = [&] {
    const char* const name = next->isEnabled() ? "Command5" : "Command4";
    window->findChild<QPushButton*>(QString::fromLatin1(name))->click();
    window->repaint();
  };
  for (int i = 0; i < 51; ++i) {
    turn();
  }
  const ThumbnailPages& pages = window->Pages();
  if (pages.CurrentPage != 2 || pages.Places.back().Content.Picture.Width != kSitWidth) {
    throw std::runtime_error("the pages were not turned");
  }
  const double before = ResidentSize();
  for (auto _ : state) {
    turn();
  }
  state.counters["KB/page"] = (ResidentSize() - before) / static_cast<double>(state.iterations());
}
BENCHMARK(TurnPage)->Unit(benchmark::kMillisecond)->MinTime(2.0);

/// From nothing to the first page on the screen.
void OpenFolderOf10000(benchmark::State& state) {
  BrowserOnFolder browser(10000);
  for (auto _ : state) {
    benchmark::DoNotOptimize(browser.Open());
    state.PauseTiming();
    QCoreApplication::processEvents();
    state.ResumeTiming();
  }
}
BENCHMARK(OpenFolderOf10000)->Unit(benchmark::kMillisecond);

/// A whole process for one picture, as file managers call it.
void ThumbnailProcess(benchmark::State& state) {
  const QTemporaryDir folder;
  const QString image = folder.filePath(QStringLiteral("a.sit"));
  WriteWholeFile(image, SitFile(), Overwrite::kRefuse);
  const QStringList arguments = {QStringLiteral("thumbnail"), image, QStringLiteral("-o"),
                                 folder.filePath(QStringLiteral("a.png")),
                                 QStringLiteral("--force")};
  for (auto _ : state) {
    if (QProcess::execute(QCoreApplication::applicationDirPath() + QStringLiteral("/tessatool"),
                          arguments) != 0) {
      throw std::runtime_error("tessatool makes no thumbnail");
    }
  }
}
BENCHMARK(ThumbnailProcess)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace tessa
