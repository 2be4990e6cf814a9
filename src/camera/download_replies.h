#pragma once

#include <QString>
#include <functional>

namespace tessa {

/// The user's replies on files that are there already, for the length of one run. SIT files have a
/// reply of their own; BMP and JPEG files share one. Which file was asked about counts for nothing
/// afterwards: the rules go by the last reply alone.
class DownloadReplies {
 public:
  // As the dialog gives them.
  static constexpr int kClosed = -1;
  static constexpr int kYes = 1;
  static constexpr int kYesToAll = 2;
  static constexpr int kNo = 3;
  static constexpr int kNoToAll = 4;
  static constexpr int kCancel = 5;

  /// `ask` is given a file's name.
  explicit DownloadReplies(std::function<int(const QString& name)> ask) : ask_(std::move(ask)) {}

  void AskForSit(const QString& name);
  /// True when the image is to be brought.
  bool IsSitToCome(bool exists) const;
  /// True when the picture that is there may be written over.
  bool AskForPicture(const QString& name);
  /// An image is done: "No" concerns one file only.
  void Forget();

  void Cancel() { sit_ = kCancel; }
  bool IsCancelled() const { return sit_ == kCancel; }
  /// A picture's dialog that was closed ends the run with its image. One that was cancelled ends it
  /// at the next image, after the question for its SIT file, whose reply can still let the run go
  /// on.
  bool EndsAfterImage() const { return sit_ == kCancel && picture_ != kCancel; }
  /// The camera failed. The next reply for a SIT file takes the failure's place.
  void Fail() { sit_ = kFailure; }
  bool HasFailed() const { return sit_ == kFailure; }

 private:
  static constexpr int kNone = 0;
  static constexpr int kFailure = 6;

  std::function<int(const QString& name)> ask_;
  int sit_ = kNone;
  int picture_ = kNone;
};

}  // namespace tessa
