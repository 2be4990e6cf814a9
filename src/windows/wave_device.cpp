#include "windows/wave_device.h"

#include <QCoreApplication>
#include <QLibrary>

#include "core/file_access.h"
#include "core/steps.h"
#include "formats/wave.h"
#include "sound/sound_note.h"

namespace tessa {
namespace {

/// Loads the library that plays: beside the program as it is built, or where it is installed.
std::unique_ptr<WaveOutput> LoadWaveOutput() {
  const QString program = QCoreApplication::applicationDirPath() + QLatin1Char('/');
  const QString name = QLatin1String(kWaveOutputLibrary) + QLatin1String(".so");
  QString file = program + name;
  if (!PathExists(file)) {
    file = program + QStringLiteral(TESSA_LIBRARY_FOLDER "/") + name;
  }
  QLibrary library(file);
  library.setLoadHints(QLibrary::PreventUnloadHint);  // What it made may outlive all else.
  const auto make = reinterpret_cast<MakeWaveOutput>(library.resolve(kMakeWaveOutput));
  if (make == nullptr) {
    throw StepFailure("the program's sound library cannot be loaded: " +
                      library.errorString().toStdString());
  }
  return std::unique_ptr<WaveOutput>(make());
}

}  // namespace

void WaveDevice::Open() {
  Close();
  Problems faults;
  // Its copy out of an image may be one word longer than the note.
  const auto file = ReadFileStart(FileName, kLargestSound + 2, faults);
  if (!file) {
    throw StepFailure(faults.front().Text);
  }
  const auto facts = ReadWave(file->Data, 0, faults);
  if (!facts) {
    throw StepFailure(faults.front().Text);
  }
  const std::vector<std::int16_t> samples = WaveSamples(file->Data, *facts);
  samples_ = QByteArray(reinterpret_cast<const char*>(samples.data()),
                        static_cast<qsizetype>(samples.size() * sizeof(std::int16_t)));
  rate_ = static_cast<int>(facts->Rate);
  channels_ = facts->Channels;
}

void WaveDevice::Play() {
  if (samples_.isEmpty()) {
    throw StepFailure("no sound is open");
  }
  if (output_ == nullptr) {
    output_ = LoadWaveOutput();
    output_->Ended = [this] {
      if (Completed) {
        Completed();
      }
    };
  }
  switch (output_->Play(samples_, rate_, channels_)) {
    case WaveStart::kPlaying:
      break;
    case WaveStart::kNoOutput:
      throw StepFailure(words_.LangString(520, "there is no sound output").toStdString());
    case WaveStart::kRefused:
      throw StepFailure(words_.LangString(521, "the sound output refuses to play").toStdString());
  }
}

void WaveDevice::Close() {
  if (output_ != nullptr) {
    output_->Close();
  }
  samples_.clear();
}

void WaveDevice::Carry(MediaCommand command) {
  switch (command) {
    case MediaCommand::kOpen:
      Open();
      break;
    case MediaCommand::kPlay:
      Play();
      break;
    case MediaCommand::kStop:
      if (output_ != nullptr) {
        output_->Stop();
      }
      break;
    case MediaCommand::kClose:
      Close();
      break;
    case MediaCommand::kPrev:  // Every play begins at the start.
    case MediaCommand::kNone:
      break;
  }
}

}  // namespace tessa
