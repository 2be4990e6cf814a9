#pragma once

#include "core/dialogs.h"
#include "core/steps.h"
#include "core/view_state.h"

namespace tessa {

// Two whole numbers that the user may enter for later processing. They are kept and shown; the
// picture stays as it is.

/// Asks for an angle of -360 to 360 degrees; any other answer leaves the caption as it was.
void EnterRotationAngle(ViewState& view, Dialogs& dialogs, StepLog& steps);

/// Asks for a magnitude of 0 to 10.
void EnterEdgeMagnitude(ViewState& view, Dialogs& dialogs, StepLog& steps);

}  // namespace tessa
