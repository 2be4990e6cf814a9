#include "windows/range_panel.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

#include "open/session.h"
#include "view/range_actions.h"
#include "view/range_entry.h"
#include "widgets/icons.h"
#include "widgets/plain_text.h"
#include "widgets/range_slider_widget.h"
#include "widgets/scale_widget.h"

namespace tessa {
namespace {

constexpr int kMargin = 8;
constexpr int kToggleIcon = 20;

/// Hidden controls keep their place, so that nothing moves from image to image.
template <typename Widget>
Widget* KeepingPlace(Widget* widget) {
  QSizePolicy policy = widget->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget->setSizePolicy(policy);
  return widget;
}

}  // namespace

RangePanelWidget::RangePanelWidget(Session& session, Progress& progress, QWidget* parent)
    : QWidget(parent), session_(session), progress_(progress) {
  setObjectName(QStringLiteral("SSPanel8"));
  MakeEntries();
  MakeSlider();
  Arrange();
  Connect();
  SetWindowLanguage();
}

QLineEdit* RangePanelWidget::MakeBox(const char* name) {
  auto* const box = KeepingPlace(new QLineEdit(this));
  box->setObjectName(QString::fromLatin1(name));
  box->setAlignment(Qt::AlignRight);
  box->installEventFilter(this);
  box->setFixedWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("-1888.8")) + 22);
  return box;
}

/// The window's keys for zooming stay out of the boxes.
bool RangePanelWidget::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_PageUp || key == Qt::Key_PageDown) {
      event->accept();
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

void RangePanelWidget::MakeEntries() {
  maximum_ = MakeBox("Text2");
  minimum_ = MakeBox("Text1");
  limitMaximum_ = MakeBox("txtRangeVMax");
  limitMinimum_ = MakeBox("txtRangeVMin");
  maximumLabel_ = KeepingPlace(new PlainLabel(this));
  maximumLabel_->setObjectName(QStringLiteral("Label4"));
  maximumLabel_->setBuddy(maximum_);
  minimumLabel_ = KeepingPlace(new PlainLabel(this));
  minimumLabel_->setObjectName(QStringLiteral("Label3"));
  minimumLabel_->setBuddy(minimum_);
  update_ = KeepingPlace(new QPushButton(this));
  update_->setObjectName(QStringLiteral("Command1"));
  reset_ = KeepingPlace(new QPushButton(this));
  reset_->setObjectName(QStringLiteral("Command2"));
  toggle_ = KeepingPlace(new QToolButton(this));
  toggle_->setObjectName(QStringLiteral("SSCommand4"));
  toggle_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  toggle_->setIconSize(QSize(kToggleIcon, kToggleIcon));
  toggle_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  KeepingPlace(toggle_);
  autoUpdate_ = KeepingPlace(new QCheckBox(this));
  autoUpdate_->setObjectName(QStringLiteral("chkProof"));
  autoUpdate_->setChecked(true);
}

void RangePanelWidget::MakeSlider() {
  slider_ = KeepingPlace(new RangeSliderWidget(session_.Range, this));
  slider_->setObjectName(QStringLiteral("RangeV"));
  scale_ = new ScaleWidget(session_.Buffers.Picbuf7, this);
  scale_->setObjectName(QStringLiteral("Picbuf7"));
}

void RangePanelWidget::Arrange() {
  auto* const entries = new QGridLayout;
  entries->setHorizontalSpacing(kMargin);
  entries->setVerticalSpacing(4);
  entries->addWidget(maximumLabel_, 0, 0);
  entries->addWidget(maximum_, 0, 1);
  entries->addWidget(minimumLabel_, 1, 0);
  entries->addWidget(minimum_, 1, 1);
  entries->setColumnStretch(0, 1);
  auto* const buttons = new QHBoxLayout;
  buttons->setSpacing(4);
  buttons->addWidget(update_, 1);
  buttons->addWidget(reset_, 1);

  auto* const outer = new QVBoxLayout;
  outer->setSpacing(4);
  outer->addWidget(limitMaximum_, 0, Qt::AlignHCenter);
  outer->addWidget(slider_, 1, Qt::AlignHCenter);
  outer->addWidget(limitMinimum_, 0, Qt::AlignHCenter);
  auto* const instrument = new QHBoxLayout;
  instrument->setSpacing(0);
  instrument->addLayout(outer);
  instrument->addWidget(scale_, 1);

  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(6);
  layout->addWidget(toggle_);
  layout->addLayout(entries);
  layout->addLayout(buttons);
  layout->addLayout(instrument, 1);
  layout->addWidget(autoUpdate_);
}

template <typename Action>
void RangePanelWidget::Run(Action&& action) {
  if (session_.Image.ImageBusy) {
    return;
  }
  action(PiecesForRendering(session_, progress_));
  Q_EMIT RangeChanged();
}

void RangePanelWidget::Connect() {
  const auto apply = [this](QLineEdit* box) {
    return [this, box] {
      Run(ApplyEnteredRange);
      if (box != nullptr) {
        box->setFocus();
        box->selectAll();
      }
    };
  };
  connect(update_, &QPushButton::clicked, this, apply(nullptr));
  connect(minimum_, &QLineEdit::returnPressed, this, apply(minimum_));
  connect(maximum_, &QLineEdit::returnPressed, this, apply(maximum_));
  connect(reset_, &QPushButton::clicked, this, [this] { Run(RangeReset); });
  connect(toggle_, &QToolButton::clicked, this, [this] { Run(ToggleRangeByButton); });
  for (QLineEdit* box : {limitMaximum_, limitMinimum_}) {
    connect(box, &QLineEdit::returnPressed, this, [this, box] {
      Run(ApplyEnteredLimits);
      box->selectAll();
    });
    connect(box, &QLineEdit::textEdited, this, [this] {
      EnterLimitTexts(limitMinimum_->text(), limitMaximum_->text(), session_.View);
    });
  }
  for (QLineEdit* box : {maximum_, minimum_}) {
    connect(box, &QLineEdit::textEdited, this,
            [this] { EnterRangeTexts(minimum_->text(), maximum_->text(), session_.View); });
  }
  connect(slider_, &RangeSliderWidget::ThumbMoving, this, [this] {
    Run([this](const RenderPieces& pieces) { ThumbMoving(autoUpdate_->isChecked(), pieces); });
  });
  connect(slider_, &RangeSliderWidget::ThumbAtRest, this, [this] { Run(ThumbAtRest); });
  connect(slider_, &RangeSliderWidget::ThumbReset, this, [this](bool upper) {
    Run([upper](const RenderPieces& pieces) { ResetThumb(upper, pieces); });
  });
}

void RangePanelWidget::SetWindowLanguage() {
  const Strings& words = session_.Words;
  maximumLabel_->setText(words.LangString(185, "Max Temp"));
  minimumLabel_->setText(words.LangString(192, "Min Temp"));
  update_->setText(words.LangString(274, "Update"));
  reset_->setText(words.LangString(216, "Reset"));
  autoUpdate_->setText(words.LangString(106, "Auto Update"));
  toggle_->setToolTip(words.LangString(308, "Temperature Scale Parameters"));
  shownSource_.reset();
  const QString highest = words.LangString(186, "Maximum Range");
  const QString lowest = words.LangString(193, "Minimum Range");
  limitMaximum_->setToolTip(highest);
  limitMaximum_->setAccessibleName(highest);
  limitMinimum_->setToolTip(lowest);
  limitMinimum_->setAccessibleName(lowest);
  slider_->SetThumbNames(maximumLabel_->text(), minimumLabel_->text());
  scale_->setAccessibleName(words.LangString(204, "Palette"));
}

void RangePanelWidget::ShowBoxes() {
  const ViewState& view = session_.View;
  const std::array<QLineEdit*, 4> boxes = {maximum_, minimum_, limitMaximum_, limitMinimum_};
  const std::array<QString, 4> texts = {view.RangeHighText, view.RangeLowText, view.LimitMaxText,
                                        view.LimitMinText};
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    // Where they are equal, cursor and selection stay where the user has them.
    if (boxes[i]->text() != texts[i]) {
      boxes[i]->setText(texts[i]);
    }
  }
}

/// Red: the stored scale. Green: the extremes of the image.
void RangePanelWidget::ShowToggle() {
  const RangeSource source = session_.View.Source;
  if (shownSource_ == source) {
    return;
  }
  shownSource_ = source;
  const bool stored = source == RangeSource::kStored;
  const Strings& words = session_.Words;
  toggle_->setText(stored ? words.LangString(309, "Camera Defined")
                          : words.LangString(310, "Auto Scale"));
  QPalette colours = toggle_->palette();
  // On dark desktops the same two colours, light enough to be read.
  constexpr int kDarkBelow = 128;
  const bool dark = palette().color(QPalette::Button).lightness() < kDarkBelow;
  const QColor red = dark ? QColor(255, 118, 110) : QColor(192, 0, 0);
  const QColor green = dark ? QColor(96, 220, 120) : QColor(0, 128, 0);
  colours.setColor(QPalette::ButtonText, stored ? red : green);
  toggle_->setPalette(colours);
  toggle_->setIcon(ToolIcon(stored ? QStringLiteral("stored_range") : QStringLiteral("image_range"),
                            palette().color(QPalette::WindowText)));
}

void RangePanelWidget::BringIntoLine() {
  const ViewState& view = session_.View;
  const OpenImage& image = session_.Image;
  ShowBoxes();
  for (QWidget* entry : std::initializer_list<QWidget*>{maximumLabel_, minimumLabel_, maximum_,
                                                        minimum_, update_, reset_}) {
    entry->setVisible(view.RangeEntryVisible);
  }
  toggle_->setVisible(view.RangeToggleVisible);
  slider_->setVisible(view.RangeSliderVisible);
  limitMaximum_->setVisible(view.LimitBoxesVisible);
  limitMinimum_->setVisible(view.LimitBoxesVisible);
  autoUpdate_->setVisible(view.AutoUpdateVisible);

  ShowToggle();
  const QString unit = view.CelsiusSelected ? QStringLiteral("\u00B0C") : QStringLiteral("\u00B0F");
  scale_->ShowScale(view, image.HasTemperature ? unit : QString());
  slider_->ShowRange(session_.Palettes.CurrentPalette, image.DisplayUnits);
}

}  // namespace tessa
