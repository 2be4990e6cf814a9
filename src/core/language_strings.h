#pragma once

#include <QHash>
#include <QString>
#include <algorithm>

namespace tessa {

inline constexpr int kLanguageStride = 1000;

/// The words of the interface. Texts are numbered; the German text of id n stands at n + 1000, the
/// Spanish one at n + 2000.
class Strings {
 public:
  /// Text `id` in the present language, or `defaultText` when the table has none.
  QString LangString(int id, const QString& defaultText) const;
  QString LangString(int id, const char* defaultText) const;

  /// Reads a table of tab-separated columns: id, English, German, Spanish. The first line names the
  /// columns; lines that do not begin with a number are passed over.
  void ReadTable(const QByteArray& table);

  /// 0 English, 1 German, 2 Spanish; any other number has no texts and gives the defaults.
  void SetLanguage(int language) {
    constexpr int kMostLanguages = 1000;
    offset_ = std::clamp(language, -kMostLanguages, kMostLanguages) * kLanguageStride;
  }
  int Language() const { return offset_ / kLanguageStride; }

 private:
  QHash<int, QString> texts_;
  int offset_ = 0;
};

}  // namespace tessa
