#pragma once

#include <QMainWindow>
#include <functional>
#include <memory>
#include <vector>

#include "core/dialogs.h"
#include "core/progress.h"
#include "core/session.h"

class QActionGroup;
class QComboBox;
class QLabel;
class QProgressBar;
class QRadioButton;
class QToolButton;

namespace tessa {

class ViewPictWidget;

/// The frame of the application: menus, tool panel, view and status bar. Shows the session's
/// records; every user action goes through the engine and is followed by BringIntoLine.
class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  explicit MainWindow(Session& session);
  ~MainWindow() override;

  /// Opens a file by its exact path.
  void OpenFile(const QString& path);
  /// Brings every control into line with the records.
  void BringIntoLine();
  ViewPictWidget& View() { return *view_; }

 protected:
  void changeEvent(QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  /// One command of the program: menus, tool panel, shortcuts and tests all come from the table of
  /// these.
  struct Command {
    QString Id;  // objectName of the action.
    QString Text;
    QString Icon;
    QList<QKeySequence> Shortcuts;
    std::function<void()> Run;
    std::function<bool()> Enabled;  // Empty: always.
  };

  std::vector<Command> MakeCommands();
  void MakeActions();
  void MakeMenus();
  void MakeToolPanel();
  QWidget* MakeDisplayPanel();
  void MakeStatusBar();
  QAction* Action(const char* id) const;
  void ShowStatusPanels();
  void ShowPaletteList();
  void ShowIcons();
  void AskAndOpen(int filterIndex);
  void ChoosePalette(int position);
  void ReverseSelectedPalette();
  void ChooseUnit(char unit);

  Session& session_;
  std::unique_ptr<Progress> progress_;
  std::unique_ptr<Dialogs> dialogs_;
  std::vector<Command> commands_;
  ViewPictWidget* view_ = nullptr;
  QComboBox* paletteList_ = nullptr;
  QRadioButton* celsius_ = nullptr;
  QRadioButton* fahrenheit_ = nullptr;
  QToolButton* openButton_ = nullptr;
  std::array<QLabel*, ViewState::kStatusPanels + 1> statusPanels_{};
  QProgressBar* loadProgress_ = nullptr;
  QLabel* loadingText_ = nullptr;
  ColourTable shownPalette_{};  // Of the swatch of the selected list entry.
};

}  // namespace tessa
