#pragma once

#include <memory>

#include "core/language_strings.h"
#include "sound/media_device.h"

namespace tessa {

/// Plays PCM waves on the platform's default sound output. Lives on the thread of the event loop.
/// "Open" reads the whole wave, so that its file may go; it needs no sound output.
class WaveDevice : public MediaDevice {
 public:
  /// `words`, in which a refusal is told, must outlive the device.
  explicit WaveDevice(const Strings& words);
  ~WaveDevice() override;

 protected:
  void Carry(MediaCommand command) override;

 private:
  class Player;
  std::unique_ptr<Player> player_;
};

}  // namespace tessa
