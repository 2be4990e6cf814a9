#pragma once

#include <QString>
#include <functional>

#include "core/image_follower.h"
#include "open/session.h"
#include "sound/media_device.h"
#include "sound/sound_note.h"

namespace tessa {

/// What a tile of the browser knows of its note.
struct TileSound {
  QString ImagePath;
  SoundKind Kind = SoundKind::kNone;
  QString Reference;  // txtSound; see SoundNote.
};

/// Plays the notes of the open image and of the browser's tiles, each on a device of its own, and
/// keeps the session's SoundControls. Follows the session's open image for as long as it lives.
/// Owns the temporary waves: they are gone when it is.
class NotePlayer : public ImageFollower {
 public:
  /// `session` and the devices outlive the player.
  NotePlayer(Session& session, MediaDevice& viewDevice, MediaDevice& mainDevice);
  NotePlayer(const NotePlayer&) = delete;
  NotePlayer& operator=(const NotePlayer&) = delete;
  ~NotePlayer() override;

  /// Called when a play ended by itself, so that windows bring themselves into line.
  std::function<void()> Changed;

  void ImageLeaves() override;
  void ImageArrived() override;

  /// btnPlaysound: plays or stops the note of the open image.
  void PlayOrStop();
  /// btnEmbedSound: puts the sound file of the open image into it.
  void Embed();

  /// A tile was picked: its note, if it has one, can be played with Command13.
  void CheckForSound(const TileSound& tile);
  /// mnuPUPlaysound: plays the tile's note, or stops whatever plays.
  void PlayTile(const TileSound& tile);
  /// Command13: plays the note of the tile that was picked last, or stops whatever plays.
  void TileButton();
  /// The browser opens, closes or loads another image: its device falls silent.
  void CloseTileDevice();
  /// Command12 of the browser: as above, and the button goes.
  void ResetTiles();

 private:
  bool ConvertTile(const TileSound& tile);
  void StartTile();
  void StopAll();
  void Play(MediaDevice& device);
  void Run(MediaDevice& device, MediaCommand command);
  void ViewCompleted();
  void MainCompleted();
  SoundControls& Controls() { return session_.View.Sound; }

  Session& session_;
  MediaDevice& view_;
  MediaDevice& main_;
  TileSound picked_;
};

}  // namespace tessa
