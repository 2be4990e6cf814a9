#pragma once

#include <QWidget>

#include "core/language_strings.h"
#include "core/notice.h"

class QLabel;
class QPushButton;

namespace tessa {

/// What stands in the picture's place when a file gave none: its exact name, the reason, and what
/// to do next. Shows a NoPicture; hidden without one.
class NoPicturePanel : public QWidget {
  Q_OBJECT

 public:
  explicit NoPicturePanel(QWidget* parent);

  void ShowReason(const NoPicture& reason, const Strings& words);

 Q_SIGNALS:
  void OpenRequested();

 private:
  void ShowFolder();

  QLabel* name_ = nullptr;
  QLabel* reason_ = nullptr;
  QLabel* detail_ = nullptr;
  QLabel* advice_ = nullptr;
  QPushButton* open_ = nullptr;
  QPushButton* showFolder_ = nullptr;
  QString folder_;
};

}  // namespace tessa
