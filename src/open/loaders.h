#pragma once

#include "core/progress.h"
#include "open/session.h"

namespace tessa {

// Each loader reads the open image's file into the record and the buffer, as LoadStill does with
// radiometric stills. None reports a result: what is wrong with the file goes into the session's
// Faults, a failed step leaves its target.

/// Snapshots and sequence containers; shows the first frame.
void LoadRti(Session& session, Progress& progress);

/// Bitmaps, and the first step of TXI.
void LoadBmpOrTxi(Session& session);
void LoadTiff(Session& session);
void LoadJpeg(Session& session);

}  // namespace tessa
