#include "windows/splash_window.h"

#include <QFontInfo>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QScreen>

#include "core/program_version.h"
#include "widgets/icons.h"
#include "widgets/plain_text.h"

namespace tessa {
namespace {

constexpr int kEmblemSize = 112;
constexpr int kMargin = 32;
constexpr int kLineGap = 6;
constexpr int kSmallestWidth = 480;
constexpr int kStripHeight = 6;

/// From cold to hot, in the emblem's colours.
QLinearGradient HeatGradient(const QRectF& strip) {
  QLinearGradient heat(strip.topLeft(), strip.topRight());
  heat.setColorAt(0.0, QColor(0x2A, 0x15, 0x50));
  heat.setColorAt(0.25, QColor(0x7E, 0x1F, 0x85));
  heat.setColorAt(0.5, QColor(0xC3, 0x2B, 0x5D));
  heat.setColorAt(0.75, QColor(0xF3, 0x80, 0x28));
  heat.setColorAt(1.0, QColor(0xFF, 0xE6, 0x8A));
  return heat;
}

}  // namespace

SplashWindow::SplashWindow(const Strings& words)
    : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint), words_(words) {
  setObjectName(QStringLiteral("Main"));
  setWindowIcon(ApplicationIcon());
  auto* const emblem = new PlainLabel(this);
  emblem->setPixmap(ApplicationIcon().pixmap(QSize(kEmblemSize, kEmblemSize), devicePixelRatioF()));
  program_ = AddLine("SSPanel1", 2.0);
  version_ = AddLine("Label1", 1.1);
  notice_ = AddLine("SSPanel4", 0.9);
  notice_->setForegroundRole(QPalette::PlaceholderText);

  auto* const lines = new QVBoxLayout;
  lines->setSpacing(kLineGap);
  lines->addStretch();
  lines->addWidget(program_);
  lines->addWidget(version_);
  lines->addStretch();
  auto* const layout = new QGridLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin + kStripHeight);
  layout->setHorizontalSpacing(kMargin);
  layout->setVerticalSpacing(kMargin / 2);
  layout->addWidget(emblem, 0, 0);
  layout->addLayout(lines, 0, 1);
  layout->addWidget(notice_, 1, 1);
  layout->setColumnStretch(1, 1);
  setMinimumWidth(kSmallestWidth);
  SetWindowLanguage();
}

/// `scale`: height of the letters against the usual ones.
QLabel* SplashWindow::AddLine(const char* name, double scale) {
  auto* const line = new PlainLabel(this);
  line->setObjectName(QString::fromLatin1(name));
  QFont letters = font();
  letters.setPixelSize(qRound(QFontInfo(letters).pixelSize() * scale));
  line->setFont(letters);
  return line;
}

void SplashWindow::SetWindowLanguage() {
  setWindowTitle(words_.LangString(188, "Orvex Infrared GmbH"));
  program_->setText(words_.LangString(189, "Corvane T-40 Viewer"));
  version_->setText(words_.LangString(296, "Version") + QLatin1Char(' ') + ProgramVersion());
  notice_->setText(words_.LangString(134, "Copyright \u00A9 2026 The TessaView authors"));
}

void SplashWindow::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().mid());
  painter.fillRect(rect().adjusted(1, 1, -1, -1), palette().window());
  const QRectF strip(0, height() - kStripHeight, width(), kStripHeight);
  painter.fillRect(strip, HeatGradient(strip));
}

void SplashWindow::showEvent(QShowEvent* event) {
  adjustSize();
  QRect place = geometry();
  place.moveCenter(screen()->availableGeometry().center());
  move(place.topLeft());
  QWidget::showEvent(event);
}

}  // namespace tessa
