#pragma once

#include "core/dialogs.h"
#include "core/progress.h"
#include "open/session.h"

namespace tessa {

/// Lets the user choose a file (`filterIndex`: 1-based entry of the filter list that is
/// preselected) and opens it. A file that waits from the command line is opened without asking.
/// A cancelled dialog leaves the open image as it is.
void LoadDialog(int filterIndex, Session& session, Dialogs& dialogs, Progress& progress);

/// The open dialog's filters in the present language, one entry for each kind.
QStringList LoadFilters(const Strings& strings);

}  // namespace tessa
