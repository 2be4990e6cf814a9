#include "windows/download_letters.h"

#include <QHash>
#include <QSet>

namespace tessa {
namespace {

/// Pairs captions with letters. One that finds all of its letters taken makes others give way to
/// further letters of theirs.
class Letters {
 public:
  explicit Letters(const QStringList& captions) : captions_(captions) {}

  void Give(qsizetype caption) {
    QSet<QChar> tried;
    Give(caption, tried);
  }
  const QHash<QChar, qsizetype>& Owners() const { return owners_; }

 private:
  bool Give(qsizetype caption, QSet<QChar>& tried) {
    for (const QChar letter : LettersOf(captions_[caption])) {
      if (tried.contains(letter)) {
        continue;
      }
      tried.insert(letter);
      const auto owner = owners_.constFind(letter);
      if (owner == owners_.constEnd() || Give(*owner, tried)) {
        owners_.insert(letter, caption);
        return true;
      }
    }
    return false;
  }

  /// First letters of words come before those inside; only what every keyboard has.
  static QString LettersOf(const QString& caption) {
    QString starts;
    QString others;
    bool isStart = true;
    for (const QChar character : caption) {
      const QChar letter = character.toUpper();
      if (letter >= QLatin1Char('A') && letter <= QLatin1Char('Z')) {
        (isStart ? starts : others) += letter;
      }
      isStart = !letter.isLetter();
    }
    return starts + others;
  }

  const QStringList& captions_;
  QHash<QChar, qsizetype> owners_;
};

/// In front of a word's start, if one begins with the letter.
qsizetype PlaceOf(QChar letter, const QString& caption) {
  for (qsizetype i = 0; i < caption.size(); ++i) {
    if (caption[i].toUpper() == letter && (i == 0 || !caption[i - 1].isLetter())) {
      return i;
    }
  }
  return caption.indexOf(letter, 0, Qt::CaseInsensitive);
}

}  // namespace

QStringList WithLetters(const QStringList& captions) {
  Letters letters(captions);
  for (qsizetype i = 0; i < captions.size(); ++i) {
    letters.Give(i);
  }
  QStringList marked = captions;
  for (auto owner = letters.Owners().cbegin(); owner != letters.Owners().cend(); ++owner) {
    marked[*owner].insert(PlaceOf(owner.key(), captions[*owner]), QLatin1Char('&'));
  }
  return marked;
}

}  // namespace tessa
