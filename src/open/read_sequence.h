#pragma once

#include "core/progress.h"
#include "open/session.h"

namespace tessa {

/// Reads a snapshot or sequence container at the open image's path: version, trailer or header,
/// frame count, stamps. A snapshot's frames are kept as stored; of a container only the first frame
/// is looked at, the others are read when they are shown. FrameCount 0 means there is nothing to
/// show, and the reason stands in the session's Faults.
void ReadSequence(Session& session, Progress& progress);

}  // namespace tessa
