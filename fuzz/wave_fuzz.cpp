#include "formats/wave.h"
#include "require.h"

FUZZ_ENTRY {
  Problems faults;
  const auto facts = ReadWave({data, size}, 0, faults);
  RequireGoodReports(faults, size);
  Require(facts.has_value() == faults.empty(), "a wave or a reason");
  if (facts) {
    Require(facts->DataSize > 0 && facts->DataOffset + facts->DataSize <= size,
            "the data lie in the file");
    Require(facts->Rate > 0 && facts->Rate <= kHighestSoundRate, "the rate is possible");
    Require(WaveSamples({data, size}, *facts).size() ==
                facts->Frames() * static_cast<std::size_t>(facts->Channels),
            "every sample is read");
  }
}
