#include "tool/sheet_command.h"

#include <QGuiApplication>
#include <array>
#include <span>

#include "browser/contact_sheet.h"
#include "browser/transfer_sounds.h"
#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/plain_line.h"
#include "core/platform_failure.h"
#include "core/steps.h"
#include "export/image_export.h"
#include "tool/streams.h"

namespace tessa {
namespace {

/// The picture of an image as an export would give it. Throws StepFailure.
QImage PictureOf(const QString& path, const ExportOptions& options, const Palettes& palettes) {
  Session session(OwnFolder());
  PrepareForExport(options, palettes, session);
  LoadForExport(path, options, session);
  return session.Buffers.Picbuf1.ViewPicture();
}

}  // namespace

SheetCommand::SheetCommand(CLI::App& tool)
    : command_(tool.add_subcommand("sheet", "Write pictures of images into a PDF, ten to a page")) {
  command_->add_option("FILE", files_, "Images")->required();
  command_->add_option("-o,--output", out_, "PDF file to write")->required();
  command_->add_option("--heading", heading_, "Heading of every page; else the folder");
  command_->add_option("--palette", palette_, "Palette by name or number");
  command_->add_flag("--force", force_, "Replace a file that is there already");
}

std::optional<int> SheetCommand::Run() const {
  return command_->parsed() ? std::optional(WriteSheets()) : std::nullopt;
}

int SheetCommand::WriteSheets() const {
  const QString target = FromArgument(out_);
  ExportOptions options;
  options.Palette = FindPalette(FromArgument(palette_));
  if (options.Palette < 0) {
    PrintError("there is no palette \"" + palette_ + "\"; see export --palette");
    return kToolWrongCall;
  }
  if (!target.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) {
    PrintError(target, "the sheet must end in .pdf");
    return kToolWrongCall;
  }
  if (!force_ && PathExists(target)) {
    PrintError(target, "it is there already; --force would replace it");
    return kToolFailed;
  }
  const auto palettes = ReadToolPalettes(true);
  if (!palettes) {
    return kToolFailed;
  }
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
    ProgressLine line(files_.size());
    StopAfterThisFile();
    std::size_t done = 0;
    Sheet sheet;
    sheet.Heading = heading_.empty() ? FolderOfPath(AbsolutePath(FromArgument(files_.front())))
                                     : FromArgument(heading_);
    const auto addSheet = [&] {
      document.Add(sheet);
      sheet.Tiles.clear();
    };
    for (const std::string& file : files_) {
      if (Interrupted()) {
        return InterruptedStatus();
      }
      const QString path = FromArgument(file);
      if (IsSameFile(path, target)) {
        throw StepFailure("the sheet would overwrite an image");
      }
      try {
        sheet.Tiles.push_back({FileNameOf(path), PictureOf(path, options, *palettes)});
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
    WriteWholeFile(target,
                   ByteSpan(reinterpret_cast<const std::uint8_t*>(pdf.constData()),
                            static_cast<std::size_t>(pdf.size())),
                   force_ ? Overwrite::kReplace : Overwrite::kRefuse);
  } catch (const std::exception& failure) {
    PrintError(target, failure.what());
    return kToolFailed;
  }
  return status;
}

}  // namespace tessa
