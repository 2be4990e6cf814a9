#include "formats/wave.h"
#include "require.h"

using tessa::fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tessa::Problems faults;
  const auto facts = tessa::ReadWave({data, size}, 0, faults);
  tessa::fuzz::RequireGoodReports(faults, size);
  Require(facts.has_value() == faults.empty(), "a wave or a reason");
  if (facts) {
    Require(facts->DataSize > 0 && facts->DataOffset + facts->DataSize <= size,
            "the data lie in the file");
    Require(facts->Rate > 0 && facts->Rate <= tessa::kHighestSoundRate, "the rate is possible");
    Require(tessa::WaveSamples({data, size}, *facts).size() ==
                facts->Frames() * static_cast<std::size_t>(facts->Channels),
            "every sample is read");
  }
  return 0;
}
