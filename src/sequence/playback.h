#pragma once

#include "core/progress.h"
#include "open/session.h"

namespace tessa {

// Stepping through the open sequence. First and last always show their frame anew; previous and
// next do nothing at the ends. Zoom, pan, palette and unit stay.

void ShowFirstFrame(Session& session, Progress& progress);
void ShowPreviousFrame(Session& session, Progress& progress);
void ShowNextFrame(Session& session, Progress& progress);
void ShowLastFrame(Session& session, Progress& progress);

}  // namespace tessa
