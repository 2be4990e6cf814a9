#include "sound/note_player.h"

#include "core/steps.h"
#include "sound/convert_sound.h"
#include "sound/embed_sound.h"
#include "sound/image_sound.h"

namespace tessa {
namespace {

const QString kPlayHint = QStringLiteral("Playback Sound File");
const QString kPlayText = QStringLiteral("Play Sound");
const QString kStopHint = QStringLiteral("Stop Playback");

}  // namespace

NotePlayer::NotePlayer(Session& session, MediaDevice& viewDevice, MediaDevice& mainDevice)
    : session_(session), view_(viewDevice), main_(mainDevice) {
  session_.Follower = this;
  view_.Completed = [this] { ViewCompleted(); };
  main_.Completed = [this] { MainCompleted(); };
}

NotePlayer::~NotePlayer() {
  session_.Follower = nullptr;
  view_.Completed = nullptr;
  main_.Completed = nullptr;
  CloseTileDevice();
  ImageLeaves();
  DeleteTempWave(session_.Folder);
}

void NotePlayer::Run(MediaDevice& device, MediaCommand command) {
  session_.Steps.Run("sound", [&] { device.Give(command); });
}

/// Nothing goes on sounding that no button could stop.
void NotePlayer::StopAll() {
  for (MediaDevice* const device : {&view_, &main_}) {
    if (device->LastCommand() == MediaCommand::kPlay) {
      Run(*device, MediaCommand::kStop);
    }
  }
  Controls().Playing = false;
}

/// A play that cannot start is over at once.
void NotePlayer::Play(MediaDevice& device) {
  Controls().Playing = true;
  try {
    device.Give(MediaCommand::kPlay);
  } catch (const StepFailure& failure) {
    const QString reason = QString::fromUtf8(failure.what());
    device.Completed();
    Controls().PlayHint = kPlayHint;
    Controls().Message = reason;
  }
}

void NotePlayer::ImageLeaves() {
  StopAll();
  CloseNoteOfImage(session_, view_);
  SoundControls& controls = Controls();
  controls.PlayVisible = false;
  controls.EmbedVisible = false;
  controls.PlayHint = kPlayHint;
  controls.LengthText.clear();
  controls.Message.clear();
}

void NotePlayer::ImageArrived() {
  OpenNoteOfImage(session_, view_);
}

void NotePlayer::PlayOrStop() {
  SoundControls& controls = Controls();
  controls.Message.clear();
  if (controls.Playing) {
    StopAll();
    controls.PlayHint = kPlayHint;
  } else if (controls.PlayVisible) {
    controls.PlayHint = kStopHint;
    Play(view_);
  }
}

void NotePlayer::ViewCompleted() {
  Run(view_, MediaCommand::kStop);
  Run(view_, MediaCommand::kPrev);
  Controls().Playing = false;
  if (Changed) {
    Changed();
  }
}

void NotePlayer::Embed() {
  SoundControls& controls = Controls();
  controls.Message.clear();
  try {
    EmbedIntoOpenImage(session_.Image);
    controls.EmbedVisible = false;
  } catch (const StepFailure& failure) {
    controls.Message = QString::fromUtf8(failure.what());
  }
}

void NotePlayer::CheckForSound(const TileSound& tile) {
  picked_ = tile;
  SoundControls& controls = Controls();
  controls.TileButtonVisible = !tile.Reference.isEmpty();
  if (!controls.TileButtonVisible) {
    return;
  }
  if (main_.LastCommand() == MediaCommand::kPlay) {
    StopAll();
    controls.TileHint = kPlayHint;
    controls.TileMenuText = kPlayText;  // Closing leaves no completion to do so.
  }
  Run(main_, MediaCommand::kClose);
  main_.FileName = tile.Reference;
}

bool NotePlayer::ConvertTile(const TileSound& tile) {
  Problems faults;
  bool converted = false;
  switch (tile.Kind) {
    case SoundKind::kEmbeddedSound:
      converted = ConvertEmbeddedSound(tile.ImagePath, session_.Folder, main_, faults);
      break;
    case SoundKind::kEmbeddedWave:
      converted = ExtractEmbeddedWave(WavePosition(HeaderOf(tile.ImagePath)).value_or(0),
                                      tile.ImagePath, session_.Folder, main_, faults);
      break;
    case SoundKind::kSideFile:
      converted =
          ConvertSidecarSound(tile.Reference, tile.ImagePath, session_.Folder, main_, faults);
      break;
    case SoundKind::kNone:
      break;
  }
  if (!converted) {
    Controls().Message = faults.empty() ? QStringLiteral("this image has no sound note")
                                        : QString::fromStdString(faults.front().Text);
  }
  return converted;
}

void NotePlayer::StartTile() {
  SoundControls& controls = Controls();
  controls.TileMenuText = kStopHint;
  controls.TileHint = kStopHint;
  controls.TileButtonVisible = true;
  Play(main_);
}

void NotePlayer::PlayTile(const TileSound& tile) {
  Controls().Message.clear();
  if (Controls().Playing) {
    StopAll();
  } else if (ConvertTile(tile)) {
    StartTile();
  }
}

void NotePlayer::TileButton() {
  SoundControls& controls = Controls();
  controls.Message.clear();
  if (controls.Playing) {
    StopAll();
    controls.TileHint = kPlayHint;
    return;
  }
  // What the tile refers to is a wave only when the note was converted before.
  if (session_.Steps.Run("open note", [&] { main_.Give(MediaCommand::kOpen); }) ||
      ConvertTile(picked_)) {
    StartTile();
  }
}

void NotePlayer::MainCompleted() {
  Run(main_, MediaCommand::kStop);
  Run(main_, MediaCommand::kPrev);
  Run(main_, MediaCommand::kClose);
  SoundControls& controls = Controls();
  controls.TileMenuText = kPlayText;
  controls.TileHint = kPlayHint;
  controls.TileButtonVisible = false;
  controls.Playing = false;
  if (Changed) {
    Changed();
  }
}

void NotePlayer::CloseTileDevice() {
  if (main_.LastCommand() == MediaCommand::kPlay) {
    StopAll();
  }
  Run(main_, MediaCommand::kClose);
  Controls().TileMenuText = kPlayText;
  Controls().TileHint = kPlayHint;
}

void NotePlayer::ResetTiles() {
  CloseTileDevice();
  Controls().TileButtonVisible = false;
}

}  // namespace tessa
