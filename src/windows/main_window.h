#pragma once

#include <QMainWindow>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <memory>
#include <vector>

#include "browser/thumbnail_pages.h"
#include "core/dialogs.h"
#include "core/progress.h"
#include "core/user_settings.h"
#include "open/session.h"
#include "widgets/qt_words.h"
#include "windows/command.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QProgressBar;
class QRadioButton;
class QToolBar;
class QToolButton;

namespace tessa {

class ViewPictWidget;
class VisibleWindow;
class WindowProgress;
class NotePlayer;

/// The frame of the application: menus, tool panel, view and status bar. Shows the session's
/// records; every user action goes through the engine and is followed by BringIntoLine.
class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  MainWindow(Session& session, UserSettings& user);
  ~MainWindow() override;

  /// Opens a file by its exact path.
  void OpenFile(const QString& path);
  /// Brings every control into line with the records.
  void BringIntoLine();
  /// Sets every caption, list entry and tool tip in the present language.
  void SetWindowLanguage();
  /// True while an image loads that is large enough to be waited for.
  bool IsLoadingLargeFile() const;
  ViewPictWidget& View() { return *view_; }
  const std::vector<Command>& Commands() const { return commands_; }
  /// What plays notes; not owned, and alive for as long as the window. Null: nothing is heard.
  void SetPlayer(NotePlayer* player);
  /// Says, once the first file named at the start stands open, that there were more.
  void SetFurtherFilesNamed(bool named) { furtherFilesNamed_ = named; }
  /// Replaces the platform's dialogs, for tests.
  void SetDialogs(std::unique_ptr<Dialogs> dialogs) { dialogs_ = std::move(dialogs); }

 protected:
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void MakeActions();
  // The commands of each feature, in its file commands_*.cpp.
  void AddFileCommands();
  void AddLoadCommands();
  void AddSaveCommands();
  void AddCopyCommands();
  void AddViewCommands();
  void AddToolCommands();
  void AddFrameCommands();
  void AddSoundCommands();
  void AddBrowserCommands();
  void AddCameraCommands();
  void TellSoundMessage();
  void ShowSound();
  void PlayBySpaceBar();
  void Add(Command command) { commands_.push_back(std::move(command)); }
  std::function<QString()> Word(int id, const char* defaultText) const;
  void MakeMenus();
  QMenu* MakeMenu(QMenu* parent, const char* name, int textId, const char* defaultText);
  void FillRecentMenu();
  void MakeToolPanel();
  QWidget* MakeDisplayPanel();
  void MakeStatusBar();
  QAction* Action(CommandId id) const;
  void SetCaptions();
  void ShowStatusPanels();
  void ShowPaletteList();
  void ShowUnits();
  void ShowTrend();
  void ShowIcons();
  void EnableActions();
  void Activated();
  void KeepSmallestSize();
  QSize RoomOnScreen() const;
  bool DisplayIsUsable();
  void AskAndOpen(int filterIndex);
  void OpenPendingFile();
  void RememberOpened();
  void WriteRecentFiles();
  void ChoosePalette(int position);
  void ReverseSelectedPalette();
  void ChooseUnit(char unit);
  void ShowPreferences();
  void ShowAbout();
  void StepFrame(void (*procedure)(Session&, Progress&));
  void SaveFrames();
  void BrowseImages();
  void DownloadImages();
  void OpenChosen(const ChosenImage& chosen, int palette);
  void ShowImageInfo();
  void ShowVisible();
  void CloseVisibleWhenGone();

  Session& session_;
  UserSettings& user_;
  BrowserMemory browserMemory_;
  QtWords qtWords_;
  std::unique_ptr<WindowProgress> progress_;
  std::unique_ptr<Dialogs> dialogs_;
  std::vector<Command> commands_;
  std::array<QAction*, static_cast<std::size_t>(CommandId::kCount)> actions_{};
  QTimer openTimer_;    // Timer1: opens the file named on the command line.
  QStringList opened_;  // Files on their way into the list of recent ones.
  QTimer resizeTimer_;  // Timer2: the smallest size, once resizing has come to rest.
  bool shown_ = false;
  ViewPictWidget* view_ = nullptr;
  QPointer<VisibleWindow> visible_;  // Deletes itself when closed.
  QMenu* recentMenu_ = nullptr;
  QMenu* viewMenu_ = nullptr;
  QMenu* frameMenu_ = nullptr;
  QMenu* compositeMenu_ = nullptr;
  QToolBar* toolPanel_ = nullptr;
  QComboBox* paletteList_ = nullptr;
  bool furtherFilesNamed_ = false;
  bool paletteByKey_ = false;  // The user walks through the list by key.
  QLabel* paletteLabel_ = nullptr;
  QRadioButton* celsius_ = nullptr;
  QRadioButton* fahrenheit_ = nullptr;
  QToolButton* openButton_ = nullptr;
  std::array<QLabel*, ViewState::kStatusPanels + 1> statusPanels_{};
  QProgressBar* loadProgress_ = nullptr;
  QProgressBar* renderProgress_ = nullptr;
  QLabel* soundLength_ = nullptr;
  NotePlayer* player_ = nullptr;  // Not owned; null where nothing is heard.
  QString shownPlayHint_ = SoundControls().PlayHint;
  QLabel* loadingText_ = nullptr;
  QCheckBox* languageBox_ = nullptr;
  ColourTable shownPalette_{};  // Of the swatch of the selected list entry.
};

}  // namespace tessa
