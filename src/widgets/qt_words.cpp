#include "widgets/qt_words.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace tessa {

QtWords::~QtWords() {
  QCoreApplication::removeTranslator(&translator_);
}

void QtWords::SetLanguage(int language) {
  if (language == language_) {
    return;
  }
  language_ = language;
  QCoreApplication::removeTranslator(&translator_);
  const QString name = language == 1   ? QStringLiteral("qtbase_de")
                       : language == 2 ? QStringLiteral("qtbase_es")
                                       : QString();
  if (!name.isEmpty() &&
      translator_.load(name, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QCoreApplication::installTranslator(&translator_);
  }
}

}  // namespace tessa
