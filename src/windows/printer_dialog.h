#pragma once

#include <QDialog>

#include "core/language_strings.h"

class QListWidget;

namespace tessa {

/// frmPrinter: where a page is to be printed. The system's printers, and last a PDF file.
class PrinterDialog : public QDialog {
  Q_OBJECT

 public:
  /// What stands for the file as a printer's name; the system's own names have no blanks.
  static QString PdfFile() { return QStringLiteral("PDF file"); }

  /// `preselected` is a name of `printers` or PdfFile(); any other preselects the file.
  PrinterDialog(const QStringList& printers, const QString& preselected, const Strings& words,
                QWidget* parent);

  /// Device name, or PdfFile(); empty when the user cancelled.
  const QString& ChosenPrinter() const { return chosenPrinter_; }

 private:
  void TakeSelected();

  QListWidget* list_;
  QString chosenPrinter_;
};

}  // namespace tessa
