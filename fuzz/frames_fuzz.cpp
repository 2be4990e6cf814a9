#include <algorithm>

#include "formats/byte_reader.h"
#include "open/show_frame.h"
#include "session_input.h"

using tessa::fuzz::Require;

/// A size in two bytes, a frame file of this size that lies beside the sequence as its second
/// frame, and the sequence. Every frame is shown in every way.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr int kMostFrames = 8;
  tessa::ByteReader reader({data, size});
  const std::size_t frameSize = reader.U16Be();
  const tessa::ByteSpan frameFile = reader.Take(std::min(frameSize, reader.Remaining()));
  const QString path = tessa::fuzz::WriteInput("input.rti", reader.Take(reader.Remaining()));
  Require(tessa::FrameFilePath(path, 2).endsWith(QLatin1String("/input-001.APD")),
          "a frame file has its place");
  const QString framePath = tessa::fuzz::WriteInput("input-001.APD", frameFile);
  tessa::Session session(tessa::fuzz::InputFolder());
  session.ExtractsAttachments = false;
  tessa::Progress progress;
  tessa::OpenPath(path, session, progress);
  tessa::OpenImage& image = session.Image;
  const int width = image.ImageWidth;
  const int height = image.ImageHeight;
  for (int frame = 0; frame <= std::min(image.SeqHeader.Frames, kMostFrames) + 1; ++frame) {
    image.CurrentFrame = frame;
    tessa::ShowFrame(frame % 2 == 0, session, progress);
    tessa::fuzz::RequireGoodImage(session);
    tessa::ShowFrameFile(frame % 2 == 0, session, progress);
    tessa::ShowFrameFromFile(session, progress);
    tessa::fuzz::RequireGoodImage(session);
    Require(image.ImageWidth == width && image.ImageHeight == height, "all frames have one size");
  }
  QFile::remove(path);
  QFile::remove(framePath);
  return 0;
}
