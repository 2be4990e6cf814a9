#include "windows/wave_device.h"

#include <QAudioFormat>
#include <QAudioSink>
#include <QBuffer>
#include <QMediaDevices>
#include <QTimer>

#include "core/file_access.h"
#include "core/steps.h"
#include "formats/wave.h"
#include "sound/sound_note.h"

namespace tessa {

/// One wave and what plays it.
class WaveDevice::Player : public QObject {
 public:
  Player(WaveDevice& device, const Strings& words) : device_(device), words_(words) {
    end_.setSingleShot(true);
    connect(&end_, &QTimer::timeout, this, [this] { Finish(); });
  }

  void Open(const QString& path) {
    Close();
    Problems faults;
    // Its copy out of an image may be one word longer than the note.
    const auto file = ReadFileStart(path, kLargestSound + 2, faults);
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
    format_.setSampleRate(static_cast<int>(facts->Rate));
    format_.setChannelCount(facts->Channels);
    format_.setSampleFormat(QAudioFormat::Int16);
  }

  void Play() {
    end_.stop();
    if (samples_.isEmpty()) {
      throw StepFailure("no sound is open");
    }
    const QAudioDevice output = QMediaDevices::defaultAudioOutput();
    if (output.isNull()) {
      throw StepFailure(words_.LangString(520, "there is no sound output").toStdString());
    }
    sink_ = std::make_unique<QAudioSink>(output, format_);
    source_.close();
    source_.setData(samples_);
    source_.open(QIODevice::ReadOnly);
    connect(sink_.get(), &QAudioSink::stateChanged, this,
            [this](QAudio::State state) { StateChanged(state); });
    sink_->start(&source_);
    if (sink_->error() != QAudio::NoError) {
      Silence();
      throw StepFailure(words_.LangString(521, "the sound output refuses to play").toStdString());
    }
    // A server that falls silent must not leave a note playing for ever.
    constexpr int kGrace = 2000;
    end_.start(
        static_cast<int>(format_.durationForBytes(static_cast<qint32>(samples_.size())) / 1000) +
        kGrace);
  }

  void Stop() {
    const bool wasPlaying = sink_ != nullptr;
    Silence();
    if (wasPlaying) {
      end_.start(0);
    }
  }

  void Close() {
    end_.stop();
    Silence();
    samples_.clear();
  }

 private:
  void Silence() {
    if (sink_) {
      sink_->disconnect(this);
      sink_->stop();
      // Its signals may still be on the stack.
      sink_.release()->deleteLater();
    }
    source_.close();
  }

  void StateChanged(QAudio::State state) {
    if (state == QAudio::IdleState && source_.atEnd()) {
      // All is handed over; what the server still holds is on its way to the ear.
      const qint64 left = sink_->bufferSize() - sink_->bytesFree();
      end_.start(static_cast<int>(
          format_.durationForBytes(static_cast<qint32>(std::max<qint64>(left, 0))) / 1000));
    } else if (state == QAudio::StoppedState) {
      end_.start(0);  // The output went away.
    }
  }

  void Finish() {
    Silence();
    if (device_.Completed) {
      device_.Completed();
    }
  }

  WaveDevice& device_;
  const Strings& words_;
  QByteArray samples_;  // 16 bits each.
  QAudioFormat format_;
  QBuffer source_;
  std::unique_ptr<QAudioSink> sink_;
  QTimer end_;
};

WaveDevice::WaveDevice(const Strings& words) : player_(std::make_unique<Player>(*this, words)) {}
WaveDevice::~WaveDevice() = default;

void WaveDevice::Carry(MediaCommand command) {
  switch (command) {
    case MediaCommand::kOpen:
      player_->Open(FileName);
      break;
    case MediaCommand::kPlay:
      player_->Play();
      break;
    case MediaCommand::kStop:
      player_->Stop();
      break;
    case MediaCommand::kClose:
      player_->Close();
      break;
    case MediaCommand::kPrev:  // Every play begins at the start.
    case MediaCommand::kNone:
      break;
  }
}

}  // namespace tessa
