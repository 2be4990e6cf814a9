#include "tool/command_line.h"

#include <CLI/CLI.hpp>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <cstdio>
#include <iostream>

#include "core/file_access.h"
#include "core/plain_line.h"
#include "core/program_version.h"
#include "core/units.h"
#include "export/image_export.h"
#include "export/image_report.h"
#include "open/load_image.h"
#include "open/visible_image.h"
#include "tool/card_command.h"
#include "tool/export_command.h"
#include "tool/frames_command.h"
#include "tool/note_command.h"
#include "tool/sheet_command.h"
#include "tool/sound_command.h"
#include "tool/streams.h"
#include "tool/thumbnail_command.h"
#include "tool/transfer_command.h"

namespace tessa {
namespace {

/// Passes on what the program itself logs, which is nothing unless it was asked for.
void PrintOwnMessages(QtMsgType /*type*/, const QMessageLogContext& context,
                      const QString& message) {
  if (QLatin1String(context.category).startsWith(QLatin1String("tessa."))) {
    std::fprintf(stderr, "%s\n", PlainUtf8(message).c_str());
  }
}

struct InfoCall {
  std::vector<std::string> Files;
  bool Json = false;
  bool Frames = false;  // List the frames of snapshots and sequences as well.
};

/// Time and extremes of every frame that can be read.
QJsonArray FrameList(Session& session) {
  QJsonArray frames;
  const OpenImage& image = session.Image;
  for (int frame = 1; frame <= FrameSlots(image); ++frame) {
    try {
      ShowFrameForExport(frame, session);
    } catch (const StepFailure&) {
      continue;
    }
    const TemperaturePair extremes = GridExtremes(image);
    frames.append(QJsonObject{{QStringLiteral("Frame"), frame},
                              {QStringLiteral("ImageDate"), image.ImageDate},
                              {QStringLiteral("ImageTime"), image.ImageTime},
                              {QStringLiteral("TempMin"), ShortestNumber(extremes.Minimum)},
                              {QStringLiteral("TempMax"), ShortestNumber(extremes.Maximum)}});
  }
  return frames;
}

void PrintFrames(Session& session) {
  for (const QJsonValue& value : FrameList(session)) {
    const QJsonObject frame = value.toObject();
    const auto text = [&](const char* name) { return frame.value(QLatin1String(name)); };
    PrintOut(
        QStringLiteral("  Frame %1  %2 %3  %4 to %5 \u00B0C\n")
            .arg(text("Frame").toInt(), -5)
            .arg(PlainLine(text("ImageDate").toString()), PlainLine(text("ImageTime").toString()),
                 FormatTenths(text("TempMin").toDouble()), FormatTenths(text("TempMax").toDouble()))
            .toUtf8());
  }
}

int RunInfo(const InfoCall& call) {
  int status = kToolDone;
  QJsonArray reports;
  Progress progress;
  for (const std::string& argument : call.Files) {
    const QString path = FromArgument(argument);
    Session session(OwnFolder());
    // Colours do not matter here, so no palettes are read.
    PrepareForExport({}, {}, session);
    OpenPath(path, session, progress);
    const SoundReport sound = ReportSound(session);
    if (const Problem* const reason = FindNoImage(session.Faults)) {
      PrintError(path, reason->Text);
      status = kToolFailed;
    } else if (call.Json) {
      QJsonObject report = ReportAsJson(session);
      for (auto field = sound.Fields.begin(); field != sound.Fields.end(); ++field) {
        report.insert(field.key(), field.value());
      }
      if (call.Frames) {
        report.insert(QStringLiteral("Frames"), FrameList(session));
      }
      reports.append(report);
    } else {
      PrintOut(ReportAsText(session, sound.Words).toUtf8());
      if (call.Frames) {
        PrintFrames(session);
      }
    }
  }
  if (call.Json && !reports.isEmpty()) {
    PrintOut(PlainJson(call.Files.size() == 1 ? QJsonDocument(reports[0].toObject()).toJson()
                                              : QJsonDocument(reports).toJson()));
  }
  return status;
}

struct VisibleCall {
  std::string File;
  std::string Out;
  bool Force = false;
};

/// Writes the bytes of the JPEG inside a SIT image as they are.
int RunVisible(const VisibleCall& call) {
  const QString path = FromArgument(call.File);
  try {
    Problems faults;
    const auto file = RandomFile::Open(path, faults);
    if (!file) {
      throw StepFailure(faults.front().Text);
    }
    const SitImage image = DecodeSit(file->ReadAt(0, kSitDecodeSize), file->Size());
    if (const Problem* const reason = FindNoImage(image.Faults)) {
      throw StepFailure(reason->Text);
    }
    const Bytes jpeg = CutOutVisible(*file, VisiblePosition(image.Header, image.VisibleLength));
    if (jpeg.empty()) {
      throw StepFailure("the image has no visible-light picture inside");
    }
    const QString target = FromArgument(call.Out);
    if (IsSameFile(path, target)) {
      throw StepFailure("the picture would overwrite the image itself");
    }
    WriteWholeFile(target, jpeg, call.Force ? Overwrite::kReplace : Overwrite::kRefuse);
    return kToolDone;
  } catch (const std::exception& failure) {
    PrintError(path, failure.what());
    return kToolFailed;
  }
}

}  // namespace

int RunToolCommandLine(int argc, char** argv) {
  // The platform layer has opinions of its own on broken files and on the surroundings; this tool
  // gives its own reasons.
  qInstallMessageHandler(PrintOwnMessages);
  CLI::App tool("Looks into radiometric infrared images and turns them into ordinary files.",
                "tessatool");
  tool.require_subcommand(1);
  tool.set_version_flag("--version", "tessatool " + ProgramVersion().toStdString());

  InfoCall info;
  CLI::App* const infoCommand = tool.add_subcommand("info", "Say what is known about images");
  infoCommand->add_option("FILE", info.Files, "Images")->required();
  infoCommand->add_flag("--frames", info.Frames, "List the frames of snapshots and sequences too");
  infoCommand->add_flag("--json", info.Json, "One JSON object, or an array for several images");

  ExportCall exportCall;
  CLI::App* const exportCommand =
      tool.add_subcommand("export", "Write images as bmp, png, jpg, csv, tif or txi");
  exportCommand->add_option("FILE", exportCall.Files, "Images")->required();
  exportCommand->add_option("-o,--output", exportCall.Out, "File to write; its ending decides");
  exportCommand->add_option("--folder", exportCall.Folder, "Folder to write into");
  exportCommand->add_option("--to", exportCall.To, "Ending of the files in the folder");
  exportCommand->add_option("--palette", exportCall.Palette, "Palette by name or number");
  auto* const bar = exportCommand->add_flag("--bar", exportCall.Bar, "With the palette bar");
  auto* const composite = exportCommand
                              ->add_flag("--composite", exportCall.Composite,
                                         "With palette bar and visible-light picture")
                              ->excludes(bar);
  exportCommand->add_flag("--visible", exportCall.Visible, "The visible-light picture alone")
      ->excludes(bar)
      ->excludes(composite);
  exportCommand->add_flag("--reverse", exportCall.Reverse, "Turn the palette round");
  exportCommand->add_option("--range", exportCall.Range,
                            "Temperatures that span the palette: stored, image or LOW:HIGH");
  exportCommand->add_option("--unit", exportCall.Unit, "C or F, for --range and csv")
      ->transform(CLI::IsMember({"C", "F"}, CLI::ignore_case));
  exportCommand->add_flag("--force", exportCall.Force, "Replace files that are there already");

  exportCommand->add_option("--frame", exportCall.Frame, "Frame of a snapshot or sequence, from 1")
      ->check(CLI::Range(1, 32767));
  exportCommand->add_option("--jobs", exportCall.Jobs, "Images to work on at once")
      ->check(CLI::Range(1, 1024));

  FramesCall frames;
  CLI::App* const framesCommand =
      tool.add_subcommand("frames", "Write frames of a snapshot or sequence as single files");
  framesCommand->add_option("FILE", frames.File, "Snapshot or sequence")->required();
  framesCommand->add_option("--prefix", frames.Prefix, "Start of the files' names")->required();
  framesCommand->add_option("--to", frames.To, "Their ending: bmp, txi, csv, tif or png")
      ->required()
      ->check(CLI::IsMember({"bmp", "txi", "csv", "tif", "png"}));
  framesCommand->add_option("--frames", frames.Frames, "Which, such as 1-10,15; all if left out");
  framesCommand->add_option("--folder", frames.Folder, "Folder to write into");
  framesCommand->add_option("--palette", frames.Palette, "Palette by name or number");
  framesCommand->add_flag("--reverse", frames.Reverse, "Turn the palette round");
  framesCommand->add_option(
      "--range", frames.Range,
      "One range for all: stored, image (extremes over all frames) or LOW:HIGH");
  framesCommand->add_option("--unit", frames.Unit, "C or F, for --range and csv")
      ->transform(CLI::IsMember({"C", "F"}, CLI::ignore_case));
  framesCommand->add_flag("--force", frames.Force, "Replace files that are there already");

  VisibleCall visible;
  CLI::App* const visibleCommand =
      tool.add_subcommand("visible", "Write the visible-light JPEG inside a SIT image");
  visibleCommand->add_option("FILE", visible.File, "SIT image")->required();
  visibleCommand->add_option("-o,--output", visible.Out, "JPEG to write")->required();
  visibleCommand->add_flag("--force", visible.Force, "Replace a file that is there already");

  SoundCommands sounds(tool);
  ThumbnailCommand thumbnail(tool);
  NoteCommand note(tool);
  TransferCommands transfers(tool);
  SheetCommand sheets(tool);
  CardCommands cards(tool);

  try {
    tool.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {  // Help or version.
      tool.exit(error);
      std::cout.flush();
      return FinishOutput(std::cout ? kToolDone : kToolFailed);
    }
    PrintError(error.what());
    std::fputs("Run with --help for more information.\n", stderr);
    return kToolWrongCall;
  }
  for (const auto& status :
       {sounds.Run(), transfers.Run(), sheets.Run(), cards.Run(), thumbnail.Run(), note.Run()}) {
    if (status) {
      return FinishOutput(*status);
    }
  }
  const int status = framesCommand->parsed()    ? RunFrames(frames)
                     : visibleCommand->parsed() ? RunVisible(visible)
                     : infoCommand->parsed()    ? RunInfo(info)
                                                : RunExport(exportCall);
  return FinishOutput(status);
}

}  // namespace tessa
