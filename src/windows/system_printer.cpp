#include "windows/system_printer.h"

#include <QLibrary>
#include <QPageLayout>
#include <QPrinter>
#include <QPrinterInfo>
#include <exception>

namespace tessa {
namespace {

/// The toolkit does not tell whether the spooler took its document, but the spooler's own library
/// remembers how its last call ended. Empty: well.
QString SpoolerRefusal() {
  QLibrary cups(QStringLiteral("cups"), 2);  // Loaded already, if there is one.
  const auto lastError = reinterpret_cast<int (*)()>(cups.resolve("cupsLastError"));
  const auto lastWords = reinterpret_cast<const char* (*)()>(cups.resolve("cupsLastErrorString"));
  constexpr int kFirstError = 0x100;
  if (lastError == nullptr || lastWords == nullptr || lastError() < kFirstError) {
    return {};
  }
  const char* const words = lastWords();
  return words == nullptr ? QStringLiteral("the printing system refuses it")
                          : QString::fromUtf8(words);
}

}  // namespace

QStringList SystemPrinter::Names() const {
  return QPrinterInfo::availablePrinterNames();
}

QString SystemPrinter::DefaultName() const {
  return QPrinterInfo::defaultPrinterName();
}

QString SystemPrinter::Print(const QString& name, const QString& title,
                             const std::function<void(QPaintDevice&)>& paint) {
  const QPrinterInfo info = QPrinterInfo::printerInfo(name);
  if (info.isNull()) {
    return QStringLiteral("there is no such printer");
  }
  QPrinter printer(info, QPrinter::HighResolution);
  printer.setPageOrientation(QPageLayout::Landscape);
  printer.setDocName(title);
  printer.setCreator(QStringLiteral("TessaView"));
  try {
    paint(printer);
  } catch (const std::exception& failure) {
    return QString::fromUtf8(failure.what());
  }
  if (printer.printerState() == QPrinter::Error || printer.printerState() == QPrinter::Aborted) {
    return QStringLiteral("the printer reports an error");
  }
  return SpoolerRefusal();
}

}  // namespace tessa
