#pragma once

#include <QDialog>

#include "core/progress.h"
#include "open/session.h"
#include "sequence/convert_frames.h"

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;

namespace tessa {

/// Turns chosen frames of the open sequence into files beside it, named by a prefix.
class SaveSequenceDialog : public QDialog {
  Q_OBJECT

 public:
  SaveSequenceDialog(Session& session, Progress& progress, QWidget* parent);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void MakeControls();
  void Arrange();
  void FillNames();
  void PrefixChanged();
  void MarkExisting();
  void ShowHint();
  FrameFormat Format() const;
  void OptionChosen();
  void SelectionChanged();
  void Convert();

  Session& session_;
  Progress& progress_;
  QLineEdit* prefix_ = nullptr;
  QRadioButton* toBmp_ = nullptr;
  QRadioButton* toTxi_ = nullptr;
  QListWidget* names_ = nullptr;
  QPushButton* selectAll_ = nullptr;
  QPushButton* selectNone_ = nullptr;
  QPushButton* convert_ = nullptr;
  QPushButton* close_ = nullptr;
  QLabel* status_ = nullptr;
  std::vector<FrameOutput> outputs_;  // Row for row what the list shows.
};

}  // namespace tessa
