// The library that plays waves on the platform's sound output.

#include "sound/wave_output.h"

#include <QAudioFormat>
#include <QAudioSink>
#include <QBuffer>
#include <QMediaDevices>
#include <QTimer>
#include <algorithm>
#include <memory>

namespace tessa {
namespace {

class SinkOutput : public QObject, public WaveOutput {
 public:
  SinkOutput() {
    end_.setSingleShot(true);
    connect(&end_, &QTimer::timeout, this, [this] { Finish(); });
  }

  WaveStart Play(const QByteArray& samples, int rate, int channels) override {
    Close();
    const QAudioDevice output = QMediaDevices::defaultAudioOutput();
    if (output.isNull()) {
      return WaveStart::kNoOutput;
    }
    QAudioFormat format;
    format.setSampleRate(rate);
    format.setChannelCount(channels);
    format.setSampleFormat(QAudioFormat::Int16);
    sink_ = std::make_unique<QAudioSink>(output, format);
    source_.setData(samples);
    source_.open(QIODevice::ReadOnly);
    connect(sink_.get(), &QAudioSink::stateChanged, this,
            [this](QAudio::State state) { StateChanged(state); });
    sink_->start(&source_);
    if (sink_->error() != QAudio::NoError) {
      Silence();
      return WaveStart::kRefused;
    }
    // A server that falls silent must not leave a note playing for ever.
    constexpr int kGrace = 2000;
    end_.start(Milliseconds(samples.size()) + kGrace);
    return WaveStart::kPlaying;
  }

  void Stop() override {
    const bool wasPlaying = sink_ != nullptr;
    Silence();
    if (wasPlaying) {
      end_.start(0);
    }
  }

  void Close() override {
    end_.stop();
    Silence();
  }

 private:
  int Milliseconds(qint64 bytes) const {
    return static_cast<int>(
        sink_->format().durationForBytes(static_cast<qint32>(std::max<qint64>(bytes, 0))) / 1000);
  }

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
      end_.start(Milliseconds(sink_->bufferSize() - sink_->bytesFree()));
    } else if (state == QAudio::StoppedState) {
      end_.start(0);  // The output went away.
    }
  }

  void Finish() {
    Silence();
    if (Ended) {
      Ended();
    }
  }

  QBuffer source_;
  std::unique_ptr<QAudioSink> sink_;
  QTimer end_;
};

}  // namespace
}  // namespace tessa

extern "C" Q_DECL_EXPORT tessa::WaveOutput* TessaMakeWaveOutput() {
  return new tessa::SinkOutput;
}
