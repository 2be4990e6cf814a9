#pragma once

#include <QFile>
#include <string>

#include "core/steps.h"
#include "formats/wave.h"
#include "sound/media_device.h"

namespace tessa::testing {

/// Notes every command and opens what is a wave with data; ends plays when the test says so.
class ScriptedDevice : public MediaDevice {
 public:
  std::string Log;
  bool HasOutput = true;

 protected:
  void Carry(MediaCommand command) override {
    Log += "?OPSRC"[static_cast<int>(command)];  // R: Prev, that is rewind.
    Problems faults;
    if (command == MediaCommand::kOpen) {
      QFile opened(FileName);
      const QByteArray file = opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray();
      if (!ReadWave(ByteSpan(reinterpret_cast<const std::uint8_t*>(file.data()),
                             static_cast<std::size_t>(file.size())),
                    0, faults)) {
        throw StepFailure("no wave");
      }
    } else if (command == MediaCommand::kPlay && !HasOutput) {
      throw StepFailure("there is no sound output");
    }
  }
};

}  // namespace tessa::testing
