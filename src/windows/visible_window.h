#pragma once

#include <QMainWindow>
#include <array>

#include "core/dialogs.h"
#include "open/session.h"

namespace tessa {

class PicbufWidget;

/// The visible-light picture of the open image, at once or twice its size. Works on a copy of the
/// session's picture, so it stays whole while the next image loads.
class VisibleWindow : public QMainWindow {
  Q_OBJECT

 public:
  VisibleWindow(Session& session, Dialogs& dialogs, QWidget* parent);
  ~VisibleWindow() override;

  void SetWindowLanguage();

 Q_SIGNALS:
  /// A command left a notice in the records.
  void Told();

 protected:
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  struct Entry {
    QAction* Action = nullptr;
    int TextId = 0;
    const char* DefaultText = "";
    const char* Suffix = "";
  };

  void MakeMenus();
  QAction* AddEntry(QMenu* menu, const char* name, int textId, const char* defaultText,
                    const char* suffix, std::function<void()> run);
  QMenu* AddMenu(QMenu* parent, const char* name, int textId, const char* defaultText);
  void Zoom(int factor);

  Session& session_;
  Dialogs& dialogs_;
  Picbuf buffer_;
  PicbufWidget* picture_ = nullptr;
  std::vector<Entry> entries_;
  std::array<QAction*, 2> zoomActions_{};
};

}  // namespace tessa
