#pragma once

#include <QByteArray>
#include <memory>

#include "core/language_strings.h"
#include "sound/media_device.h"
#include "sound/wave_output.h"

namespace tessa {

/// Plays PCM waves on the platform's default sound output. Lives on the thread of the event loop.
/// "Open" reads the whole wave, so that its file may go; it needs no sound output.
class WaveDevice : public MediaDevice {
 public:
  /// `words`, in which a refusal is told, must outlive the device.
  explicit WaveDevice(const Strings& words) : words_(words) {}

 protected:
  void Carry(MediaCommand command) override;

 private:
  void Open();
  void Play();
  void Close();

  const Strings& words_;
  QByteArray samples_;  // 16 bits each.
  int rate_ = 0;
  int channels_ = 0;
  std::unique_ptr<WaveOutput> output_;  // From the first play on.
};

}  // namespace tessa
