#pragma once

#include "core/dialogs.h"
#include "core/progress.h"
#include "open/session.h"

namespace tessa {

/// The filter that offers every kind the program reads.
inline constexpr int kAllImagesFilter = 0;

/// Lets the user choose a file and opens it. `filterIndex`: the entry of LoadFilters that is
/// preselected. A file that waits from the command line is opened without asking. A cancelled
/// dialog leaves the open image as it is.
void LoadDialog(int filterIndex, Session& session, Dialogs& dialogs, Progress& progress);

/// The open dialog's filters in the present language: all images first, then one entry for each
/// kind at the numbers 1 to 7, and at 8 every file.
QStringList LoadFilters(const Strings& strings);

}  // namespace tessa
