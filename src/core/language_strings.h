#pragma once

#include <QHash>
#include <QString>

namespace tessa {

/// The words of the interface. Texts are numbered; the German text of id n stands at n + 1000, the
/// Spanish one at n + 2000.
class Strings {
 public:
  /// Text `id` in the present language, or `defaultText` when the table has none.
  QString LangString(int id, const QString& defaultText) const;
  QString LangString(int id, const char* defaultText) const;

  void SetText(int numberedId, const QString& text) { texts_.insert(numberedId, text); }
  void SetLanguageOffset(int offset) { offset_ = offset; }
  int LanguageOffset() const { return offset_; }

 private:
  QHash<int, QString> texts_;
  int offset_ = 0;
};

}  // namespace tessa
