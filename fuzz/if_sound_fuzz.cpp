#include <algorithm>

#include "formats/if_sound.h"
#include "require.h"

FUZZ_ENTRY {
  Problems faults;
  const auto sound = DecodeIfSound({data, size}, 0, faults);
  RequireGoodReports(faults, size);
  Require(sound || !faults.empty(), "nothing comes with a reason");
  if (sound) {
    Require(2 * sound->Samples.size() + kIfHeaderSize <= size, "samples are in the block");
    Require(
        (sound->Samples.size() == sound->SampleCount && sound->SampleCount > 0) || !faults.empty(),
        "a missing sample comes with a reason");
    const auto wave = ToWaveSamples(sound->Samples);
    Require(std::all_of(wave.begin(), wave.end(),
                        [](std::int16_t sample) { return sample >= 0 && sample <= 32736; }),
            "ten bits make a wave above zero");
  }
}
