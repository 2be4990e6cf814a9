#pragma once

#include <sys/stat.h>

#include <QByteArray>
#include <QString>
#include <optional>

#include "core/file_descriptor.h"
#include "core/write_file.h"
#include "formats/byte_reader.h"

namespace tessa {

// How the bytes of a transferred file move. Everything here throws StepFailure, whose text is the
// reason alone: the caller knows which file it is about.

/// A folder that files are put into. Held open, so that it stays the same folder whatever happens
/// to its path meanwhile.
class TargetFolder {
 public:
  explicit TargetFolder(const QString& path);

  const QString& Path() const { return path_; }
  int Descriptor() const { return folder_.Get(); }
  /// True for any path that leads to this folder, also through links.
  bool IsSameFolder(const QString& path) const;
  /// True when a plain file with this status lies on the same device.
  bool IsOnDevice(const struct stat& status) const { return status.st_dev == status_.st_dev; }

  /// What stands under the name itself; links are not followed.
  std::optional<struct stat> Find(const QByteArray& name) const;
  /// Refuses what no file may take the place of: folders, pipes, devices, and links to those. A
  /// link to a plain file or to nothing may be replaced; what it leads to is left alone.
  void CheckReplaceable(const QByteArray& name) const;
  /// Throws when this user may put no files here.
  void CheckWritable() const;
  /// False when the folder was removed: then nobody can reach what is put here.
  bool HasName() const;
  /// Waits until all that was put here is on the disk.
  void Sync() const;

 private:
  QString path_;
  FileDescriptor folder_;
  struct stat status_ {};
};

/// A plain file that is open to be copied, and its state at that time.
struct SourceFile {
  FileDescriptor File;
  struct stat Status {};
};

/// Refuses folders, pipes and devices without waiting for them; follows links.
SourceFile OpenSource(const QString& path);

/// True when `now` is the same file with the same bytes, as far as size and times can tell.
bool IsUnchanged(const struct stat& before, const struct stat& now);

/// A file in a target folder. Held open, so that no other file takes its number.
struct PlacedFile {
  QByteArray Name;
  FileDescriptor File;
  struct stat Status {};
};

PlacedFile OpenPlaced(const TargetFolder& folder, const QByteArray& name);
/// True when the name still leads to that file, with the bytes that it had.
bool IsStillThere(const TargetFolder& folder, const PlacedFile& file);

/// True when both hold the same bytes. `name` is in `folder`; anything but a plain file has none.
bool HasSameBytes(const SourceFile& source, const TargetFolder& folder, const QByteArray& name);

/// A copy on its way: in its folder, but without a name or under a temporary one. Goes with the
/// object unless it was given its name.
class StagedFile {
 public:
  /// Copies the whole source, its time of change and its permissions; the owner may always write
  /// the copy. A source that changes meanwhile is refused.
  StagedFile(const SourceFile& source, const TargetFolder& folder);
  StagedFile(StagedFile&& other) noexcept;
  StagedFile(const StagedFile&) = delete;
  StagedFile& operator=(const StagedFile&) = delete;
  StagedFile& operator=(StagedFile&&) = delete;
  ~StagedFile();

  /// Puts `tail` behind the copy and `start` in the place of its first bytes.
  void Change(ByteSpan start, ByteSpan tail);
  /// Owner, group, access list and permissions become those of the plain file that stands under
  /// `name`, if there is one: before the copy takes its place.
  void TakeRightsOf(const QByteArray& name) const;
  /// Waits until the bytes are on the disk.
  void Sync() const;
  /// What is replaced is whole until the new file takes its place, which is on the disk by then. A
  /// new name is not waited for: TargetFolder::Sync() does that once for many.
  void GiveName(const QByteArray& name, Overwrite overwrite);
  /// Takes a name that GiveName() gave away again.
  void TakeBack(const QByteArray& name) const;
  /// The copy under the name that GiveName() gave it. To be called last.
  PlacedFile Release(const QByteArray& name);

 private:
  void Open();
  void CopyBytes(const SourceFile& source) const;
  void TakeOverTraits(const struct stat& status) const;

  const TargetFolder* folder_;
  FileDescriptor file_;
  QByteArray part_;  // The temporary name; empty while there is none.
};

/// Keeps what stands under a name by a temporary name until it is certain that it is replaced. Puts
/// it back otherwise.
class ReplacedFile {
 public:
  ReplacedFile(const TargetFolder& folder, QByteArray name);
  ReplacedFile(const ReplacedFile&) = delete;
  ReplacedFile(ReplacedFile&&) = delete;
  ReplacedFile& operator=(const ReplacedFile&) = delete;
  ReplacedFile& operator=(ReplacedFile&&) = delete;
  ~ReplacedFile();

  void LetGo();

 private:
  const TargetFolder* folder_;
  QByteArray name_;
  QByteArray part_;  // Empty when there is nothing to put back.
};

/// A second name in `folder` for the file at `path`. False when the file system knows no such
/// thing; throws when the name is taken or there is no room.
bool LinkInto(const QString& path, const TargetFolder& folder, const QByteArray& name,
              Overwrite overwrite);

/// Moves the file at `path` into `folder`. False when it lies on another file system.
bool RenameInto(const QString& path, const TargetFolder& folder, const QByteArray& name,
                Overwrite overwrite);

/// Lets the owner write the file.
void ClearReadOnly(const TargetFolder& folder, const QByteArray& name);

}  // namespace tessa
