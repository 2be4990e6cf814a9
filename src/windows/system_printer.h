#pragma once

#include "browser/sheet_printer.h"

namespace tessa {

/// The printers that the platform knows.
class SystemPrinter : public SheetPrinter {
 public:
  QStringList Names() const override;
  QString DefaultName() const override;
  QString Print(const QString& name, const QString& title,
                const std::function<void(QPaintDevice&)>& paint) override;
};

}  // namespace tessa
