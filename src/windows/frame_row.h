#pragma once

#include <QWidget>
#include <vector>

#include "open/session.h"
#include "windows/command.h"

class QLabel;
class QToolButton;

namespace tessa {

/// The row of buttons that steps through the frames of a sequence. Shows the session's records.
class FrameRow : public QWidget {
  Q_OBJECT

 public:
  FrameRow(const Session& session, QWidget* parent);

  void BringIntoLine();
  void SetWindowLanguage();
  /// Draws the icons anew in the colours of the desktop.
  void ShowIcons();

 Q_SIGNALS:
  void Pressed(CommandId command);

 private:
  const Session& session_;
  QLabel* frameText_ = nullptr;
  std::vector<QToolButton*> buttons_;
};

}  // namespace tessa
