#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTest>
#include <cmath>
#include <cstring>
#include <span>

#include "formats/if_sound.h"
#include "formats/wave.h"
#include "test_files.h"
#include "windows/wave_device.h"

namespace tessa::testing {
namespace {

/// A rising tone of 10-bit samples: no two stretches of it are alike.
std::vector<std::int16_t> Sweep(std::uint32_t rate, double seconds) {
  std::vector<std::uint16_t> samples;
  const auto count = static_cast<int>(rate * seconds);
  for (int i = 0; i < count; ++i) {
    const double at = static_cast<double>(i) / rate;
    samples.push_back(static_cast<std::uint16_t>(
        std::lround(512.0 + 400.0 * std::sin(2.0 * 3.14159265 * (200.0 + 150.0 * at) * at))));
  }
  return ToWaveSamples(samples);
}

constexpr std::size_t kFiner = 8;  // The recorder's samples for one of the wave's.

/// The largest correlation of `wave`, its mean taken away, with any stretch of `heard`, from 0
/// to 1.
double BestMatch(std::span<const double> wave, std::span<const double> heard) {
  double own = 0.0;
  for (const double sample : wave) {
    own += sample * sample;
  }
  double best = 0.0;
  for (std::size_t shift = 0; shift + wave.size() * kFiner <= heard.size(); ++shift) {
    double product = 0.0;
    double power = 0.0;
    double sum = 0.0;
    for (std::size_t i = 0; i < wave.size(); ++i) {
      const double sample = heard[shift + i * kFiner];
      product += wave[i] * sample;
      power += sample * sample;
      sum += sample;
    }
    power -= sum * sum / static_cast<double>(wave.size());
    best = power > 0.0 ? std::max(best, product / std::sqrt(power * own)) : best;
  }
  return best;
}

std::vector<double> WithoutMean(const std::vector<std::int16_t>& samples) {
  double sum = 0.0;
  for (const std::int16_t sample : samples) {
    sum += sample;
  }
  const double mean = samples.empty() ? 0.0 : sum / static_cast<double>(samples.size());
  std::vector<double> result;
  for (const std::int16_t sample : samples) {
    result.push_back(sample - mean);
  }
  return result;
}

/// A sound server of this process's own, whose one output nobody hears but a recorder.
class SoundServer {
 public:
  SoundServer() {
    if (qEnvironmentVariableIsSet("TESSA_NO_SOUND_OUTPUT")) {
      return;
    }
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
  const Bytes wave = EncodeWave(2850, Sweep(2850, 0.1));
  EXPECT_NO_THROW(Open(wave));
  EXPECT_THROW(Open(EncodeWave(2850, {})), StepFailure);
  EXPECT_THROW(Open(First(wave, wave.size() - 1)), StepFailure);
  EXPECT_THROW(device_.Give(MediaCommand::kPlay), StepFailure) << "the former wave is closed";
}

TEST_F(WaveDevicePlays, WithoutAnOutputAPlayEndsAtOnceWithAPlainWord) {
  constexpr const char* kAlone = "TESSA_NO_SOUND_OUTPUT";
  if (!qEnvironmentVariableIsSet(kAlone)) {
    // What outputs there are is found out once for a process.
    QProcess other;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(kAlone), u"1"_s);
    environment.insert(u"PULSE_SERVER"_s, u"unix:/nowhere"_s);
    other.setProcessEnvironment(environment);
    other.start(QCoreApplication::applicationFilePath(), {u"--gtest_filter=*WithoutAnOutput*"_s});
    EXPECT_TRUE(other.waitForFinished(20000));
    EXPECT_EQ(other.exitCode(), 0) << other.readAllStandardOutput().toStdString();
    return;
  }
  Open(EncodeWave(2850, Sweep(2850, 0.1)));
  try {
    device_.Give(MediaCommand::kPlay);
    ADD_FAILURE() << "something plays";
  } catch (const StepFailure& failure) {
    EXPECT_STREQ(failure.what(), "there is no sound output");
  }
}

TEST_F(WaveDevicePlays, WhatComesOutIsTheWaveAndItsEndIsTold) {
  if (!SoundServer::Runs()) {
    GTEST_SKIP() << "no sound server can be started here";
  }
  constexpr std::uint32_t kRate = 2850;
  const std::vector<std::int16_t> wave = Sweep(kRate, 1.5);
  QProcess recorder;
  recorder.start(u"parec"_s, {u"--device=tessa_null.monitor"_s, u"--raw"_s, u"--format=s16le"_s,
                              u"--channels=1"_s, u"--rate=22800"_s, u"--latency-msec=20"_s});
  ASSERT_TRUE(recorder.waitForStarted());
  // The first bytes come late.
  ASSERT_TRUE(QTest::qWaitFor([&] { return recorder.bytesAvailable() > 0; }, 10000));
  Open(EncodeWave(kRate, wave));
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
  const std::vector<double> sent = WithoutMean(wave);
  const std::vector<double> received = WithoutMean(heard);
  EXPECT_GT(BestMatch(sent, received), 0.95);
  EXPECT_GT(BestMatch(std::span(sent).last(300), received), 0.95)
      << "to its last tenth of a second";

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
