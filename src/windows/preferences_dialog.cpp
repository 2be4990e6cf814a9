#include "windows/preferences_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSet>
#include <QSignalBlocker>
#include <algorithm>

#include "core/viewer_ini.h"
#include "view/palettes.h"
#include "view/switch_units.h"
#include "widgets/mnemonics.h"
#include "widgets/palette_swatch.h"
#include "widgets/plain_text.h"

namespace tessa {
namespace {

constexpr int kPalettesToChoose = 11;
constexpr int kPanelCharacters = 54;
constexpr int kMargin = 16;
constexpr int kColumnGap = 12;
constexpr int kRowGap = 10;

/// The path as it is kept. The separator goes on first, so that a name's own final blank stays.
QString WithFinalSeparator(const QString& path) {
  if (path.trimmed().isEmpty()) {
    return {};
  }
  const QChar separator = QDir::separator();
  return (path.endsWith(separator) ? path : path + separator).trimmed();
}

}  // namespace

PreferencesDialog::PreferencesDialog(Session& session, UserSettings& user, QWidget* parent)
    : QDialog(parent), session_(session), user_(user) {
  setObjectName(QStringLiteral("CaptureSetup"));
  auto* const layout = new QGridLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setHorizontalSpacing(kColumnGap);
  layout->setVerticalSpacing(kRowGap);
  layout->setColumnStretch(1, 1);
  AddFolder(*layout, 0, "SSPanel10", "Dir1", source_);
  AddFolder(*layout, 1, "SSPanel2", "Dir2", target_);
  AddChoices(*layout);
  const int lastRow = layout->rowCount();
  layout->setRowMinimumHeight(lastRow, kRowGap);
  layout->setRowStretch(lastRow, 1);
  layout->addWidget(MakeButtons(), lastRow + 1, 0, 1, 3);
  FillPalettes();
  SetWindowLanguage();
  LoadValues();
  session_.View.SuppressEvents = false;
  source_.Choose->setFocus();
}

QLabel* PreferencesDialog::AddCaption(QGridLayout& layout, int row) {
  auto* const caption = new PlainLabel(this);
  layout.addWidget(caption, row, 0);
  return caption;
}

void PreferencesDialog::AddFolder(QGridLayout& layout, int row, const char* panelName,
                                  const char* buttonName, Folder& folder) {
  folder.Caption = AddCaption(layout, row);
  folder.Panel = new QLineEdit(this);
  folder.Panel->setObjectName(QString::fromLatin1(panelName));
  folder.Panel->setReadOnly(true);
  // On a small or much enlarged screen the buttons still find room.
  folder.Panel->setMinimumWidth(std::min(fontMetrics().averageCharWidth() * kPanelCharacters,
                                         screen()->availableSize().width() / 3));
  folder.Choose = new QPushButton(QStringLiteral("\u2026"), this);
  folder.Choose->setObjectName(QString::fromLatin1(buttonName));
  folder.Choose->setFixedWidth(folder.Choose->sizeHint().height() * 3 / 2);
  folder.Caption->setBuddy(folder.Choose);
  connect(folder.Choose, &QPushButton::clicked, this, [this, &folder] { AskForFolder(folder); });
  layout.addWidget(folder.Panel, row, 1);
  layout.addWidget(folder.Choose, row, 2);
}

void PreferencesDialog::AddChoices(QGridLayout& layout) {
  const auto addList = [this, &layout](QLabel*& caption, const char* name) {
    const int row = layout.rowCount();
    caption = AddCaption(layout, row);
    auto* const list = new QComboBox(this);
    list->setObjectName(QString::fromLatin1(name));
    caption->setBuddy(list);
    layout.addWidget(list, row, 1);
    return list;
  };
  kinds_ = addList(kindCaption_, "Combo2");
  palettes_ = addList(paletteCaption_, "Combo1");
  palettes_->setIconSize(kSwatchSize);
  palettes_->setMaxVisibleItems(kPalettesToChoose);
  const int unitRow = layout.rowCount();
  unitCaption_ = AddCaption(layout, unitRow);
  layout.addWidget(MakeUnitOptions(), unitRow, 1);
  languages_ = addList(languageCaption_, "cboLanguage");
  // Each language under its own name, whatever the present one is.
  languages_->addItems(
      {QStringLiteral("English"), QStringLiteral("Deutsch"), QStringLiteral("Espa\u00F1ol")});
  connect(languages_, &QComboBox::currentIndexChanged, this, [this](int index) {
    if (index >= 0) {
      ShowLanguage(index);
    }
  });
}

QWidget* PreferencesDialog::MakeUnitOptions() {
  auto* const options = new QWidget(this);
  celsius_ = new QRadioButton(options);
  celsius_->setObjectName(QStringLiteral("SSOption1"));
  fahrenheit_ = new QRadioButton(options);
  fahrenheit_->setObjectName(QStringLiteral("SSOption2"));
  auto* const layout = new QHBoxLayout(options);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kMargin);
  layout->addWidget(celsius_);
  layout->addWidget(fahrenheit_);
  layout->addStretch();
  return options;
}

QWidget* PreferencesDialog::MakeButtons() {
  auto* const box = new QDialogButtonBox(this);
  const auto add = [this, box](const char* name, QDialogButtonBox::ButtonRole role) {
    auto* const button = new QPushButton(this);
    button->setObjectName(QString::fromLatin1(name));
    box->addButton(button, role);
    return button;
  };
  save_ = add("Command1", QDialogButtonBox::AcceptRole);
  defaults_ = add("Command2", QDialogButtonBox::ResetRole);
  leave_ = add("Command3", QDialogButtonBox::RejectRole);
  save_->setDefault(true);
  connect(save_, &QPushButton::clicked, this, &PreferencesDialog::SaveChanges);
  connect(defaults_, &QPushButton::clicked, this, &PreferencesDialog::RestoreDefaults);
  connect(leave_, &QPushButton::clicked, this, &PreferencesDialog::reject);
  return box;
}

void PreferencesDialog::SetWindowLanguage() {
  const Strings& words = session_.Words;
  setWindowTitle(words.LangString(190, "Corvane T-40 Viewer Setup"));
  QSet<QChar> taken;
  const auto caption = [&](int id, const char* text) {
    return WithMnemonic(words.LangString(id, text), taken);
  };
  save_->setText(caption(225, "Save Changes"));
  defaults_->setText(caption(218, "Restore Defaults"));
  leave_->setText(caption(219, "Return"));
  celsius_->setText(caption(113, "Celsius"));
  fahrenheit_->setText(caption(167, "Fahrenheit"));
  source_.Caption->setText(caption(248, "Source Path"));
  target_.Caption->setText(caption(255, "Target Path"));
  kindCaption_->setText(caption(139, "Default Image Type"));
  paletteCaption_->setText(caption(138, "Default Color Palette"));
  languageCaption_->setText(caption(288, "Language"));
  // Two controls follow this one, each with a letter of its own.
  unitCaption_->setText(words.LangString(140, "Default Temperature Unit"));

  source_.Panel->setAccessibleName(words.LangString(248, "Source Path"));
  source_.Choose->setAccessibleName(words.LangString(248, "Source Path") + QChar(0x2026));
  target_.Panel->setAccessibleName(words.LangString(255, "Target Path"));
  target_.Choose->setAccessibleName(words.LangString(255, "Target Path") + QChar(0x2026));
  for (const Folder* folder : {&source_, &target_}) {
    folder->Panel->setPlaceholderText(words.LangString(198, "None"));
    folder->Choose->setToolTip(folder->Choose->accessibleName());
  }
  kinds_->setAccessibleName(words.LangString(139, "Default Image Type"));
  palettes_->setAccessibleName(words.LangString(138, "Default Color Palette"));
  languages_->setAccessibleName(words.LangString(288, "Language"));
  for (QRadioButton* const option : {celsius_, fahrenheit_}) {
    option->setAccessibleDescription(unitCaption_->text());
  }
  FillKinds();
}

void PreferencesDialog::FillKinds() {
  const Strings& words = session_.Words;
  QStringList names;
  for (int kind = KindBmp; kind < KindRti; ++kind) {
    names.append(KindWord(kind) + words.LangString(177, "Images"));
  }
  names.append(words.LangString(221, "RTI Snapshots"));
  const int selected = kinds_->currentIndex();
  kinds_->clear();
  kinds_->addItems(names);
  kinds_->setCurrentIndex(selected);
}

void PreferencesDialog::FillPalettes() {
  const QStringList names = session_.View.PaletteList.mid(0, kPalettesToChoose);
  for (qsizetype i = 0; i < names.size(); ++i) {
    palettes_->addItem(PaletteSwatch(session_.Palettes.PaletteTable[static_cast<std::size_t>(i)]),
                       names[i]);
  }
}

void PreferencesDialog::LoadValues() {
  const Settings& settings = session_.Settings;
  languageAtOpen_ = session_.Words.Language();
  {
    const QSignalBlocker settingLanguage(languages_);
    languages_->setCurrentIndex(languageAtOpen_ < languages_->count() ? languageAtOpen_ : -1);
  }
  ShowFolder(settings.LastFolder, source_);
  ShowFolder(settings.TargetFolder, target_);
  kinds_->setCurrentIndex(settings.DefaultKind);
  palettes_->setCurrentIndex(settings.DefaultPalette);
  (settings.DefaultUnits == 'F' ? fahrenheit_ : celsius_)->setChecked(true);
}

void PreferencesDialog::AskForFolder(Folder& folder) {
  const bool exists = !folder.Path.isEmpty() && QDir(folder.Path).exists();
  const QString chosen = QFileDialog::getExistingDirectory(this, folder.Panel->accessibleName(),
                                                           exists ? folder.Path : QDir::homePath());
  if (!chosen.isEmpty()) {
    ShowFolder(chosen, folder);
  }
}

void PreferencesDialog::ShowFolder(const QString& path, Folder& folder) {
  folder.Path = WithFinalSeparator(path);
  folder.Panel->setText(folder.Path.isEmpty() ? QString()
                                              : QStringLiteral("  ") + folder.Path.toUpper());
  folder.Panel->setCursorPosition(0);
  folder.Panel->setToolTip(PlainToolTip(folder.Path));
}

void PreferencesDialog::ShowLanguage(int language) {
  session_.Words.SetLanguage(language);
  SetWindowLanguage();
  Q_EMIT LanguageChanged();
}

void PreferencesDialog::SaveChanges() {
  TakeOver();
  session_.Steps.Run("save settings", [this] {
    const QString& folder = session_.Folder.Path();
    QDir().mkpath(folder);
    WriteViewerIni(folder + QLatin1Char('/') + kViewerIniName, session_.Settings);
  });
  user_.SetLanguage(session_.Words.Language());
  languageAtOpen_ = session_.Words.Language();
  Q_EMIT Saved();
  accept();
}

void PreferencesDialog::TakeOver() {
  Settings& settings = session_.Settings;
  OpenImage& image = session_.Image;
  ViewState& view = session_.View;
  settings.LastFolder = source_.Path;
  settings.TargetFolder = target_.Path;
  settings.DefaultKind = std::max(kinds_->currentIndex(), 0);
  settings.DefaultPalette = std::max(palettes_->currentIndex(), 0);
  settings.DefaultUnits = fahrenheit_->isChecked() ? 'F' : 'C';

  if (image.CurrentFile.isEmpty()) {
    ReadPalettes(session_);  // As at the start: what was reversed stands as in the file again.
  }
  SelectPalette(palettes_->currentIndex(), image, view, session_.Palettes, session_.Buffers);
  if (settings.DefaultUnits == 'F') {
    SwitchToFahrenheit(image, view, session_.Range, session_.Words);
  } else {
    SwitchToCelsius(image, view, session_.Range, session_.Words);
  }
  // An open image keeps its kind: range and readout go by it.
  if (image.CurrentFile.isEmpty()) {
    image.ImageKind = static_cast<std::int16_t>(settings.DefaultKind);
  }
  image.PreviousKindIndex = static_cast<std::int16_t>(settings.DefaultKind + 1);
}

void PreferencesDialog::RestoreDefaults() {
  ShowFolder(session_.Folder.Path(), source_);
  ShowFolder(session_.Folder.Path(), target_);
  kinds_->setCurrentIndex(0);
  fahrenheit_->setChecked(true);
  languages_->setCurrentIndex(0);
}

void PreferencesDialog::reject() {
  if (session_.Words.Language() != languageAtOpen_) {
    ShowLanguage(languageAtOpen_);
  }
  QDialog::reject();
}

}  // namespace tessa
