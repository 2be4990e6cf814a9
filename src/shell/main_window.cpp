#include "shell/main_window.h"

#include <QActionGroup>
#include <QApplication>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressBar>
#include <QRadioButton>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

#include "core/load_dialog.h"
#include "core/load_image.h"
#include "shell/open_file_dialog.h"
#include "shell/tool_icon_widget.h"
#include "shell/view_pict_widget.h"
#include "view/palettes.h"
#include "view/units.h"

namespace tessa {
namespace {

constexpr int kToolIconSize = 24;
const QSize kSwatchSize(72, 14);
/// A load is only painted in between when it takes long enough to be noticed.
constexpr int kPatienceMilliseconds = 120;

/// Shows progress in the main window.
class WindowProgress : public Progress {
 public:
  explicit WindowProgress(MainWindow& window) : window_(window) { clock_.start(); }

  void Start() { clock_.restart(); }
  void Repaint() override { PaintWhenDue(); }
  void Advance() override { PaintWhenDue(); }
  void LetEventsRun() override {
    if (window_.isVisible()) {
      QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
  }

 private:
  void PaintWhenDue() {
    if (clock_.elapsed() >= kPatienceMilliseconds && window_.isVisible()) {
      window_.BringIntoLine();
      QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
      clock_.restart();
    }
  }

  MainWindow& window_;
  QElapsedTimer clock_;
};

/// A palette as a small bar from cold to hot.
QIcon PaletteSwatch(const ColourTable& table) {
  QImage bar(256, 1, QImage::Format_RGB32);
  for (int i = 0; i < 256; ++i) {
    const Colour colour = table[static_cast<std::size_t>(i)];
    bar.setPixel(i, 0, qRgb(RedOf(colour), GreenOf(colour), BlueOf(colour)));
  }
  return QIcon(QPixmap::fromImage(bar.scaled(kSwatchSize)));
}

}  // namespace

MainWindow::MainWindow(Session& session) : session_(session) {
  setObjectName(QStringLiteral("MainMDI"));
  setWindowIcon(ApplicationIcon());
  setAcceptDrops(true);
  setContextMenuPolicy(Qt::NoContextMenu);
  progress_ = std::make_unique<WindowProgress>(*this);
  dialogs_ = std::make_unique<WindowDialogs>(this);
  view_ = new ViewPictWidget(session_, this);
  setCentralWidget(view_);
  session_.View.Title = session_.Words.LangString(189, "Corvane T-40 Viewer");
  session_.View.LoadButtonTip = LoadButtonTip(session_.Image.ImageKind, session_.Words);
  MakeActions();
  MakeMenus();
  MakeToolPanel();
  MakeStatusBar();
  ShowIcons();
  connect(view_, &ViewPictWidget::ReadoutChanged, this, &MainWindow::ShowStatusPanels);
  connect(view_, &ViewPictWidget::OpenRequested, this, [this] { Action("mnuLoadIMG")->trigger(); });
  BringIntoLine();
  resize(1000, 700);
}

MainWindow::~MainWindow() = default;

std::vector<MainWindow::Command> MainWindow::MakeCommands() {
  const Strings& words = session_.Words;
  const QString images = words.LangString(177, "Images");
  const auto hasImage = [this] { return session_.View.HasImage; };
  const auto zoomBy = [this](int step) {
    return [this, step] { view_->SetZoom(view_->ZoomLevel() + step); };
  };
  const auto load = [this](int filterIndex) {
    return [this, filterIndex] { AskAndOpen(filterIndex); };
  };
  return {
      {QStringLiteral("mnuLoadBmp"), QStringLiteral("BMP ") + images, {}, {}, load(1), {}},
      {QStringLiteral("mnuLoadTIFF"), QStringLiteral("TIFF ") + images, {}, {}, load(2), {}},
      {QStringLiteral("mnuLoadJPEG"), QStringLiteral("JPEG ") + images, {}, {}, load(3), {}},
      {QStringLiteral("mnuLoadIMG"),
       QStringLiteral("SIT ") + images,
       QStringLiteral("open_image"),
       {QKeySequence::Open},
       load(4),
       {}},
      {QStringLiteral("mnuLoadTxi"), QStringLiteral("TXI ") + images, {}, {}, load(5), {}},
      {QStringLiteral("mnuLoadTMP"), QStringLiteral("TMP ") + images, {}, {}, load(6), {}},
      {QStringLiteral("mnuLoadRTI"), words.LangString(221, "RTI Snapshots"), {}, {}, load(7), {}},
      {QStringLiteral("mnuLoadSEQ"), words.LangString(222, "RTV Sequence"), {}, {}, load(8), {}},
      {QStringLiteral("mnuClose"),
       words.LangString(114, "&Close"),
       QStringLiteral("close_image"),
       {QKeySequence(Qt::CTRL | Qt::Key_W)},
       [this] {
         CloseImage(session_, *progress_);
         BringIntoLine();
       },
       hasImage},
      {QStringLiteral("mnuExit"),
       words.LangString(166, "E&xit"),
       QStringLiteral("exit"),
       {QKeySequence(Qt::CTRL | Qt::Key_Q)},
       [this] { close(); },
       {}},
      {QStringLiteral("btnTrend"),
       {},
       {},
       {QKeySequence(Qt::CTRL | Qt::Key_I)},
       [this] { ReverseSelectedPalette(); },
       hasImage},
      {QStringLiteral("ZoomIn"),
       tr("Zoom &In"),
       QStringLiteral("zoom_in"),
       {QKeySequence(Qt::Key_Plus), QKeySequence(Qt::Key_PageUp), QKeySequence::ZoomIn},
       zoomBy(1),
       hasImage},
      {QStringLiteral("ZoomOut"),
       tr("Zoom &Out"),
       QStringLiteral("zoom_out"),
       {QKeySequence(Qt::Key_Minus), QKeySequence(Qt::Key_PageDown), QKeySequence::ZoomOut},
       zoomBy(-1),
       hasImage},
      {QStringLiteral("ZoomFit"),
       tr("&Fit in Window"),
       QStringLiteral("zoom_fit"),
       {QKeySequence(Qt::CTRL | Qt::Key_0)},
       [this] { view_->ZoomToFit(); },
       hasImage},
  };
}

void MainWindow::MakeActions() {
  commands_ = MakeCommands();
  for (const Command& command : commands_) {
    auto* const action = new QAction(command.Text, this);
    action->setObjectName(command.Id);
    action->setShortcuts(command.Shortcuts);
    connect(action, &QAction::triggered, this, command.Run);
    addAction(action);
  }
}

QAction* MainWindow::Action(const char* id) const {
  return findChild<QAction*>(QString::fromLatin1(id), Qt::FindDirectChildrenOnly);
}

void MainWindow::MakeMenus() {
  const Strings& words = session_.Words;
  const auto menu = [this](QMenu* parent, const QString& title, const char* name) {
    QMenu* const made = parent == nullptr ? menuBar()->addMenu(title) : parent->addMenu(title);
    made->setObjectName(QString::fromLatin1(name));
    return made;
  };
  QMenu* const file = menu(nullptr, words.LangString(168, "&File"), "mnuFile");
  QMenu* const load = menu(file, words.LangString(178, "&Load"), "mnuLoad");
  for (const char* id : {"mnuLoadIMG", "mnuLoadTMP", "mnuLoadTxi", "mnuLoadRTI", "mnuLoadSEQ",
                         "mnuLoadBmp", "mnuLoadTIFF", "mnuLoadJPEG"}) {
    load->addAction(Action(id));
  }
  file->addAction(Action("mnuClose"));
  file->addSeparator();
  file->addAction(Action("mnuExit"));
  QMenu* const zoom = menu(nullptr, words.LangString(284, "&Zoom"), "mnuZoom");
  for (const char* id : {"ZoomIn", "ZoomOut", "ZoomFit"}) {
    zoom->addAction(Action(id));
  }
}

void MainWindow::MakeToolPanel() {
  auto* const panel = new QToolBar(this);
  panel->setObjectName(QStringLiteral("ToolPanel"));
  panel->setWindowTitle(tr("Tools"));
  panel->setMovable(false);
  panel->setIconSize(QSize(kToolIconSize, kToolIconSize));
  openButton_ = new QToolButton(panel);
  openButton_->setObjectName(QStringLiteral("btnOpenImage"));
  openButton_->setAccessibleName(session_.Words.LangString(179, "Load Image"));
  connect(openButton_, &QToolButton::clicked, this, [this] {
    // In the order of the kinds.
    static constexpr std::array<const char*, 8> kEntries = {
        "mnuLoadBmp", "mnuLoadTIFF", "mnuLoadJPEG", "mnuLoadIMG",
        "mnuLoadTxi", "mnuLoadTMP",  "mnuLoadRTI",  "mnuLoadSEQ"};
    const auto kind = static_cast<std::size_t>(session_.Image.ImageKind);
    if (!session_.Image.UiLocked && kind < kEntries.size()) {
      Action(kEntries[kind])->trigger();
    }
  });
  panel->addWidget(openButton_);
  panel->addSeparator();
  panel->addAction(Action("btnTrend"));
  panel->addSeparator();
  panel->addAction(Action("ZoomOut"));
  panel->addAction(Action("ZoomIn"));
  panel->addAction(Action("ZoomFit"));
  auto* const gap = new QWidget(panel);
  gap->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  panel->addWidget(gap);
  panel->addWidget(MakeDisplayPanel());
  addToolBar(panel);
}

QWidget* MainWindow::MakeDisplayPanel() {
  const Strings& words = session_.Words;
  auto* const panel = new QWidget(this);
  panel->setObjectName(QStringLiteral("SSPanel5"));
  auto* const label = new QLabel(words.LangString(204, "Palette"), panel);
  paletteList_ = new QComboBox(panel);
  paletteList_->setObjectName(QStringLiteral("Combo1"));
  paletteList_->setToolTip(words.LangString(237, "Set Color Palette"));
  paletteList_->setAccessibleName(words.LangString(204, "Palette"));
  paletteList_->setIconSize(kSwatchSize);
  paletteList_->setMaxVisibleItems(kOfferedPalettes);
  label->setBuddy(paletteList_);
  connect(paletteList_, &QComboBox::activated, this, &MainWindow::ChoosePalette);
  celsius_ = new QRadioButton(words.LangString(113, "Celsius"), panel);
  celsius_->setObjectName(QStringLiteral("SSOption1"));
  celsius_->setToolTip(words.LangString(148, "Display in Celsius"));
  fahrenheit_ = new QRadioButton(words.LangString(167, "Fahrenheit"), panel);
  fahrenheit_->setObjectName(QStringLiteral("SSOption2"));
  fahrenheit_->setToolTip(words.LangString(149, "Display in Fahrenheit"));
  connect(celsius_, &QRadioButton::clicked, this, [this] { ChooseUnit('C'); });
  connect(fahrenheit_, &QRadioButton::clicked, this, [this] { ChooseUnit('F'); });

  auto* const layout = new QHBoxLayout(panel);
  layout->setContentsMargins(8, 2, 8, 2);
  layout->addWidget(label);
  layout->addWidget(paletteList_);
  layout->addSpacing(12);
  layout->addWidget(celsius_);
  layout->addWidget(fahrenheit_);
  return panel;
}

void MainWindow::MakeStatusBar() {
  QStatusBar* const bar = statusBar();
  bar->setObjectName(QStringLiteral("StatusBar1"));
  // Widths that no text of the panel outgrows, so that nothing moves while the cursor does.
  static constexpr std::array<const char*, 7> kWidest = {"",
                                                         "X:  8888",
                                                         "Y:  8888",
                                                         "Palette Entry: 888",
                                                         "Emissivity: 8.88",
                                                         "Range: -888.8 to 8888.8",
                                                         ""};
  for (std::size_t i = 1; i <= ViewState::kStatusPanels; ++i) {
    auto* const panel = new QLabel(bar);
    panel->setObjectName(QStringLiteral("StatusBar1Panel%1").arg(i));
    const int width = fontMetrics().horizontalAdvance(QString::fromLatin1(kWidest[i]));
    panel->setMinimumWidth(width > 0 ? width + 10 : 0);
    panel->setTextFormat(Qt::PlainText);
    statusPanels_[i] = panel;
    bar->addWidget(panel, i == ViewState::kStatusPanels ? 1 : 0);
  }
  statusPanels_[ViewState::kStatusPanels]->setSizePolicy(QSizePolicy::Ignored,
                                                         QSizePolicy::Preferred);
  loadingText_ = new QLabel(bar);
  loadingText_->setObjectName(QStringLiteral("Panel3D15"));
  loadProgress_ = new QProgressBar(bar);
  loadProgress_->setObjectName(QStringLiteral("SSPanel12"));
  loadProgress_->setMaximumWidth(160);
  bar->addPermanentWidget(loadingText_);
  bar->addPermanentWidget(loadProgress_);
}

void MainWindow::ShowIcons() {
  const QColor ink = palette().color(QPalette::WindowText);
  openButton_->setIcon(ToolIcon(QStringLiteral("open_image"), ink));
  for (const Command& command : commands_) {
    if (!command.Icon.isEmpty()) {
      Action(command.Id.toLatin1().constData())->setIcon(ToolIcon(command.Icon, ink));
    }
  }
}

void MainWindow::ShowStatusPanels() {
  for (std::size_t i = 1; i <= ViewState::kStatusPanels; ++i) {
    const QString& text = session_.View.StatusPanel[i];
    if (statusPanels_[i]->text() != text) {
      statusPanels_[i]->setText(text);
    }
  }
  statusPanels_[ViewState::kStatusPanels]->setToolTip(session_.Image.CurrentFilePath);
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

void MainWindow::BringIntoLine() {
  const ViewState& view = session_.View;
  setWindowTitle(view.Title);
  setWindowFilePath(session_.Image.CurrentFilePath);
  ShowStatusPanels();
  ShowPaletteList();
  openButton_->setToolTip(view.LoadButtonTip);
  {
    const QSignalBlocker celsiusBlocker(celsius_);
    const QSignalBlocker fahrenheitBlocker(fahrenheit_);
    celsius_->setChecked(view.CelsiusSelected);
    fahrenheit_->setChecked(view.FahrenheitSelected);
  }
  QAction* const trend = Action("btnTrend");
  const QString trendText = view.TrendSaysWhiteHot ? session_.Words.LangString(278, "White Hot")
                                                   : session_.Words.LangString(108, "Black Hot");
  if (trend->toolTip() != trendText || trend->icon().isNull()) {
    trend->setText(trendText);
    trend->setToolTip(trendText);
    trend->setIcon(
        ToolIcon(view.TrendSaysWhiteHot ? QStringLiteral("white_hot") : QStringLiteral("black_hot"),
                 palette().color(QPalette::WindowText)));
  }
  loadingText_->setText(view.LoadingText);
  loadingText_->setVisible(view.LoadingTextVisible);
  loadProgress_->setValue(static_cast<int>(view.LoadProgress));
  loadProgress_->setVisible(view.LoadProgressVisible);
  for (const Command& command : commands_) {
    Action(command.Id.toLatin1().constData())->setEnabled(!command.Enabled || command.Enabled());
  }
  view_->BringIntoLine();
}

void MainWindow::AskAndOpen(int filterIndex) {
  if (session_.Image.UiLocked) {
    return;
  }
  static_cast<WindowProgress&>(*progress_).Start();
  LoadDialog(filterIndex, session_, *dialogs_, *progress_);
  BringIntoLine();
  view_->RefreshReadout();
}

void MainWindow::OpenFile(const QString& path) {
  static_cast<WindowProgress&>(*progress_).Start();
  OpenPath(path, session_, *progress_);
  BringIntoLine();
  view_->RefreshReadout();
}

void MainWindow::ChoosePalette(int position) {
  SelectPalette(position, session_.Image, session_.View, session_.Palettes, session_.Buffers);
  BringIntoLine();
  openButton_->setFocus();
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

void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && openButton_ != nullptr) {
    ShowIcons();
  }
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls() && event->mimeData()->urls().constFirst().isLocalFile()) {
    event->acceptProposedAction();
  }
}

void MainWindow::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  OpenFile(event->mimeData()->urls().constFirst().toLocalFile());
}

}  // namespace tessa
