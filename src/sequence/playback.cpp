#include "sequence/playback.h"

#include "core/tell.h"
#include "sequence/convert_frames.h"
#include "view/range_control.h"
#include "view/range_entry.h"

namespace tessa {
namespace {

/// Shows 1-based `frame`; the scale follows only when the picture stands.
void GoTo(int frame, Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  DismissFailure(view);
  image.CurrentFrame = frame;
  const bool shown = ShowAndSaveFrame(false, session, progress);
  session.Steps.Run("scale display", [&] { UpdateRangeDisplay(image, view, session.Words); });
  ShowLimitTexts(session.Range, image.DisplayUnits, view);
  if (!shown) {
    Tell(NoticeKind::kFailed, session.Words.LangString(443, "Frame %1 cannot be read.").arg(frame),
         view);
  }
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
