#include "sound/media_device.h"

#include "core/steps.h"

namespace tessa {

bool OpenOnDevice(const QString& path, MediaDevice& device) {
  StepLog steps;
  steps.Run("close device", [&] { device.Give(MediaCommand::kClose); });
  device.DeviceType = QStringLiteral("WaveAudio");
  device.FileName = path;
  if (steps.Run("open device", [&] { device.Give(MediaCommand::kOpen); })) {
    return true;
  }
  steps.Run("close device", [&] { device.Give(MediaCommand::kClose); });
  return false;
}

}  // namespace tessa
