#include <array>
#include <string>

#include "session_input.h"

/// The first byte picks the ending, the others are the file.
FUZZ_ENTRY {
  static constexpr std::array<const char*, 9> kEndings = {"rti", "bmp", "txi", "tmp", "sit",
                                                          "bin", "tif", "jpg", "xyz"};
  if (size == 0) {
    return;
  }
  const std::string name = std::string("input.") + kEndings[data[0] % kEndings.size()];
  const QString path = WriteInput(name.c_str(), {data + 1, size - 1});
  Session session(InputFolder());
  session.ExtractsAttachments = size % 2 == 0;
  Progress progress;
  OpenPath(path, session, progress);
  QFile::remove(path);

  const bool hasImage = FindNoImage(session.Faults) == nullptr;
  Require(session.View.PictureVisible == hasImage && !session.Image.ImageBusy,
          "a load comes to its end, and a picture shows when there is one");
  Require(session.Image.CurrentFilePath == path, "the path stays what it was");
  RequireGoodImage(session);
  RequireGoodReports(session.Faults, size - 1);
}
