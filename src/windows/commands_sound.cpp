// Commands for the sound note of the open image.

#include <QFileInfo>

#include "core/path_bytes.h"
#include "core/tell.h"
#include "sound/note_player.h"
#include "windows/main_window.h"

namespace tessa {

void MainWindow::AddSoundCommands() {
  Add({.Id = CommandId::kPlaySound,
       .Caption = Word(209, "Playback Sound File"),
       .Icon = "play_sound",
       .Run =
           [this] {
             DismissFailure(session_.View);
             player_->PlayOrStop();
             TellSoundMessage();
             BringIntoLine();
           },
       .Enabled = [this] { return player_ != nullptr && session_.View.Sound.PlayVisible; }});
  Add({.Id = CommandId::kEmbedSound,
       .Caption = Word(230, "Save Sound Into Image"),
       .Icon = "embed_sound",
       .Run =
           [this] {
             DismissFailure(session_.View);
             player_->Embed();
             TellSoundMessage();
             if (!session_.View.Sound.EmbedVisible) {
               Tell(NoticeKind::kQuiet,
                    session_.Words.LangString(522, "The sound note is now inside %1")
                        .arg(QFileInfo(ShownPath(session_.Image.CurrentFilePath)).fileName()),
                    session_.View);
             }
             BringIntoLine();
           },
       .Enabled = [this] { return player_ != nullptr && session_.View.Sound.EmbedVisible; }});
}

void MainWindow::SetPlayer(NotePlayer* player) {
  if (player_ != nullptr) {
    player_->Changed = nullptr;
  }
  player_ = player;
  if (player_ != nullptr) {
    player_->Changed = [this] {
      TellSoundMessage();
      BringIntoLine();
    };
  }
  EnableActions();
}

/// Why the last command of a sound did nothing, in the place where failures are told.
void MainWindow::TellSoundMessage() {
  QString& message = session_.View.Sound.Message;
  if (!message.isEmpty()) {
    Tell(NoticeKind::kFailed, message, session_.View);
    message.clear();
  }
}

void MainWindow::ShowSound() {
  const SoundControls& sound = session_.View.Sound;
  QAction* const play = Action(CommandId::kPlaySound);
  play->setVisible(sound.PlayVisible);
  Action(CommandId::kEmbedSound)->setVisible(sound.EmbedVisible);
  // The hints that playing sets are the same in every language.
  if (sound.PlayHint != shownPlayHint_) {
    shownPlayHint_ = sound.PlayHint;
    play->setText(sound.PlayHint);
    play->setToolTip(sound.PlayHint);
  }
  // "1.5 s at 8000 Hz" without its English word.
  soundLength_->setText(
      session_.Words.LangString(243, "Sound File") + QStringLiteral(": ") +
      QString(sound.LengthText).replace(QLatin1String(" at "), QLatin1String(", ")));
  soundLength_->setVisible(!sound.LengthText.isEmpty());
}

/// The space bar, wherever nothing in focus has a use of its own for it.
void MainWindow::PlayBySpaceBar() {
  QAction* const play = Action(CommandId::kPlaySound);
  if (play->isVisible()) {
    play->trigger();
  }
}

}  // namespace tessa
