#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QTimer>
#include <memory>

#include "camera/camera_download.h"
#include "camera/card_link.h"
#include "core/user_settings.h"
#include "open/session.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace tessa {

class DownloadOptionsPanel;
class DownloadPreview;
class DownloadTarget;

/// frmDownLoad: brings the images of a memory card into a folder, as they are and as pictures.
/// Shows the state of the engine's CameraDownload and writes the user's choices into its options.
/// The open image is not touched.
class DownloadWindow : public QDialog {
  Q_OBJECT

 public:
  /// Session and settings outlive the window. Without a remembered folder, `search` names the
  /// places where a card may be.
  DownloadWindow(Session& session, UserSettings& user, CardLink::Search search, QWidget* parent);
  ~DownloadWindow() override;

  CameraDownload& Engine() { return *engine_; }
  /// Takes another folder as the card, remembers it and reads it.
  void UseCardFolder(const QString& folder);
  /// Takes another folder to put the files into.
  void UseTarget(const QString& folder);

  /// While images come in, ends that and stays. What else the camera does is waited for.
  void done(int result) override;

 protected:
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  class Watcher;
  class Asker;
  /// Keeps account of what its camera was asked for.
  class CountedCard : public CardLink {
   public:
    using CardLink::CardLink;
    bool DownloadImage(int folderIndex, int imageIndex, const QString& targetPath) override;
    bool DeleteAllImages() override;

    int Brought = 0;
    bool IsDeleteFailed = false;
  };

  // download_window_parts.cpp
  void MakeControls();
  QPushButton* MakeButton(const char* name, const QString& caption);
  QLayout* MakeCard();
  QLayout* MakeFormats();
  QLayout* MakeEnding();
  QCheckBox* MakeFormat(const char* name, const char* caption, int& value);
  void OrderFocus();
  void AssignLetters();
  QStringList RecentFolders() const;

  // download_window.cpp
  void BringIntoLine();
  void ShowStatus();
  void ShowFolders();
  void ShowEnabled();
  void ShowFormats();
  void ShowQualityColour();
  void dwnCheckOptions();
  void Unfold(bool unfolded);
  void ShowPreview();
  QString PreviewPath() const;
  void Reconnect();
  void AskForCardFolder();
  /// Downloads unless the target folder is in no state to take files.
  void Download(void (CameraDownload::*call)());
  void DeleteAll();
  void ReadListAnew();
  /// Runs a call of the engine, then what was put off meanwhile.
  void Run(void (CameraDownload::*call)());

  Session& session_;
  UserSettings& user_;
  CountedCard card_;
  DownloadConversion conversion_;
  std::unique_ptr<Watcher> watcher_;
  std::unique_ptr<Asker> asker_;
  std::unique_ptr<Dialogs> dialogs_;
  std::unique_ptr<CameraDownload> engine_;
  QTimer previewTimer_;
  bool firstActivate_ = true;
  bool isRunning_ = false;   // A call of the engine.
  bool isLeaving_ = false;   // The window is to close once the call is over, ...
  bool isQuitting_ = false;  // ... and the program with it.
  bool showsBusyPointer_ = false;
  QString refusal_;  // Why nothing was downloaded; in place of the status.
  QString account_;  // What the last run brought.

  QWidget* choices_ = nullptr;  // Everything that is kept from the user during a call.
  QLabel* cardPath_ = nullptr;
  QPushButton* choose_ = nullptr;
  QPushButton* reconnect_ = nullptr;
  QComboBox* cameraFolders_ = nullptr;
  QLabel* imageCount_ = nullptr;
  QLabel* selectedCount_ = nullptr;
  DownloadTarget* target_ = nullptr;
  QCheckBox* sit_ = nullptr;
  QCheckBox* bmp_ = nullptr;
  QCheckBox* jpeg_ = nullptr;
  QLabel* qualityLabel_ = nullptr;
  QLineEdit* quality_ = nullptr;
  QWidget* pictureSide_ = nullptr;  // Options and preview.
  DownloadOptionsPanel* options_ = nullptr;
  DownloadPreview* preview_ = nullptr;
  QLabel* status_ = nullptr;
  QLabel* fault_ = nullptr;
  QProgressBar* percent_ = nullptr;
  QPushButton* download_ = nullptr;
  QPushButton* downloadAll_ = nullptr;
  QPushButton* deleteAll_ = nullptr;
  QPushButton* abort_ = nullptr;
  QPushButton* close_ = nullptr;
};

}  // namespace tessa
