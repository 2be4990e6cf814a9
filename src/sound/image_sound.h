#pragma once

#include <cstdint>

#include "open/session.h"
#include "sound/media_device.h"

namespace tessa {

/// Makes the temporary wave of the open image, opens the view's device on it and shows the buttons
/// that go with it. `selector`: -1 for the camera's own sound inside the image, 0 for the sound
/// file beside it, else the position of a wave inside it, counted from byte 1. Without a note that
/// can be heard both buttons hide and the reason stands in the session's Faults.
bool OpenImageSound(std::int64_t selector, Session& session, MediaDevice& device);

// What OpenImageSound() chooses from.
bool OpenSitEmbeddedSound(Session& session, MediaDevice& device);
bool OpenSidecarSound(const QString& soundPath, Session& session, MediaDevice& device);
bool OpenEmbeddedWave(std::uint64_t position, Session& session, MediaDevice& device);

/// The step that follows the load of an image: opens its note, if there is one.
void OpenNoteOfImage(Session& session, MediaDevice& device);

/// Closes the device and deletes the temporary wave of the open image.
void CloseNoteOfImage(Session& session, MediaDevice& device);

}  // namespace tessa
