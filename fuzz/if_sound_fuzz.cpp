#include <algorithm>

#include "formats/if_sound.h"
#include "require.h"

using tessa::fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tessa::Problems faults;
  const auto sound = tessa::DecodeIfSound({data, size}, 0, faults);
  tessa::fuzz::RequireGoodReports(faults, size);
  Require(sound || !faults.empty(), "nothing comes with a reason");
  if (sound) {
    Require(2 * sound->Samples.size() + tessa::kIfHeaderSize <= size, "samples are in the block");
    Require(
        (sound->Samples.size() == sound->SampleCount && sound->SampleCount > 0) || !faults.empty(),
        "a missing sample comes with a reason");
    const auto wave = tessa::ToWaveSamples(sound->Samples);
    Require(std::all_of(wave.begin(), wave.end(),
                        [](std::int16_t sample) { return sample >= 0 && sample <= 32736; }),
            "ten bits make a wave above zero");
  }
  return 0;
}
