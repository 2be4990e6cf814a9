#pragma once

#include <QTranslator>

namespace tessa {

/// The toolkit's own words, on buttons and in file dialogs, in the program's language. They come
/// with the toolkit; where its translations are not installed, they stay English.
class QtWords {
 public:
  QtWords() = default;
  QtWords(const QtWords&) = delete;
  QtWords& operator=(const QtWords&) = delete;
  ~QtWords();

  /// 0 English, 1 German, 2 Spanish; any other number is English.
  void SetLanguage(int language);

 private:
  QTranslator translator_;
  int language_ = 0;
};

}  // namespace tessa
