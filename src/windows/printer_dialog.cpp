#include "windows/printer_dialog.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/plain_text.h"

namespace tessa {

PrinterDialog::PrinterDialog(const QStringList& printers, const QString& preselected,
                             const Strings& words, QWidget* parent)
    : QDialog(parent), list_(new QListWidget(this)) {
  setObjectName(QStringLiteral("frmPrinter"));
  setWindowTitle(words.LangString(234, "Select Printer"));
  list_->setObjectName(QStringLiteral("List1"));
  list_->setAccessibleName(windowTitle());
  const auto add = [&](const QString& text, const QString& name) {
    auto* const item = new QListWidgetItem(OneLine(text), list_);
    item->setData(Qt::UserRole, name);
    if (name == preselected) {
      list_->setCurrentItem(item);
    }
  };
  for (const QString& printer : printers) {
    add(printer, printer);
  }
  add(words.LangString(590, "PDF file"), PdfFile());
  if (list_->currentRow() < 0) {
    list_->setCurrentRow(list_->count() - 1);
  }
  connect(list_, &QListWidget::itemDoubleClicked, this, &PrinterDialog::TakeSelected);

  const auto button = [&](const char* name, int id, const char* text) {
    auto* const made = new QPushButton(words.LangString(id, text), this);
    made->setObjectName(QString::fromLatin1(name));
    return made;
  };
  QPushButton* const ok = button("Command1", 200, "OK");
  QPushButton* const cancel = button("Command2", 110, "Cancel");
  ok->setDefault(true);
  connect(ok, &QPushButton::clicked, this, &PrinterDialog::TakeSelected);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  auto* const ending = new QHBoxLayout;
  ending->addStretch();
  ending->addWidget(ok);
  ending->addWidget(cancel);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(list_, 1);
  layout->addLayout(ending);
  list_->setFocus();
}

void PrinterDialog::TakeSelected() {
  const QListWidgetItem* const selected = list_->currentItem();
  chosenPrinter_ = selected == nullptr ? QString() : selected->data(Qt::UserRole).toString();
  accept();
}

}  // namespace tessa
