#include "shell/tool_command_line.h"

#include <CLI/CLI.hpp>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <cstdio>
#include <filesystem>

#include "core/file_access.h"
#include "core/load_image.h"
#include "core/session.h"
#include "export/image_export.h"
#include "export/image_report.h"

namespace tessa {
namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongCall = 2;

QString FromArgument(const std::string& argument) {
  return QFile::decodeName(QByteArray::fromStdString(argument));
}

void PrintOut(const QByteArray& text) {
  std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout);
}

void PrintError(const QString& path, const std::string& reason) {
  std::fprintf(stderr, "tessatool: %s: %s\n", QFile::encodeName(path).constData(), reason.c_str());
}

ApplicationFolder OwnFolder() {
  std::error_code error;
  const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
  return ApplicationFolder::ForExecutable(FromArgument(executable.string()));
}

struct InfoCall {
  std::vector<std::string> Files;
  bool Json = false;
};

int RunInfo(const InfoCall& call) {
  int status = kDone;
  QJsonArray reports;
  Progress progress;
  for (const std::string& argument : call.Files) {
    const QString path = FromArgument(argument);
    Session session(OwnFolder());
    // Colours do not matter here, so the palettes are not read.
    MakePaletteStrips(session.Buffers);
    FillPaletteList(session.View);
    OpenPath(path, session, progress);
    if (const Problem* const reason = FindNoImage(session.Faults)) {
      PrintError(path, reason->Text);
      status = kFailed;
    } else if (call.Json) {
      reports.append(ReportAsJson(session));
    } else {
      PrintOut(ReportAsText(session).toUtf8());
    }
  }
  if (call.Json && !reports.isEmpty()) {
    PrintOut(call.Files.size() == 1 ? QJsonDocument(reports[0].toObject()).toJson()
                                    : QJsonDocument(reports).toJson());
  }
  return status;
}

struct ExportCall {
  std::vector<std::string> Files;
  std::string Out;
  std::string Folder;
  std::string To;
  std::string Palette = "0";
  std::string Range = "stored";
  std::string Unit = "C";
  bool Reverse = false;
  bool Force = false;
};

struct ExportJob {
  QString Source;
  QString Target;
};

/// The target of every source, or nothing after a report when the call makes no sense.
std::optional<std::vector<ExportJob>> PlanExport(const ExportCall& call) {
  const bool oneTarget = !call.Out.empty();
  if (oneTarget == !call.Folder.empty() || call.Folder.empty() != call.To.empty()) {
    std::fputs("tessatool: give either -o OUT or both --folder DIR and --to EXT\n", stderr);
    return std::nullopt;
  }
  if (oneTarget && call.Files.size() > 1) {
    std::fputs("tessatool: -o takes one image; use --folder and --to for several\n", stderr);
    return std::nullopt;
  }
  std::vector<ExportJob> jobs;
  QSet<QString> targets;
  for (const std::string& file : call.Files) {
    const QString source = FromArgument(file);
    QString target = FromArgument(call.Out);
    if (!oneTarget) {
      target = QDir(FromArgument(call.Folder))
                   .filePath(QFileInfo(source).completeBaseName() + QLatin1Char('.') +
                             FromArgument(call.To).toLower());
    }
    if (!ExportEndings().contains(QFileInfo(target).suffix().toLower())) {
      PrintError(target, "the ending must be one of " +
                             ExportEndings().join(QLatin1String(", ")).toStdString());
      return std::nullopt;
    }
    if (targets.contains(target)) {
      PrintError(target, "two of the images would become this one file");
      return std::nullopt;
    }
    targets.insert(target);
    jobs.push_back({source, target});
  }
  return jobs;
}

std::optional<ExportOptions> ParseOptions(const ExportCall& call) {
  ExportOptions options;
  options.Reverse = call.Reverse;
  options.Unit = call.Unit == "F" ? 'F' : 'C';
  options.Palette = FindPalette(FromArgument(call.Palette));
  if (options.Palette < 0) {
    std::fprintf(stderr, "tessatool: there is no palette \"%s\"; the palettes are\n",
                 call.Palette.c_str());
    for (int i = 0; i < kOfferedPalettes; ++i) {
      std::fprintf(stderr, "  %2d  %s\n", i, PaletteNames[static_cast<std::size_t>(i)].data());
    }
    return std::nullopt;
  }
  const auto range = ParseExportRange(FromArgument(call.Range));
  if (!range) {
    std::fputs("tessatool: --range takes stored, image or LOW:HIGH\n", stderr);
    return std::nullopt;
  }
  options.Range = *range;
  return options;
}

bool IsSameFile(const QString& first, const QString& second) {
  const QString firstPath = QFileInfo(first).canonicalFilePath();
  return !firstPath.isEmpty() && firstPath == QFileInfo(second).canonicalFilePath();
}

int RunExport(const ExportCall& call) {
  const auto jobs = PlanExport(call);
  const auto options = ParseOptions(call);
  if (!jobs || !options) {
    return kWrongCall;
  }
  if (!call.Folder.empty() && !QDir().mkpath(FromArgument(call.Folder))) {
    PrintError(FromArgument(call.Folder), "the folder cannot be made");
    return kFailed;
  }
  int status = kDone;
  for (const ExportJob& job : *jobs) {
    try {
      if (IsSameFile(job.Source, job.Target)) {
        throw StepFailure("the export would overwrite the image itself");
      }
      if (!call.Force && QFileInfo::exists(job.Target)) {
        throw StepFailure(job.Target.toStdString() + " is there already; --force would replace it");
      }
      Session session(OwnFolder());
      PrepareSession(session);
      LoadForExport(job.Source, *options, session);
      const Bytes content =
          EncodeForExport(session, QFileInfo(job.Target).suffix().toLower(), options->Unit);
      WriteWholeFile(job.Target, content, call.Force ? Overwrite::kReplace : Overwrite::kRefuse);
      for (const Problem& fault : session.Faults) {
        PrintError(job.Source, "warning: " + fault.Text);
      }
    } catch (const std::exception& failure) {
      PrintError(job.Source, failure.what());
      status = kFailed;
    }
  }
  return status;
}

}  // namespace

int RunToolCommandLine(int argc, char** argv) {
  CLI::App tool("Looks into radiometric infrared images and turns them into ordinary files.",
                "tessatool");
  tool.require_subcommand(1);
  tool.set_version_flag("--version", "tessatool " TESSA_VERSION);

  InfoCall info;
  CLI::App* const infoCommand = tool.add_subcommand("info", "Say what is known about images");
  infoCommand->add_option("FILE", info.Files, "Images")->required();
  infoCommand->add_flag("--json", info.Json, "One JSON object, or an array for several images");

  ExportCall exportCall;
  CLI::App* const exportCommand =
      tool.add_subcommand("export", "Write images as bmp, png, jpg, csv or tif");
  exportCommand->add_option("FILE", exportCall.Files, "Images")->required();
  exportCommand->add_option("-o,--output", exportCall.Out, "File to write; its ending decides");
  exportCommand->add_option("--folder", exportCall.Folder, "Folder to write into");
  exportCommand->add_option("--to", exportCall.To, "Ending of the files in the folder");
  exportCommand->add_option("--palette", exportCall.Palette, "Palette by name or number");
  exportCommand->add_flag("--reverse", exportCall.Reverse, "Turn the palette round");
  exportCommand->add_option("--range", exportCall.Range,
                            "Temperatures that span the palette: stored, image or LOW:HIGH");
  exportCommand->add_option("--unit", exportCall.Unit, "C or F, for --range and csv")
      ->check(CLI::IsMember({"C", "F"}));
  exportCommand->add_flag("--force", exportCall.Force, "Replace files that are there already");

  try {
    tool.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return tool.exit(error) == 0 ? kDone : kWrongCall;
  }
  return infoCommand->parsed() ? RunInfo(info) : RunExport(exportCall);
}

}  // namespace tessa
