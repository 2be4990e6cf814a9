#pragma once

#include <QWidget>
#include <optional>

#include "core/progress.h"
#include "open/session.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;

namespace tessa {

class RangeSliderWidget;
class ScaleWidget;

/// Everything about the range of temperatures on show, read as one instrument: entered range,
/// slider with its outer limits, palette strip with scale.
class RangePanelWidget : public QWidget {
  Q_OBJECT

 public:
  RangePanelWidget(Session& session, Progress& progress, QWidget* parent);

  void BringIntoLine();
  bool eventFilter(QObject* watched, QEvent* event) override;
  void SetWindowLanguage();

 Q_SIGNALS:
  /// The range on show changed; pictures and panels have to be shown anew.
  void RangeChanged();

 private:
  void MakeEntries();
  void MakeSlider();
  void Arrange();
  void Connect();
  QLineEdit* MakeBox(const char* name);
  void ShowBoxes();
  void ShowToggle();
  /// Runs an engine procedure of the range control and shows what came of it.
  template <typename Action>
  void Run(Action&& action);

  Session& session_;
  Progress& progress_;
  QToolButton* toggle_ = nullptr;
  QLabel* maximumLabel_ = nullptr;
  QLabel* minimumLabel_ = nullptr;
  QLineEdit* maximum_ = nullptr;
  QLineEdit* minimum_ = nullptr;
  QPushButton* update_ = nullptr;
  QPushButton* reset_ = nullptr;
  QLineEdit* limitMaximum_ = nullptr;
  QLineEdit* limitMinimum_ = nullptr;
  QCheckBox* autoUpdate_ = nullptr;
  RangeSliderWidget* slider_ = nullptr;
  ScaleWidget* scale_ = nullptr;
  std::optional<RangeSource> shownSource_;
};

}  // namespace tessa
