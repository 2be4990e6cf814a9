#pragma once

#include <QWidget>

#include "core/language_strings.h"

class QLabel;

namespace tessa {

/// What stands on the screen while the program starts. Goes when its owner closes it.
class SplashWindow : public QWidget {
  Q_OBJECT

 public:
  explicit SplashWindow(const Strings& words);

  void SetWindowLanguage();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  QLabel* AddLine(const char* name, double scale);

  const Strings& words_;
  QLabel* program_ = nullptr;
  QLabel* version_ = nullptr;
  QLabel* notice_ = nullptr;
};

}  // namespace tessa
