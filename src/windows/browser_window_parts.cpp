// The controls of the browser, their places and their words.

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include "core/path_bytes.h"
#include "widgets/eliding_label.h"
#include "widgets/icons.h"
#include "widgets/palette_swatch.h"
#include "widgets/plain_text.h"
#include "windows/browser_window.h"
#include "windows/folder_panel.h"
#include "windows/tile_grid.h"

namespace tessa {
namespace {

constexpr int kMargin = 10;
constexpr int kFolderSideWidth = 250;
constexpr int kMostRecentFolders = 5;

QLabel* MakeLabel(const char* name, QWidget* parent) {
  auto* const label = new PlainLabel(parent);
  label->setObjectName(QString::fromLatin1(name));
  return label;
}

QLabel* MakeElided(const char* name, QWidget* parent) {
  auto* const label = new ElidingLabel(Qt::ElideMiddle, parent);
  label->setObjectName(QString::fromLatin1(name));
  return label;
}

QComboBox* MakeList(const char* name, QWidget* parent) {
  auto* const list = new QComboBox(parent);
  list->setObjectName(QString::fromLatin1(name));
  return list;
}

void MakeBold(QLabel& label) {
  QFont font = label.font();
  font.setBold(true);
  label.setFont(font);
}

}  // namespace

QPushButton* BrowserWindow::MakeButton(const char* name, void (BrowserWindow::*clicked)()) {
  auto* const button = new QPushButton(this);
  button->setObjectName(QString::fromLatin1(name));
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, clicked);
  return button;
}

void BrowserWindow::MakeControls() {
  load_ = MakeButton("Command1", &BrowserWindow::LoadSelected);
  load_->setDefault(true);
  close_ = new QPushButton(this);
  close_->setObjectName(QStringLiteral("Command2"));
  close_->setAutoDefault(false);
  close_->installEventFilter(this);
  connect(close_, &QPushButton::clicked, this, &QDialog::reject);
  auto* const layout = new QHBoxLayout;
  layout->addWidget(MakeFolderSide());
  layout->addWidget(MakePageSide(), 1);
  auto* const all = new QVBoxLayout(this);
  all->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  all->addLayout(layout, 1);
  all->addLayout(MakeEnding());
}

QWidget* BrowserWindow::MakeFolderSide() {
  auto* const side = new QWidget(this);
  side->setFixedWidth(kFolderSideWidth);
  source_ = new FolderPanel("Drive1", "Dir1", folders_, side);
  target_ = new FolderPanel("Drive2", "Dir2", folders_, side);
  filters_ = MakeList("Combo2", side);
  palettes_ = MakeList("Combo1", side);
  palettes_->setIconSize(kSwatchSize);
  palettes_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  strip_ = MakeLabel("Picbuf1", side);
  strip_->setScaledContents(true);
  strip_->setFixedHeight(12);
  path_ = MakeElided("SSPanel2", side);
  QLabel* const sourceTitle = MakeLabel("SSPanel7", side);
  QLabel* const targetTitle = MakeLabel("SSPanel12", side);
  MakeBold(*sourceTitle);
  MakeBold(*targetTitle);

  auto* const layout = new QVBoxLayout(side);
  layout->setContentsMargins(0, 0, 6, 0);
  layout->setSpacing(4);
  layout->addWidget(sourceTitle);
  layout->addWidget(MakeLabel("SSPanel1", side));
  layout->addWidget(path_);
  layout->addWidget(MakeLabel("SSPanel10", side));
  layout->addWidget(source_, 3);
  layout->addWidget(MakeLabel("SSPanel9", side));
  layout->addWidget(filters_);
  layout->addWidget(MakeLabel("SSPanel4", side));
  layout->addWidget(palettes_);
  layout->addWidget(strip_);
  layout->addSpacing(6);
  layout->addWidget(targetTitle);
  layout->addWidget(MakeLabel("SSPanel13", side));
  layout->addWidget(target_, 2);
  return side;
}

QLayout* BrowserWindow::MakePageRow() {
  first_ = MakeButton("Command3", &BrowserWindow::ShowFirst);
  previous_ = MakeButton("Command4", &BrowserWindow::ShowPrevious);
  next_ = MakeButton("Command5", &BrowserWindow::ShowNext);
  last_ = MakeButton("Command6", &BrowserWindow::ShowLast);
  pageLabel_ = MakeLabel("SSPanel11", this);
  pageList_ = MakeList("Combo3", this);
  pageList_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  pageLabel_->setBuddy(pageList_);
  auto* const row = new QHBoxLayout;
  row->addWidget(first_);
  row->addWidget(previous_);
  row->addStretch();
  row->addWidget(pageLabel_);
  row->addWidget(pageList_);
  row->addStretch();
  row->addWidget(next_);
  row->addWidget(last_);
  return row;
}

QWidget* BrowserWindow::MakePageSide() {
  auto* const side = new QWidget(this);
  heading_ = MakeElided("SSPanel15", side);
  MakeBold(*heading_);
  grid_ = new TileGrid(side);
  selectAll_ = MakeButton("Command11", &BrowserWindow::SelectAll);
  resetAll_ = MakeButton("Command12", &BrowserWindow::ResetAll);
  play_ = MakeButton("Command13", &BrowserWindow::TileButton);
  play_->setIcon(ToolIcon(QStringLiteral("play_sound"), palette().color(QPalette::ButtonText)));
  print_ = MakeButton("Command7", &BrowserWindow::PrintPage);
  copy_ = MakeButton("Command8", &BrowserWindow::CopySelected);
  transfer_ = MakeButton("Command9", &BrowserWindow::TransferSelected);
  delete_ = MakeButton("Command10", &BrowserWindow::DeleteSelected);
  embed_ = new QCheckBox(side);
  embed_->setObjectName(QStringLiteral("chkEmbed"));
  auto* const selection = new QHBoxLayout;
  selection->addWidget(selectAll_);
  selection->addWidget(resetAll_);
  selection->addWidget(play_);
  selection->addStretch();
  selection->addWidget(delete_);
  selection->addWidget(print_);
  auto* const transfers = new QHBoxLayout;
  transfers->addWidget(copy_);
  transfers->addWidget(transfer_);
  transfers->addWidget(embed_);
  transfers->addStretch();
  auto* const layout = new QVBoxLayout(side);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(MakePageRow());
  layout->addWidget(heading_);
  layout->addWidget(grid_, 1);
  layout->addLayout(selection);
  layout->addLayout(transfers);
  return side;
}

QLayout* BrowserWindow::MakeEnding() {
  counts_ = MakeElided("Counts", this);
  status_ = MakeElided("SSPanel5", this);
  fileText_ = MakeElided("SSPanel14", this);
  gauge_ = new QProgressBar(this);
  gauge_->setObjectName(QStringLiteral("SSPanel6"));
  gauge_->setMaximumWidth(160);
  fileText_->hide();
  status_->hide();
  gauge_->hide();
  auto* const row = new QHBoxLayout;
  row->addWidget(counts_, 1);
  row->addWidget(status_, 1);
  row->addWidget(gauge_);
  row->addWidget(fileText_, 3);
  row->addWidget(load_);
  row->addWidget(close_);
  return row;
}

void BrowserWindow::Connect() {
  connect(source_, &FolderPanel::FolderChanged, this, &BrowserWindow::ChangeFolder);
  connect(target_, &FolderPanel::FolderChanged, this, [this](const QString& folder) {
    pages_.TargetFolder = folder;
    pages_.CheckTransfer();
    ShowTransferButtons();
  });
  connect(target_, &FolderPanel::MenuAsked, this, &BrowserWindow::ShowFolderMenu);
  connect(filters_, &QComboBox::activated, this, &BrowserWindow::ChangeFilter);
  connect(palettes_, &QComboBox::currentIndexChanged, this, &BrowserWindow::ChangePalette);
  connect(pageList_, &QComboBox::activated, this, [this](int index) {
    loadingClock_.start();
    pages_.ShowPage(index + 1);
    BringIntoLine();
  });
  connect(grid_, &TileGrid::Picked, this, &BrowserWindow::Pick);
  connect(grid_, &TileGrid::DoubleClicked, this, &BrowserWindow::OpenTile);
  connect(grid_, &TileGrid::MenuAsked, this, &BrowserWindow::ShowTileMenu);
  connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, [this] { stirred_.start(); });
  connect(&stirred_, &QTimer::timeout, this, &BrowserWindow::FolderStirred);
}

void BrowserWindow::FillLists() {
  const Strings& words = session_.Words;
  const QSignalBlocker filterBlocker(filters_);
  const QSignalBlocker paletteBlocker(palettes_);
  const int filter = filters_->currentIndex();
  filters_->clear();
  for (const ImageFilter& one : kImageFilters) {
    filters_->addItem(QString::fromLatin1(one.Word) +
                      words.LangString(one.TextId, one.DefaultText));
  }
  filters_->setCurrentIndex(filter);
  if (palettes_->count() == 0) {
    for (qsizetype i = 0; i < session_.View.PaletteList.size(); ++i) {
      palettes_->addItem(
          PaletteSwatch(session_.Palettes.PaletteTable.at(static_cast<std::size_t>(i))),
          session_.View.PaletteList[i], static_cast<int>(i));
    }
  }
  QStringList recent;
  for (const QString& file : user_.RecentFiles()) {
    const QString folder = FolderOfPath(file);
    if (!recent.contains(folder) && recent.size() < kMostRecentFolders) {
      recent.append(folder);
    }
  }
  source_->SetPlaces(recent, words);
  target_->SetPlaces(recent, words);
}

/// Captions, hints, and the names that screen readers say.
void BrowserWindow::SetCaptions() {
  const Strings& words = session_.Words;
  const auto label = [&](const char* name, int id, const char* text) {
    findChild<QLabel*>(QString::fromLatin1(name))->setText(words.LangString(id, text));
  };
  label("SSPanel1", 136, "Current Path");
  label("SSPanel7", 247, "Source Options");
  label("SSPanel10", 155, "Drive");
  label("SSPanel9", 176, "Image Type");
  label("SSPanel4", 115, "Color Palette");
  label("SSPanel12", 254, "Target Options");
  label("SSPanel13", 155, "Drive");
  pageLabel_->setText(QLatin1Char(' ') + words.LangString(202, "Page"));
  load_->setText(words.LangString(178, "Load"));
  close_->setText(words.LangString(114, "Close"));
  first_->setText(QStringLiteral("<< ") + words.LangString(292, "First"));
  previous_->setText(QStringLiteral("< ") + words.LangString(293, "Previous"));
  next_->setText(words.LangString(294, "Next") + QStringLiteral(" >"));
  last_->setText(words.LangString(295, "Last") + QStringLiteral(" >>"));
  print_->setText(words.LangString(211, "Print"));
  copy_->setText(words.LangString(131, "Copy: Source -> Target"));
  copy_->setToolTip(words.LangString(124, "Copy Files to Target"));
  transfer_->setText(words.LangString(268, "Transfer: Source -> Target"));
  transfer_->setToolTip(words.LangString(194, "Move Files to Target"));
  delete_->setText(words.LangString(143, "Delete From Source"));
  delete_->setToolTip(words.LangString(142, "Delete Files from Source"));
  selectAll_->setText(words.LangString(233, "Select All"));
  resetAll_->setText(words.LangString(217, "Reset All"));
  embed_->setText(words.LangString(157, "Embed Sound Files"));
  filters_->setAccessibleName(words.LangString(176, "Image Type"));
  palettes_->setAccessibleName(words.LangString(115, "Color Palette"));
  pageList_->setAccessibleName(words.LangString(202, "Page"));
  heading_->setAccessibleName(words.LangString(246, "Source Images"));
  grid_->setAccessibleName(words.LangString(246, "Source Images"));
  gauge_->setAccessibleName(words.LangString(183, "Loading Thumbnails"));
  source_->SetAccessibleNames(words.LangString(473, "Place"),
                              words.LangString(476, "Source Folder"));
  target_->SetAccessibleNames(words.LangString(473, "Place"),
                              words.LangString(477, "Target Folder"));
}

void BrowserWindow::SetWindowLanguage() {
  setWindowTitle(session_.Words.LangString(261, "Thumbnails"));
  FillLists();
  SetCaptions();
  strip_->setPixmap(PaletteSwatch(Colours()).pixmap(kSwatchSize));
}

}  // namespace tessa
