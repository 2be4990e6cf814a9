#include "core/language_strings.h"

namespace tessa {

QString Strings::LangString(int id, const QString& defaultText) const {
  const QString text = texts_.value(id + offset_);
  return text.isEmpty() ? defaultText : text;
}

void Strings::ReadTable(const QByteArray& table) {
  const QStringList lines = QString::fromUtf8(table).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
  for (const QString& line : lines) {
    const QStringList columns = line.split(QLatin1Char('\t'));
    bool isNumber = false;
    const int id = columns.value(0).toInt(&isNumber);
    for (int language = 0; isNumber && language + 1 < columns.size(); ++language) {
      texts_.insert(id + language * kLanguageStride, columns[language + 1].trimmed());
    }
  }
}

QString Strings::LangString(int id, const char* defaultText) const {
  return LangString(id, QString::fromUtf8(defaultText));
}

}  // namespace tessa
