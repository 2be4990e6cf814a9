#pragma once

#include "core/progress.h"
#include "open/session.h"
#include "open/still.h"

namespace tessa {

/// Puts a still into the open image, whose file is already named: records, texts, grid, an empty
/// picture of its size, range control, photograph. The picture is rendered by the caller.
void TakeStill(Still still, Session& session);

/// Reads the open image's file and takes it.
void LoadStill(Session& session, Progress& progress);

}  // namespace tessa
