#pragma once

#include "open/session.h"

namespace tessa {

/// Lets go of all that hangs on the open image: tells the session's Follower, then forgets the
/// sound note and the visible-light picture, whose window closes with the next look at the records.
/// Loading, closing and leaving the program call it; without an image it does no harm.
void ReleaseAttachments(Session& session);

}  // namespace tessa
