#pragma once

#include <sys/stat.h>

#include <QByteArray>
#include <QString>

#include "formats/byte_reader.h"

namespace tessa {

enum class Overwrite { kRefuse, kReplace };

/// Writes a whole file, so that the path holds either the old file or the whole new one, even after
/// a power cut where an old one is replaced: then the bytes are on the disk before they take the
/// name. A new file is not waited for; SyncFolder() does that once for many. A kill leaves nothing
/// behind where the file system has files without a name.
///
/// A symbolic link is followed; one that leads nowhere is refused. An old file's permissions stay,
/// never those that run it as another user; its owner, group and access list stay where the system
/// allows it. With kRefuse an existing file is left alone. Throws StepFailure, whose text begins
/// with the path.
void WriteWholeFile(const QString& path, ByteSpan content, Overwrite overwrite);

/// Waits until everything written to the file system of `folder` is on the disk. Throws
/// StepFailure.
void SyncFolder(const QString& folder);

/// Gives an open file the owner, group, access list and permissions of the plain file `name` in the
/// open `folder`, whose status is `old` and which it is to replace. What cannot be kept never lets
/// more people in.
void TakeOverRights(int folder, const QByteArray& name, const struct stat& old, int descriptor);

/// Writes all of `content` at `offset`; false, with errno set, when the system will not take it.
bool WriteAllAt(int descriptor, ByteSpan content, std::uint64_t offset);

/// A name that nobody else uses: ".tessa-", 16 hexadecimal digits, ".part". Throws StepFailure when
/// the system has no random numbers.
QByteArray RandomPartName();
/// True for what RandomPartName() makes.
bool IsPartName(const QByteArray& name);

/// 16 hexadecimal digits. Throws StepFailure when the system has no random numbers.
QByteArray RandomDigits();

}  // namespace tessa
