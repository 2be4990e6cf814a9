#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QFileSystemModel>
#include <QFileSystemWatcher>
#include <QTimer>
#include <memory>
#include <optional>

#include "browser/contact_sheet.h"
#include "browser/sheet_printer.h"
#include "browser/thumbnail_pages.h"
#include "browser/transfer.h"
#include "core/dialogs.h"
#include "core/user_settings.h"
#include "open/session.h"
#include "windows/folder_icons.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;

namespace tessa {

class FolderPanel;
class NotePlayer;
class TileGrid;

/// LoadIMG: pages of ten thumbnails of one folder. The user picks one to be opened, looks at its
/// facts, plays its note, and selects files. Shows what ThumbnailPages says; the open image is not
/// touched.
class BrowserWindow : public QDialog {
  Q_OBJECT

 public:
  /// All outlive the window. `player` may be null: then nothing is heard.
  BrowserWindow(Session& session, BrowserMemory& memory, UserSettings& user, NotePlayer* player,
                QWidget* parent);
  ~BrowserWindow() override;

  /// What is to be opened, once the window was left; nothing after "Close".
  const std::optional<ChosenImage>& Chosen() const { return chosen_; }
  /// Position in the palette list.
  int Palette() const;

  ThumbnailPages& Pages() { return pages_; }
  void SetWindowLanguage();
  /// Replaces the platform's dialogs, for tests.
  void SetDialogs(std::unique_ptr<Dialogs> dialogs) { dialogs_ = std::move(dialogs); }
  /// Replaces the system's printers, for tests.
  void SetPrinters(std::unique_ptr<SheetPrinter> printers) { printers_ = std::move(printers); }

  void done(int result) override;

 protected:
  void showEvent(QShowEvent* event) override;
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // browser_window_parts.cpp
  void MakeControls();
  QPushButton* MakeButton(const char* name, void (BrowserWindow::*clicked)());
  QWidget* MakeFolderSide();
  QWidget* MakePageSide();
  QLayout* MakePageRow();
  QLayout* MakeEnding();
  void Connect();
  void FillLists();
  void SetCaptions();

  // browser_window.cpp
  void Activated();
  void ChangeFolder(const QString& folder);
  void ChangeFilter(int index);
  void ChangePalette();
  void ReadAgain();
  void FolderStirred();
  void BringIntoLine();
  void ShowPageList();
  void ShowTiles();
  void ShowSelection();
  void ShowLoading(int tile, int count, const QString& name);
  const ColourTable& Colours() const;
  QString TipOf(const ThumbnailPages::Place& place) const;
  QString MissingWords(const ThumbnailPages::Place& place) const;
  void Say(const QString& text);
  void SayUnreadable(const QString& folder);

  // browser_window_tiles.cpp
  void Pick(int tile);
  void OpenTile(int tile);
  void ShowTileMenu(int tile, bool onPicture, QPoint at);
  void ShowInfo(int tile);
  /// Of the tile that the keys are at.
  void ShowInfoOfCurrent();
  void PlayTile(int tile);
  void LoadSelected();
  void SelectAll();
  void ResetAll();
  void ShowFirst();
  void ShowPrevious();
  void ShowNext();
  void ShowLast();
  void LeaveWith(std::optional<ChosenImage> chosen);
  void TileButton();
  void ShowSound();

  // browser_window_transfer.cpp
  using Operation = int (*)(const TransferRequest&, const TransferSurroundings&);
  void CopySelected();
  void TransferSelected();
  void DeleteSelected();
  void Run(Operation operation);
  void SourceChanged(int page);
  void ShowRun(const TransferStatus& status);
  void ShowTransferButtons();

  // browser_window_print.cpp
  void PrintPage();
  QString AskPrinter();
  QString AskPdfName();
  Sheet PageAsSheet();
  QImage PrintedPicture(const ThumbnailPages::Place& place) const;
  void ShowPrinting(const QString& text, int percent);
  void TellPrintFailure(const QString& reason);

  // browser_window_folders.cpp
  void ShowFolderMenu(QPoint at);
  void CreateTargetFolder();
  void RenameTargetFolder();
  void Inform(int textId, const char* defaultText);

  Session& session_;
  UserSettings& user_;
  NotePlayer* player_;
  std::function<void()> formerChanged_;  // Of the player, put back at the end.
  std::unique_ptr<Dialogs> dialogs_;
  std::unique_ptr<SheetPrinter> printers_;
  ThumbnailPages pages_;
  std::optional<ChosenImage> chosen_;
  FolderIcons folderIcons_;
  QFileSystemModel folders_;
  QFileSystemWatcher watcher_;
  QTimer stirred_;  // Until the folder on show has come to rest.
  QElapsedTimer loadingClock_;
  bool shown_ = false;
  bool running_ = false;  // Files are being copied, moved or deleted.
  bool formLoading_ = true;

  FolderPanel* source_ = nullptr;  // Drive1, Dir1
  FolderPanel* target_ = nullptr;  // Drive2, Dir2
  TileGrid* grid_ = nullptr;
  QComboBox* filters_ = nullptr;   // Combo2
  QComboBox* palettes_ = nullptr;  // Combo1
  QComboBox* pageList_ = nullptr;  // Combo3
  QLabel* strip_ = nullptr;        // Picbuf1
  QLabel* path_ = nullptr;         // SSPanel2
  QLabel* heading_ = nullptr;      // SSPanel15
  QLabel* pageLabel_ = nullptr;    // SSPanel11
  QLabel* status_ = nullptr;       // SSPanel5
  QProgressBar* gauge_ = nullptr;  // SSPanel6
  QLabel* fileText_ = nullptr;     // SSPanel14
  QLabel* counts_ = nullptr;
  QPushButton* load_ = nullptr;       // Command1
  QPushButton* close_ = nullptr;      // Command2
  QPushButton* first_ = nullptr;      // Command3
  QPushButton* previous_ = nullptr;   // Command4
  QPushButton* next_ = nullptr;       // Command5
  QPushButton* last_ = nullptr;       // Command6
  QPushButton* print_ = nullptr;      // Command7
  QPushButton* copy_ = nullptr;       // Command8
  QPushButton* transfer_ = nullptr;   // Command9
  QPushButton* delete_ = nullptr;     // Command10
  QPushButton* selectAll_ = nullptr;  // Command11
  QPushButton* resetAll_ = nullptr;   // Command12
  QPushButton* play_ = nullptr;       // Command13
  QCheckBox* embed_ = nullptr;        // chkEmbed
};

}  // namespace tessa
