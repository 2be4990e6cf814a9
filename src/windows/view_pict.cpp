#include "windows/view_pict.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <cmath>

#include "core/tell.h"
#include "view/readout.h"
#include "view/zoom.h"
#include "widgets/icons.h"
#include "widgets/language_box.h"
#include "widgets/notice_strip.h"
#include "widgets/picbuf_widget.h"
#include "widgets/plain_text.h"
#include "windows/bottom_line.h"
#include "windows/frame_row.h"
#include "windows/no_picture_panel.h"
#include "windows/range_panel.h"

namespace tessa {
namespace {

constexpr int kMargin = 8;

/// The surround of a picture: dark and neutral on every desktop, so that colours read the same.
const QColor kCanvasColour(0x23, 0x25, 0x29);
const QColor kCanvasInk(0xD8, 0xDE, 0xE9);

/// The application's picture, drawn when it is first seen.
class Emblem : public QWidget {
 public:
  explicit Emblem(QWidget* parent) : QWidget(parent) {
    constexpr int kSize = 96;
    setFixedSize(kSize, kSize);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    icon_.paint(&painter, rect());
  }

 private:
  QIcon icon_ = ApplicationIcon();
};

}  // namespace

ViewPictWidget::ViewPictWidget(Session& session, Progress& progress, QWidget* parent)
    : QWidget(parent), session_(session) {
  setObjectName(QStringLiteral("ViewPict"));
  range_ = new RangePanelWidget(session_, progress, this);
  connect(range_, &RangePanelWidget::RangeChanged, this, &ViewPictWidget::RangeChanged);

  auto* const left = new QVBoxLayout;
  left->setSpacing(0);
  notice_ = new NoticeStrip(this);
  connect(notice_, &NoticeStrip::Dismissed, this, [this] {
    DismissNotice(session_.View);
    BringIntoLine();
  });
  left->addWidget(notice_);
  left->addWidget(MakeCanvas(), 1);
  left->addWidget(MakeFrameRow());
  left->addWidget(MakeBottomLine());
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addLayout(left, 1);
  layout->addWidget(MakeRangeFrame());
  ConnectPicture();
  AddLanguageBox(*this, [this] { SetWindowLanguage(); });
  SetWindowLanguage();
  ShowIcons();
}

/// On a screen too low for it, the range panel can be scrolled.
QWidget* ViewPictWidget::MakeRangeFrame() {
  auto* const frame = new QScrollArea(this);
  frame->setFrameShape(QFrame::NoFrame);
  frame->setWidgetResizable(true);
  frame->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  frame->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
  frame->setWidget(range_);
  range_->installEventFilter(this);
  rangeFrame_ = frame;
  return frame;
}

/// As wide as the panel wants to be in the present language, and its scroll bar where there is one.
void ViewPictWidget::FitRangeFrame() {
  const bool scrolls = rangeFrame_->height() < range_->minimumSizeHint().height();
  rangeFrame_->setFixedWidth(
      std::max(range_->minimumSizeHint().width(), range_->sizeHint().width()) +
      (scrolls ? rangeFrame_->verticalScrollBar()->sizeHint().width() : 0));
}

QWidget* ViewPictWidget::MakeCanvas() {
  canvas_ = new QWidget(this);
  canvas_->setAutoFillBackground(true);
  QPalette colours = canvas_->palette();
  colours.setColor(QPalette::Window, kCanvasColour);
  colours.setColor(QPalette::WindowText, kCanvasInk);
  canvas_->setPalette(colours);
  canvas_->setMinimumSize(160, 120);
  canvas_->installEventFilter(this);

  picture_ = new PicbufWidget(session_.Buffers.Picbuf1, canvas_);
  picture_->setObjectName(QStringLiteral("Picbuf1"));
  picture_->setFocusPolicy(Qt::StrongFocus);
  horizontalScroll_ = new QScrollBar(Qt::Horizontal, canvas_);
  horizontalScroll_->setObjectName(QStringLiteral("HScroll1"));
  verticalScroll_ = new QScrollBar(Qt::Vertical, canvas_);
  verticalScroll_->setObjectName(QStringLiteral("VScroll1"));
  for (QScrollBar* const bar : {horizontalScroll_, verticalScroll_}) {
    connect(bar, &QScrollBar::actionTriggered, this, &ViewPictWidget::RememberPan,
            Qt::QueuedConnection);
  }
  blankPanel_ = MakeBlankPanel();
  noPicture_ = new NoPicturePanel(canvas_);
  connect(noPicture_, &NoPicturePanel::OpenRequested, this, &ViewPictWidget::OpenRequested);
  return canvas_;
}

QWidget* ViewPictWidget::MakeBlankPanel() {
  auto* const panel = new QWidget(canvas_);
  panel->setObjectName(QStringLiteral("SSPanel9"));
  blankText_ = new PlainLabel(panel);
  blankText_->setAlignment(Qt::AlignCenter);
  blankOpen_ = new QPushButton(panel);
  blankOpen_->setObjectName(QStringLiteral("BlankOpenButton"));
  connect(blankOpen_, &QPushButton::clicked, this, &ViewPictWidget::OpenRequested);

  auto* const layout = new QVBoxLayout(panel);
  layout->addStretch();
  layout->addWidget(new Emblem(panel), 0, Qt::AlignCenter);
  layout->addSpacing(kMargin);
  layout->addWidget(blankText_);
  layout->addSpacing(kMargin);
  layout->addWidget(blankOpen_, 0, Qt::AlignCenter);
  layout->addStretch();
  return panel;
}

QWidget* ViewPictWidget::MakeBottomLine() {
  bottomLine_ = new BottomLine(session_, this);
  connect(bottomLine_, &BottomLine::LevelChosen, this, &ViewPictWidget::SetZoom);
  connect(bottomLine_, &BottomLine::ZoomStepped, this, &ViewPictWidget::ZoomBy);
  connect(bottomLine_, &BottomLine::FitRequested, this, &ViewPictWidget::ZoomToFit);
  connect(bottomLine_, &BottomLine::InfoRequested, this,
          [this] { Q_EMIT FrameCommand(CommandId::kImageInfo); });
  return bottomLine_;
}

QWidget* ViewPictWidget::MakeFrameRow() {
  frameRow_ = new FrameRow(session_, this);
  connect(frameRow_, &FrameRow::Pressed, this, &ViewPictWidget::FrameCommand);
  return frameRow_;
}

void ViewPictWidget::SetWindowLanguage() {
  const Strings& words = session_.Words;
  const auto name = [](QWidget* widget, const QString& text) { widget->setAccessibleName(text); };
  name(picture_, words.LangString(173, "Image"));
  name(horizontalScroll_, words.LangString(409, "Pan"));
  name(verticalScroll_, words.LangString(409, "Pan"));
  bottomLine_->SetWindowLanguage();
  frameRow_->SetWindowLanguage();
  blankText_->setText(words.LangString(408, "Open an image or drop one here"));
  blankOpen_->setText(words.LangString(179, "Load Image") + QStringLiteral("\u2026"));
  range_->SetWindowLanguage();
}

bool ViewPictWidget::eventFilter(QObject* watched, QEvent* event) {
  if (watched == range_ && event->type() == QEvent::LayoutRequest) {
    FitRangeFrame();
  }
  // Panels that come and go beside it change its size alone.
  if (watched == canvas_ && event->type() == QEvent::Resize) {
    bottomLine_->FitTo(canvas_->width());
    PlacePicture();
  }
  return QWidget::eventFilter(watched, event);
}

void ViewPictWidget::ConnectPicture() {
  connect(picture_, &PicbufWidget::PointerMoved, this, &ViewPictWidget::PointerMoved);
  connect(picture_, &PicbufWidget::PointerLeft, this, &ViewPictWidget::ForgetReadout);
  connect(picture_, &PicbufWidget::Clicked, this, &ViewPictWidget::PictureClicked);
  connect(picture_, &PicbufWidget::SpaceTapped, this, &ViewPictWidget::SpaceTapped);
  connect(picture_, &PicbufWidget::ZoomWheel, this, [this](int steps, QPoint position) {
    if (const auto level = LevelAfter(steps, session_.View.Zoom)) {
      ZoomAround(*level, position);
    }
  });
  connect(picture_, &PicbufWidget::Dragged, this, [this](QPoint distance) {
    const Picbuf& buffer = session_.Buffers.Picbuf1;
    // Screen pixels that are not yet worth an image pixel wait for the next movement.
    const double imagePixels = buffer.ZoomDenominator / buffer.ZoomNumerator;
    dragRest_ += QPointF(distance) * imagePixels;
    const auto wholePart = [](qreal value) {
      constexpr qreal kRounding = 1e-6;  // Fractions such as fifteenths do not add up exactly.
      return static_cast<int>(value + std::copysign(kRounding, value));
    };
    const QPoint whole(wholePart(dragRest_.x()), wholePart(dragRest_.y()));
    dragRest_ -= whole;
    PanTo(horizontalScroll_->value() - whole.x(), verticalScroll_->value() - whole.y());
    RememberPan();
  });
  connect(horizontalScroll_, &QScrollBar::valueChanged, this, [this](int value) {
    session_.Buffers.Picbuf1.Xpan = value;
    picture_->update();
    RefreshReadout();
  });
  connect(verticalScroll_, &QScrollBar::valueChanged, this, [this](int value) {
    session_.Buffers.Picbuf1.Ypan = value;
    picture_->update();
    RefreshReadout();
  });
}

void ViewPictWidget::BringIntoLine() {
  const ViewState& view = session_.View;
  range_->setVisible(view.ScalePanelVisible);
  rangeFrame_->setVisible(view.ScalePanelVisible);
  noPicture_->ShowReason(view.NoPicture, session_.Words);
  notice_->ShowNotice(view.Notice, session_.Words);
  // While an image loads there is neither a picture nor the invitation to open one.
  blankPanel_->setVisible(view.BlankPanelVisible && !view.LoadProgressVisible);
  picture_->setVisible(view.PictureVisible);
  frameRow_->BringIntoLine();
  range_->BringIntoLine();
  bottomLine_->BringIntoLine();
  PlacePicture();
}

QSize ViewPictWidget::AreaFor(bool horizontalBar, bool verticalBar) const {
  const int barHeight = horizontalBar ? horizontalScroll_->sizeHint().height() : 0;
  const int barWidth = verticalBar ? verticalScroll_->sizeHint().width() : 0;
  return {canvas_->width() - barWidth, canvas_->height() - barHeight};
}

void ViewPictWidget::PlacePicture() {
  blankPanel_->setGeometry(canvas_->rect());
  noPicture_->setGeometry(canvas_->rect());
  Picbuf& buffer = session_.Buffers.Picbuf1;
  if (session_.View.Zoom.FitsWindow) {
    SetZoomToFit(canvas_->width(), canvas_->height(), session_.View.Zoom, buffer);
  }
  bottomLine_->ShowZoom();
  // A bar takes room from the other direction, so the second look decides.
  QSize area = AreaFor(false, false);
  ViewPlacement placement = PlaceView(buffer, area.width(), area.height());
  for (int look = 0; look < 2; ++look) {
    area = AreaFor(placement.MaxPanX > 0, placement.MaxPanY > 0);
    placement = PlaceView(buffer, area.width(), area.height());
  }
  PlaceScrollBars(QRect(QPoint(), area), placement.MaxPanX, placement.MaxPanY);
  picture_->setGeometry(placement.Left, placement.Top, placement.Width, placement.Height);
  picture_->update();
}

void ViewPictWidget::PlaceScrollBars(const QRect& area, int maxX, int maxY) {
  const Picbuf& buffer = session_.Buffers.Picbuf1;
  const bool shown = session_.View.PictureVisible;
  const auto place = [&](QScrollBar* bar, const QRect& where, int maximum, int size, int pan) {
    bar->setVisible(shown && maximum > 0);
    bar->setGeometry(where);
    // The range first: it may move the value, which moves the pan.
    bar->setRange(0, maximum);
    bar->setPageStep(std::max(1, size - maximum));
    bar->setSingleStep(std::max(1, (size - maximum) / 16));
    bar->setValue(pan);
  };
  const int panX = buffer.Xpan;
  const int panY = buffer.Ypan;
  place(horizontalScroll_, {0, area.height(), area.width(), horizontalScroll_->sizeHint().height()},
        maxX, buffer.BufWidth(), panX);
  place(verticalScroll_, {area.width(), 0, verticalScroll_->sizeHint().width(), area.height()},
        maxY, buffer.BufHeight(), panY);
  session_.Buffers.Picbuf1.Xpan = horizontalScroll_->value();
  session_.Buffers.Picbuf1.Ypan = verticalScroll_->value();
}

void ViewPictWidget::SetZoom(int level) {
  if (!session_.View.HasImage) {
    return;
  }
  const int before = session_.View.Zoom.ZoomLevel;
  SetZoomLevel(level, session_.View.Zoom, session_.Buffers.Picbuf1);
  BringIntoLine();
  if (session_.View.Zoom.ZoomLevel != before) {
    ScrollToCentre();
  }
  RefreshReadout();
}

void ViewPictWidget::ZoomBy(int steps) {
  if (const auto level = LevelAfter(steps, session_.View.Zoom)) {
    SetZoom(*level);
  }
}

/// Both scroll bars go to the share of their way that the remembered centre has of the picture.
void ViewPictWidget::ScrollToCentre() {
  const Picbuf& buffer = session_.Buffers.Picbuf1;
  ZoomState& zoom = session_.View.Zoom;
  if (zoom.ZoomCentreX == -1) {
    zoom.ZoomCentreX = buffer.BufWidth() / 2;
  }
  if (zoom.ZoomCentreY == -1) {
    zoom.ZoomCentreY = buffer.BufHeight() / 2;
  }
  PanTo(PanForCentre(zoom.ZoomCentreX, buffer.BufWidth(), horizontalScroll_->maximum()),
        PanForCentre(zoom.ZoomCentreY, buffer.BufHeight(), verticalScroll_->maximum()));
}

/// Sets the level so that the image point under `position` of the picture stays where it is, as far
/// as the picture's edges allow.
void ViewPictWidget::ZoomAround(int level, QPoint position) {
  if (!session_.View.HasImage) {
    return;
  }
  Picbuf& buffer = session_.Buffers.Picbuf1;
  const QPoint onCanvas = picture_->mapToParent(position);
  const int column = buffer.ClientToImageX(position.x());
  const int row = buffer.ClientToImageY(position.y());
  SetZoomLevel(level, session_.View.Zoom, buffer);
  BringIntoLine();
  const double imagePixels = buffer.ZoomDenominator / buffer.ZoomNumerator;
  const QPoint inPicture = picture_->mapFromParent(onCanvas);
  PanTo(column - static_cast<int>(inPicture.x() * imagePixels),
        row - static_cast<int>(inPicture.y() * imagePixels));
  RefreshReadout();
}

int ViewPictWidget::ZoomLevel() const {
  return session_.View.Zoom.ZoomLevel;
}

void ViewPictWidget::ZoomToFit() {
  if (!session_.View.HasImage) {
    return;
  }
  SetZoomToFit(canvas_->width(), canvas_->height(), session_.View.Zoom, session_.Buffers.Picbuf1);
  BringIntoLine();
  RefreshReadout();
}

/// What the user panned to is the centre of the next zoom.
void ViewPictWidget::RememberPan() {
  const Picbuf& buffer = session_.Buffers.Picbuf1;
  ZoomState& zoom = session_.View.Zoom;
  const auto share = [](const QScrollBar& bar, int size, int& centre) {
    if (bar.maximum() > 0) {
      centre =
          static_cast<int>(std::lround(static_cast<double>(bar.value()) / bar.maximum() * size));
    }
  };
  share(*horizontalScroll_, buffer.BufWidth(), zoom.ZoomCentreX);
  share(*verticalScroll_, buffer.BufHeight(), zoom.ZoomCentreY);
}

void ViewPictWidget::PanTo(int horizontal, int vertical) {
  horizontalScroll_->setValue(horizontal);
  verticalScroll_->setValue(vertical);
}

void ViewPictWidget::PointerMoved(QPoint position) {
  if (session_.Image.ImageBusy || !session_.View.HasImage ||
      !UpdateReadout(position.x(), position.y(), session_.Image, session_.Buffers.Picbuf1,
                     session_.Words, session_.Cursor, session_.View)) {
    return;
  }
  QToolTip::showText(picture_->mapToGlobal(position), PlainToolTip(session_.View.PictureTip),
                     picture_);
  Q_EMIT ReadoutChanged();
}

void ViewPictWidget::ForgetReadout() {
  ClearReadout(session_.Cursor, session_.View);
  QToolTip::hideText();
  Q_EMIT ReadoutChanged();
}

/// The bars have the desktop's colours. Each is set by name: what is not comes from the surround.
void ViewPictWidget::ColourScrollBars() {
  const QPalette desktop = QApplication::palette();
  QPalette colours = desktop;
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    for (const auto role : {QPalette::Window, QPalette::WindowText}) {
      colours.setBrush(group, role, desktop.brush(group, role));
    }
  }
  horizontalScroll_->setPalette(colours);
  verticalScroll_->setPalette(colours);
}

void ViewPictWidget::ShowIcons() {
  ColourScrollBars();
  bottomLine_->ShowIcons();
  frameRow_->ShowIcons();
  range_->SetWindowLanguage();
}

void ViewPictWidget::FocusPicture() {
  picture_->setFocus();
}

void ViewPictWidget::keyPressEvent(QKeyEvent* event) {
  const auto pan = [event](QScrollBar* bar, QAbstractSlider::SliderAction step) {
    if (bar->isVisible()) {
      bar->triggerAction(step);
    }
    event->accept();
  };
  // The arrows of the number pad count too.
  if ((event->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) {
    QWidget::keyPressEvent(event);
    return;
  }
  switch (event->key()) {
    case Qt::Key_Left:
      return pan(horizontalScroll_, QAbstractSlider::SliderSingleStepSub);
    case Qt::Key_Right:
      return pan(horizontalScroll_, QAbstractSlider::SliderSingleStepAdd);
    case Qt::Key_Up:
      return pan(verticalScroll_, QAbstractSlider::SliderSingleStepSub);
    case Qt::Key_Down:
      return pan(verticalScroll_, QAbstractSlider::SliderSingleStepAdd);
    default:
      QWidget::keyPressEvent(event);
  }
}

void ViewPictWidget::RefreshReadout() {
  if (!picture_->isVisible() || !picture_->underMouse()) {
    return;
  }
  // A smaller picture may have come under the cursor, which then stands beside it.
  const QPoint position = picture_->mapFromGlobal(QCursor::pos());
  if (picture_->rect().contains(position)) {
    PointerMoved(position);
  } else {
    ForgetReadout();
  }
}

void ViewPictWidget::PictureClicked(Qt::MouseButton button, QPoint position) {
  if (button != Qt::LeftButton && button != Qt::RightButton) {
    return;
  }
  RememberClick(position.x(), position.y(), session_.Buffers.Picbuf1, session_.View.Zoom);
  ZoomBy(button == Qt::LeftButton ? 1 : -1);
}

void ViewPictWidget::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  FitRangeFrame();
  PlacePicture();
}

void ViewPictWidget::wheelEvent(QWheelEvent* event) {
  QScrollBar* const bar =
      event->modifiers().testFlag(Qt::ShiftModifier) ? horizontalScroll_ : verticalScroll_;
  if (bar->isVisible()) {
    QCoreApplication::sendEvent(bar, event);
  }
}

}  // namespace tessa
