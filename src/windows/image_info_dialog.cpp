#include "windows/image_info_dialog.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include "core/path_bytes.h"
#include "widgets/plain_text.h"

namespace tessa {
namespace {

constexpr int kMargin = 12;
constexpr int kMemoLimit = 20;
constexpr int kCommentHeight = 96;
constexpr int kMemoHeight = 40;
const QSize kPhotographSize(320, 240);
constexpr int kFirstWidth = 460;

/// Keeps a text within the characters that its field has.
void LimitText(QPlainTextEdit& edit, int limit) {
  QObject::connect(&edit, &QPlainTextEdit::textChanged, &edit, [&edit, limit] {
    const QString text = edit.toPlainText();
    if (text.size() > limit) {
      edit.setPlainText(text.left(limit));
      edit.moveCursor(QTextCursor::End);
    }
  });
}

}  // namespace

ImageInfoDialog::ImageInfoDialog(const ImageInfo& info, const Strings& words, QWidget* parent)
    : QDialog(parent), lines_(new QFormLayout) {
  setObjectName(QStringLiteral("frmImageInfo"));
  setWindowTitle(words.LangString(174, "Image Info"));
  lines_->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  lines_->setRowWrapPolicy(QFormLayout::DontWrapRows);
  const auto caption = [&](int id, const char* text) {
    return words.LangString(id, text) + QLatin1Char(':');
  };
  AddLine("Label1", caption(289, "Name"), "lblFilename", ShownPath(info.FileName));
  AddLine("Label2", caption(272, "Type"), "lblType", info.Type);
  AddLine("Label3", caption(240, "Size"), "lblSize", info.Size);
  AddLine("Label9", caption(137, "Date"), "lblDate", info.Date);
  AddLine("Label7", caption(263, "Time"), "lblTime", info.Time);
  AddLine("Label6", caption(160, "Emissivity"), "lblEmissivity", info.Emissivity);
  AddLine("Label5", caption(243, "Sound File"), "lblSoundFile", ShownPath(info.Sound));
  AddLine("lblFrameslbl", caption(290, "Frame Count"), "lblFrames", info.Frames);

  auto* const ok = new QPushButton(words.LangString(200, "OK"), this);
  ok->setObjectName(QStringLiteral("Command1"));
  ok->setDefault(true);
  connect(ok, &QPushButton::clicked, this, &QDialog::accept);
  auto* const ending = new QHBoxLayout;
  QPushButton* const save = MakeSaveButton(words.LangString(223, "Save"));
  ending->addStretch();
  ending->addWidget(save);
  ending->addWidget(ok);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->addLayout(lines_);
  layout->addWidget(MakeText("Frame1", words.LangString(116, "Comment"), "txtComment", info.Comment,
                             info.ReadOnlyTexts, info.CommentLimit));
  layout->addWidget(MakeText("Frame2", words.LangString(187, "Memo"), "txtMemo", info.Memo,
                             info.ReadOnlyTexts, kMemoLimit));
  if (info.Photograph.Width > 0) {
    layout->addWidget(
        MakePhotograph(info.Photograph, words.LangString(277, "Visible Light Image")));
  }
  comment_ = findChild<QPlainTextEdit*>(QStringLiteral("txtComment"));
  memo_ = findChild<QPlainTextEdit*>(QStringLiteral("txtMemo"));
  for (const QPlainTextEdit* const text : {comment_, memo_}) {
    connect(text, &QPlainTextEdit::textChanged, save, [save] {
      if (save->isVisible()) {
        save->setEnabled(true);
      }
    });
  }
  layout->addStretch();
  layout->addLayout(ending);
  resize(kFirstWidth, sizeHint().height());
  ok->setFocus();
}

/// Out of reach: texts are written by the tool, which refuses what does not fit.
QPushButton* ImageInfoDialog::MakeSaveButton(const QString& text) {
  auto* const save = new QPushButton(text, this);
  save->setObjectName(QStringLiteral("Command2"));
  save->setAutoDefault(false);
  save->setEnabled(false);
  save->hide();
  connect(save, &QPushButton::clicked, this, &ImageInfoDialog::SaveTexts);
  return save;
}

void ImageInfoDialog::SaveTexts() {
  if (Save) {
    Save({comment_->toPlainText(), memo_->toPlainText()});
  }
  accept();
}

/// A line that has nothing to say is left out.
void ImageInfoDialog::AddLine(const char* captionName, const QString& caption, const char* name,
                              const QString& text) {
  if (text.trimmed().isEmpty()) {
    return;
  }
  auto* const title = new PlainLabel(caption, this);
  title->setObjectName(QString::fromLatin1(captionName));
  auto* const value = new PlainLabel(OneLine(text), this);
  value->setObjectName(QString::fromLatin1(name));
  value->setWordWrap(true);
  value->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  value->setAccessibleName(caption);
  lines_->addRow(title, value);
}

QWidget* ImageInfoDialog::MakeText(const char* frame, const QString& title, const char* name,
                                   const QString& text, bool readOnly, int limit) {
  auto* const box = new QGroupBox(title, this);
  box->setObjectName(QString::fromLatin1(frame));
  auto* const edit = new QPlainTextEdit(box);
  edit->setObjectName(QString::fromLatin1(name));
  edit->setAccessibleName(title);
  edit->setPlainText(text);
  edit->setReadOnly(readOnly);
  edit->setTabChangesFocus(true);
  edit->setFixedHeight(limit == kMemoLimit ? kMemoHeight : kCommentHeight);
  if (!readOnly && limit > 0) {
    LimitText(*edit, limit);
  }
  auto* const layout = new QVBoxLayout(box);
  layout->addWidget(edit);
  return box;
}

/// Stretched to the shape that photographs have everywhere in the program.
QWidget* ImageInfoDialog::MakePhotograph(const LoadedPicture& picture, const QString& title) {
  auto* const box = new QGroupBox(title, this);
  box->setObjectName(QStringLiteral("Frame4"));
  const QImage image(picture.Pixels.data(), picture.Width, picture.Height,
                     static_cast<qsizetype>(picture.Stride),
                     picture.Depth == 8 ? QImage::Format_Grayscale8 : QImage::Format_RGB888);
  QPixmap scaled = QPixmap::fromImage(image.scaled(
      kPhotographSize * devicePixelRatioF(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
  scaled.setDevicePixelRatio(devicePixelRatioF());
  auto* const view = new PlainLabel(box);
  view->setObjectName(QStringLiteral("Picbuf1"));
  view->setAccessibleName(title);
  view->setPixmap(scaled);
  view->setAlignment(Qt::AlignCenter);
  auto* const layout = new QVBoxLayout(box);
  layout->addWidget(view);
  return box;
}

}  // namespace tessa
