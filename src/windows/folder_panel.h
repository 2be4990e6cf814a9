#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include "core/language_strings.h"

class QComboBox;
class QFileSystemModel;
class QTreeView;

namespace tessa {

/// A list of places (home, recent folders, mounted cards) and the tree of folders below it, of
/// which one is chosen.
class FolderPanel : public QWidget {
  Q_OBJECT

 public:
  /// `places` and `tree` are the object names of the two controls. `model` outlives the panel.
  FolderPanel(const char* places, const char* tree, QFileSystemModel& model, QWidget* parent);

  /// Fills the list of places; folders that are not there are left out.
  void SetPlaces(const QStringList& recentFolders, const Strings& words);
  void SetAccessibleNames(const QString& places, const QString& tree);
  /// Shows a folder as the chosen one, without a signal.
  void SetFolder(const QString& path);
  /// Takes at once what keys or clicks have just come to.
  void Settle();
  /// The chosen folder.
  const QString& Folder() const { return folder_; }
  QTreeView& Tree() { return *tree_; }

 Q_SIGNALS:
  /// The user chose another folder.
  void FolderChanged(const QString& path);
  void MenuAsked(QPoint globalPosition);

 private:
  void PlaceChosen(int position);
  void CurrentChanged(const QModelIndex& index);
  void TakeCurrent();
  void ShowPlace();

  QFileSystemModel& model_;
  QComboBox* places_;
  QTreeView* tree_;
  QElapsedTimer sinceSet_;  // A folder was chosen; invalid once the user has scrolled away.
  QTimer scroll_;           // Until rows have come to rest.
  QTimer rest_;             // Keys run past folders that nobody wants to see.
  QString folder_;
  int fixedPlaces_ = 0;  // Those behind them change with the folder.
};

}  // namespace tessa
