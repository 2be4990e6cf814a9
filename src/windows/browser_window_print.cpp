// Printing the page of tiles on show, on paper or into a file.

#include <QComboBox>
#include <QLabel>
#include <QProgressBar>

#include "browser/tile_picture.h"
#include "core/path_bytes.h"
#include "core/write_file.h"
#include "widgets/plain_text.h"
#include "windows/browser_window.h"
#include "windows/printer_dialog.h"

namespace tessa {
namespace {

void WritePdf(const Sheet& sheet, const QString& path) {
  SheetDocument document;
  document.Add(sheet);
  const QByteArray pdf = document.Finish();
  WriteWholeFile(path,
                 ByteSpan(reinterpret_cast<const std::uint8_t*>(pdf.constData()),
                          static_cast<std::size_t>(pdf.size())),
                 Overwrite::kReplace);
}

}  // namespace

/// The printer's name, PrinterDialog::PdfFile(), or nothing.
QString BrowserWindow::AskPrinter() {
  QString& current = pages_.Memory().CurrentPrinter;
  if (current.isEmpty()) {
    current = printers_->DefaultName();
  }
  PrinterDialog dialog(printers_->Names(), current, session_.Words, this);
  dialog.exec();
  return dialog.ChosenPrinter();
}

QString BrowserWindow::AskPdfName() {
  const QString folder = pages_.TargetFolder.isEmpty() ? pages_.SourceFolder : pages_.TargetFolder;
  const QString stem = pages_.SourceFolder.section(QLatin1Char('/'), -1);
  SaveFileQuestion question;
  question.Suggestion = JoinPath(
      folder, (stem.isEmpty() ? QStringLiteral("TessaView") : stem) + QStringLiteral(".pdf"));
  question.Filters = {QStringLiteral("PDF (*.pdf)")};
  question.DefaultEnding = QStringLiteral("pdf");
  while (const auto path = dialogs_->AskSaveFile(question)) {
    if (path->endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) {
      return *path;
    }
    question.Suggestion = *path;
    question.Refusal = session_.Words.LangString(594, "The name has to end in .pdf.");
  }
  return {};
}

void BrowserWindow::TellPrintFailure(const QString& reason) {
  dialogs_->ShowMessage({session_.Words.LangString(211, "Print"),
                         session_.Words.LangString(593, "Could not print: %1").arg(OneLine(reason)),
                         MessageButtons::kOk, MessageIcon::kStop});
}

/// With every pixel of the file, of which the tile may keep fewer.
QImage BrowserWindow::PrintedPicture(const ThumbnailPages::Place& place) const {
  const Tile& shown = place.Content;
  if (shown.Picture.Width == 0) {
    return {};
  }
  if (shown.Picture.Width != shown.FullWidth || shown.Picture.Height != shown.FullHeight) {
    const Tile whole = DecodeTile(place.Path, EmptySound::kLeave);
    if (whole.FullWidth == shown.FullWidth && whole.FullHeight == shown.FullHeight &&
        whole.Picture.Width > 0) {
      return PaletteImage(whole.Picture, Colours());
    }
  }
  return PaletteImage(shown.Picture, Colours());
}

void BrowserWindow::ShowPrinting(const QString& text, int percent) {
  status_->setText(OneLine(text));
  gauge_->setValue(percent);
  counts_->hide();
  for (QWidget* const part : std::initializer_list<QWidget*>{status_, gauge_}) {
    part->show();
    part->repaint();
  }
}

Sheet BrowserWindow::PageAsSheet() {
  const QString title = session_.Words.LangString(212, "Printing Thumbnail");
  Sheet sheet;
  sheet.Heading = pages_.SourceFolder;
  for (int i = 0; i < ThumbnailPages::kTiles; ++i) {
    const ThumbnailPages::Place& place = pages_.Places[static_cast<std::size_t>(i)];
    if (place.Visible) {
      ShowPrinting(title + QLatin1Char(' ') + place.Caption,
                   (i + 1) * 100 / ThumbnailPages::kTiles);
      sheet.Tiles.push_back({place.Caption, PrintedPicture(place)});
    }
  }
  return sheet;
}

void BrowserWindow::PrintPage() {
  const Strings& words = session_.Words;
  if (pages_.PageCount == 0) {
    Say(words.LangString(591, "There is nothing to print."));
    return;
  }
  const QString printer = AskPrinter();
  const bool toFile = printer == PrinterDialog::PdfFile();
  const QString path = toFile ? AskPdfName() : QString();
  if (printer.isEmpty() || (toFile && path.isEmpty())) {
    return;
  }
  pages_.Memory().CurrentPrinter = printer;
  setCursor(Qt::WaitCursor);
  QString failure;
  try {
    const Sheet sheet = PageAsSheet();
    ShowPrinting(words.LangString(235, "Sending Thumbnails To Printer"), 100);
    if (toFile) {
      WritePdf(sheet, path);
    } else {
      failure = printers_->Print(printer, sheet.Heading,
                                 [&](QPaintDevice& device) { PrintSheet(sheet, device); });
    }
  } catch (const std::exception& reason) {
    failure = QString::fromStdString(reason.what());
  }
  BringIntoLine();
  if (!failure.isEmpty()) {
    TellPrintFailure(failure);
  } else {
    Say(words.LangString(592, "Printed: %1").arg(OneLine(ShownPath(toFile ? path : printer))));
  }
}

}  // namespace tessa
