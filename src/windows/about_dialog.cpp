#include "windows/about_dialog.h"

#include <QFontInfo>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "core/program_version.h"
#include "widgets/icons.h"
#include "widgets/plain_text.h"

namespace tessa {
namespace {

constexpr int kEmblemSize = 96;
constexpr int kMargin = 24;
constexpr int kLineGap = 4;
constexpr int kParagraphGap = 12;

}  // namespace

AboutDialog::AboutDialog(const Strings& words, QWidget* parent) : QDialog(parent), words_(words) {
  setObjectName(QStringLiteral("About"));
  auto* const emblem = new PlainLabel(this);
  emblem->setPixmap(ApplicationIcon().pixmap(QSize(kEmblemSize, kEmblemSize), devicePixelRatioF()));
  program_ = AddLine("SSPanel1");
  QFont heading = font();
  heading.setPixelSize(QFontInfo(heading).pixelSize() * 8 / 5);
  heading.setBold(true);
  program_->setFont(heading);
  version_ = AddLine("Label1");
  notice_ = AddLine("SSPanel4");
  licence_ = AddLine("Licence");
  platform_ = AddLine("Platform");
  close_ = new QPushButton(this);
  close_->setObjectName(QStringLiteral("Command1"));
  close_->setDefault(true);
  connect(close_, &QPushButton::clicked, this, &QDialog::accept);

  auto* const lines = new QVBoxLayout;
  lines->setSpacing(kLineGap);
  lines->addWidget(program_);
  lines->addWidget(version_);
  lines->addSpacing(kParagraphGap);
  lines->addWidget(notice_);
  lines->addWidget(licence_);
  lines->addWidget(platform_);
  lines->addStretch();
  auto* const layout = new QGridLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(kMargin);
  layout->addWidget(emblem, 0, 0, Qt::AlignTop);
  layout->addLayout(lines, 0, 1);
  layout->addWidget(close_, 1, 0, 1, 2, Qt::AlignRight);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  SetWindowLanguage();
  close_->setFocus();
}

/// A line that can be copied, for reports of faults.
QLabel* AboutDialog::AddLine(const char* name) {
  auto* const line = new PlainLabel(this);
  line->setObjectName(QString::fromLatin1(name));
  line->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return line;
}

void AboutDialog::SetWindowLanguage() {
  setWindowTitle(words_.LangString(103, "About"));
  program_->setText(words_.LangString(189, "Corvane T-40 Viewer"));
  version_->setText(words_.LangString(296, "Version") + QLatin1Char(' ') + ProgramVersion());
  notice_->setText(words_.LangString(134, "Copyright \u00A9 2026 The TessaView authors"));
  // Names, the same in every language.
  licence_->setText(QStringLiteral("MIT License"));
  platform_->setText(QStringLiteral("Qt ") + QString::fromLatin1(qVersion()));
  close_->setText(words_.LangString(200, "OK"));
}

}  // namespace tessa
