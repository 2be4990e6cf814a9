#pragma once

#include "browser/image_info.h"
#include "browser/image_note.h"

namespace tessa {

/// "Save" of the information dialog: puts the texts into the file of `info`, and what stands there
/// now into the view's lines of the open image or into the texts of the tile, whichever `info` came
/// from; both when they are the same file. `pages`: where tiles came from, else null.
///
/// Other than SaveImageNote it takes the record by the dialog's type text, makes a read-only file
/// writable, and cuts a text to its field. A legacy image is told by the English word alone: in any
/// other language its texts go to the places of the later record, and the header is spoiled. An
/// image without such texts, or whose texts are not to be saved, stays as it is. Throws
/// StepFailure.
void SaveInfoNote(const ImageInfo& info, const ImageNote& texts, Session& session,
                  ThumbnailPages* pages);

}  // namespace tessa
