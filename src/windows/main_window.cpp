#include "windows/main_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressBar>
#include <QRadioButton>
#include <QScreen>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

#include "core/path_bytes.h"
#include "core/tell.h"
#include "open/attachments.h"
#include "open/load_dialog.h"
#include "open/load_image.h"
#include "open/load_steps.h"
#include "open/no_picture.h"
#include "sound/note_player.h"
#include "view/palettes.h"
#include "view/switch_units.h"
#include "widgets/eliding_label.h"
#include "widgets/icons.h"
#include "widgets/language_box.h"
#include "widgets/mnemonics.h"
#include "widgets/palette_swatch.h"
#include "widgets/plain_text.h"
#include "windows/about_dialog.h"
#include "windows/ask_dialogs.h"
#include "windows/display_colors.h"
#include "windows/preferences_dialog.h"
#include "windows/save_sequence_dialog.h"
#include "windows/view_pict.h"
#include "windows/visible_window.h"
#include "windows/window_progress.h"

namespace tessa {
namespace {

constexpr int kTwipsPerPixel = 15;
constexpr int kSmallestWidth = 10050 / kTwipsPerPixel;
constexpr int kSmallestHeight = 8580 / kTwipsPerPixel;
constexpr int kResizeRestMilliseconds = 250;
constexpr int kMessageMilliseconds = 8000;
const QSize kFirstSize(1080, 720);
/// What a window manager's frame takes, before it is known.
const QSize kUsualFrame(16, 48);

/// The first local file of what is dragged; empty for none.
QString DroppedFile(const QMimeData& data) {
  const QList<QUrl> urls = data.urls();
  if (urls.isEmpty() || !urls.constFirst().isLocalFile()) {
    return {};
  }
  // Names need not be UTF-8, which a text out of the address would make of them.
  const QByteArray encoded = urls.constFirst().path(QUrl::FullyEncoded).toLatin1();
  return PathFromBytes(QByteArray::fromPercentEncoding(encoded));
}

}  // namespace

MainWindow::MainWindow(Session& session, UserSettings& user) : session_(session), user_(user) {
  setObjectName(QStringLiteral("MainMDI"));
  setAcceptDrops(true);
  progress_ = std::make_unique<WindowProgress>(*this);
  dialogs_ = std::make_unique<WindowDialogs>(this, session_.Words);
  view_ = new ViewPictWidget(session_, *progress_, this);
  setCentralWidget(view_);
  session_.View.Title = session_.Words.LangString(189, "Corvane T-40 Viewer");
  MakeActions();
  MakeMenus();
  MakeToolPanel();
  MakeStatusBar();
  languageBox_ = AddLanguageBox(*this, [this] { SetWindowLanguage(); });
  ShowIcons();
  connect(view_, &ViewPictWidget::ReadoutChanged, this, &MainWindow::ShowStatusPanels);
  connect(view_, &ViewPictWidget::RangeChanged, this, &MainWindow::BringIntoLine);
  connect(view_, &ViewPictWidget::FrameCommand, this,
          [this](CommandId command) { Action(command)->trigger(); });
  connect(view_, &ViewPictWidget::SpaceTapped, this, &MainWindow::PlayBySpaceBar);
  connect(view_, &ViewPictWidget::OpenRequested, Action(CommandId::kLoadAllImages),
          &QAction::trigger);
  // Drawn in four sizes, and no picture waits for it.
  constexpr int kIconMilliseconds = 100;
  QTimer::singleShot(kIconMilliseconds, this, [this] { setWindowIcon(ApplicationIcon()); });
  openTimer_.setSingleShot(true);
  connect(&openTimer_, &QTimer::timeout, this, &MainWindow::OpenPendingFile);
  resizeTimer_.setSingleShot(true);
  resizeTimer_.setInterval(kResizeRestMilliseconds);
  connect(&resizeTimer_, &QTimer::timeout, this, &MainWindow::KeepSmallestSize);
  SetWindowLanguage();
  resize(kFirstSize.boundedTo(RoomOnScreen()));
  restoreGeometry(user_.WindowPlace());
  if (!isMaximized() && !isFullScreen()) {
    resize(size().boundedTo(RoomOnScreen()));  // The last screen may have been a larger one.
  }
}

MainWindow::~MainWindow() {
  WriteRecentFiles();
  if (player_ != nullptr) {
    player_->Changed = nullptr;
  }
}

void MainWindow::MakeActions() {
  AddFileCommands();
  AddSaveCommands();
  AddCopyCommands();
  AddViewCommands();
  AddToolCommands();
  AddFrameCommands();
  AddSoundCommands();
  AddBrowserCommands();
  AddCameraCommands();
  for (const Command& command : commands_) {
    auto* const action = new QAction(this);
    action->setObjectName(QString::fromLatin1(NameOf(command.Id)));
    actions_[static_cast<std::size_t>(command.Id)] = action;
    action->setShortcuts(command.Shortcuts);
    if (command.Run) {
      connect(action, &QAction::triggered, this, command.Run);
    }
    addAction(action);
  }
}

QAction* MainWindow::Action(CommandId id) const {
  return actions_[static_cast<std::size_t>(id)];
}

std::function<QString()> MainWindow::Word(int id, const char* defaultText) const {
  return [this, id, defaultText] { return session_.Words.LangString(id, defaultText); };
}

/// Captions of menus and commands, each with a letter of its own in its menu.
void MainWindow::SetCaptions() {
  for (const Command& command : commands_) {
    QAction* const action = Action(command.Id);
    action->setText(command.Caption());
    action->setToolTip(PlainCaption(command.Caption()));
  }
  for (QMenu* menu : findChildren<QMenu*>()) {
    if (menu->property("textId").isValid()) {
      menu->setTitle(session_.Words.LangString(menu->property("textId").toInt(),
                                               menu->property("defaultText").toString()));
    }
  }
  AssignMnemonics(*menuBar());
}

void MainWindow::SetWindowLanguage() {
  const Strings& words = session_.Words;
  ViewState& view = session_.View;
  const OpenImage& image = session_.Image;
  qtWords_.SetLanguage(words.Language());
  SetCaptions();
  toolPanel_->setWindowTitle(words.LangString(406, "Tools"));
  openButton_->setAccessibleName(words.LangString(179, "Load Image"));
  paletteLabel_->setText(words.LangString(204, "Palette"));
  paletteList_->setToolTip(words.LangString(237, "Set Color Palette"));
  paletteList_->setAccessibleName(words.LangString(204, "Palette"));
  celsius_->setText(words.LangString(113, "Celsius"));
  celsius_->setToolTip(words.LangString(148, "Display in Celsius"));
  fahrenheit_->setText(words.LangString(167, "Fahrenheit"));
  fahrenheit_->setToolTip(words.LangString(149, "Display in Fahrenheit"));

  view.Title = words.LangString(189, "Corvane T-40 Viewer");
  if (!image.CurrentFile.isEmpty()) {
    view.Title += QStringLiteral(" - ") + image.CurrentFile;
    view.FrameText = FrameText(image, words);
    if (!view.StatusPanel[4].isEmpty()) {
      ShowEmissivity(image, words, view);
    }
    if (!view.StatusPanel[5].isEmpty()) {
      ShowCalibratedRange(image, words, view);
    }
  }
  RetellAboutFile(session_);
  // Widths that no text of the panel outgrows, so that nothing moves while the cursor does.
  const auto numbers = QStringLiteral(": -8888.8 \u00B0C");
  const std::array<QString, ViewState::kStatusPanels + 1> widest = {
      QString(),
      QStringLiteral("X:  8888"),
      QStringLiteral("Y:  8888"),
      words.LangString(256, "Temp") + numbers,
      words.LangString(160, "Emissivity") + QStringLiteral(": 8.88"),
      words.LangString(213, "Range") + QStringLiteral(": -888.8 ") + words.LangString(265, "to") +
          QStringLiteral(" 8888.8"),
      QString()};
  for (std::size_t i = 1; i < ViewState::kStatusPanels; ++i) {
    statusPanels_[i]->setMinimumWidth(fontMetrics().horizontalAdvance(widest[i]) + 12);
  }
  view_->SetWindowLanguage();
  BringIntoLine();
}

void MainWindow::ShowIcons() {
  const QColor ink = palette().color(QPalette::WindowText);
  openButton_->setIcon(ToolIcon(QStringLiteral("open_image"), ink));
  for (const Command& command : commands_) {
    if (*command.Icon != '\0') {
      Action(command.Id)->setIcon(ToolIcon(QString::fromLatin1(command.Icon), ink));
    }
  }
}

void MainWindow::ShowStatusPanels() {
  for (std::size_t i = 1; i <= ViewState::kStatusPanels; ++i) {
    // While an image loads, what was read of the former one is gone already.
    const bool gone = session_.View.LoadProgressVisible && !session_.View.PictureVisible &&
                      i != ViewState::kStatusPanels;
    const QString text = gone ? QString() : OneLine(session_.View.StatusPanel[i]);
    if (statusPanels_[i]->text() != text) {
      statusPanels_[i]->setText(text);
    }
  }
  statusPanels_[ViewState::kStatusPanels]->setToolTip(
      PlainToolTip(ShownPath(session_.Image.CurrentFilePath)));
}

void MainWindow::ShowPaletteList() {
  const QSignalBlocker blocker(paletteList_);
  const ViewState& view = session_.View;
  if (paletteList_->count() != view.PaletteList.size()) {
    paletteList_->clear();
    for (qsizetype i = 0; i < view.PaletteList.size(); ++i) {
      paletteList_->addItem(
          PaletteSwatch(session_.Palettes.PaletteTable[static_cast<std::size_t>(i)]),
          view.PaletteList[i]);
    }
  }
  paletteList_->setCurrentIndex(view.PaletteSelection);
  if (view.PaletteSelection >= 0) {
    const ColourTable& table =
        session_.Palettes.PaletteTable[static_cast<std::size_t>(view.PaletteSelection)];
    if (table != shownPalette_) {
      shownPalette_ = table;
      paletteList_->setItemIcon(view.PaletteSelection, PaletteSwatch(table));
    }
  }
}

void MainWindow::ShowUnits() {
  const QSignalBlocker celsiusBlocker(celsius_);
  const QSignalBlocker fahrenheitBlocker(fahrenheit_);
  celsius_->setChecked(session_.View.CelsiusSelected);
  fahrenheit_->setChecked(!session_.View.CelsiusSelected);
}

void MainWindow::ShowTrend() {
  const bool whiteHot = session_.View.TrendSaysWhiteHot;
  QAction* const trend = Action(CommandId::kTrend);
  const QString text = whiteHot ? session_.Words.LangString(278, "White Hot")
                                : session_.Words.LangString(108, "Black Hot");
  if (trend->toolTip() != text || trend->icon().isNull()) {
    trend->setText(text);
    trend->setToolTip(text);
    trend->setIcon(ToolIcon(whiteHot ? QStringLiteral("white_hot") : QStringLiteral("black_hot"),
                            palette().color(QPalette::WindowText)));
  }
}

void MainWindow::EnableActions() {
  for (const Command& command : commands_) {
    Action(command.Id)->setEnabled(command.Run && (!command.Enabled || command.Enabled()));
  }
  const bool hasVisible = session_.View.VisibleImageEntries;
  Action(CommandId::kVisibleWindowButton)->setVisible(hasVisible);
  ShowSound();
  viewMenu_->setEnabled(hasVisible);
  frameMenu_->setEnabled(session_.View.FrameRowVisible);
  compositeMenu_->menuAction()->setVisible(hasVisible);
  recentMenu_->setEnabled(!user_.RecentFiles().isEmpty());
}

void MainWindow::BringIntoLine() {
  const ViewState& view = session_.View;
  setWindowTitle(PlainTitle(view.Title));
  setWindowFilePath(ShownPath(session_.Image.CurrentFilePath));
  ShowStatusPanels();
  ShowPaletteList();
  ShowUnits();
  ShowTrend();
  EnableActions();
  openButton_->setToolTip(LoadButtonTip(session_.Image, session_.Words));
  loadingText_->setText(OneLine(view.LoadingText));
  loadingText_->setVisible(view.LoadingTextVisible);
  loadProgress_->setValue(static_cast<int>(view.LoadProgress));
  loadProgress_->setVisible(view.LoadProgressVisible);
  renderProgress_->setValue(static_cast<int>(view.RenderProgress));
  renderProgress_->setVisible(view.RenderProgressVisible);
  setCursor(view.BusyPointer || view.Sound.Playing ? Qt::BusyCursor : Qt::ArrowCursor);
  CloseVisibleWhenGone();
  view_->BringIntoLine();
}

/// The window's first showing and each return from one of its own modal windows.
void MainWindow::Activated() {
  ViewState& view = session_.View;
  view.SuppressEvents = true;
  if (session_.Image.CurrentFile.isEmpty()) {
    SelectDefaultPalette(session_);
  }
  view.CelsiusSelected = session_.Image.DisplayUnits != 'F';
  view.SuppressEvents = false;
  SelectPalette(view.PaletteSelection, session_.Image, view, session_.Palettes, session_.Buffers);
  BringIntoLine();
}

/// The largest size that the window can have with its whole frame on the screen.
QSize MainWindow::RoomOnScreen() const {
  const QSize frame = shown_ ? frameSize() - size() : kUsualFrame;
  return screen()->availableSize() - frame;
}

void MainWindow::KeepSmallestSize() {
  if (!isMaximized() && !isFullScreen()) {
    const QSize smallest = QSize(kSmallestWidth, kSmallestHeight).boundedTo(RoomOnScreen());
    resize(size().expandedTo(smallest));
  }
}

void MainWindow::AskAndOpen(int filterIndex) {
  if (session_.Image.UiLocked) {
    return;
  }
  progress_->Start();
  LoadDialog(filterIndex, session_, *dialogs_, *progress_);
  RememberOpened();
  BringIntoLine();
  view_->FocusPicture();
  view_->RefreshReadout();
}

void MainWindow::OpenPendingFile() {
  constexpr int kSitFilter = 4;
  AskAndOpen(kSitFilter);
  if (furtherFilesNamed_ && session_.View.Notice.Text.isEmpty()) {
    Tell(NoticeKind::kQuiet,
         session_.Words.LangString(523, "Only the first of the named files was opened"),
         session_.View);
    BringIntoLine();
  }
}

void MainWindow::OpenFile(const QString& path) {
  OpenImage& image = session_.Image;
  if (image.UiLocked) {
    return;
  }
  statusBar()->clearMessage();
  progress_->Start();
  image.UiLocked = true;
  OpenPath(path, session_, *progress_);
  image.UiLocked = false;
  RememberOpened();
  BringIntoLine();
  view_->FocusPicture();
  view_->RefreshReadout();
}

/// Files that could be read go into the list of recent ones.
void MainWindow::RememberOpened() {
  const OpenImage& image = session_.Image;
  if (image.CurrentFile.isEmpty() || FindNoImage(session_.Faults) != nullptr) {
    return;
  }
  opened_ += image.CurrentFilePath;
  constexpr int kAfterPicture = 100;  // Milliseconds.
  QTimer::singleShot(kAfterPicture, this, &MainWindow::WriteRecentFiles);
}

/// The settings go to the disk with them, which no picture waits for.
void MainWindow::WriteRecentFiles() {
  for (const QString& path : std::exchange(opened_, {})) {
    user_.AddRecentFile(path);
  }
  recentMenu_->setEnabled(!user_.RecentFiles().isEmpty());
}

void MainWindow::ChoosePalette(int position) {
  SelectPalette(position, session_.Image, session_.View, session_.Palettes, session_.Buffers);
  BringIntoLine();
  if (!paletteByKey_) {
    openButton_->setFocus();
  }
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == paletteList_ && event->type() == QEvent::KeyPress) {
    paletteByKey_ = true;
  } else if (watched == paletteList_ &&
             (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::Wheel)) {
    paletteByKey_ = false;
  }
  return QMainWindow::eventFilter(watched, event);
}

bool MainWindow::IsLoadingLargeFile() const {
  constexpr qint64 kLarge = 4 << 20;
  return session_.View.LoadProgressVisible && !session_.View.PictureVisible &&
         QFileInfo(session_.Image.CurrentFilePath).size() > kLarge;
}

void MainWindow::ReverseSelectedPalette() {
  ReversePalette(session_.Image, session_.View, session_.Palettes, session_.Buffers);
  BringIntoLine();
}

void MainWindow::ChooseUnit(char unit) {
  if (unit == 'F') {
    SwitchToFahrenheit(session_.Image, session_.View, session_.Range, session_.Words);
  } else {
    SwitchToCelsius(session_.Image, session_.View, session_.Range, session_.Words);
  }
  session_.Cursor = Readout{};
  BringIntoLine();
  view_->RefreshReadout();
}

void MainWindow::ShowPreferences() {
  PreferencesDialog dialog(session_, user_, this);
  connect(&dialog, &PreferencesDialog::LanguageChanged, this, [this] {
    languageBox_->setChecked(true);
    if (visible_ != nullptr) {
      visible_->findChild<QCheckBox*>(QStringLiteral("chkLang"))->setChecked(true);
    }
  });
  connect(&dialog, &PreferencesDialog::Saved, this, [this] {
    session_.Cursor = Readout{};  // The unit may be another one.
    BringIntoLine();
  });
  dialog.exec();
  Activated();
}

void MainWindow::ShowAbout() {
  AboutDialog dialog(session_.Words, this);
  dialog.exec();
  Activated();
}

void MainWindow::StepFrame(void (*procedure)(Session&, Progress&)) {
  if (session_.Image.ImageBusy) {
    return;
  }
  progress_->Start();
  procedure(session_, *progress_);
  session_.Cursor = Readout{};
  BringIntoLine();
  view_->RefreshReadout();
}

void MainWindow::SaveFrames() {
  SaveSequenceDialog dialog(session_, *progress_, this);
  dialog.exec();
  Activated();
}

void MainWindow::ShowVisible() {
  if (visible_ == nullptr) {
    visible_ = new VisibleWindow(session_, *dialogs_, this);
    visible_->setAttribute(Qt::WA_DeleteOnClose);
    connect(visible_, &VisibleWindow::Told, this, &MainWindow::BringIntoLine);
  }
  visible_->show();
  visible_->raise();
  visible_->activateWindow();
}

/// A load or a close takes the visible-light picture away, and its window with it.
void MainWindow::CloseVisibleWhenGone() {
  if (visible_ != nullptr && !session_.Image.VisibleWindowOpen) {
    visible_->close();
  }
}

void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && languageBox_ != nullptr) {
    ShowIcons();
    Action(CommandId::kTrend)->setIcon(QIcon());
    view_->ShowIcons();
    BringIntoLine();
  }
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier) {
    if (!event->isAutoRepeat()) {
      PlayBySpaceBar();
    }
    return;
  }
  if (event->key() == Qt::Key_Escape && !session_.View.Notice.Text.isEmpty()) {
    DismissNotice(session_.View);
    BringIntoLine();
    return;
  }
  QMainWindow::keyPressEvent(event);
}

void MainWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  if (!shown_) {
    shown_ = true;
    if (!DisplayIsUsable()) {
      return;
    }
    Activated();
    if (!session_.PendingCommandFile.isEmpty()) {
      openTimer_.start(0);
    }
  }
}

bool MainWindow::DisplayIsUsable() {
  const QString refusal = TooFewColorsText(DisplayColors(screen()->depth(), 1), session_.Words);
  if (!refusal.isEmpty()) {
    PlainMessageBox(this, refusal, QMessageBox::Ok, session_.Words)->exec();
    QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
  }
  return refusal.isEmpty();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  ReleaseAttachments(session_);
  CloseVisibleWhenGone();
  user_.SetWindowPlace(saveGeometry());
  event->accept();
}

void MainWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  if (!isMinimized()) {
    resizeTimer_.start();
  }
}

void MainWindow::contextMenuEvent(QContextMenuEvent* event) {
  QMenu menu(this);
  menu.setObjectName(QStringLiteral("ContextMenu"));
  menu.addAction(Action(CommandId::kReload));
  menu.addAction(Action(CommandId::kClose));
  menu.addSeparator();
  menu.addAction(Action(CommandId::kZoomIn));
  menu.addAction(Action(CommandId::kZoomOut));
  menu.addAction(Action(CommandId::kZoomFit));
  menu.addSeparator();
  menu.addAction(Action(CommandId::kTrend));
  menu.addSeparator();
  menu.addAction(Action(CommandId::kPreferences));
  menu.exec(event->globalPos());
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!DroppedFile(*event->mimeData()).isEmpty()) {
    event->acceptProposedAction();
  }
}

void MainWindow::dropEvent(QDropEvent* event) {
  const QString path = DroppedFile(*event->mimeData());
  if (path.isEmpty()) {
    return;
  }
  event->acceptProposedAction();
  const Strings& words = session_.Words;
  if (QFileInfo(path).isDir()) {
    Tell(NoticeKind::kFailed,
         words.LangString(451, "Only image files can be dropped here, not folders"), session_.View);
    BringIntoLine();
    return;
  }
  OpenFile(path);
  if (event->mimeData()->urls().size() > 1) {
    statusBar()->showMessage(
        words.LangString(452, "Only the first of the dropped files was opened"),
        kMessageMilliseconds);
  }
}

}  // namespace tessa
