#include "widgets/plain_text.h"

#include <QTextDocument>

namespace tessa {
namespace {

/// Control characters, and those that turn the direction of writing, could forge what is read.
bool IsHarmful(QChar character) {
  return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
         character == QChar::ParagraphSeparator ||
         (character >= QChar(0x202A) && character <= QChar(0x202E)) ||
         (character >= QChar(0x2066) && character <= QChar(0x2069));
}

QString WithoutHarm(QString text, bool keepsLines) {
  for (QChar& character : text) {
    if (IsHarmful(character) && !(keepsLines && character == QLatin1Char('\n'))) {
      character = QChar::ReplacementCharacter;
    }
  }
  return text;
}

QString WithoutMiddle(const QString& text, qsizetype most) {
  const qsizetype half = most / 2;
  return text.size() <= most ? text : text.left(half) + QChar(0x2026) + text.right(half);
}

}  // namespace

PlainLabel::PlainLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
}

PlainLabel::PlainLabel(const QString& text, QWidget* parent) : PlainLabel(parent) {
  setText(text);
}

QString PlainToolTip(const QString& text) {
  constexpr qsizetype kMost = 1000;
  const QString shown = WithoutHarm(WithoutMiddle(text, kMost), true);
  // A tip has no switch for plain text, but text that does not look like markup is left alone.
  return Qt::mightBeRichText(shown) ? Qt::convertFromPlainText(shown, Qt::WhiteSpaceNormal) : shown;
}

QString OneLine(const QString& text, qsizetype most) {
  return WithoutHarm(WithoutMiddle(text, most), false);
}

QString PlainMenuText(const QString& text, qsizetype most) {
  return OneLine(text, most).replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString PlainTitle(const QString& text) {
  return OneLine(text).replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
}

}  // namespace tessa
