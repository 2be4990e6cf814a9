#include "tool/card_download.h"

#include <algorithm>
#include <system_error>
#include <thread>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/plain_line.h"
#include "core/steps.h"

namespace tessa {
namespace {

QString Images(int count) {
  return QString::number(count) +
         (count == 1 ? QStringLiteral(" image") : QStringLiteral(" images"));
}

}  // namespace

CardDownload::CardDownload(CardLink& card, DownloadOptions options, CardTargets existing,
                           const Palettes& palettes)
    : card_(card), options_(std::move(options)), existing_(existing), palettes_(palettes) {}

void CardDownload::Plan(const std::optional<QString>& onlyFolder) {
  if (!IsFolder(options_.TargetPath)) {
    throw StepFailure(PlainUtf8(options_.TargetPath) + ": there is no such folder");
  }
  bool isFound = !onlyFolder;
  for (int i = 0; i < card_.FolderCount(); ++i) {
    const QString name = card_.FolderName(i);
    if (!onlyFolder || name == *onlyFolder ||
        (name == kCameraRoot && *onlyFolder == kCameraRootShown)) {
      isFound = true;
      PlanFolder(i);
    }
  }
  if (!isFound) {
    throw StepFailure(PlainUtf8(card_.Folder()) + " has no folder \"" + PlainUtf8(*onlyFolder) +
                      "\"; see card list");
  }
  const auto free = FreeSpace(options_.TargetPath);
  if (free && space_ > *free) {
    throw StepFailure(PlainUtf8(options_.TargetPath) + ": not enough space, " +
                      NeededMegabytes(space_).toStdString() + " MB needed, " +
                      FreeMegabytes(*free).toStdString() + " MB free");
  }
}

void CardDownload::PlanFolder(int index) {
  const std::string fault = card_.FolderFault(index);
  if (!fault.empty()) {
    faults_.push_back(fault);
  }
  const QString name = card_.FolderName(index);
  const bool isRoot = name == kCameraRoot || name.toUpper() == kCameraRootShown;
  const QString folder = isRoot ? options_.TargetPath : JoinPath(options_.TargetPath, name);
  if (!isRoot) {
    folders_ += folder;
  }
  for (int i = 0; i < card_.ImageCount(index); ++i) {
    Job job{index, i, card_.ImagePath(index, i), {}, {}};
    try {
      job.Targets = TargetsOf(folder, card_.ImageFileName(index, i));
      for (const QString& target : WantedTargets(job.Targets)) {
        if (targets_.contains(target)) {
          throw StepFailure("another image of the card becomes " + PlainUtf8(target));
        }
      }
      for (const QString& target : WantedTargets(job.Targets)) {
        targets_.insert(target);
      }
      const Choice choice = Choose(job.Targets);
      if (choice.Refused.empty()) {
        space_ += SpaceNeeded(job.Targets, card_.ImageSize(index, i), choice.Wanted);
      }
    } catch (const StepFailure& reason) {
      job.Fault = reason.what();
    }
    jobs_.push_back(std::move(job));
  }
}

QStringList CardDownload::WantedTargets(const ImageTargets& targets) const {
  QStringList wanted;
  if (options_.Sit == 1) {
    wanted += targets.Sit;
  }
  if (options_.Bmp == 1) {
    wanted += targets.Bmp;
  }
  if (options_.Jpeg == 1) {
    wanted += targets.Jpeg;
  }
  return wanted;
}

int CardDownload::Run(int jobs) {
  constexpr std::size_t kMostPerProcessor = 4;
  for (const std::string& fault : faults_) {
    PrintError(fault);
  }
  for (const QString& folder : folders_) {
    try {
      if (!IsTaken(folder)) {
        MakeFolder(folder);
      }
    } catch (const StepFailure& reason) {
      PrintError(folder, reason.what());
      hasAllFolders_ = false;
    }
  }
  results_.resize(jobs_.size());
  const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
  const std::size_t wanted = std::min(jobs > 0 ? static_cast<std::size_t>(jobs) : processors,
                                      kMostPerProcessor * processors);
  StopAfterThisFile();
  std::vector<std::jthread> threads;
  for (std::size_t i = 1; i < std::min(wanted, jobs_.size()); ++i) {
    try {
      threads.emplace_back([this, i] { Work(static_cast<int>(i)); });
    } catch (const std::system_error&) {
      break;  // As many as the system allows.
    }
  }
  Work(0);
  threads.clear();  // Waits for them.
  // Behind an image that an interruption left out another one may have been finished.
  for (; printed_ < results_.size(); ++printed_) {
    if (results_[printed_]) {
      PrintResult(jobs_[printed_], *results_[printed_]);
    }
  }
  PrintSum();
  if (Interrupted()) {
    return InterruptedStatus();
  }
  return failed_ > 0 || !faults_.empty() || !hasAllFolders_ ? kToolFailed : kToolDone;
}

void CardDownload::Work(int worker) {
  DownloadConversion conversion(words_, palettes_);
  conversion.LargePhotographs = &largePhotographs_;
  QString stage;
  std::string fault;
  if (options_.Sit == 0) {
    try {
      const std::lock_guard lock(sharing_);
      stage = ownFolder_.TemporaryFile(QStringLiteral("card-%1.sit").arg(worker));
    } catch (const std::exception& reason) {
      fault = reason.what();
    }
  }
  for (std::size_t at = next_++; at < jobs_.size() && !Interrupted(); at = next_++) {
    Result result;
    try {
      if (!fault.empty()) {
        throw StepFailure(fault);
      }
      BringOne(jobs_[at], stage, conversion, result);
    } catch (const std::exception& reason) {
      result.Fault = reason.what();
    }
    Report(at, std::move(result));
  }
}

CardDownload::Choice CardDownload::Choose(const ImageTargets& targets) const {
  Choice choice{options_, {}, {}};
  DownloadOptions& wanted = choice.Wanted;
  if (existing_ == CardTargets::kSkip) {
    if (wanted.Sit == 1 && IsTaken(targets.Sit)) {
      // An image that is not downloaded is not made into pictures either.
      wanted.Sit = wanted.Bmp = wanted.Jpeg = 0;
      choice.Skipped += targets.Sit;
      return choice;
    }
    for (const auto& [box, path] :
         {std::pair(&wanted.Bmp, &targets.Bmp), std::pair(&wanted.Jpeg, &targets.Jpeg)}) {
      if (*box == 1 && IsTaken(*path)) {
        *box = 0;
        choice.Skipped += *path;
      }
    }
  } else if (existing_ == CardTargets::kRefuse) {
    for (const QString& target : WantedTargets(targets)) {
      if (IsTaken(target)) {
        choice.Refused = PlainUtf8(target) + " is there already; --replace would replace it";
        break;
      }
    }
  }
  return choice;
}

void CardDownload::BringOne(const Job& job, const QString& stage, DownloadConversion& conversion,
                            Result& result) const {
  if (!job.Fault.empty()) {
    throw StepFailure(job.Fault);
  }
  const Choice choice = Choose(job.Targets);
  result.Skipped = choice.Skipped;
  if (!choice.Refused.empty()) {
    throw StepFailure(choice.Refused);
  }
  if (WantsPictures(choice.Wanted) && FileSize(job.Source) == 0U) {
    throw StepFailure("the file is empty");
  }
  if (WantsAnyFormat(choice.Wanted)) {
    WriteOne(job, choice.Wanted, stage, conversion, result);
  }
}

void CardDownload::BringSit(const Job& job) const {
  const QString& target = job.Targets.Sit;
  if (existing_ != CardTargets::kReplace || !IsTaken(target)) {
    card_.BringImage(job.Folder, job.Image, target);
    return;
  }
  // A card that is copied onto itself has the image already.
  if (card_.IsPlaceOf(job.Folder, job.Image, target)) {
    return;
  }
  if (card_.KeepsImageAt(target)) {
    throw StepFailure(PlainUtf8(target) + " is another image of the card");
  }
  ReplaceFile(job.Source, target);
}

void CardDownload::WriteOne(const Job& job, const DownloadOptions& wanted, const QString& stage,
                            DownloadConversion& conversion, Result& result) const {
  if (wanted.Sit == 1) {
    BringSit(job);
    result.Written += job.Targets.Sit;
  } else {
    RemoveFile(stage);
    card_.BringImage(job.Folder, job.Image, stage);
  }
  if (WantsPictures(wanted)) {
    conversion.Options = wanted;
    MakePicture(wanted.Sit == 1 ? job.Targets.Sit : stage, conversion);
    CheckPicture(conversion);
    for (const Problem& fault : conversion.Faults) {
      result.Warnings.push_back(fault.Text);
    }
    for (const FailedStep& step : conversion.Steps.Failures()) {
      result.Warnings.push_back(step.Step + ": " + step.Reason);
    }
  }
  const Overwrite overwrite =
      existing_ == CardTargets::kReplace ? Overwrite::kReplace : Overwrite::kRefuse;
  if (wanted.Bmp == 1) {
    SaveBmp(job.Targets.Bmp, conversion, overwrite);
    result.Written += job.Targets.Bmp;
  }
  if (wanted.Jpeg == 1) {
    SaveJpeg(job.Targets.Jpeg, conversion, overwrite);
    result.Written += job.Targets.Jpeg;
  }
  if (wanted.Sit != 1) {
    RemoveFile(stage);
  }
}

void CardDownload::Report(std::size_t at, Result result) {
  const std::lock_guard lock(sharing_);
  results_[at] = std::move(result);
  // In the card's order, whichever is finished first.
  for (; printed_ < results_.size() && results_[printed_]; ++printed_) {
    PrintResult(jobs_[printed_], *results_[printed_]);
  }
}

void CardDownload::PrintResult(const Job& job, const Result& result) {
  const QString written = result.Written.join(QLatin1String(", "));
  if (!result.Fault.empty()) {
    PrintError(job.Source, written.isEmpty()
                               ? result.Fault
                               : PlainUtf8(written) + " written, picture failed: " + result.Fault);
    ++failed_;
    return;
  }
  for (const std::string& warning : result.Warnings) {
    PrintError(job.Source, "warning: " + warning);
  }
  const QString skipped =
      result.Skipped.isEmpty()
          ? QString()
          : QStringLiteral("skipped, since ") + result.Skipped.join(QLatin1String(" and ")) +
                (result.Skipped.size() == 1 ? QStringLiteral(" is there already")
                                            : QStringLiteral(" are there already"));
  if (written.isEmpty()) {
    PrintLine(job.Source + QStringLiteral(": ") + skipped);
    ++skipped_;
  } else {
    PrintLine(job.Source + QStringLiteral(" -> ") + written +
              (skipped.isEmpty() ? skipped : QStringLiteral("; ") + skipped));
    ++done_;
  }
}

void CardDownload::PrintSum() const {
  QString sum = Images(done_) + QStringLiteral(" downloaded to ") + options_.TargetPath;
  if (skipped_ > 0) {
    sum += QStringLiteral(", %1 skipped").arg(skipped_);
  }
  if (failed_ > 0) {
    sum += QStringLiteral(", %1 failed").arg(failed_);
  }
  PrintLine(sum);
}

}  // namespace tessa
