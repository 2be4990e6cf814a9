#include "core/language_strings.h"

namespace tessa {

QString Strings::LangString(int id, const QString& defaultText) const {
  const QString text = texts_.value(id + offset_);
  return text.isEmpty() ? defaultText : text;
}

QString Strings::LangString(int id, const char* defaultText) const {
  return LangString(id, QString::fromUtf8(defaultText));
}

}  // namespace tessa
