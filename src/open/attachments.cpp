#include "open/attachments.h"

namespace tessa {

void ReleaseAttachments(Session& session) {
  if (session.Follower != nullptr) {
    session.Follower->ImageLeaves();
  }
  OpenImage& image = session.Image;
  image.HasVisibleImage = false;
  image.VisibleWindowOpen = false;
  session.View.VisibleImageEntries = false;
  session.Visible.Picbuf3.FreeBuffer();
  image.SoundFile.clear();
  image.SoundFileTitle.clear();
  image.SoundEmbedded = false;
  image.CanEmbedSound = false;
}

}  // namespace tessa
