#include "tool/transfer_command.h"

#include <memory>

#include "browser/transfer_images.h"
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
    PrintSum();
    return Interrupted() ? InterruptedStatus() : failed_ > 0 ? kToolFailed : kToolDone;
  }

 private:
  void BringOne(const QString& path) {
    if (transfer_.Folder().IsSameFolder(FolderOfPath(path))) {
      throw StepFailure("it is in that folder already");
    }
    const QString target = JoinPath(transfer_.Folder().Path(), FileNameOf(path));
    if (transfer_.WentAlong(path)) {
      PrintLine(path + QStringLiteral(" -> ") + target);
      ++done_;
      return;
    }
    const TransferPlan plan = transfer_.Plan(path);
    if (plan.ImageIsThere || plan.SoundIsThere) {
      const QString there =
          plan.ImageIsThere ? target : JoinPath(transfer_.Folder().Path(), FileNameOf(plan.Sound));
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
    transfer_.Bring(plan, replaces_ ? Overwrite::kReplace : Overwrite::kRefuse);
    QString line = path + QStringLiteral(" -> ") + target;
    if (!plan.Wave.empty()) {
      line += QStringLiteral(" with its sound inside");
    } else if (!plan.Sound.isEmpty() && !plan.SoundIsEmpty) {
      line += QStringLiteral(" with ") + FileNameOf(plan.Sound);
    }
    PrintLine(line);
    ++done_;
  }

  void Finish() {
    for (const TransferFault& fault : transfer_.Finish()) {
      if (fault.Source.isEmpty()) {
        Fail(transfer_.Folder().Path(), fault.Reason);
      } else {
        --done_;
        Fail(fault.Source, "it is in both folders now: " + fault.Reason);
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
  QHash<QString, std::shared_ptr<FolderSounds>> folders;
  QSet<QString> gone;  // Sounds that went with their images.
  StopAfterThisFile();
  for (const std::string& file : files) {
    if (Interrupted()) {
      break;
    }
    const QString path = FromArgument(file);
    auto& sounds = folders[FolderOfPath(path)];
    if (!sounds) {
      sounds = std::make_shared<FolderSounds>(FolderOfPath(path));
    }
    try {
      if (!gone.contains(SamePath(path))) {
        gone.insert(DeleteImage(path, *sounds));
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
