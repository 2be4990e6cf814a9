#pragma once

#include <QByteArray>
#include <QString>

namespace tessa {

// The system names files by bytes, and not all of them are UTF-8. In a path that is kept as a text,
// each byte that belongs to no UTF-8 character stands as the lone surrogate U+DC00 plus the byte
// (U+DC80 to U+DCFF), which no text has otherwise. So every name of the system survives the way
// there and back.

QString PathFromBytes(const QByteArray& bytes);

/// What the system calls take. Other lone surrogates become "?".
QByteArray PathToBytes(const QString& path);

/// The path for showing: what is no character becomes U+FFFD.
QString ShownPath(QString path);

/// Everything before the last separator; "." when there is none, "/" for a name in the root.
QString FolderOfPath(const QString& path);
/// Everything behind it.
QString FileNameOf(const QString& path);

/// `name` inside `folder`; an absolute name stays as it is.
QString JoinPath(const QString& folder, const QString& name);

}  // namespace tessa
