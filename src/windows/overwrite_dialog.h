#pragma once

#include <QDialog>

#include "core/language_strings.h"

class QLabel;
class QPushButton;

namespace tessa {

/// frmOverWrite: asks what becomes of a file that stands in the way of a downloaded one.
class OverwriteDialog : public QDialog {
  Q_OBJECT

 public:
  OverwriteDialog(const QString& fileName, const Strings& words, QWidget* parent);

  /// 1 Yes, 2 Yes to All, 3 No, 4 No to All, 5 Cancel; -1 when the dialog was closed without any.
  int Reply() const { return reply_; }

  void SetFileName(const QString& name);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QPushButton* MakeButton(const char* name, const QString& caption, int reply);
  void CentreName();

  QWidget* line_;  // Holds the two labels that are centred together.
  QLabel* label_;
  QLabel* name_;
  int reply_ = -1;
};

}  // namespace tessa
