#include "formats/sit_sound.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "formats/number_text.h"

namespace tessa {
namespace {

constexpr std::size_t kRevisionAt = 8;  // Character 9: the letter behind the version.
constexpr float kFirstWithRates = 3.1F;
constexpr float kFirstWithCodes = 4.0F;
constexpr std::string_view kWave = "WAV";

bool HasLateRevision(const SitHeader& header) {
  return static_cast<unsigned char>(header.Signature.at(kRevisionAt)) >= 'I';
}

std::string WithoutBlanksAtEnd(const std::string& field) {
  return field.substr(0, field.find_last_not_of(' ') + 1);
}

}  // namespace

float VersionInTail(const SitHeader& header) {
  std::string kept;
  for (const char character : std::string_view(header.Signature).substr(4)) {
    if ((character >= '0' && character <= '9') || character == '.') {
      kept.push_back(character);
    }
  }
  return static_cast<float>(ParseLeadingNumber(kept));
}

float VersionInMiddle(const SitHeader& header) {
  return static_cast<float>(ParseLeadingNumber(std::string_view(header.Signature).substr(5, 3)));
}

std::optional<std::uint32_t> FixedSoundRate(float version) {
  return version < kFirstWithRates ? std::optional(kEarlySoundRate) : std::nullopt;
}

bool HasEmbeddedSound(const SitHeader& header, std::uint64_t fileSize) {
  const float version = SitVersionOf(header);
  if (version >= kFirstWithCodes) {
    const int code = AttachmentCode(header);
    return code == 1 || code == 3;
  }
  const bool longEnough = fileSize > kSitAttachmentOffset;
  return longEnough &&
         (version > kFirstWithRates || (version == kFirstWithRates && HasLateRevision(header)));
}

bool NamesSound(const SitHeader& header) {
  return header.SoundName.front() != ' ' && header.SoundName.front() != '\0';
}

bool NamesWave(const SitHeader& header) {
  return NamesSound(header) && header.SoundExt == kWave;
}

std::optional<std::uint64_t> WavePosition(const SitHeader& header) {
  const double position = ParseLeadingNumber(header.SoundName);
  if (position < 1.0 || position > static_cast<double>(kHighestWavePosition) ||
      position != std::floor(position)) {
    return std::nullopt;
  }
  return static_cast<std::uint64_t>(position);
}

std::string SideSoundName(const SitHeader& header) {
  using namespace std::string_view_literals;
  if (!NamesSound(header)) {
    return {};
  }
  const std::string name =
      WithoutBlanksAtEnd(header.SoundName) + '.' + WithoutBlanksAtEnd(header.SoundExt);
  // A name out of a file never leads out of the image's own folder.
  const bool plain =
      name.find_first_of("/\\\0"sv) == std::string::npos && name.find("..") == std::string::npos;
  return plain ? name : std::string();
}

bool MayHaveSideSound(const SitHeader& header, std::uint64_t fileSize) {
  const float version = VersionInMiddle(header);
  const bool cameraAppends =
      version >= kFirstWithRates && HasLateRevision(header) && fileSize > kSitAttachmentOffset;
  return version < kFirstWithCodes && !cameraAppends;
}

bool StaysFindable(const SitHeader& header) {
  const float version = SitVersionOf(header);
  return version < kFirstWithRates || (version == kFirstWithRates && !HasLateRevision(header));
}

std::array<std::uint8_t, kSitHeaderSize> RecordWithWave(const SitHeader& header,
                                                        std::uint64_t position) {
  std::string fields = std::to_string(position);
  fields.resize(kSoundNameSize, ' ');
  fields += kWave;
  std::array<std::uint8_t, kSitHeaderSize> record = header.Record;
  std::copy(fields.begin(), fields.end(), record.begin() + kSoundNameAt);
  return record;
}

}  // namespace tessa
