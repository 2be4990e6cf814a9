#pragma once

#include <QDir>
#include <QPushButton>
#include <QTimer>

#include "formats/tmp_image.h"
#include "test_main_window.h"
#include "windows/browser_window.h"
#include "windows/tile_grid.h"

namespace tessa::testing {

/// Answers with one letter a message (y, n, c) and with one path for a file.
class Script : public ScriptedDialogs {
 public:
  Script() : ScriptedDialogs(QString()) {}
  Answer ShowMessage(const Message& message) override {
    Told.push_back((message.Title + QLatin1Char('|') + message.Text).toStdString());
    Asked(message);
    const std::size_t at = Told.size() - 1;
    const char answer = at < Answers.size() ? Answers[at] : 'y';
    return answer == 'y' ? Answer::kYes : answer == 'n' ? Answer::kNo : Answer::kCancel;
  }
  std::optional<QString> AskSaveFile(const SaveFileQuestion& question) override {
    AskedSave = question.Suggestion;
    return SaveTo;
  }
  std::string Answers;
  std::optional<QString> SaveTo;
  std::vector<std::string> Told;
  std::function<void(const Message&)> Asked = [](const Message&) {};
};

/// Opens the browser from the main window on a folder of its own.
class BrowserTest : public MainWindowTest {
 protected:
  BrowserTest() {
    QDir().mkpath(Images());
    session_.Words.ReadTable(ReadAll(QStringLiteral(TESSA_SOURCE_FOLDER "/resources/strings.tsv")));
    session_.Settings.TargetFolder = folder_.Path(QString());
  }
  QString Images() const { return folder_.Path(QStringLiteral("images")); }
  /// Opens the browser from the main window, runs `work` in it, and closes what is still open.
  void Browse(const std::function<void(BrowserWindow&)>& work) {
    session_.Settings.LastFolder = Images() + QLatin1Char('/');
    bool ran = false;
    QTimer::singleShot(0, window_.get(), [&] {
      auto* const browser = qobject_cast<BrowserWindow*>(QApplication::activeModalWidget());
      ASSERT_NE(browser, nullptr);
      work(*browser);
      ran = true;
      if (browser->isVisible()) {
        browser->reject();
      }
    });
    Trigger("mnuLoadThumb");
    EXPECT_TRUE(ran);
  }
  static Script& Answering(BrowserWindow& browser, const char* answers) {
    auto script = std::make_unique<Script>();
    Script& kept = *script;
    kept.Answers = answers;
    browser.SetDialogs(std::move(script));
    return kept;
  }
  static void Click(BrowserWindow& browser, const char* button) {
    In<QPushButton>(browser, button).click();
  }
  template <typename Widget>
  static Widget& In(QWidget& window, const char* name) {
    auto* const found = window.findChild<Widget*>(QString::fromLatin1(name));
    EXPECT_NE(found, nullptr) << name;
    return *found;
  }
  static TileGrid& Grid(BrowserWindow& browser) { return In<TileGrid>(browser, "TileGrid"); }
  static QRgb BackgroundOf(TileWidget& tile) { return tile.grab().toImage().pixel(3, 3); }
};

}  // namespace tessa::testing
