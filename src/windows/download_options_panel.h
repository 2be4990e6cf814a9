#pragma once

#include <QWidget>
#include <array>

#include "camera/download_options.h"
#include "core/language_strings.h"
#include "view/palettes.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace tessa {

/// sspImageOptions: how a card's images become pictures. Shows the record of options and writes
/// what the user changes straight into it.
class DownloadOptionsPanel : public QWidget {
  Q_OBJECT

 public:
  /// All outlive the panel.
  DownloadOptionsPanel(DownloadOptions& options, const Palettes& palettes, const Strings& words,
                       QWidget* parent);

  /// Brings the controls into line with the record.
  void ShowOptions();
  /// What can have the focus, as drawn.
  QWidgetList FocusOrder() const;

 Q_SIGNALS:
  /// The user changed something.
  void Changed();

 private:
  QRadioButton* MakeRadio(const QString& name, int textId, const char* text, QWidget* parent);
  QCheckBox* MakeCheck(const QString& name, const QString& text, int& value);
  QLayout* MakePaletteRow();
  QWidget* MakeScale();
  QWidget* MakeLimits();
  QLayout* MakeChecks();
  void ShowLimits();
  /// Tells in words what limits that are none come to.
  void ShowLimitWords();

  DownloadOptions& options_;
  const Palettes& palettes_;
  const Strings& words_;
  QComboBox* palette_ = nullptr;
  std::array<QRadioButton*, 3> scales_{};
  std::array<QRadioButton*, 2> units_{};
  QWidget* custom_ = nullptr;
  QLineEdit* minimum_ = nullptr;
  QLineEdit* maximum_ = nullptr;
  QLabel* limitWords_ = nullptr;
  QCheckBox* bar_ = nullptr;
  std::array<QCheckBox*, 6> overlays_{};
};

}  // namespace tessa
