// What the browser does with its tiles: picking, opening, facts, notes, pages.

#include <QMenu>
#include <QPushButton>

#include "browser/save_info_note.h"
#include "core/path_bytes.h"
#include "core/steps.h"
#include "sound/note_player.h"
#include "widgets/plain_text.h"
#include "windows/browser_window.h"
#include "windows/image_info_dialog.h"
#include "windows/tile_grid.h"

namespace tessa {
namespace {

TileSound SoundOf(const ThumbnailPages::Place& place) {
  return {place.Path, place.Content.Sound, place.Content.SoundReference};
}

}  // namespace

void BrowserWindow::Pick(int tile) {
  pages_.Pick(tile);
  if (player_ != nullptr) {
    player_->CheckForSound(SoundOf(pages_.Places.at(static_cast<std::size_t>(tile))));
  }
  ShowSelection();
  ShowSound();
}

void BrowserWindow::OpenTile(int tile) {
  LeaveWith(pages_.ChooseTile(tile));
}

void BrowserWindow::LoadSelected() {
  LeaveWith(pages_.ChooseSelected());
}

void BrowserWindow::LeaveWith(std::optional<ChosenImage> chosen) {
  if (chosen) {
    chosen_ = std::move(chosen);
    accept();
  }
}

void BrowserWindow::ShowTileMenu(int tile, bool onPicture, QPoint at) {
  pages_.PopupTile = tile;
  if (!onPicture) {
    pages_.PopupFileIndex = pages_.IndexOf(tile);
  }
  const ThumbnailPages::Place& place = pages_.Places.at(static_cast<std::size_t>(tile));
  QMenu menu(this);
  menu.setObjectName(QStringLiteral("mnuPopUp"));
  const auto add = [&](const char* name, const QString& text) {
    QAction* const action = menu.addAction(text);
    action->setObjectName(QString::fromLatin1(name));
    return action;
  };
  const Strings& words = session_.Words;
  QAction* const load = add("mnuPULoad", words.LangString(179, "Load Image"));
  QAction* const info = add("mnuPUInfo", words.LangString(174, "Image Info"));
  const QString& playing = session_.View.Sound.TileMenuText;
  const bool isIdle = playing == QLatin1String("Play Sound");
  QAction* const play =
      add("mnuPUPlaysound", isIdle ? words.LangString(208, "Play Sound") : playing);
  play->setEnabled(player_ != nullptr && !place.Content.SoundReference.isEmpty());
  const QAction* const chosen = menu.exec(at);
  if (chosen == load) {
    LeaveWith(pages_.ChoosePopup());
  } else if (chosen == info) {
    ShowInfo(tile);
  } else if (chosen == play) {
    PlayTile(tile);
  }
}

void BrowserWindow::ShowInfoOfCurrent() {
  if (pages_.PageCount > 0 &&
      !pages_.Places[static_cast<std::size_t>(grid_->Current())].Path.isEmpty()) {
    ShowInfo(grid_->Current());
  }
}

void BrowserWindow::ShowInfo(int tile) {
  const ImageInfo info = InfoOfTile(pages_, tile, session_.Words);
  ImageInfoDialog dialog(info, session_.Words, this);
  dialog.Save = [&](const ImageNote& texts) {
    try {
      SaveInfoNote(info, texts, session_, &pages_);
      ShowTiles();
    } catch (const StepFailure& reason) {
      Say(session_.Words.LangString(435, "Could not save %1: %2")
              .arg(OneLine(ShownPath(info.FileName)),
                   OneLine(QString::fromStdString(reason.what()))));
    }
  };
  dialog.exec();
}

void BrowserWindow::PlayTile(int tile) {
  if (player_ != nullptr) {
    player_->PlayTile(SoundOf(pages_.Places.at(static_cast<std::size_t>(tile))));
    ShowSound();
  }
}

void BrowserWindow::TileButton() {
  if (player_ != nullptr) {
    player_->TileButton();
    ShowSound();
  }
}

void BrowserWindow::ShowSound() {
  SoundControls& sound = session_.View.Sound;
  play_->setVisible(player_ != nullptr && sound.TileButtonVisible);
  play_->setToolTip(sound.TileHint);
  play_->setAccessibleName(sound.TileHint);
  setCursor(sound.Playing ? Qt::BusyCursor : Qt::ArrowCursor);
  if (!sound.Message.isEmpty()) {
    Say(OneLine(sound.Message));
    sound.Message.clear();
  }
}

void BrowserWindow::SelectAll() {
  pages_.SelectAll(true);
  ShowSelection();
}

void BrowserWindow::ResetAll() {
  if (player_ != nullptr) {
    player_->ResetTiles();
  }
  pages_.SelectAll(false);
  ShowSelection();
  ShowSound();
}

void BrowserWindow::ShowFirst() {
  loadingClock_.start();
  pages_.ShowFirst();
  BringIntoLine();
}

void BrowserWindow::ShowPrevious() {
  loadingClock_.start();
  pages_.ShowPrevious();
  BringIntoLine();
}

void BrowserWindow::ShowNext() {
  loadingClock_.start();
  pages_.ShowNext();
  BringIntoLine();
}

void BrowserWindow::ShowLast() {
  loadingClock_.start();
  pages_.ShowLast();
  BringIntoLine();
}

}  // namespace tessa
