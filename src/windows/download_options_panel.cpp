#include "windows/download_options_panel.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

#include "core/units.h"
#include "widgets/palette_swatch.h"
#include "widgets/plain_text.h"

namespace tessa {
namespace {

constexpr int kLimitCharacters = 7;
constexpr int kIndent = 20;

QString Numbered(const char* name, std::size_t index) {
  return QStringLiteral("%1_%2").arg(QString::fromLatin1(name)).arg(index);
}

}  // namespace

DownloadOptionsPanel::DownloadOptionsPanel(DownloadOptions& options, const Palettes& palettes,
                                           const Strings& words, QWidget* parent)
    : QWidget(parent), options_(options), palettes_(palettes), words_(words) {
  setObjectName(QStringLiteral("sspImageOptions"));
  auto* const columns = new QHBoxLayout;
  columns->addWidget(MakeScale());
  columns->addLayout(MakeChecks());
  columns->addStretch();
  auto* const heading = new PlainLabel(words_.LangString(307, "Image Options"), this);
  QFont bold = heading->font();
  bold.setBold(true);
  heading->setFont(bold);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(heading);
  layout->addLayout(MakePaletteRow());
  layout->addLayout(columns);
  ShowOptions();
}

QLayout* DownloadOptionsPanel::MakePaletteRow() {
  auto* const caption = new PlainLabel(words_.LangString(115, "Color Palette"), this);
  palette_ = new QComboBox(this);
  palette_->setObjectName(QStringLiteral("Combo1"));
  palette_->setIconSize(kSwatchSize);
  palette_->setMaxVisibleItems(kOfferedPalettes);
  palette_->setAccessibleName(caption->text());
  caption->setBuddy(palette_);
  for (std::size_t i = 0; i < kOfferedPalettes; ++i) {
    palette_->addItem(PaletteSwatch(palettes_.PaletteTable.at(i)),
                      QString::fromLatin1(PaletteNames.at(i).data(),
                                          static_cast<qsizetype>(PaletteNames.at(i).size())));
  }
  connect(palette_, &QComboBox::currentIndexChanged, this, [this](int index) {
    options_.PaletteIndex = index;
    Q_EMIT Changed();
  });
  auto* const row = new QHBoxLayout;
  row->addWidget(caption);
  row->addWidget(palette_);
  row->addStretch();
  return row;
}

QRadioButton* DownloadOptionsPanel::MakeRadio(const QString& name, int textId, const char* text,
                                              QWidget* parent) {
  auto* const radio = new QRadioButton(words_.LangString(textId, text), parent);
  radio->setObjectName(name);
  return radio;
}

QWidget* DownloadOptionsPanel::MakeScale() {
  auto* const box = new QWidget(this);
  auto* const title = new PlainLabel(words_.LangString(308, "Temperature Scale Parameters"), box);
  scales_ = {MakeRadio(Numbered("optGain", 0), 309, "Use Camera Setting", box),
             MakeRadio(Numbered("optGain", 1), 310, "Use Auto Gain", box),
             MakeRadio(Numbered("optGain", 2), 311, "Use Custom Setting", box)};
  auto* const group = new QButtonGroup(box);
  auto* const layout = new QVBoxLayout(box);
  layout->setContentsMargins(0, 0, kIndent, 0);
  layout->addWidget(title);
  for (std::size_t i = 0; i < scales_.size(); ++i) {
    scales_.at(i)->setAccessibleDescription(title->text());
    group->addButton(scales_.at(i));
    layout->addWidget(scales_.at(i));
    connect(scales_.at(i), &QRadioButton::clicked, this, [this, i] {
      options_.Scale = static_cast<int>(i);
      ShowLimits();
      Q_EMIT Changed();
    });
  }
  layout->addWidget(MakeLimits());
  limitWords_ = new PlainLabel(box);
  limitWords_->setObjectName(QStringLiteral("LimitWords"));
  limitWords_->setWordWrap(true);
  limitWords_->setContentsMargins(kIndent, 0, 0, 0);
  layout->addWidget(limitWords_);
  units_ = {MakeRadio(Numbered("Option1", 0), 113, "Celsius", box),
            MakeRadio(Numbered("Option1", 1), 167, "Fahrenheit", box)};
  auto* const unitGroup = new QButtonGroup(box);
  auto* const row = new QHBoxLayout;
  for (std::size_t i = 0; i < units_.size(); ++i) {
    unitGroup->addButton(units_.at(i));
    row->addWidget(units_.at(i));
    connect(units_.at(i), &QRadioButton::clicked, this, [this, i] {
      if (options_.Unit != static_cast<int>(i)) {
        ChooseUnit(static_cast<int>(i), options_);
        ShowLimits();
        Q_EMIT Changed();
      }
    });
  }
  row->addStretch();
  layout->addLayout(row);
  layout->addStretch();
  return box;
}

QWidget* DownloadOptionsPanel::MakeLimits() {
  custom_ = new QWidget(this);
  custom_->setObjectName(QStringLiteral("sspCustom"));
  auto* const row = new QHBoxLayout(custom_);
  row->setContentsMargins(kIndent, 0, 0, 0);
  const auto add = [&](const char* name, int textId, const char* text, QString& value) {
    auto* const caption = new PlainLabel(words_.LangString(textId, text), custom_);
    auto* const box = new QLineEdit(custom_);
    box->setObjectName(QString::fromLatin1(name));
    box->setAccessibleName(caption->text());
    box->setFixedWidth(box->fontMetrics().averageCharWidth() * kLimitCharacters + kIndent);
    caption->setBuddy(box);
    row->addWidget(caption);
    row->addWidget(box);
    connect(box, &QLineEdit::textEdited, this, [this, &value](const QString& typed) {
      value = typed;
      ShowLimitWords();
      Q_EMIT Changed();
    });
    return box;
  };
  minimum_ = add("txtMinTemp", 191, "Min", options_.MinTemp);
  maximum_ = add("txtMaxTemp", 184, "Max", options_.MaxTemp);
  row->addStretch();
  return custom_;
}

QCheckBox* DownloadOptionsPanel::MakeCheck(const QString& name, const QString& text, int& value) {
  auto* const box = new QCheckBox(text, this);
  box->setObjectName(name);
  connect(box, &QCheckBox::clicked, this, [this, &value](bool ticked) {
    value = ticked ? 1 : 0;
    Q_EMIT Changed();
  });
  return box;
}

QLayout* DownloadOptionsPanel::MakeChecks() {
  using Overlay = DownloadOptions;
  auto* const column = new QVBoxLayout;
  bar_ = MakeCheck(QStringLiteral("chkPalBar"),
                   words_.LangString(312, "Attach Pallete Bar to Images"), options_.PaletteBar);
  column->addWidget(bar_);
  const auto add = [&](int overlay, const QString& text) {
    const auto index = static_cast<std::size_t>(overlay);
    overlays_.at(index) =
        MakeCheck(Numbered("chkOvlOptions", index), text, options_.Overlay.at(index));
    column->addWidget(overlays_.at(index));
  };
  add(Overlay::kDate, words_.LangString(137, "Date"));
  add(Overlay::kTime, words_.LangString(263, "Time"));
  add(Overlay::kEmissivity, words_.LangString(160, "Emissivity"));
  add(Overlay::kExtremes, words_.LangString(192, "Min Temp") + QStringLiteral(" / ") +
                              words_.LangString(185, "Max Temp"));
  add(Overlay::kMemo, words_.LangString(313, "Image Annotation (Memo)"));
  add(Overlay::kVisible, words_.LangString(277, "Visible Light Image"));
  column->addStretch();
  return column;
}

void DownloadOptionsPanel::ShowLimits() {
  minimum_->setText(options_.MinTemp);
  maximum_->setText(options_.MaxTemp);
  custom_->setEnabled(options_.Scale == DownloadOptions::kCustomScale);
  ShowLimitWords();
}

void DownloadOptionsPanel::ShowLimitWords() {
  QStringList told;
  for (const QString& limit : {options_.MinTemp.trimmed(), options_.MaxTemp.trimmed()}) {
    const bool hasDigit =
        std::any_of(limit.begin(), limit.end(), [](QChar letter) { return letter.isDigit(); });
    if (limit.isEmpty()) {
      told += words_.LangString(570, "An empty box counts as 0.");
    } else if (!hasDigit) {
      told += words_.LangString(453, "\"%1\" is not a number and counts as 0.").arg(OneLine(limit));
    }
  }
  if (!(ParseNumber(options_.MinTemp) < ParseNumber(options_.MaxTemp))) {
    told += words_.LangString(571, "The lower limit is not below the upper one.");
  }
  told.removeDuplicates();
  const bool isCustom = options_.Scale == DownloadOptions::kCustomScale;
  limitWords_->setText(isCustom ? told.join(QLatin1Char('\n')) : QString());
  limitWords_->setVisible(!limitWords_->text().isEmpty());
}

QWidgetList DownloadOptionsPanel::FocusOrder() const {
  QWidgetList order = {palette_};
  order.append(QWidgetList(scales_.begin(), scales_.end()));
  order += {minimum_, maximum_};
  order.append(QWidgetList(units_.begin(), units_.end()));
  order += bar_;
  order.append(QWidgetList(overlays_.begin(), overlays_.end()));
  return order;
}

void DownloadOptionsPanel::ShowOptions() {
  {
    // A position that no list has is kept as it is.
    const QSignalBlocker blocker(palette_);
    const bool isOffered = options_.PaletteIndex >= 0 && options_.PaletteIndex < kOfferedPalettes;
    palette_->setCurrentIndex(isOffered ? options_.PaletteIndex : 0);
  }
  for (std::size_t i = 0; i < scales_.size(); ++i) {
    scales_.at(i)->setChecked(options_.Scale == static_cast<int>(i));
  }
  for (std::size_t i = 0; i < units_.size(); ++i) {
    units_.at(i)->setChecked(options_.Unit == static_cast<int>(i));
  }
  bar_->setChecked(options_.PaletteBar == 1);
  for (std::size_t i = 0; i < overlays_.size(); ++i) {
    overlays_.at(i)->setChecked(options_.Overlay.at(i) == 1);
  }
  ShowLimits();
}

}  // namespace tessa
