#pragma once

#include <QAbstractFileIconProvider>
#include <QApplication>
#include <QStyle>

namespace tessa {

/// Icons for trees of folders. The toolkit's own provider opens every file beside the folders to
/// tell its type, which takes long on slow disks and for ever on files that wait for data.
class FolderIcons : public QAbstractFileIconProvider {
 public:
  QIcon icon(IconType /*type*/) const override { return folder_; }
  QIcon icon(const QFileInfo& /*file*/) const override { return folder_; }
  QString type(const QFileInfo& /*file*/) const override { return {}; }

 private:
  QIcon folder_ = QApplication::style()->standardIcon(QStyle::SP_DirIcon);
};

}  // namespace tessa
