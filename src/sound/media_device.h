#pragma once

#include <QString>
#include <functional>

namespace tessa {

enum class MediaCommand { kNone, kOpen, kPlay, kStop, kPrev, kClose };

/// A player of wave files that is driven by commands, one file at a time. The real one needs the
/// platform's sound; tests script their own.
class MediaDevice {
 public:
  MediaDevice() = default;
  MediaDevice(const MediaDevice&) = delete;
  MediaDevice& operator=(const MediaDevice&) = delete;
  virtual ~MediaDevice() = default;

  QString DeviceType;  // "WaveAudio" is all there is.
  QString FileName;    // What "Open" opens.
  /// Called from the event loop when a play has reached its end, and never after a "Stop", "Open"
  /// or "Close".
  std::function<void()> Completed;

  /// Carries a command out. Throws StepFailure with plain words when that cannot be done: "Open" of
  /// what is no wave with data in it, "Play" with nothing to play on. It counts as the last command
  /// all the same.
  void Give(MediaCommand command) {
    lastCommand_ = command;
    Carry(command);
  }
  MediaCommand LastCommand() const { return lastCommand_; }

 protected:
  virtual void Carry(MediaCommand command) = 0;

 private:
  MediaCommand lastCommand_ = MediaCommand::kNone;
};

/// Closes what was open, if anything, and opens the wave at `path`. False, with the device closed,
/// when it cannot be opened.
bool OpenOnDevice(const QString& path, MediaDevice& device);

}  // namespace tessa
