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

void Place(Bytes& image, std::size_t at, std::string_view text) {
  std::copy(text.begin(), text.end(), image.begin() + static_cast<std::ptrdiff_t>(at));
}

void Append(const Bytes& bytes, Bytes& image) {
  image.insert(image.end(), bytes.begin(), bytes.end());
}

}  // namespace

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

void WriteSoundSamples(const Scene& scene, const std::filesystem::path& folder) {
  const auto image = [&scene](std::string_view signature, const char* comment) {
    SampleFacts facts;
    facts.Comment = comment;
    facts.Memo = "SOUND NOTE";
    Bytes bytes = SceneAsSit(scene, facts);
    Place(bytes, 0, signature);
    return bytes;
  };
  // An early camera: its sounds lie beside the images and all have one rate.
  Bytes beside = image("SIT V2.9A ", "Tea with a note in a file beside it");
  Place(beside, kSoundNameAt, "SPOKEN01SND");
  WriteSample(folder / "note-beside.sit", beside);
  WriteSample(folder / "SPOKEN01.SND", EncodeIfSound(kEarlySoundRate, ChimeNote(kEarlySoundRate)));

  constexpr std::uint32_t kWaveRate = 5700;
  Bytes wave = image("SIT V3.0A ", "Tea with a note put into it as a wave");
  Place(wave, kSoundNameAt, "156161  WAV");
  Append(EncodeWave(kWaveRate, ToWaveSamples(ChimeNote(kWaveRate))), wave);
  WriteSample(folder / "note-as-wave.sit", wave);

  constexpr std::uint32_t kCameraRate = 8000;
  Bytes inside = image("SIT V3.5A ", "Tea with a note inside");
  Append(Bytes(kSitSoundOffset - kSitAttachmentOffset), inside);
  Append(EncodeIfSound(kCameraRate, ChimeNote(kCameraRate)), inside);
  WriteSample(folder / "note-inside.sit", inside);
}

}  // namespace tessa::tools
