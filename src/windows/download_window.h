#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QFileSystemModel>
#include <QSet>
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
class FolderPanel;

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

  /// While the camera is at work the window ends that first.
  void done(int result) override;

 protected:
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  class Watcher;
  class Asker;

  // download_window_parts.cpp
  void MakeControls();
  QPushButton* MakeButton(const char* name, const QString& caption);
  QLayout* MakeCard();
  QLayout* MakeTarget();
  QLayout* MakeFormats();
  QLayout* MakeEnding();
  QCheckBox* MakeFormat(const char* name, const char* caption, int& value);
  void FillPlaces();

  // download_window.cpp
  void BringIntoLine();
  void ShowStatus();
  void ShowFolders();
  void ShowEnabled();
  void ShowFormats();
  void dwnCheckOptions();
  void Unfold(bool unfolded);
  void ShowPreview();
  QString PreviewPath() const;
  void Reconnect();
  void AskForCardFolder();
  void AskForTarget();
  /// Runs a call of the engine, then what was put off meanwhile.
  void Run(void (CameraDownload::*call)());

  Session& session_;
  UserSettings& user_;
  CardLink card_;
  DownloadConversion conversion_;
  std::unique_ptr<Watcher> watcher_;
  std::unique_ptr<Asker> asker_;
  std::unique_ptr<Dialogs> dialogs_;
  std::unique_ptr<CameraDownload> engine_;
  QFileSystemModel folders_;
  QTimer previewTimer_;
  QSet<QChar> letters_;  // That captions are chosen with.
  bool firstActivate_ = true;
  bool isRunning_ = false;   // A call of the engine.
  bool isLeaving_ = false;   // The window is to close once the call is over, ...
  bool isQuitting_ = false;  // ... and the program with it.
  bool showsBusyPointer_ = false;

  QWidget* choices_ = nullptr;  // Everything that is kept from the user during a call.
  QLabel* cardPath_ = nullptr;
  QComboBox* cameraFolders_ = nullptr;
  QLabel* imageCount_ = nullptr;
  QLabel* selectedCount_ = nullptr;
  QLabel* targetPath_ = nullptr;
  FolderPanel* target_ = nullptr;
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
