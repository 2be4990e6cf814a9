#pragma once

#include "core/progress.h"
#include "open/session.h"

namespace tessa {

/// Reads the displayed values of a picture file row by row, measures those that stand for
/// temperatures, and undoes a reversed palette.
void RunRowPass(FileKind kind, Session& session, Progress& progress);

}  // namespace tessa
