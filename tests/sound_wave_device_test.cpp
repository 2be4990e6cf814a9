#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>
#include <cmath>
#include <cstring>

#include "formats/if_sound.h"
#include "formats/wave.h"
#include "test_files.h"
#include "windows/wave_device.h"

namespace tessa::testing {
namespace {

constexpr double kTone = 400.0;  // Hertz.

std::vector<std::int16_t> Tone(std::uint32_t rate, double seconds) {
  std::vector<std::uint16_t> samples;
  for (int i = 0; i < static_cast<int>(rate * seconds); ++i) {
    samples.push_back(static_cast<std::uint16_t>(
        std::lround(512.0 + 400.0 * std::sin(2.0 * 3.14159265 * kTone * i / rate))));
  }
  return ToWaveSamples(samples);
}

/// How often the sound rises from the lower third of its range to the upper one.
int Periods(const std::vector<std::int16_t>& heard) {
  constexpr int kLow = 10'000;
  constexpr int kHigh = 22'000;
  int periods = 0;
  bool isLow = false;
  for (const std::int16_t sample : heard) {
    periods += isLow && sample > kHigh ? 1 : 0;
    isLow = sample < kLow || (isLow && sample <= kHigh);
  }
  return periods;
}

/// A sound server of this process's own, whose one output nobody hears but a recorder.
class SoundServer {
 public:
  SoundServer() {
    const QString socket = folder_.filePath(u"native"_s);
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(folder_.path()));
    qputenv("HOME", QFile::encodeName(folder_.path()));
    qputenv("PULSE_SERVER", "unix:" + QFile::encodeName(socket));
    server_.start(u"pulseaudio"_s,
                  {u"-n"_s, u"--daemonize=no"_s, u"--use-pid-file=no"_s, u"--exit-idle-time=-1"_s,
                   u"--load=module-native-protocol-unix auth-anonymous=1 socket="_s + socket,
                   u"--load=module-null-sink sink_name=tessa_null"_s});
    for (int attempt = 0; attempt < 30 && !runs_ && server_.state() != QProcess::NotRunning;
         ++attempt) {
      server_.waitForFinished(100);
      runs_ = QProcess::execute(u"pactl"_s, {u"info"_s}) == 0;
    }
  }
  SoundServer(const SoundServer&) = delete;
  SoundServer& operator=(const SoundServer&) = delete;
  ~SoundServer() {
    server_.terminate();
    server_.waitForFinished();
  }
  static bool Runs() { return runs_; }

 private:
  QTemporaryDir folder_;
  QProcess server_;
  static inline bool runs_ = false;
};

class WaveDevicePlays : public ::testing::Test {
 protected:
  WaveDevicePlays() {
    device_.Completed = [this] { ++completed_; };
  }
  void Open(const Bytes& wave) {
    device_.FileName = folder_.Write(u"note.wav"_s, wave);
    device_.Give(MediaCommand::kOpen);
  }

  TestFolder folder_;
  Strings words_;
  WaveDevice device_{words_};
  int completed_ = 0;
};

TEST_F(WaveDevicePlays, OpenTakesWavesWithDataOnlyAndNeedsNoOutput) {
  const Bytes wave = EncodeWave(2850, Tone(2850, 0.1));
  EXPECT_NO_THROW(Open(wave));
  EXPECT_THROW(Open(EncodeWave(2850, {})), StepFailure);
  EXPECT_THROW(Open(First(wave, wave.size() - 1)), StepFailure);
  EXPECT_THROW(device_.Give(MediaCommand::kPlay), StepFailure) << "the former wave is closed";
}

TEST_F(WaveDevicePlays, WhatComesOutIsTheWaveAndItsEndIsTold) {
  if (!SoundServer::Runs()) {
    GTEST_SKIP() << "no sound server can be started here";
  }
  constexpr std::uint32_t kRate = 2850;
  QProcess recorder;
  recorder.start(u"parec"_s, {u"--device=tessa_null.monitor"_s, u"--raw"_s, u"--format=s16le"_s,
                              u"--channels=1"_s, u"--rate=22800"_s, u"--latency-msec=20"_s});
  ASSERT_TRUE(recorder.waitForStarted());
  // The first bytes come late.
  ASSERT_TRUE(QTest::qWaitFor([&] { return recorder.bytesAvailable() > 0; }, 10000));
  Open(EncodeWave(kRate, Tone(kRate, 1.5)));
  QElapsedTimer clock;
  clock.start();
  device_.Give(MediaCommand::kPlay);
  EXPECT_TRUE(QTest::qWaitFor([this] { return completed_ > 0; }, 6000));
  EXPECT_GE(clock.elapsed(), 1400);
  EXPECT_LT(clock.elapsed(), 3000) << "ended by the wave's end, not by the guard";
  QTest::qWait(500);
  recorder.terminate();
  recorder.waitForFinished();
  const QByteArray raw = recorder.readAllStandardOutput();
  std::vector<std::int16_t> heard(static_cast<std::size_t>(raw.size()) / 2);
  std::memcpy(heard.data(), raw.constData(), heard.size() * 2);
  EXPECT_NEAR(Periods(heard), kTone * 1.5, 30) << "from its first to its last part of a second";

  // A stop is an end too, and a close is none.
  device_.Give(MediaCommand::kPlay);
  QTest::qWait(200);
  device_.Give(MediaCommand::kStop);
  EXPECT_TRUE(QTest::qWaitFor([this] { return completed_ == 2; }, 500));
  device_.Give(MediaCommand::kPlay);
  QTest::qWait(200);
  device_.Give(MediaCommand::kClose);
  QTest::qWait(300);
  EXPECT_EQ(completed_, 2);
}

}  // namespace
}  // namespace tessa::testing

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  const QCoreApplication application(argc, argv);
  const tessa::testing::SoundServer server;
  return RUN_ALL_TESTS();
}
