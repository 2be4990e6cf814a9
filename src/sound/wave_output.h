#pragma once

#include <QByteArray>
#include <functional>

namespace tessa {

enum class WaveStart { kPlaying, kNoOutput, kRefused };

/// What lets waves be heard. The real one stands in a library of its own, since loading the
/// platform's sound takes longer than showing a picture; it is loaded with the first play. Lives on
/// the thread of the event loop.
class WaveOutput {
 public:
  WaveOutput() = default;
  WaveOutput(const WaveOutput&) = delete;
  WaveOutput& operator=(const WaveOutput&) = delete;
  virtual ~WaveOutput() = default;

  /// Called from the event loop when a play has come to its end, was stopped or lost its output.
  std::function<void()> Ended;

  /// Plays 16-bit samples from the start, `rate` for each of the `channels` a second.
  virtual WaveStart Play(const QByteArray& samples, int rate, int channels) = 0;
  virtual void Stop() = 0;
  /// Stop without a word: Ended is not called.
  virtual void Close() = 0;
};

/// The library's one function, under this name; the caller owns what it makes.
using MakeWaveOutput = WaveOutput* (*)();
inline constexpr const char* kMakeWaveOutput = "TessaMakeWaveOutput";
/// The library's name without the ending.
inline constexpr const char* kWaveOutputLibrary = "tessaview-sound";

}  // namespace tessa
