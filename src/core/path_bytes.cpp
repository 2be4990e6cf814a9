#include "core/path_bytes.h"

#include <algorithm>
#include <array>

namespace tessa {
namespace {

constexpr char16_t kByteBase = 0xDC00;

bool StandsForByte(QChar character) {
  return character.unicode() >= kByteBase + 0x80 && character.unicode() <= kByteBase + 0xFF;
}

struct Character {
  char32_t Code = 0;
  qsizetype Length = 0;  // In bytes; 0 when no well-formed UTF-8 character starts there.
};

Character ReadCharacter(const QByteArray& bytes, qsizetype at) {
  const auto byte = [&](qsizetype i) -> char32_t { return static_cast<unsigned char>(bytes[i]); };
  const char32_t first = byte(at);
  if (first < 0x80) {
    return {first, 1};
  }
  const qsizetype length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || at + length > bytes.size()) {
    return {};
  }
  char32_t code = first & (0x7FU >> length);
  for (qsizetype i = at + 1; i < at + length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) {
      return {};
    }
    code = code << 6 | (byte(i) & 0x3F);
  }
  // Longer than needed, half of a pair, or beyond the last character there can be.
  constexpr std::array<char32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < kSmallest[static_cast<std::size_t>(length)] || isSurrogate || code > 0x10FFFF) {
    return {};
  }
  return {code, length};
}

}  // namespace

QString PathFromBytes(const QByteArray& bytes) {
  QString path;
  path.reserve(bytes.size());
  for (qsizetype at = 0; at < bytes.size();) {
    const Character character = ReadCharacter(bytes, at);
    if (character.Length == 0) {
      path += QChar(static_cast<char16_t>(kByteBase + static_cast<unsigned char>(bytes[at])));
      ++at;
      continue;
    }
    for (const char16_t unit : QChar::fromUcs4(character.Code)) {
      path += QChar(unit);
    }
    at += character.Length;
  }
  return path;
}

QByteArray PathToBytes(const QString& path) {
  QByteArray bytes;
  bytes.reserve(path.size());
  for (qsizetype at = 0; at < path.size();) {
    if (StandsForByte(path[at])) {
      bytes += static_cast<char>(path[at].unicode() - kByteBase);
      ++at;
      continue;
    }
    // A pair is never cut in two, since the half that could stand for a byte comes second.
    qsizetype end = at;
    while (end < path.size() && !StandsForByte(path[end])) {
      end += path[end].isHighSurrogate() && end + 1 < path.size() && path[end + 1].isLowSurrogate()
                 ? 2
                 : 1;
    }
    bytes += path.mid(at, end - at).toUtf8();
    at = end;
  }
  return bytes;
}

QString ShownPath(QString path) {
  for (qsizetype at = 0; at < path.size(); ++at) {
    if (path[at].isHighSurrogate() && at + 1 < path.size() && path[at + 1].isLowSurrogate()) {
      ++at;
    } else if (path[at].isSurrogate()) {
      path[at] = QChar::ReplacementCharacter;
    }
  }
  return path;
}

QString FolderOfPath(const QString& path) {
  const qsizetype separator = path.lastIndexOf(QLatin1Char('/'));
  if (separator < 0) {
    return QStringLiteral(".");
  }
  return path.left(std::max<qsizetype>(separator, 1));
}

QString FileNameOf(const QString& path) {
  return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

QString JoinPath(const QString& folder, const QString& name) {
  if (folder.isEmpty() || name.startsWith(QLatin1Char('/'))) {
    return name;
  }
  return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

}  // namespace tessa
