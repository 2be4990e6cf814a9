#include "windows/browser_window.h"

#include <QComboBox>
#include <QDir>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QStandardPaths>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "open/no_picture.h"
#include "sound/note_player.h"
#include "widgets/palette_swatch.h"
#include "widgets/plain_text.h"
#include "windows/ask_dialogs.h"
#include "windows/folder_panel.h"
#include "windows/system_printer.h"
#include "windows/tile_grid.h"

namespace tessa {
namespace {

constexpr int kStirredMilliseconds = 300;
/// Pages that are there sooner show no gauge.
constexpr int kNoticeableMilliseconds = 120;
const QSize kFirstSize(1000, 700);

/// Where to begin: the folder of the last image, else where the user's pictures are.
QString ExistingFolder(const QString& wished) {
  const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
  for (const QString& folder : {wished, pictures}) {
    if (!folder.trimmed().isEmpty() && IsFolder(folder)) {
      return QDir::cleanPath(folder);
    }
  }
  return QDir::homePath();
}

}  // namespace

BrowserWindow::BrowserWindow(Session& session, BrowserMemory& memory, UserSettings& user,
                             NotePlayer* player, QWidget* parent)
    : QDialog(parent),
      session_(session),
      user_(user),
      player_(player),
      dialogs_(std::make_unique<WindowDialogs>(this, session.Words)),
      printers_(std::make_unique<SystemPrinter>()),
      pages_(memory, [this](const QString& text) {
        return static_cast<double>(fontMetrics().horizontalAdvance(text));
      }) {
  setObjectName(QStringLiteral("LoadIMG"));
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  setSizeGripEnabled(true);
  folders_.setIconProvider(&folderIcons_);
  folders_.setFilter(QDir::Dirs | QDir::NoDotAndDotDot);
  folders_.setReadOnly(true);
  folders_.setRootPath(QDir::rootPath());
  stirred_.setSingleShot(true);
  stirred_.setInterval(kStirredMilliseconds);
  MakeControls();
  Connect();
  SetWindowLanguage();
  filters_->setCurrentIndex(memory.DefaultImageTypeIndex);
  palettes_->setCurrentIndex(session_.View.PaletteSelection);
  pages_.Loading = [this](int tile, int count, const QString& name) {
    ShowLoading(tile, count, name);
  };
  if (player_ != nullptr) {
    player_->CloseTileDevice();
    formerChanged_ = player_->Changed;
    player_->Changed = [this] {
      if (formerChanged_) {
        formerChanged_();
      }
      ShowSound();
    };
  }
  formLoading_ = false;
  ChangePalette();
  resize(kFirstSize);
  restoreGeometry(user_.BrowserPlace());
  if (!isMaximized()) {
    constexpr QSize kFrame(16, 48);
    resize(size().boundedTo(screen()->availableSize() - kFrame));
  }
}

BrowserWindow::~BrowserWindow() {
  pages_.Memory().TargetFolder = pages_.TargetFolder;
  if (player_ != nullptr) {
    player_->Changed = formerChanged_;
  }
}

int BrowserWindow::Palette() const {
  return palettes_->currentIndex();
}

const ColourTable& BrowserWindow::Colours() const {
  const auto index = static_cast<std::size_t>(std::max(palettes_->currentIndex(), 0));
  return session_.Palettes.PaletteTable.at(index);
}

void BrowserWindow::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (!shown_) {
    shown_ = true;
    Activated();
  }
}

/// Files that another program wrote meanwhile are read again when the user comes back.
bool BrowserWindow::event(QEvent* event) {
  const bool comesBack = event->type() == QEvent::WindowActivate && shown_ && !running_;
  if (comesBack && pages_.BrowserReady && pages_.IsPageStale()) {
    ReadAgain();
  }
  return QDialog::event(event);
}

/// The first showing: both folders as the settings have them, or as they were left.
void BrowserWindow::Activated() {
  close_->setFocus();
  const QString& lastTarget = pages_.Memory().TargetFolder;
  target_->SetFolder(
      ExistingFolder(PathExists(lastTarget) ? lastTarget : session_.Settings.TargetFolder));
  pages_.TargetFolder = target_->Folder();
  ChangeFolder(ExistingFolder(session_.Settings.LastFolder));
}

void BrowserWindow::done(int result) {
  stirred_.stop();
  user_.SetBrowserPlace(saveGeometry());
  if (player_ != nullptr) {
    player_->CloseTileDevice();
  }
  QDialog::done(result);
}

void BrowserWindow::ChangeFolder(const QString& folder) {
  load_->setEnabled(false);
  loadingClock_.start();
  const QString former = pages_.SourceFolder;
  const bool isRead = pages_.ChangeFolder(folder);
  source_->SetFolder(pages_.SourceFolder.isEmpty() ? folder : pages_.SourceFolder);
  if (former != pages_.SourceFolder) {
    if (!watcher_.directories().isEmpty()) {
      watcher_.removePaths(watcher_.directories());
    }
    watcher_.addPath(pages_.SourceFolder);
    grid_->SetCurrent(0);
  }
  BringIntoLine();
  if (!isRead) {
    SayUnreadable(folder);
  }
}

void BrowserWindow::ChangeFilter(int index) {
  if (!formLoading_) {
    loadingClock_.start();
    pages_.ChangeFilter(index);
    BringIntoLine();
  }
}

/// The pixels of the tiles stay; only their colours change.
void BrowserWindow::ChangePalette() {
  if (!formLoading_) {
    ShowTiles();
    strip_->setPixmap(PaletteSwatch(Colours()).pixmap(kSwatchSize));
  }
}

void BrowserWindow::ReadAgain() {
  loadingClock_.start();
  const bool isRead = pages_.ReadAgain();
  BringIntoLine();
  if (!isRead) {
    SayUnreadable(pages_.SourceFolder);
  }
}

void BrowserWindow::SayUnreadable(const QString& folder) {
  Say(session_.Words.LangString(474, "The folder %1 cannot be read.")
          .arg(OneLine(ShownPath(folder))));
}

/// Something came to or went from the folder on show.
void BrowserWindow::FolderStirred() {
  const bool isBusy = !pages_.BrowserReady || running_ || !isActiveWindow();
  if (isBusy) {
    stirred_.start();
  } else {
    ReadAgain();
  }
}

void BrowserWindow::ShowLoading(int tile, int count, const QString& name) {
  if (loadingClock_.elapsed() < kNoticeableMilliseconds) {
    return;
  }
  status_->setText(session_.Words.LangString(182, "Loading Thumbnail") + QLatin1Char(' ') +
                   OneLine(name));
  gauge_->setValue((tile + 1) * 100 / count);
  status_->show();
  gauge_->show();
  counts_->hide();
  status_->repaint();
  gauge_->repaint();
}

void BrowserWindow::BringIntoLine() {
  const bool hasImages = pages_.PageCount > 0;
  const QString separator =
      pages_.SourceFolder.endsWith(QLatin1Char('/')) ? QString() : QStringLiteral("/");
  const QString path = QStringLiteral("  ") + ShownPath(pages_.SourceFolder).toUpper() + separator;
  path_->setText(OneLine(path));
  path_->setToolTip(PlainToolTip(ShownPath(pages_.SourceFolder)));
  heading_->setText(hasImages ? OneLine(path) : QString());
  heading_->setVisible(hasImages);
  pageLabel_->setVisible(hasImages);
  pageList_->setVisible(hasImages);
  status_->hide();
  gauge_->hide();
  gauge_->setValue(0);
  fileText_->hide();
  counts_->show();
  load_->setEnabled(true);
  ShowPageList();
  ShowTiles();
  ShowSelection();
  ShowSound();
}

void BrowserWindow::ShowPageList() {
  const QSignalBlocker blocker(pageList_);
  const QString of = QLatin1Char(' ') + session_.Words.LangString(199, "of") + QLatin1Char(' ') +
                     QString::number(pages_.PageCount);
  if (pageList_->count() != pages_.PageCount || pageList_->itemText(0) != QLatin1Char('1') + of) {
    pageList_->clear();
    for (int page = 1; page <= pages_.PageCount; ++page) {
      pageList_->addItem(QString::number(page) + of);
    }
  }
  pageList_->setCurrentIndex(pages_.PageCount > 0 ? pages_.CurrentPage - 1 : -1);
  for (QPushButton* const button : {first_, previous_}) {
    button->setEnabled(pages_.BackEnabled);
  }
  for (QPushButton* const button : {next_, last_}) {
    button->setEnabled(pages_.ForwardEnabled);
  }
}

QString BrowserWindow::MissingWords(const ThumbnailPages::Place& place) const {
  return place.Content.SequenceFrames > 0
             ? session_.Words.LangString(471, "Sequence with %1 frames")
                   .arg(place.Content.SequenceFrames)
             : session_.Words.LangString(478, "No picture");
}

QString BrowserWindow::TipOf(const ThumbnailPages::Place& place) const {
  const Strings& words = session_.Words;
  const Tile& tile = place.Content;
  QStringList lines = {OneLine(ShownPath(place.Path.section(QLatin1Char('/'), -1)))};
  const auto add = [&lines](const QString& name, const QString& text) {
    if (!text.isEmpty()) {
      lines.append(name + QStringLiteral(": ") + OneLine(text));
    }
  };
  if (tile.FullWidth > 0) {
    lines.append(QStringLiteral("%1 \u00D7 %2 ").arg(tile.FullWidth).arg(tile.FullHeight) +
                 words.LangString(206, "Pixels"));
  } else if (const Problem* const problem = FindNoImage(tile.Faults)) {
    lines.append(WhyNoPicture(*problem, place.Path, words));
  } else {
    lines.append(MissingWords(place));
  }
  add(words.LangString(137, "Date"), (tile.Date + QLatin1Char(' ') + tile.Time).trimmed());
  add(words.LangString(160, "Emissivity"), tile.Emissivity);
  add(words.LangString(116, "Comment"), tile.Comment);
  if (tile.Sound != SoundKind::kNone) {
    lines.append(words.LangString(479, "with sound note"));
  }
  return PlainToolTip(lines.join(QLatin1Char('\n')));
}

void BrowserWindow::ShowTiles() {
  int count = 0;
  for (int i = 0; i < ThumbnailPages::kTiles; ++i) {
    const ThumbnailPages::Place& place = pages_.Places[static_cast<std::size_t>(i)];
    if (place.Visible) {
      ++count;
      grid_->Tile(i).Show(place, Colours(), TipOf(place), MissingWords(place));
    }
  }
  grid_->SetShown(
      count, session_.Words.LangString(470, "There are no images of this type in this folder."));
}

void BrowserWindow::ShowSelection() {
  for (int i = 0; i < ThumbnailPages::kTiles; ++i) {
    grid_->Tile(i).SetMarked(pages_.Places[static_cast<std::size_t>(i)].Marked);
  }
  Say(session_.Words.LangString(475, "%1 images, %2 selected")
          .arg(pages_.Files.Count())
          .arg(pages_.Files.SelectedCount()));
  selectAll_->setEnabled(pages_.Files.Count() > 0);
  resetAll_->setEnabled(pages_.Files.Count() > 0);
  ShowTransferButtons();
}

void BrowserWindow::Say(const QString& text) {
  counts_->setText(text);
}

void BrowserWindow::keyPressEvent(QKeyEvent* event) {
  const bool control = event->modifiers().testFlag(Qt::ControlModifier);
  const bool shift = event->modifiers().testFlag(Qt::ShiftModifier);
  switch (event->key()) {
    case Qt::Key_PageUp:
      ShowPrevious();
      return;
    case Qt::Key_PageDown:
      ShowNext();
      return;
    case Qt::Key_F5:
      ReadAgain();
      return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (event->modifiers().testFlag(Qt::AltModifier)) {
        ShowInfoOfCurrent();
        return;
      }
      // "Close", where the focus begins, leaves the key to "Load".
      if (auto* const button = qobject_cast<QPushButton*>(focusWidget());
          button != nullptr && button != close_) {
        button->click();
        return;
      }
      break;
    case Qt::Key_A:
      if (control) {
        shift ? ResetAll() : SelectAll();
        return;
      }
      break;
    default:
      break;
  }
  QDialog::keyPressEvent(event);
}

/// The window opens with the focus on "Close"; from there arrows lead to the tiles.
bool BrowserWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == close_ && event->type() == QEvent::KeyPress && pages_.PageCount > 0) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down) {
      grid_->Tile(grid_->Current()).setFocus(Qt::OtherFocusReason);
      return true;
    }
  }
  return QDialog::eventFilter(watched, event);
}

}  // namespace tessa
