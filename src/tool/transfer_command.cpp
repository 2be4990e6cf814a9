#include "tool/transfer_command.h"

#include <utility>
#include <vector>

#include "browser/transfer_images.h"
#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/plain_line.h"
#include "core/steps.h"
#include "tool/streams.h"

namespace tessa {
namespace {

QString Files(int count) {
  return QString::number(count) + (count == 1 ? QStringLiteral(" file") : QStringLiteral(" files"));
}

/// Copies or moves the files of one call.
class Bringing {
 public:
  Bringing(const QString& target, TransferOptions options, bool replaces, bool skips)
      : transfer_(target, options), moves_(options.Move), replaces_(replaces), skips_(skips) {}

  int Run(const std::vector<std::string>& files) {
    StopAfterThisFile();
    for (const std::string& file : files) {
      if (Interrupted()) {
        break;
      }
      try {
        BringOne(FromArgument(file));
      } catch (const std::exception& reason) {
        Fail(FromArgument(file), reason.what());
      }
      if (transfer_.IsBatchFull()) {
        Finish();
      }
    }
    Finish();
    TellSounds();
    PrintSum();
    return Interrupted() ? InterruptedStatus() : failed_ > 0 ? kToolFailed : kToolDone;
  }

 private:
  /// What is told of a file as soon as it is sure.
  struct Brought {
    QString Source;
    QString Line;
  };

  void BringOne(const QString& path) {
    if (transfer_.Folder().IsSameFolder(FolderOfPath(path))) {
      throw StepFailure("it is in that folder already");
    }
    const QString target = JoinPath(transfer_.Folder().Path(), FileNameOf(path));
    const QString along = transfer_.WentAlong(path);
    if (!along.isEmpty()) {
      wentAlong_.push_back({path, path + QStringLiteral(" -> ") + along});
      return;
    }
    const TransferPlan plan = transfer_.Plan(path);
    if (plan.ImageIsThere || plan.SoundIsThere) {
      const QString there =
          plan.ImageIsThere ? target
                            : JoinPath(transfer_.Folder().Path(), PathFromBytes(plan.SoundName));
      if (skips_) {
        PrintLine(path + QStringLiteral(": skipped, since ") + there +
                  QStringLiteral(" is there already"));
        ++skipped_;
        return;
      }
      if (plan.ImageIsOurs || plan.SoundIsOurs) {
        throw StepFailure("another file of this call became " + PlainUtf8(there));
      }
      if (!replaces_) {
        throw StepFailure(PlainUtf8(there) + " is there already; --replace would replace it");
      }
    }
    const std::size_t waited = transfer_.Waiting();
    transfer_.Bring(plan, replaces_ ? Overwrite::kReplace : Overwrite::kRefuse);
    QString line = path + QStringLiteral(" -> ") + target;
    if (!plan.Wave.empty()) {
      line += QStringLiteral(" with its sound inside");
    } else if (!plan.Sound.isEmpty() && !plan.SoundIsEmpty) {
      line += QStringLiteral(" with ") + PathFromBytes(plan.SoundName);
    }
    if (transfer_.Waiting() > waited) {
      waiting_.push_back({path, line});
    } else {
      Tell(line);
    }
  }

  void Tell(const QString& line) {
    PrintLine(line);
    ++done_;
  }
  /// Lets sources go, and tells of those that are gone.
  void Finish() {
    QSet<QString> stayed;
    for (const TransferFault& fault : transfer_.Finish()) {
      stayed.insert(fault.Source);
      Fail(fault.Source.isEmpty() ? transfer_.Folder().Path() : fault.Source, fault.Reason);
    }
    for (const Brought& file : std::exchange(waiting_, {})) {
      if (!stayed.contains(file.Source)) {
        Tell(file.Line);
      }
    }
  }
  /// Sounds that were named themselves, though images take them along.
  void TellSounds() {
    for (const Brought& file : wentAlong_) {
      if (moves_ && PathExists(file.Source)) {
        Fail(file.Source, "it was copied and stays: an image that stays names it or may do so");
      } else {
        Tell(file.Line);
      }
    }
  }
  void Fail(const QString& path, const std::string& reason) {
    PrintError(path, reason);
    ++failed_;
  }
  void PrintSum() const {
    QString sum = Files(done_) +
                  (moves_ ? QStringLiteral(" moved to ") : QStringLiteral(" copied to ")) +
                  transfer_.Folder().Path();
    if (skipped_ > 0) {
      sum += QStringLiteral(", %1 skipped").arg(skipped_);
    }
    if (failed_ > 0) {
      sum += QStringLiteral(", %1 failed").arg(failed_);
    }
    PrintLine(sum);
  }

  ImageTransfer transfer_;
  bool moves_;
  bool replaces_;
  bool skips_;
  std::vector<Brought> waiting_;
  std::vector<Brought> wentAlong_;
  int done_ = 0;
  int skipped_ = 0;
  int failed_ = 0;
};

}  // namespace

int RunBring(const BringCall& call) {
  try {
    return Bringing(FromArgument(call.To), {call.Moves, call.EmbedSounds, true}, call.Replace,
                    call.Skip)
        .Run(call.Files);
  } catch (const StepFailure& reason) {
    PrintError(FromArgument(call.To), std::string("no files can be put there: ") + reason.what());
    return kToolFailed;
  }
}

int RunDelete(const std::vector<std::string>& files) {
  int done = 0;
  int status = kToolDone;
  SoundFolders folders;
  QSet<QString> gone;  // Sounds that went with their images.
  StopAfterThisFile();
  for (const std::string& file : files) {
    if (Interrupted()) {
      break;
    }
    const QString path = FromArgument(file);
    FolderSounds& sounds = folders.Of(path);
    try {
      if (!gone.contains(sounds.PathOf(path))) {
        gone.insert(DeleteImage(path, sounds));
      }
      PrintLine(path + QStringLiteral(" deleted"));
      ++done;
    } catch (const std::exception& reason) {
      PrintError(path, reason.what());
      status = kToolFailed;
    }
  }
  PrintLine(Files(done) + QStringLiteral(" deleted"));
  return Interrupted() ? InterruptedStatus() : status;
}

}  // namespace tessa
