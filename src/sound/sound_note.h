#pragma once

#include <QString>
#include <cstdint>
#include <optional>

#include "core/file_access.h"
#include "formats/sit_sound.h"

namespace tessa {

/// How a SIT image keeps its note. The numbers appear in reports.
enum class SoundKind {
  kNone = 0,
  kSideFile = 1,       // A file of the camera's kind beside the image.
  kEmbeddedWave = 2,   // A wave behind the image.
  kEmbeddedSound = 4,  // The camera's own sound behind the image.
};

/// What becomes of a sound file without a byte in it. Looking at images never removes anything;
/// playing them and browsing do.
enum class EmptySound { kLeave, kRemove };

/// Notes larger than this many bytes are refused.
inline constexpr std::uint64_t kLargestSound = 64 * 1024 * 1024;

/// Where an image's note is, found without reading the note itself.
struct SoundNote {
  SoundKind Kind = SoundKind::kNone;
  /// The path of the side file, the position of a wave as the header's 8 characters, or "SIT".
  QString Reference;
  SitHeader Header;
  Problems Faults;  // Why there is none although the header names one.
};

/// Looks for the note of the image at `imagePath`. Images that are no SIT have none.
SoundNote FindSoundNote(const QString& imagePath, EmptySound empty);

/// True when the file begins as the camera's sounds do.
bool IsSoundFile(const QString& path, EmptySound empty);

/// The sound file that copies of the SIT image at `imagePath` take along; it need not exist. Empty
/// when there is none.
QString GetSoundName(const QString& imagePath);
/// The name in the header for that file, without its folder. Empty when there is none.
QString SideSoundNameOf(const QString& imagePath);

/// A note ready to be played or written.
struct NoteWave {
  Bytes File;              // A whole wave file; empty when nothing of the note can be heard.
  std::uint32_t Rate = 0;  // Hertz.
  double Seconds = 0.0;
  Problems Faults;  // What is wrong with it; a note that is cut has a file all the same.

  /// Only a note that is whole is played or put into images.
  bool IsWhole() const { return !File.empty() && Faults.empty(); }
};

/// A rate in hertz that stands in for the one in a sound's header, if any.
using RateOverride = std::optional<std::uint32_t>;

/// The camera's sound in a file of its own.
NoteWave ReadSideSound(const QString& soundPath, RateOverride rate, EmptySound empty);
/// The camera's sound inside a SIT image.
NoteWave ReadEmbeddedSound(const QString& imagePath, RateOverride rate);
/// The bytes from `position`, counted from byte 1, to the end of the image, as they are.
NoteWave ReadEmbeddedWave(const QString& imagePath, std::uint64_t position);
/// A wave file or a sound of the camera's in a file of its own, whichever it is.
NoteWave ReadAnySound(const QString& soundPath, RateOverride rate);
/// The note that FindSoundNote() found.
NoteWave ReadNote(const QString& imagePath, const SoundNote& note);

/// "2.5 s at 8000 Hz".
QString LengthAndRate(const NoteWave& wave);

/// The name in the header as a path beside the image; empty when it is no plain name or when files
/// differ in case only.
QString SideSoundPath(const QString& imagePath, const SitHeader& header);

/// True when the name of the file ends as those of SIT images do, in any case.
bool IsSitName(const QString& path);

}  // namespace tessa
