#include "sequence/playback.h"

#include "sequence/convert_frames.h"
#include "view/range_control.h"

namespace tessa {
namespace {

/// Shows 1-based `frame`; the scale follows only when the picture stands.
void GoTo(int frame, Session& session, Progress& progress) {
  session.Image.CurrentFrame = frame;
  ShowAndSaveFrame(false, session, progress);
  session.Steps.Run("scale display",
                    [&] { UpdateRangeDisplay(session.Image, session.View, session.Words); });
}

}  // namespace

void ShowFirstFrame(Session& session, Progress& progress) {
  GoTo(1, session, progress);
}

void ShowPreviousFrame(Session& session, Progress& progress) {
  if (session.Image.CurrentFrame > 1) {
    GoTo(session.Image.CurrentFrame - 1, session, progress);
  }
}

void ShowNextFrame(Session& session, Progress& progress) {
  if (session.Image.CurrentFrame < session.Image.FrameCount) {
    GoTo(session.Image.CurrentFrame + 1, session, progress);
  }
}

void ShowLastFrame(Session& session, Progress& progress) {
  GoTo(session.Image.FrameCount, session, progress);
}

}  // namespace tessa
