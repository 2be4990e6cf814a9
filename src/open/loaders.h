#pragma once

#include "core/progress.h"
#include "open/session.h"

namespace tessa {

// Each loader reads the open image's file into the record and the buffer. None reports a result:
// what is wrong with the file goes into the session's Faults, a failed step leaves its target.

void LoadSit(Session& session, Progress& progress);

/// 16-bit stills, and the 8-bit ones that share the ending and are shorter.
void LoadTmp(Session& session, Progress& progress);

/// A raster without a header, opened as if it were a SIT image: the upper-cased text of the current
/// file gets the ending "SIT", for tests of the kind only.
void LoadBin(Session& session, Progress& progress);

/// Snapshots and sequence containers; shows the first frame.
void LoadRti(Session& session, Progress& progress);

/// Bitmaps, and the first step of TXI.
void LoadBmpOrTxi(Session& session);
void LoadTiff(Session& session);
void LoadJpeg(Session& session);

}  // namespace tessa
