#include "tool/export_command.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QSet>
#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/plain_line.h"
#include "core/platform_failure.h"
#include "export/image_export.h"
#include "open/session.h"
#include "tool/streams.h"

namespace tessa {
namespace {

struct ExportJob {
  QString Source;
  QString Target;
};

/// "png" for "png", ".png" and "PNG".
QString EndingOf(const std::string& argument) {
  QString ending = FromArgument(argument).toLower();
  return ending.startsWith(QLatin1Char('.')) ? ending.mid(1) : ending;
}

/// The ending in lower case. Only looks at the text.
QString TargetEnding(const QString& target) {
  return QFileInfo(target).suffix().toLower();
}

/// The target of every source, or nothing after a report when the call makes no sense.
std::optional<std::vector<ExportJob>> PlanExport(const ExportCall& call) {
  const bool oneTarget = !call.Out.empty();
  if (oneTarget == !call.Folder.empty() || call.Folder.empty() != call.To.empty()) {
    PrintError("give either -o OUT or both --folder DIR and --to EXT");
    return std::nullopt;
  }
  if (oneTarget && call.Files.size() > 1) {
    PrintError("-o takes one image; use --folder and --to for several");
    return std::nullopt;
  }
  std::vector<ExportJob> jobs;
  QSet<QString> targets;
  for (const std::string& file : call.Files) {
    const QString source = FromArgument(file);
    QString target = FromArgument(call.Out);
    if (!oneTarget) {
      target = JoinPath(FromArgument(call.Folder), QFileInfo(source).completeBaseName() +
                                                       QLatin1Char('.') + EndingOf(call.To));
    }
    if (!ExportEndings().contains(TargetEnding(target))) {
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
  options.View = call.Composite ? ExportView::kComposite
                 : call.Visible ? ExportView::kVisible
                 : call.Bar     ? ExportView::kWithBar
                                : ExportView::kImage;
  options.Frame = call.Frame;
  options.Unit = call.Unit == "F" ? 'F' : 'C';
  options.Palette = FindPalette(FromArgument(call.Palette));
  if (options.Palette < 0) {
    PrintError("there is no palette \"" + call.Palette + "\"; the palettes are");
    for (int i = 0; i < kOfferedPalettes; ++i) {
      std::fprintf(stderr, "  %2d  %s\n", i, PaletteNames[static_cast<std::size_t>(i)].data());
    }
    return std::nullopt;
  }
  const auto range = ParseExportRange(FromArgument(call.Range));
  if (!range) {
    PrintError("--range takes stored, image or LOW:HIGH");
    return std::nullopt;
  }
  options.Range = *range;
  return options;
}

/// Writes one image. Throws with the plain reason.
void ExportOne(const ExportJob& job, const ExportCall& call, const ExportOptions& options,
               const Palettes& palettes, Problems& faults) {
  if (IsSameFile(job.Source, job.Target)) {
    throw StepFailure("the export would overwrite the image itself");
  }
  if (!call.Force && PathExists(job.Target)) {
    throw StepFailure(PlainUtf8(job.Target) + " is there already; --force would replace it");
  }
  Session session(OwnFolder());
  PrepareForExport(options, palettes, session);
  LoadForExport(job.Source, options, session);
  const Bytes content = EncodeForExport(session, TargetEnding(job.Target), options);
  WriteWholeFile(job.Target, content, call.Force ? Overwrite::kReplace : Overwrite::kRefuse);
  faults = session.Faults;
}

/// Works through the jobs on several threads; each image has a session of its own, so the results
/// do not depend on how many there are.
class ExportRun {
 public:
  ExportRun(const ExportCall& call, const ExportOptions& options, std::vector<ExportJob> jobs,
            const Palettes& palettes)
      : call_(call),
        options_(options),
        jobs_(std::move(jobs)),
        palettes_(palettes),
        line_(jobs_.size()) {}

  int Run() {
    const unsigned processors = std::max(1U, std::thread::hardware_concurrency());
    // One after another where texts are drawn: the font engine is not made for several threads.
    const bool drawsTexts = call_.Bar || call_.Composite;
    const auto wanted = drawsTexts       ? std::size_t{1}
                        : call_.Jobs > 0 ? static_cast<std::size_t>(call_.Jobs)
                                         : std::size_t{processors};
    StopAfterThisFile();
    std::vector<std::jthread> threads;
    for (std::size_t i = 1; i < std::min(wanted, jobs_.size()); ++i) {
      try {
        threads.emplace_back([this] { Work(); });
      } catch (const std::system_error&) {
        break;  // As many as the system allows.
      }
    }
    Work();
    threads.clear();  // Waits for them.
    if (Interrupted()) {
      return InterruptedStatus();
    }
    return failed_ ? kToolFailed : kToolDone;
  }

 private:
  void Work() {
    for (std::size_t at = next_++; at < jobs_.size() && !Interrupted(); at = next_++) {
      Problems faults;
      std::string failure;
      try {
        ExportOne(jobs_[at], call_, options_, palettes_, faults);
      } catch (const std::exception& reason) {
        failure = reason.what();
      }
      Report(jobs_[at], faults, failure);
    }
  }
  void Report(const ExportJob& job, const Problems& faults, const std::string& failure) {
    const std::lock_guard lock(reporting_);
    if (!failure.empty() || !faults.empty()) {
      line_.Clear();
    }
    for (const Problem& fault : faults) {
      PrintError(job.Source, "warning: " + fault.Text);
    }
    if (!failure.empty()) {
      PrintError(job.Source, failure);
      failed_ = true;
    }
    line_.Show(++done_);
  }

  const ExportCall& call_;
  const ExportOptions& options_;
  std::vector<ExportJob> jobs_;
  const Palettes& palettes_;
  std::atomic<std::size_t> next_ = 0;
  std::mutex reporting_;  // Guards what follows.
  ProgressLine line_;
  std::size_t done_ = 0;
  bool failed_ = false;
};

}  // namespace

int RunExport(const ExportCall& call) {
  auto jobs = PlanExport(call);
  const auto options = ParseOptions(call);
  if (!jobs || !options) {
    return kToolWrongCall;
  }
  const auto palettes =
      ReadToolPalettes(std::any_of(jobs->begin(), jobs->end(), [](const ExportJob& job) {
        return NeedsPalette(TargetEnding(job.Target));
      }));
  if (!palettes) {
    return kToolFailed;
  }
  if (!call.Folder.empty() && !MakeFolders(FromArgument(call.Folder))) {
    PrintError(FromArgument(call.Folder), "the folder cannot be made");
    return kToolFailed;
  }
  // Texts are drawn with the fonts of a GUI application, which needs no display for it.
  std::unique_ptr<QGuiApplication> application;
  int argumentCount = 1;
  std::array<char, 10> name = {"tessatool"};
  std::array<char*, 2> arguments = {name.data(), nullptr};
  if (call.Bar || call.Composite) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    BeginPlatformStart("tessatool");
    application = std::make_unique<QGuiApplication>(argumentCount, arguments.data());
    EndPlatformStart();
  }
  return ExportRun(call, *options, std::move(*jobs), *palettes).Run();
}

}  // namespace tessa
