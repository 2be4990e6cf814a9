#include "tool/sheet_command.h"

#include <QGuiApplication>
#include <QProcess>
#include <array>

#include "browser/contact_sheet.h"
#include "browser/tile.h"
#include "browser/tile_picture.h"
#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/plain_line.h"
#include "core/platform_failure.h"
#include "core/steps.h"
#include "tool/streams.h"

namespace tessa {
namespace {

/// Hands the document to the system's printing, which knows the printer. Throws StepFailure.
void Print(const QByteArray& pdf, const std::string& printer) {
  QProcess spooler;
  spooler.start(QStringLiteral("lp"),
                {QStringLiteral("-d"), QString::fromStdString(printer), QStringLiteral("-o"),
                 QStringLiteral("fit-to-page"), QStringLiteral("-")});
  if (!spooler.waitForStarted()) {
    throw StepFailure("there is no printing system here: lp cannot be started");
  }
  spooler.write(pdf);
  spooler.closeWriteChannel();
  spooler.waitForFinished(-1);
  if (spooler.exitStatus() != QProcess::NormalExit || spooler.exitCode() != 0) {
    throw StepFailure("the sheet was not printed: " +
                      spooler.readAllStandardError().trimmed().toStdString());
  }
}

}  // namespace

int RunSheet(const SheetCall& call) {
  const QString target = FromArgument(call.Out);
  const int palette = FindPalette(FromArgument(call.Palette));
  if (palette < 0) {
    PrintError("there is no palette \"" + call.Palette + "\"; see export --palette");
    return kToolWrongCall;
  }
  if (call.Out.empty() && call.Printer.empty()) {
    PrintError("sheet needs -o or --printer");
    return kToolWrongCall;
  }
  if (!call.Out.empty() && !target.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) {
    PrintError(target, "the sheet must end in .pdf");
    return kToolWrongCall;
  }
  if (!call.Out.empty() && !call.Force && PathExists(target)) {
    PrintError(target, "it is there already; --force would replace it");
    return kToolFailed;
  }
  const auto palettes = ReadToolPalettes(true);
  if (!palettes) {
    return kToolFailed;
  }
  const ColourTable& colours = palettes->PaletteTable.at(static_cast<std::size_t>(palette));
  // Texts are drawn with the fonts of a GUI application, which needs no display for it.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  int argumentCount = 1;
  std::array<char, 10> name = {"tessatool"};
  std::array<char*, 2> arguments = {name.data(), nullptr};
  BeginPlatformStart("tessatool");
  const QGuiApplication application(argumentCount, arguments.data());
  EndPlatformStart();

  int status = kToolDone;
  try {
    SheetDocument document;
    ProgressLine line(call.Files.size());
    StopAfterThisFile();
    std::size_t done = 0;
    Sheet sheet;
    sheet.Heading = call.Heading.empty()
                        ? FolderOfPath(AbsolutePath(FromArgument(call.Files.front())))
                        : FromArgument(call.Heading);
    const auto addSheet = [&] {
      document.Add(sheet);
      sheet.Tiles.clear();
    };
    for (const std::string& file : call.Files) {
      if (Interrupted()) {
        return InterruptedStatus();
      }
      const QString path = FromArgument(file);
      if (IsSameFile(path, target)) {
        throw StepFailure("the sheet would overwrite an image");
      }
      try {
        sheet.Tiles.push_back({FileNameOf(path), PaletteImage(TilePicture(path), colours)});
      } catch (const StepFailure& failure) {
        line.Clear();
        PrintError(path, failure.what());
        status = kToolFailed;
      }
      line.Show(++done);
      if (sheet.Tiles.size() == kTilesOnSheet) {
        addSheet();
      }
    }
    addSheet();
    const QByteArray pdf = document.Finish();
    if (pdf.isEmpty()) {
      throw StepFailure("there is no picture for it");
    }
    if (!call.Out.empty()) {
      WriteWholeFile(target,
                     ByteSpan(reinterpret_cast<const std::uint8_t*>(pdf.constData()),
                              static_cast<std::size_t>(pdf.size())),
                     call.Force ? Overwrite::kReplace : Overwrite::kRefuse);
    }
    if (!call.Printer.empty()) {
      Print(pdf, call.Printer);
    }
  } catch (const std::exception& failure) {
    PrintError(call.Out.empty() ? FromArgument(call.Printer) : target, failure.what());
    return kToolFailed;
  }
  return status;
}

}  // namespace tessa
