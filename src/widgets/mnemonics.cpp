#include "widgets/mnemonics.h"

#include <QMenu>
#include <QMenuBar>

namespace tessa {
namespace {

void AssignTo(const QList<QAction*>& actions) {
  QSet<QChar> used;
  for (QAction* const action : actions) {
    if (!action->isSeparator()) {
      action->setText(WithMnemonic(action->text(), used));
    }
    if (action->menu() != nullptr) {
      AssignTo(action->menu()->actions());
    }
  }
}

}  // namespace

QString WithMnemonic(const QString& caption, QSet<QChar>& used) {
  bool wordStart = true;
  // First letters of words are looked at before the letters inside them.
  for (const bool insideWords : {false, true}) {
    for (qsizetype i = 0; i < caption.size(); ++i) {
      const QChar letter = caption[i].toUpper();
      if (letter.isLetterOrNumber() && (wordStart || insideWords) && !used.contains(letter)) {
        used.insert(letter);
        return QString(caption).insert(i, QLatin1Char('&'));
      }
      wordStart = !letter.isLetterOrNumber();
    }
    wordStart = true;
  }
  return caption;
}

void AssignMnemonics(QMenuBar& bar) {
  AssignTo(bar.actions());
}

QString PlainCaption(const QString& caption) {
  QString plain = caption;
  constexpr QChar kPlaceholder(0x01);
  plain.replace(QLatin1String("&&"), QString(kPlaceholder));
  plain.remove(QLatin1Char('&'));
  return plain.replace(kPlaceholder, QLatin1Char('&'));
}

}  // namespace tessa
