#include "windows/save_sequence_dialog.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "core/tell.h"
#include "sequence/convert_frames.h"
#include "widgets/plain_text.h"

namespace tessa {
namespace {

/// Hidden controls keep their place, so that nothing moves when the names appear.
void KeepPlace(QWidget* widget) {
  QSizePolicy policy = widget->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget->setSizePolicy(policy);
}

}  // namespace

SaveSequenceDialog::SaveSequenceDialog(Session& session, Progress& progress, QWidget* parent)
    : QDialog(parent), session_(session), progress_(progress) {
  setObjectName(QStringLiteral("frmSaveSeq"));
  setWindowTitle(session_.Words.LangString(229, "Save Sequence Frames"));
  MakeControls();
  Arrange();
  FillNames();
  const QSize wanted(420, 420);
  const QSize frame(16, 48);  // What a window manager adds, roughly.
  resize(wanted.boundedTo(screen()->availableSize() - frame));
}

void SaveSequenceDialog::MakeControls() {
  const Strings& words = session_.Words;
  const auto button = [this](const char* name, const QString& text) {
    auto* const made = new QPushButton(text, this);
    made->setObjectName(QString::fromLatin1(name));
    made->setAutoDefault(false);
    KeepPlace(made);
    return made;
  };
  prefix_ = new QLineEdit(this);
  prefix_->setObjectName(QStringLiteral("Text1"));
  toBmp_ = new QRadioButton(words.LangString(120, "Convert to BMP"), this);
  toBmp_->setObjectName(QStringLiteral("Option1"));
  toBmp_->setChecked(true);
  toTxi_ = new QRadioButton(words.LangString(121, "Convert to TXI"), this);
  toTxi_->setObjectName(QStringLiteral("Option2"));
  names_ = new QListWidget(this);
  names_->setObjectName(QStringLiteral("List1"));
  names_->setAccessibleName(windowTitle());
  names_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  selectAll_ = button("SSCommand2", words.LangString(233, "Select All"));
  selectNone_ = button("SSCommand3", words.LangString(217, "Reset All"));
  convert_ = button("SSCommand9", words.LangString(119, "Convert"));
  close_ = button("SSCommand1", words.LangString(114, "Close"));
  status_ = new PlainLabel(this);
  status_->setObjectName(QStringLiteral("Label1"));
  status_->setTextFormat(Qt::PlainText);
  status_->setWordWrap(true);
  connect(prefix_, &QLineEdit::returnPressed, this, &SaveSequenceDialog::FillNames);
  connect(prefix_, &QLineEdit::textChanged, this, &SaveSequenceDialog::PrefixChanged);
  connect(toBmp_, &QRadioButton::clicked, this, &SaveSequenceDialog::OptionChosen);
  connect(toTxi_, &QRadioButton::clicked, this, &SaveSequenceDialog::OptionChosen);
  connect(names_, &QListWidget::itemSelectionChanged, this, &SaveSequenceDialog::SelectionChanged);
  connect(selectAll_, &QPushButton::clicked, names_, &QListWidget::selectAll);
  connect(selectNone_, &QPushButton::clicked, names_, &QListWidget::clearSelection);
  connect(convert_, &QPushButton::clicked, this, &SaveSequenceDialog::Convert);
  connect(close_, &QPushButton::clicked, this, &QDialog::reject);
}

void SaveSequenceDialog::Arrange() {
  auto* const label =
      new PlainLabel(session_.Words.LangString(411, "New Sequence Name Prefix"), this);
  label->setBuddy(prefix_);
  auto* const formats = new QHBoxLayout;
  formats->addWidget(toBmp_);
  formats->addWidget(toTxi_);
  formats->addStretch();
  auto* const selection = new QHBoxLayout;
  selection->addWidget(selectAll_);
  selection->addWidget(selectNone_);
  selection->addStretch();
  auto* const ending = new QHBoxLayout;
  ending->addWidget(status_, 1);
  ending->addWidget(convert_);
  ending->addWidget(close_);
  auto* const layout = new QVBoxLayout(this);
  constexpr int kMargin = 12;
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->addWidget(label);
  layout->addWidget(prefix_);
  layout->addLayout(formats);
  layout->addWidget(names_, 1);
  layout->addLayout(selection);
  layout->addLayout(ending);
}

/// Enter makes the names or presses the button in focus; it never leaves the dialog.
void SaveSequenceDialog::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
    QDialog::keyPressEvent(event);
  } else if (auto* const button = qobject_cast<QPushButton*>(focusWidget())) {
    button->click();
  }
}

void SaveSequenceDialog::OptionChosen() {
  if (prefix_->text().isEmpty() || names_->count() > 0) {
    FillNames();
  }
}

/// A list on show always is that of the prefix in the box.
void SaveSequenceDialog::PrefixChanged() {
  if (names_->count() > 0) {
    FillNames();
  } else {
    ShowHint();
  }
}

FrameFormat SaveSequenceDialog::Format() const {
  return toBmp_->isChecked() ? FrameFormat::kBmp : FrameFormat::kTxi;
}

void SaveSequenceDialog::FillNames() {
  {
    const QSignalBlocker blocker(names_);
    names_->clear();
    outputs_ = ListFrameOutputs(prefix_->text(), Format(), session_.Image);
    for (const FrameOutput& output : outputs_) {
      names_->addItem(output.Name);
    }
  }
  const bool usable = IsUsablePrefix(prefix_->text());
  names_->setEnabled(usable);
  selectAll_->setVisible(usable);
  selectNone_->setVisible(usable);
  convert_->setVisible(false);
  MarkExisting();
  ShowHint();
}

/// Files that are there already say so before anything is written over them.
void SaveSequenceDialog::MarkExisting() {
  const QString mark =
      QStringLiteral("   \u2013 ") + session_.Words.LangString(447, "will be replaced");
  for (int row = 0; row < names_->count(); ++row) {
    const QString& name = outputs_[static_cast<std::size_t>(row)].Name;
    const bool isThere = OutputExists(name, session_.Image);
    names_->item(row)->setText(isThere ? name + mark : name);
    QFont font = names_->font();
    font.setBold(isThere);
    names_->item(row)->setFont(font);
  }
}

/// What to do next, or what is wrong with the prefix.
void SaveSequenceDialog::ShowHint() {
  const Strings& words = session_.Words;
  const QString& prefix = prefix_->text();
  if (!prefix.isEmpty() && !IsUsablePrefix(prefix)) {
    status_->setText(words.LangString(445, "A prefix cannot contain / or \\."));
  } else if (names_->count() == 0) {
    status_->setText(words.LangString(444, "Type a prefix and press Enter to list the files."));
  } else {
    status_->setText(words.LangString(446, "Select the frames to be written."));
  }
}

void SaveSequenceDialog::SelectionChanged() {
  convert_->setVisible(!names_->selectedItems().isEmpty());
}

void SaveSequenceDialog::Convert() {
  FrameConversion conversion;
  conversion.Format = Format();
  for (int row = 0; row < names_->count(); ++row) {
    if (names_->item(row)->isSelected()) {
      conversion.Outputs.push_back(outputs_[static_cast<std::size_t>(row)]);
    }
  }
  if (conversion.Outputs.empty()) {
    return;
  }
  setEnabled(false);
  const ConversionResult result =
      ConvertFrames(conversion, session_, progress_, [this](const QString& line) {
        status_->setText(line);
        status_->repaint();
      });
  setEnabled(true);
  if (result.Failed.empty()) {
    accept();
    return;
  }
  // The list stays, so that what failed can be tried again.
  MarkExisting();
  const QString further = FurtherText(session_.View.Notice, session_.Words);
  status_->setText((session_.View.Notice.Text + QLatin1Char(' ') + further).trimmed());
}

}  // namespace tessa
