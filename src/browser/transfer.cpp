#include "browser/transfer.h"

#include <optional>
#include <string>

#include "browser/transfer_images.h"
#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/plain_line.h"
#include "core/steps.h"

namespace tessa {
namespace {

/// The fixed words of an operation.
struct Wording {
  const char* Title;
  const char* Verb;
  const char* ErrorHead;
  const char* ErrorQuestion;
  const char* ErrorTitle;
  const char* SameFolderHead;
  const char* Result;
  const char* ResultTitle;
};

constexpr Wording kCopying = {
    "Copying Images...", "Copying",    "Error Copying File", "Do you wish to continue copying?",
    "Copy File Error",   "Abort Copy", " Files Copied to ",  "Copy Results"};
constexpr Wording kTransferring = {
    "Transferring Images...", "Transferring",
    "Error Transfering File", "Do you wish to continue Transferring?",
    "Transfer File Error",    "Abort Transfer",
    " Files Transferred to ", "Transfer Results"};
constexpr Wording kDeleting = {
    "Deleting Images...", "Deleting", "Error Deleting File",  "Do you wish to continue Deleting?",
    "Delete File Error",  "",         " Files Deleted From ", "Delete Results"};

/// A folder for showing: in capitals, with one separator at its end.
QString ShownFolder(const QString& folder) {
  const QString text = PlainLine(folder).toUpper();
  return text.endsWith(QLatin1Char('/')) ? text : text + QLatin1Char('/');
}

QString WithoutSeparator(const QString& shownFolder) {
  return shownFolder.chopped(1);
}

QString Text(const char* text) {
  return QString::fromLatin1(text);
}

/// The part that the three operations share.
class Run {
 public:
  Run(const TransferRequest& request, const TransferSurroundings& surroundings,
      const Wording& wording)
      : request_(request),
        surroundings_(surroundings),
        wording_(wording),
        shownSource_(ShownFolder(request.SourceFolder)),
        shownTarget_(ShownFolder(request.TargetFolder)) {}

 protected:
  void Begin() {
    surroundings_.Status = {true, Text(wording_.Title), 0, {}};
    surroundings_.Watcher.Repaint();
  }
  void End() {
    surroundings_.Status = {};
    surroundings_.Watcher.Repaint();
  }

  void ShowGauge() {
    const auto all = static_cast<double>(request_.FileNames.size());
    surroundings_.Status.Percent = RoundToInteger(done_ * 100.0 / all);
    surroundings_.Watcher.Advance();
  }
  void ShowInHand(const QString& text) {
    surroundings_.Status.InHand = Text(wording_.Verb) + Text("\n\n") + text;
    surroundings_.Watcher.Repaint();
  }
  QString PathOf(const QString& name) const { return JoinPath(request_.SourceFolder, name); }
  QString ShownSource(const QString& name) const { return shownSource_ + PlainLine(name); }
  QString ShownTarget(const QString& name) const { return shownTarget_ + PlainLine(name); }

  /// Tells of a failure; true when the user wants to go on.
  bool AskToGoOn(const QString& files, const std::string& reason) const {
    const QString text = Text(wording_.ErrorHead) + Text("\n\n") + files + Text("Error: ") +
                         PlainLine(QString::fromStdString(reason)) + Text("\n\n") +
                         Text(wording_.ErrorQuestion);
    return surroundings_.Questions.ShowMessage(
               {Text(wording_.ErrorTitle), text, MessageButtons::kYesNo, MessageIcon::kQuestion}) ==
           Answer::kYes;
  }
  void TellResult(const QString& folder) const {
    surroundings_.Questions.ShowMessage({Text(wording_.ResultTitle),
                                         QString::number(done_) + Text(wording_.Result) + folder,
                                         MessageButtons::kOk, MessageIcon::kInformation});
  }

  const TransferRequest& request_;
  const TransferSurroundings& surroundings_;
  const Wording& wording_;
  QString shownSource_;
  QString shownTarget_;
  int done_ = 0;
  /// Once something failed it stands until the end of the run.
  std::optional<std::string> failure_;
};

/// Copy and transfer.
class BringRun : public Run {
 public:
  BringRun(const TransferRequest& request, const TransferSurroundings& surroundings, bool moves)
      : Run(request, surroundings, moves ? kTransferring : kCopying), moves_(moves) {}

  int operator()() {
    if (request_.FileNames.isEmpty()) {
      return 0;
    }
    Begin();
    OpenTarget();
    for (const QString& name : request_.FileNames) {
      if (surroundings_.StopAsked()) {
        break;
      }
      ShowGauge();
      if (IsSameFolder()) {
        FinishBatch();
        const QString head = Text(wording_.SameFolderHead);
        surroundings_.Questions.ShowMessage({head,
                                             head + Text("\n\nSource Directory = Target Directory"),
                                             MessageButtons::kOk, MessageIcon::kStop});
        End();
        return done_;
      }
      if (!BringOne(name) || (transfer_ && transfer_->IsBatchFull() && !FinishBatch())) {
        break;
      }
    }
    FinishBatch();
    surroundings_.Status.InHand.clear();
    if (moves_ && done_ > 0) {
      surroundings_.SourceChanged();
    }
    End();
    if (done_ > 0) {
      TellResult(WithoutSeparator(shownTarget_));
    }
    return done_;
  }

 private:
  void OpenTarget() {
    try {
      transfer_.emplace(request_.TargetFolder,
                        TransferOptions{moves_, request_.EmbedSounds, false});
    } catch (const StepFailure& reason) {
      failure_ = reason.what();  // Told with the first file.
    }
  }
  bool IsSameFolder() const {
    return transfer_ && transfer_->Folder().IsSameFolder(request_.SourceFolder);
  }
  QString FilesOf(const QString& name) const {
    return Text("Source: ") + ShownSource(name) + Text("\nTarget: ") + ShownTarget(name) +
           Text("\n");
  }

  /// False when the run is to end.
  bool BringOne(const QString& name) {
    ShowInHand(ShownSource(name) + Text("\n\nTo\n\n") + ShownTarget(name));
    TransferPlan plan;
    if (transfer_) {
      plan = transfer_->Plan(PathOf(name));
    }
    const bool isInTheWay = plan.ImageIsThere || plan.SoundIsThere;
    // Nobody knows how long a question stands: no source waits for the answer.
    if (isInTheWay && !FinishBatch()) {
      return false;
    }
    Overwrite overwrite = isInTheWay ? Overwrite::kReplace : Overwrite::kRefuse;
    bool isWanted = true;
    for (const QString& there : {plan.ImageIsThere ? name : QString(),
                                 plan.SoundIsThere ? PathFromBytes(plan.SoundName) : QString()}) {
      const Answer answer = there.isEmpty() || !isWanted ? Answer::kYes : AskToReplace(there);
      if (answer == Answer::kCancel) {
        return false;
      }
      isWanted = isWanted && answer == Answer::kYes;
    }
    if (isWanted) {
      BringWanted(plan, overwrite);
    }
    if (!failure_) {
      return true;
    }
    const std::string reason = *failure_;
    return FinishBatch() && AskToGoOn(FilesOf(name), reason);
  }

  void BringWanted(const TransferPlan& plan, Overwrite overwrite) {
    try {
      if (transfer_ && failure_) {
        transfer_->Try(plan);
      } else if (transfer_) {
        transfer_->Bring(plan, overwrite);
        ++done_;
      }
    } catch (const StepFailure& reason) {
      failure_ = reason.what();
    }
  }

  Answer AskToReplace(const QString& name) const {
    const QString text = Text("Target File: ") + ShownTarget(name) +
                         Text(" Already Exists.\nWould You Like To Replace The Existing File?");
    return surroundings_.Questions.ShowMessage(
        {text, text, MessageButtons::kYesNoCancel, MessageIcon::kQuestion});
  }

  /// Lets the sources of moved images go; false when the run is to end.
  bool FinishBatch() {
    bool goesOn = true;
    for (const TransferFault& fault :
         transfer_ ? transfer_->Finish() : std::vector<TransferFault>()) {
      done_ -= fault.Source.isEmpty() ? 0 : 1;
      failure_ = fault.Reason;
      if (goesOn) {
        goesOn = AskToGoOn(fault.Source.isEmpty() ? QString() : FilesOf(FileNameOf(fault.Source)),
                           fault.Reason);
      }
    }
    return goesOn;
  }

  bool moves_;
  std::optional<ImageTransfer> transfer_;
};

class DeleteRun : public Run {
 public:
  DeleteRun(const TransferRequest& request, const TransferSurroundings& surroundings)
      : Run(request, surroundings, kDeleting) {}

  int operator()() {
    if (request_.FileNames.isEmpty() || !IsSure()) {
      return 0;
    }
    Begin();
    FolderSounds sounds(request_.SourceFolder);
    for (const QString& name : request_.FileNames) {
      if (surroundings_.StopAsked()) {
        break;
      }
      ShowGauge();
      ShowInHand(ShownSource(name));
      try {
        DeleteImage(PathOf(name), sounds);
      } catch (const StepFailure& reason) {
        failure_ = reason.what();
      }
      if (!failure_) {
        ++done_;
      } else if (!AskToGoOn(Text("Source: ") + ShownSource(name) + Text("\n"), *failure_)) {
        break;
      }
    }
    surroundings_.Status.InHand.clear();
    surroundings_.SourceChanged();
    End();
    TellResult(shownSource_);
    return done_;
  }

 private:
  bool IsSure() const {
    return surroundings_.Questions.ShowMessage(
               {Text("Delete Images"),
                Text("Are you sure you wish to delete\nthe selected images from ") + shownSource_,
                MessageButtons::kYesNo, MessageIcon::kQuestion}) == Answer::kYes;
  }
};

}  // namespace

int CopyImages(const TransferRequest& request, const TransferSurroundings& surroundings) {
  return BringRun(request, surroundings, false)();
}

int TransferImages(const TransferRequest& request, const TransferSurroundings& surroundings) {
  return BringRun(request, surroundings, true)();
}

int DeleteImages(const TransferRequest& request, const TransferSurroundings& surroundings) {
  return DeleteRun(request, surroundings)();
}

TransferButtons CheckTransfer(bool anySelected, const QString& sourceFolder,
                              const QString& targetFolder) {
  return {anySelected && !IsSameFile(sourceFolder, targetFolder), anySelected};
}

}  // namespace tessa
