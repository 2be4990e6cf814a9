#include "open/attachments.h"

namespace tessa {

void ReleaseAttachments(Session& session) {
  for (const auto& stop : session.AttachmentStops) {
    session.Steps.Run("stop an attachment", stop);
  }
  OpenImage& image = session.Image;
  image.HasVisibleImage = false;
  image.VisibleWindowOpen = false;
  session.View.VisibleImageEntries = false;
  session.Visible.Picbuf3.FreeBuffer();
  session.View.SoundButtonsVisible = false;
  image.SoundFile.clear();
  image.SoundFileTitle.clear();
}

}  // namespace tessa
