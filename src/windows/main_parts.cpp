// The menus, the tool panel and the status bar of the main window.

#include <QComboBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QProgressBar>
#include <QRadioButton>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

#include "view/palettes.h"
#include "widgets/eliding_label.h"
#include "widgets/palette_swatch.h"
#include "widgets/plain_text.h"
#include "windows/main_window.h"

namespace tessa {
namespace {

constexpr int kToolIconSize = 24;
/// Longer names and folders lose their middle in the list of recent images.
constexpr int kMostNameCharacters = 48;
constexpr int kMostFolderCharacters = 56;

}  // namespace

QMenu* MainWindow::MakeMenu(QMenu* parent, const char* name, int textId, const char* defaultText) {
  QMenu* const made =
      parent == nullptr ? menuBar()->addMenu(QString()) : parent->addMenu(QString());
  made->setObjectName(QString::fromLatin1(name));
  made->setProperty("textId", textId);
  made->setProperty("defaultText", QString::fromLatin1(defaultText));
  return made;
}

void MainWindow::MakeMenus() {
  using enum CommandId;
  constexpr CommandId kLine = kCount;  // A separating line.
  const auto fill = [this](QMenu* menu, std::initializer_list<CommandId> ids) {
    for (const CommandId id : ids) {
      if (id == kLine) {
        menu->addSeparator();
      } else {
        menu->addAction(Action(id));
      }
    }
  };
  QMenu* const file = MakeMenu(nullptr, "mnuFile", 168, "File");
  QMenu* const load = MakeMenu(file, "mnuLoad", 178, "Load");
  fill(load, {kLoadAllImages, kLine, kLoadBmp, kLoadTiff, kLoadJpeg, kLoadSit, kLoadTxi, kLoadTmp,
              kLoadRti, kLoadSequence, kLine, kThumbnails, kLine});
  recentMenu_ = MakeMenu(load, "mnuRecent", 405, "Recent Images");
  connect(recentMenu_, &QMenu::aboutToShow, this, &MainWindow::FillRecentMenu);
  fill(file, {kReload, kClose, kImageInfo, kLine});
  QMenu* const save = MakeMenu(file, "mnuSaveMain", 223, "Save");
  fill(save, {kSaveBmp, kSaveJpeg, kSaveTxi});
  compositeMenu_ = MakeMenu(save, "mnuSaveComposite", 226, "Save Composite");
  fill(compositeMenu_, {kSaveCompositeBmp, kSaveCompositeJpeg});
  fill(file, {kLine, kPreferences, kDownload, kAbout, kLine, kExit});
  fill(MakeMenu(nullptr, "mnuedit", 156, "Edit"),
       {kCopyImage, kCopyPaletteBar, kCopyImageWithPaletteBar, kCopyVisible, kCopyComposite});
  viewMenu_ = MakeMenu(nullptr, "mnuView", 285, "View");
  fill(viewMenu_, {kVisibleWindow});
  fill(MakeMenu(nullptr, "mnuZoom", 284, "Zoom"), {kZoomIn, kZoomOut, kZoomFit});
  frameMenu_ = MakeMenu(nullptr, "mnuFrame", 287, "Frame");
  fill(frameMenu_, {kFirstFrame, kPreviousFrame, kNextFrame, kLastFrame, kLine, kSaveFrames});
  fill(MakeMenu(nullptr, "mnuTools", 406, "Tools"), {kRotationAngle, kEdgeMagnitude});
}

void MainWindow::FillRecentMenu() {
  WriteRecentFiles();
  recentMenu_->clear();
  int number = 0;
  for (const QString& path : user_.RecentFiles()) {
    const QFileInfo file(path);
    // In one call: a name may hold what looks like a place for the next argument.
    QAction* const entry =
        recentMenu_->addAction(QStringLiteral("&%1  %2    %3")
                                   .arg(QString::number(++number % 10),
                                        PlainMenuText(file.fileName(), kMostNameCharacters),
                                        PlainMenuText(file.absolutePath(), kMostFolderCharacters)));
    entry->setToolTip(PlainToolTip(path));  // It would be made of the text otherwise.
    entry->setData(path);
    connect(entry, &QAction::triggered, this, [this, path] { OpenFile(path); });
  }
}

void MainWindow::MakeToolPanel() {
  toolPanel_ = new QToolBar(this);
  toolPanel_->setObjectName(QStringLiteral("ToolPanel"));
  toolPanel_->setMovable(false);
  toolPanel_->setIconSize(QSize(kToolIconSize, kToolIconSize));
  toolPanel_->toggleViewAction()->setVisible(false);
  openButton_ = new QToolButton(toolPanel_);
  openButton_->setObjectName(QStringLiteral("btnOpenImage"));
  connect(openButton_, &QToolButton::clicked, this, [this] {
    // In the order of the kinds.
    static constexpr std::array<CommandId, 8> kEntries = {
        CommandId::kLoadBmp, CommandId::kLoadTiff, CommandId::kLoadJpeg, CommandId::kLoadSit,
        CommandId::kLoadTxi, CommandId::kLoadTmp,  CommandId::kLoadRti,  CommandId::kLoadSequence};
    const auto kind = static_cast<std::size_t>(session_.Image.OfferedKind());
    if (!session_.Image.UiLocked && kind < kEntries.size()) {
      Action(kEntries[kind])->trigger();
    }
  });
  toolPanel_->addWidget(openButton_);
  toolPanel_->addAction(Action(CommandId::kSaveBmpButton));
  toolPanel_->addAction(Action(CommandId::kThumbnailsButton));
  toolPanel_->addAction(Action(CommandId::kDownloadButton));
  toolPanel_->addSeparator();
  toolPanel_->addAction(Action(CommandId::kTrend));
  toolPanel_->addSeparator();
  for (const CommandId id : {CommandId::kZoomOut, CommandId::kZoomIn, CommandId::kZoomFit}) {
    toolPanel_->addAction(Action(id));
  }
  toolPanel_->addSeparator();
  toolPanel_->addAction(Action(CommandId::kPreferencesButton));
  // These come and go with the image, so they stand where they move nothing else.
  toolPanel_->addAction(Action(CommandId::kVisibleWindowButton));
  toolPanel_->addAction(Action(CommandId::kPlaySound));
  toolPanel_->addAction(Action(CommandId::kEmbedSound));
  auto* const gap = new QWidget(toolPanel_);
  gap->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  toolPanel_->addWidget(gap);
  toolPanel_->addWidget(MakeDisplayPanel());
  addToolBar(toolPanel_);
}

QWidget* MainWindow::MakeDisplayPanel() {
  auto* const panel = new QWidget(this);
  panel->setObjectName(QStringLiteral("SSPanel5"));
  paletteLabel_ = new PlainLabel(panel);
  paletteList_ = new QComboBox(panel);
  paletteList_->setObjectName(QStringLiteral("Combo1"));
  paletteList_->setIconSize(kSwatchSize);
  paletteList_->setMaxVisibleItems(kOfferedPalettes);
  // In the smallest window the swatch alone stays.
  paletteList_->setMinimumWidth(kSwatchSize.width() + 34);
  paletteLabel_->setBuddy(paletteList_);
  connect(paletteList_, &QComboBox::activated, this, &MainWindow::ChoosePalette);
  paletteList_->installEventFilter(this);
  celsius_ = new QRadioButton(panel);
  celsius_->setObjectName(QStringLiteral("SSOption1"));
  fahrenheit_ = new QRadioButton(panel);
  fahrenheit_->setObjectName(QStringLiteral("SSOption2"));
  connect(celsius_, &QRadioButton::clicked, this, [this] { ChooseUnit('C'); });
  connect(fahrenheit_, &QRadioButton::clicked, this, [this] { ChooseUnit('F'); });

  auto* const layout = new QHBoxLayout(panel);
  layout->setContentsMargins(8, 2, 8, 2);
  layout->addWidget(paletteLabel_);
  layout->addWidget(paletteList_);
  layout->addSpacing(12);
  layout->addWidget(celsius_);
  layout->addWidget(fahrenheit_);
  return panel;
}

void MainWindow::MakeStatusBar() {
  QStatusBar* const bar = statusBar();
  bar->setObjectName(QStringLiteral("StatusBar1"));
  bar->setContentsMargins(6, 0, 0, 0);
  bar->setMinimumWidth(1);  // A small screen cuts it off rather than the window.
  for (std::size_t i = 1; i <= ViewState::kStatusPanels; ++i) {
    // A long path gives up its middle, never the file's name.
    QLabel* const panel = i == ViewState::kStatusPanels ? new ElidingLabel(Qt::ElideMiddle, bar)
                                                        : new PlainLabel(bar);
    panel->setObjectName(QStringLiteral("StatusBar1Panel%1").arg(i));
    statusPanels_[i] = panel;
    bar->addWidget(panel, i == ViewState::kStatusPanels ? 1 : 0);
  }
  statusPanels_[ViewState::kStatusPanels]->setSizePolicy(QSizePolicy::Ignored,
                                                         QSizePolicy::Preferred);
  loadingText_ = new PlainLabel(bar);
  loadingText_->setObjectName(QStringLiteral("Panel3D15"));
  loadProgress_ = new QProgressBar(bar);
  loadProgress_->setObjectName(QStringLiteral("SSPanel12"));
  loadProgress_->setMaximumWidth(160);
  renderProgress_ = new QProgressBar(bar);
  renderProgress_->setObjectName(QStringLiteral("SSPanel18"));
  renderProgress_->setMaximumWidth(160);
  soundLength_ = new PlainLabel(bar);
  soundLength_->setObjectName(QStringLiteral("SoundLength"));
  bar->addPermanentWidget(soundLength_);
  bar->addPermanentWidget(renderProgress_);
  bar->addPermanentWidget(loadingText_);
  bar->addPermanentWidget(loadProgress_);
}

}  // namespace tessa
