#pragma once

#include <QLabel>
#include <QString>

namespace tessa {

/// A label that shows its text letter for letter. Every label of the program is one: comments,
/// memos and paths come from outside, and a text that looks like markup would otherwise be laid out
/// as such and could make the window read files that it names.
class PlainLabel : public QLabel {
  Q_OBJECT

 public:
  explicit PlainLabel(QWidget* parent = nullptr);
  explicit PlainLabel(const QString& text, QWidget* parent = nullptr);
};

/// A text for a tool tip: what looks like markup is shown letter for letter too, control characters
/// are replaced, and a text beyond any sensible length is cut.
QString PlainToolTip(const QString& text);

/// A text on one line: control characters and ends of lines become replacement characters, and a
/// text beyond `most` characters loses its middle.
QString OneLine(const QString& text, qsizetype most = 1000);

/// One line for a menu entry: as OneLine, with "&" as itself.
QString PlainMenuText(const QString& text, qsizetype most);

/// A window's title: as OneLine; the toolkit's mark for changed documents is shown as itself.
QString PlainTitle(const QString& text);

}  // namespace tessa
