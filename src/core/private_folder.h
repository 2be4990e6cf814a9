#pragma once

#include <QByteArray>
#include <memory>
#include <vector>

#include "core/file_descriptor.h"

namespace tessa {

/// A folder for the temporary files of one process (or one session of it). It lies in a folder that
/// belongs to the program and to this user alone, is held by a lock for as long as the object
/// lives, and goes with it. Making one also removes those whose process ended without doing so.
///
/// What is removed: plain files whose names this program makes, and then the empty folder. A folder
/// with anything else in it stays. Nothing is followed, nothing is removed with what is in it, and
/// folders that others can write to are never looked into.
class PrivateFolder {
 public:
  /// Works in the first of `homes` that will do: a folder of this user's that nobody else can write
  /// to. Otherwise a new folder in `shared`, where anybody may write; that
  /// one is never cleaned but by its owner. Throws StepFailure when there is none.
  static std::unique_ptr<PrivateFolder> Make(const std::vector<QByteArray>& homes,
                                             const QByteArray& shared);
  /// The same in the usual places: the user's runtime folder, the cache folder, the system's folder
  /// for temporary files.
  static std::unique_ptr<PrivateFolder> MakeInUsualPlace();

  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;
  ~PrivateFolder();

  /// Full path, without a separator at the end.
  const QByteArray& Path() const { return path_; }

  /// Tells later processes that this one makes a file of that name here, beside the names that are
  /// always the program's own. To be called before the file is made. Throws StepFailure.
  void Register(const QByteArray& name);

  /// The folder in each of the homes that holds those of the processes.
  static constexpr const char* kHomeName = "tessaview-temporary";

 private:
  PrivateFolder(FileDescriptor home, QByteArray path, QByteArray name, FileDescriptor folder,
                FileDescriptor lock);
  static std::unique_ptr<PrivateFolder> MakeIn(const QByteArray& base);

  FileDescriptor home_;  // None in a shared folder.
  QByteArray path_;
  QByteArray name_;  // In the home.
  FileDescriptor folder_;
  FileDescriptor lock_;  // Locked; holds the registered names, each with a zero byte after it.
};

}  // namespace tessa
