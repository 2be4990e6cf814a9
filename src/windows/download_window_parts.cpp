// The controls of the download window, their places and their words.

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <algorithm>

#include "core/path_bytes.h"
#include "widgets/plain_text.h"
#include "windows/download_letters.h"
#include "windows/download_options_panel.h"
#include "windows/download_preview.h"
#include "windows/download_target.h"
#include "windows/download_window.h"

namespace tessa {
namespace {

constexpr int kMargin = 14;
constexpr int kGroupGap = 12;
constexpr int kButtonGap = 6;
constexpr int kQualityCharacters = 5;
constexpr int kMostRecentFolders = 4;

/// Hidden controls keep their place, so that nothing moves when they appear.
void KeepPlace(QWidget& widget) {
  QSizePolicy policy = widget.sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget.setSizePolicy(policy);
}

}  // namespace

QPushButton* DownloadWindow::MakeButton(const char* name, const QString& caption) {
  auto* const button = new QPushButton(caption, this);
  button->setObjectName(QString::fromLatin1(name));
  button->setAutoDefault(false);  // Return in a box of text presses none.
  return button;
}

void DownloadWindow::MakeControls() {
  choices_ = new QWidget(this);
  auto* const left = new QVBoxLayout;
  left->addLayout(MakeCard());
  left->addSpacing(kGroupGap);
  target_ =
      new DownloadTarget(engine_->Options.TargetPath, RecentFolders(), session_.Words, choices_);
  connect(target_, &DownloadTarget::Changed, this, [this] {
    refusal_.clear();
    ShowStatus();
  });
  left->addWidget(target_, 1);
  left->addSpacing(kGroupGap);
  left->addLayout(MakeFormats());
  pictureSide_ = new QWidget(choices_);
  options_ =
      new DownloadOptionsPanel(engine_->Options, session_.Palettes, session_.Words, pictureSide_);
  preview_ = new DownloadPreview(session_.Words, session_.Palettes, pictureSide_);
  connect(options_, &DownloadOptionsPanel::Changed, &previewTimer_, qOverload<>(&QTimer::start));
  auto* const right = new QVBoxLayout(pictureSide_);
  right->setContentsMargins(2 * kMargin, 0, 0, 0);
  right->addWidget(options_);
  right->addWidget(preview_, 1);
  auto* const columns = new QHBoxLayout(choices_);
  columns->setContentsMargins(0, 0, 0, 0);
  columns->setSpacing(0);
  columns->addLayout(left);
  columns->addWidget(pictureSide_, 1);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->addWidget(choices_, 1);
  layout->addLayout(MakeEnding());
  OrderFocus();
  AssignLetters();
}

/// As drawn.
void DownloadWindow::OrderFocus() {
  QWidgetList order = {choose_, reconnect_, cameraFolders_};
  order += target_->FocusOrder();
  order += {sit_, bmp_, jpeg_, quality_};
  order += options_->FocusOrder();
  order += {abort_, download_, downloadAll_, deleteAll_, close_};
  for (qsizetype i = 1; i < order.size(); ++i) {
    setTabOrder(order[i - 1], order[i]);
  }
}

/// Radio buttons are reached from the others of their group and come last.
void DownloadWindow::AssignLetters() {
  QList<QAbstractButton*> buttons;
  QList<QAbstractButton*> radios;
  for (QAbstractButton* const button : findChildren<QAbstractButton*>()) {
    (qobject_cast<QRadioButton*>(button) != nullptr ? radios : buttons) += button;
  }
  QList<QLabel*> labels;
  for (QLabel* const label : findChildren<QLabel*>()) {
    if (label->buddy() != nullptr) {
      labels += label;
    }
  }
  buttons.removeOne(close_);
  buttons.prepend(close_);
  QStringList captions;
  const auto addText = [&captions](const auto* control) { captions += control->text(); };
  std::for_each(buttons.begin(), buttons.end(), addText);
  std::for_each(labels.begin(), labels.end(), addText);
  std::for_each(radios.begin(), radios.end(), addText);
  captions = WithLetters(captions);
  const auto takeText = [&captions](auto* control) { control->setText(captions.takeFirst()); };
  std::for_each(buttons.begin(), buttons.end(), takeText);
  std::for_each(labels.begin(), labels.end(), takeText);
  std::for_each(radios.begin(), radios.end(), takeText);
}

QLayout* DownloadWindow::MakeCard() {
  const Strings& words = session_.Words;
  cardPath_ = MakeElided("CardFolder", choices_);
  choose_ = MakeButton("cmdCardFolder", words.LangString(562, "Card Folder..."));
  reconnect_ = MakeButton("cmdReconnect", words.LangString(563, "Reconnect"));
  connect(choose_, &QPushButton::clicked, this, &DownloadWindow::AskForCardFolder);
  connect(reconnect_, &QPushButton::clicked, this, &DownloadWindow::Reconnect);
  auto* const listCaption = new PlainLabel(words.LangString(298, "Select Camera Folder"), choices_);
  cameraFolders_ = new QComboBox(choices_);
  cameraFolders_->setObjectName(QStringLiteral("cboCamFolders"));
  cameraFolders_->setAccessibleName(listCaption->text());
  // A long name does not widen the window.
  cameraFolders_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  listCaption->setBuddy(cameraFolders_);
  connect(cameraFolders_, &QComboBox::activated, this, [this](int index) {
    engine_->SelectFolder(index);
    BringIntoLine();
    previewTimer_.start();
  });
  auto* const counts = new QGridLayout;
  const auto addCount = [&](int row, const char* name, int textId, const char* text) {
    auto* const caption = new PlainLabel(words.LangString(textId, text), choices_);
    auto* const number = new PlainLabel(QStringLiteral("0"), choices_);
    number->setObjectName(QString::fromLatin1(name));
    number->setAccessibleDescription(caption->text());
    counts->addWidget(caption, row, 0);
    counts->addWidget(number, row, 1, Qt::AlignRight);
    return number;
  };
  imageCount_ = addCount(0, "sspImgCount", 301, "Total Stored Image Count");
  selectedCount_ = addCount(1, "sspSelImgCount", 302, "Selected Image Count");
  counts->setColumnStretch(0, 1);
  auto* const buttons = new QHBoxLayout;
  buttons->setSpacing(kButtonGap);
  buttons->addWidget(cardPath_, 1);
  buttons->addWidget(choose_);
  buttons->addWidget(reconnect_);
  auto* const layout = new QVBoxLayout;
  layout->addWidget(MakeHeading(words.LangString(561, "Memory Card"), choices_));
  layout->addLayout(buttons);
  layout->addWidget(listCaption);
  layout->addWidget(cameraFolders_);
  layout->addLayout(counts);
  return layout;
}

QCheckBox* DownloadWindow::MakeFormat(const char* name, const char* caption, int& value) {
  auto* const box = new QCheckBox(QString::fromLatin1(caption), choices_);
  box->setObjectName(QString::fromLatin1(name));
  box->setAccessibleDescription(session_.Words.LangString(176, "Image Type"));
  connect(box, &QCheckBox::clicked, this, [this, &value](bool ticked) {
    value = ticked ? 1 : 0;
    refusal_.clear();
    ShowFormats();
    engine_->dwnCheckDownload();
    BringIntoLine();
  });
  return box;
}

QLayout* DownloadWindow::MakeFormats() {
  const Strings& words = session_.Words;
  DownloadOptions& options = engine_->Options;
  sit_ = MakeFormat("chkSIT", "SIT", options.Sit);
  bmp_ = MakeFormat("chkBMP", "BMP", options.Bmp);
  jpeg_ = MakeFormat("chkJPEG", "JPEG", options.Jpeg);
  qualityLabel_ = new PlainLabel(words.LangString(299, "JPEG Quality Factor"), choices_);
  qualityLabel_->setObjectName(QStringLiteral("sspJPGQuality"));
  quality_ = new QLineEdit(choices_);
  quality_->setObjectName(QStringLiteral("txtJPGQuality"));
  quality_->setAccessibleName(words.LangString(300, "JPEG Quality Factor (5 to 100)"));
  quality_->setToolTip(quality_->accessibleName());
  quality_->setPlaceholderText(QStringLiteral("95"));
  quality_->setFixedWidth(quality_->fontMetrics().averageCharWidth() * kQualityCharacters +
                          kMargin);
  qualityLabel_->setBuddy(quality_);
  connect(quality_, &QLineEdit::textEdited, this,
          [&options](const QString& text) { options.JpegQuality = text; });
  for (QWidget* const widget : std::initializer_list<QWidget*>{qualityLabel_, quality_}) {
    KeepPlace(*widget);
  }
  auto* const row = new QHBoxLayout;
  row->addWidget(sit_);
  row->addWidget(bmp_);
  row->addWidget(jpeg_);
  row->addStretch();
  row->addWidget(qualityLabel_);
  row->addSpacing(kButtonGap);
  row->addWidget(quality_);
  auto* const layout = new QVBoxLayout;
  layout->addWidget(MakeHeading(words.LangString(176, "Image Type"), choices_));
  layout->addLayout(row);
  return layout;
}

QLayout* DownloadWindow::MakeEnding() {
  const Strings& words = session_.Words;
  status_ = MakeElided("sspStatus", this);
  status_->setAccessibleDescription(words.LangString(249, "Status"));
  fault_ = MakeElided("Fault", this);
  percent_ = new QProgressBar(this);
  percent_->setObjectName(QStringLiteral("sspStatusPct"));
  percent_->setAccessibleName(words.LangString(320, "Downloading"));
  KeepPlace(*percent_);
  download_ = MakeButton("cmdDownload", words.LangString(304, "Download Selected"));
  downloadAll_ = MakeButton("cmdDownloadAll", words.LangString(303, "Download All"));
  deleteAll_ = MakeButton("cmdDeleteAll", words.LangString(564, "Delete All Images..."));
  abort_ = MakeButton("cmdAbort", words.LangString(305, "Abort Download"));
  close_ = MakeButton("Command1", words.LangString(114, "Close"));
  KeepPlace(*abort_);
  connect(download_, &QPushButton::clicked, this,
          [this] { Download(&CameraDownload::cmdDownload); });
  connect(downloadAll_, &QPushButton::clicked, this,
          [this] { Download(&CameraDownload::cmdDownloadAll); });
  connect(deleteAll_, &QPushButton::clicked, this, &DownloadWindow::DeleteAll);
  connect(abort_, &QPushButton::clicked, this, [this] { engine_->cmdAbort(); });
  connect(close_, &QPushButton::clicked, this, &QDialog::reject);
  auto* const progress = new QHBoxLayout;
  progress->addWidget(percent_, 1);
  progress->addWidget(abort_);
  auto* const buttons = new QGridLayout;
  buttons->addWidget(download_, 0, 0);
  buttons->addWidget(downloadAll_, 0, 1);
  buttons->addWidget(deleteAll_, 0, 2);
  buttons->setColumnStretch(3, 1);
  buttons->addWidget(close_, 0, 4);
  auto* const layout = new QVBoxLayout;
  layout->addWidget(status_);
  layout->addWidget(fault_);
  layout->addLayout(progress);
  layout->addLayout(buttons);
  return layout;
}

QStringList DownloadWindow::RecentFolders() const {
  QStringList folders;
  for (const QString& path : user_.RecentFiles()) {
    const QString folder = FolderOfPath(path);
    if (!folders.contains(folder) && folders.size() < kMostRecentFolders) {
      folders += folder;
    }
  }
  return folders;
}

}  // namespace tessa
