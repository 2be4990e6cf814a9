#include <array>
#include <string>

#include "session_input.h"

using tessa::fuzz::Require;

/// The first byte picks the ending, the others are the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static constexpr std::array<const char*, 9> kEndings = {"rti", "bmp", "txi", "tmp", "sit",
                                                          "bin", "tif", "jpg", "xyz"};
  if (size == 0) {
    return 0;
  }
  const std::string name = std::string("input.") + kEndings[data[0] % kEndings.size()];
  const QString path = tessa::fuzz::WriteInput(name.c_str(), {data + 1, size - 1});
  tessa::Session session(tessa::fuzz::InputFolder());
  session.ExtractsAttachments = size % 2 == 0;
  tessa::Progress progress;
  tessa::OpenPath(path, session, progress);
  QFile::remove(path);

  const bool hasImage = tessa::FindNoImage(session.Faults) == nullptr;
  Require(session.View.PictureVisible == hasImage && !session.Image.ImageBusy,
          "a load comes to its end, and a picture shows when there is one");
  Require(session.Image.CurrentFilePath == path, "the path stays what it was");
  tessa::fuzz::RequireGoodImage(session);
  tessa::fuzz::RequireGoodReports(session.Faults, size - 1);
  return 0;
}
