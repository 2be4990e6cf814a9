#include "sample_sounds.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string_view>

#include "formats/if_sound.h"
#include "formats/sit_sound.h"
#include "formats/wave.h"
#include "sample_encoders.h"
#include "sample_set.h"

namespace tessa::tools {
namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;
constexpr double kSeconds = 1.5;

std::uint16_t TenBits(double wave) {
  return static_cast<std::uint16_t>(std::clamp(std::lround(512.0 + 420.0 * wave), 0L, 1023L));
}

/// A syllable: when it sounds, in seconds, and the two resonances that make its vowel, in hertz.
struct Syllable {
  double Start;
  double End;
  double First;
  double Second;
};

/// How strongly a voice sounds at `frequency` in a vowel.
double Loudness(double frequency, const Syllable& vowel) {
  const auto peak = [&](double centre, double width) {
    const double distance = (frequency - centre) / width;
    return 1.0 / (1.0 + distance * distance);
  };
  return peak(vowel.First, 90.0) + 0.6 * peak(vowel.Second, 120.0);
}

void Place(Bytes& image, std::size_t at, std::string_view text) {
  std::copy(text.begin(), text.end(), image.begin() + static_cast<std::ptrdiff_t>(at));
}

/// A cup of tea from a camera of the given signature.
Bytes Image(std::string_view signature, const char* comment, const char* time) {
  Scene cup = WarmingCup(320, 240, 3, 6);
  AddSensorNoise(cup, {});
  SampleFacts facts;
  facts.Comment = comment;
  facts.Memo = "SPOKEN NOTE";
  facts.TimeText = time;
  Bytes image = SceneAsSit(cup, facts);
  Place(image, 0, signature);
  return image;
}

void Append(const Bytes& bytes, Bytes& image) {
  image.insert(image.end(), bytes.begin(), bytes.end());
}

}  // namespace

std::vector<std::uint16_t> SpokenNote(std::uint32_t rate) {
  constexpr Syllable kSyllables[] = {{0.05, 0.30, 730, 1090},
                                     {0.36, 0.60, 400, 1300},
                                     {0.70, 0.98, 570, 840},
                                     {1.04, 1.42, 300, 870}};
  std::vector<std::uint16_t> samples;
  double turns = 0.0;
  for (std::uint32_t i = 0; i < static_cast<std::uint32_t>(rate * kSeconds); ++i) {
    const double seconds = static_cast<double>(i) / rate;
    const double pitch = 135.0 - 20.0 * seconds + 6.0 * std::sin(kTurn * 1.3 * seconds);
    turns += pitch / rate;
    double wave = 0.0;
    for (const Syllable& syllable : kSyllables) {
      const double rise = std::min(seconds - syllable.Start, syllable.End - seconds) / 0.04;
      if (rise <= 0.0) {
        continue;
      }
      for (int harmonic = 1; harmonic * pitch < 0.45 * rate && harmonic <= 24; ++harmonic) {
        wave += 0.45 * std::min(rise, 1.0) * Loudness(harmonic * pitch, syllable) *
                std::sin(kTurn * harmonic * turns) / std::sqrt(harmonic);
      }
    }
    samples.push_back(TenBits(std::tanh(wave)));
  }
  return samples;
}

std::vector<std::uint16_t> ChimeNote(std::uint32_t rate) {
  std::vector<std::uint16_t> samples;
  for (std::uint32_t i = 0; i < static_cast<std::uint32_t>(rate * kSeconds); ++i) {
    const double seconds = static_cast<double>(i) / rate;
    const bool second = seconds >= 0.5;
    const double since = second ? seconds - 0.5 : seconds;
    const double phase = kTurn * (second ? 659.3 : 880.0) * since;
    const double loudness = std::min(since / 0.005, 1.0) * std::exp(-since / 0.3);
    samples.push_back(TenBits(loudness * (std::sin(phase) + 0.3 * std::sin(2.0 * phase)) / 1.3));
  }
  return samples;
}

void WriteSoundSamples(const std::filesystem::path& folder) {
  // An early camera: its sounds lie beside the images and all have one rate.
  Bytes beside = Image("SIT V2.9A ", "Tea with a spoken note in a file beside it", "101601");
  Place(beside, kSoundNameAt, "SPOKEN01SND");
  WriteSample(folder / "note-beside.sit", beside);
  WriteSample(folder / "SPOKEN01.SND", EncodeIfSound(kEarlySoundRate, SpokenNote(kEarlySoundRate)));

  constexpr std::uint32_t kChimeRate = 5700;
  Bytes wave = Image("SIT V3.0A ", "Tea with a chime put into it as a wave", "101602");
  Place(wave, kSoundNameAt, "156161  WAV");
  Append(EncodeWave(kChimeRate, ToWaveSamples(ChimeNote(kChimeRate))), wave);
  WriteSample(folder / "note-as-wave.sit", wave);

  constexpr std::uint32_t kCameraRate = 8000;
  Bytes inside = Image("SIT V3.5A ", "Tea with a spoken note inside", "101603");
  Append(Bytes(kSitSoundOffset - kSitAttachmentOffset), inside);
  Append(EncodeIfSound(kCameraRate, SpokenNote(kCameraRate)), inside);
  WriteSample(folder / "note-inside.sit", inside);
}

}  // namespace tessa::tools
