#include "core/plain_line.h"

#include "core/path_bytes.h"

namespace tessa {
namespace {

bool IsControl(char16_t unit) {
  return unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
}

/// Marks of the reading direction, line and paragraph separators, invisible operators, the byte
/// order mark.
bool IsLayoutMark(char16_t unit) {
  return unit == 0x061C || (unit >= 0x200B && unit <= 0x200F) ||
         (unit >= 0x2028 && unit <= 0x202E) || (unit >= 0x2060 && unit <= 0x206F) || unit == 0xFEFF;
}

QString Escape(const char* prefix, int digits, char16_t unit) {
  return QLatin1String(prefix) +
         QStringLiteral("%1").arg(static_cast<int>(unit), digits, 16, QLatin1Char('0'));
}

}  // namespace

QString PlainLine(const QString& text) {
  QString line;
  line.reserve(text.size());
  for (qsizetype at = 0; at < text.size(); ++at) {
    const char16_t unit = text[at].unicode();
    if (text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate()) {
      line += text[at];
      line += text[++at];
    } else if (unit >= 0xDC80 && unit <= 0xDCFF) {
      line += Escape("\\x", 2, static_cast<char16_t>(unit - 0xDC00));
    } else if (IsControl(unit)) {
      line += Escape("\\x", 2, unit);
    } else if (IsLayoutMark(unit) || text[at].isSurrogate()) {
      line += Escape("\\u", 4, unit);
    } else {
      line += text[at];
    }
  }
  return line;
}

std::string PlainLine(std::string_view text) {
  return PlainUtf8(PathFromBytes(QByteArray(text.data(), static_cast<qsizetype>(text.size()))));
}

std::string PlainUtf8(const QString& text) {
  return PlainLine(text).toStdString();
}

QByteArray PlainJson(const QByteArray& json) {
  // Outside of strings JSON is ASCII, and its only control character is the line break.
  QString plain;
  for (const QChar character : PathFromBytes(json)) {
    const char16_t unit = character.unicode();
    const bool harmless = unit == '\n' || !(IsControl(unit) || IsLayoutMark(unit));
    plain += harmless ? QString(character) : Escape("\\u", 4, unit);
  }
  return plain.toUtf8();
}

}  // namespace tessa
