#pragma once

#include <QString>
#include <QStringList>
#include <functional>

class QPaintDevice;

namespace tessa {

/// The system's printers. The real one stands in the windows, tests bring their own.
class SheetPrinter {
 public:
  SheetPrinter() = default;
  SheetPrinter(const SheetPrinter&) = delete;
  SheetPrinter& operator=(const SheetPrinter&) = delete;
  virtual ~SheetPrinter() = default;

  /// Device names in the system's order.
  virtual QStringList Names() const = 0;
  /// Empty where the system has none.
  virtual QString DefaultName() const = 0;
  /// Makes a landscape document of the printer `name` at its own resolution and hands it to
  /// `paint`, which paints one page or throws. Gives why nothing was printed; empty when the system
  /// has taken the page.
  virtual QString Print(const QString& name, const QString& title,
                        const std::function<void(QPaintDevice&)>& paint) = 0;
};

}  // namespace tessa
