#include "camera/download_replies.h"

namespace tessa {

void DownloadReplies::AskForSit(const QString& name) {
  if (sit_ != kYesToAll && sit_ != kNoToAll) {
    sit_ = ask_(name);
    sit_ = sit_ == kClosed ? kCancel : sit_;
  }
}

bool DownloadReplies::IsSitToCome(bool exists) const {
  return sit_ == kNone || sit_ == kYes || sit_ == kYesToAll || (sit_ == kNoToAll && !exists);
}

bool DownloadReplies::AskForPicture(const QString& name) {
  if (picture_ != kYesToAll && picture_ != kNoToAll) {
    picture_ = ask_(name);
    if (picture_ == kClosed || picture_ == kCancel) {
      Cancel();
    }
  }
  return picture_ == kYes || picture_ == kYesToAll;
}

void DownloadReplies::Forget() {
  for (int* const reply : {&sit_, &picture_}) {
    *reply = *reply == kNo ? kNone : *reply;
  }
}

}  // namespace tessa
