#pragma once

#include <QFrame>

#include "core/language_strings.h"
#include "core/notice.h"

class QLabel;
class QToolButton;

namespace tessa {

class ElidingLabel;

/// A line above the picture that says what happened, with a button to close it; Escape closes it
/// too. Shows a Notice and takes no room without one.
class NoticeStrip : public QFrame {
  Q_OBJECT

 public:
  explicit NoticeStrip(QWidget* parent);

  /// Shows `notice`, or nothing when it has no text.
  void ShowNotice(const Notice& notice, const Strings& words);

 Q_SIGNALS:
  /// The user has read it.
  void Dismissed();

 protected:
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void ShowColours();

  ElidingLabel* text_ = nullptr;
  QLabel* further_ = nullptr;
  QToolButton* close_ = nullptr;
  NoticeKind kind_ = NoticeKind::kQuiet;
  int generation_ = 0;  // Of the notice on show.
};

}  // namespace tessa
