#pragma once

#include <QDialog>

#include "core/language_strings.h"

class QLabel;
class QPushButton;

namespace tessa {

/// Says which program and which version this is, whose it is and what it is built with.
class AboutDialog : public QDialog {
  Q_OBJECT

 public:
  AboutDialog(const Strings& words, QWidget* parent);

  void SetWindowLanguage();

 private:
  QLabel* AddLine(const char* name);

  const Strings& words_;
  QLabel* program_ = nullptr;
  QLabel* version_ = nullptr;
  QLabel* notice_ = nullptr;
  QLabel* licence_ = nullptr;
  QLabel* platform_ = nullptr;
  QPushButton* close_ = nullptr;
};

}  // namespace tessa
