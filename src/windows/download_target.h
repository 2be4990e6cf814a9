#pragma once

#include <QFileSystemModel>
#include <QTimer>
#include <QWidget>

#include "core/language_strings.h"

class QComboBox;
class QLabel;

namespace tessa {

class FolderPanel;

/// The folder that a download goes into. It stays what the user chose until the user chooses
/// another, whatever becomes of the folders on the disk meanwhile; what is wrong with it stands
/// beside it in words.
class DownloadTarget : public QWidget {
  Q_OBJECT

 public:
  /// Shows `path` and writes what the user chooses into it; both references outlive the widget.
  DownloadTarget(QString& path, const QStringList& recentFolders, const Strings& words,
                 QWidget* parent);

  void Use(const QString& folder);
  /// A folder that keys have just run to is chosen at once.
  void Settle();
  /// Why nothing can be written there; empty when it can.
  QString Fault() const;
  /// Shows the chosen folder in the tree again.
  void KeepFolder();
  /// Brings the chosen folder into the tree's view.
  void ScrollToFolder();
  /// What can have the focus, as drawn.
  QWidgetList FocusOrder() const;

 Q_SIGNALS:
  void Changed();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void MakeControls();
  void TakeChoice(const QString& folder);
  void Ask();
  void ShowFolder();
  void ShowPlace();
  void ShowFault();
  void ShowTreeFocus();

  QString& path_;
  const Strings& words_;
  QFileSystemModel folders_;
  QString current_;          // The tree's line before some vanished.
  bool isUsersAct_ = false;  // What moves the tree's line.
  QTimer look_;              // Folders come and go without a word.
  QLabel* shown_ = nullptr;
  QLabel* fault_ = nullptr;
  QWidget* choose_ = nullptr;
  FolderPanel* panel_ = nullptr;
  QComboBox* places_ = nullptr;
};

/// The colour of words about a failure; light on dark windows.
QColor FaultColour(const QPalette& colours);

/// A label with a middle that goes when there is no room.
QLabel* MakeElided(const char* name, QWidget* parent);
QLabel* MakeHeading(const QString& text, QWidget* parent);

}  // namespace tessa
