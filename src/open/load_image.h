#pragma once

#include "core/progress.h"
#include "open/session.h"

namespace tessa {

/// Opens the file named in the open image's record: prepares the view, loads, shows the result.
/// Never fails as a whole; what went wrong stands in the session's Faults and Steps.
void OpenCurrentImage(Session& session, Progress& progress);

/// Brings the file into the record and the buffer: reset, dispatch on the file's ending, scale,
/// display state, row pass, zoom.
void LoadImageFile(Session& session, Progress& progress);

/// Names `path` (as on disk) and opens it. For callers that have a path at hand.
void OpenPath(const QString& path, Session& session, Progress& progress);

/// Closes the open image: names and texts become empty, the blank panel shows.
void CloseImage(Session& session, Progress& progress);

}  // namespace tessa
