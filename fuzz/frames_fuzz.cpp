#include <algorithm>

#include "formats/byte_reader.h"
#include "open/show_frame.h"
#include "session_input.h"

/// A size in two bytes, a frame file of this size that lies beside the sequence as its second
/// frame, and the sequence. Every frame is shown in every way.
FUZZ_ENTRY {
  constexpr int kMostFrames = 8;
  ByteReader reader({data, size});
  const std::size_t frameSize = reader.U16Be();
  const ByteSpan frameFile = reader.Take(std::min(frameSize, reader.Remaining()));
  const QString path = WriteInput("input.rti", reader.Take(reader.Remaining()));
  Require(FrameFilePath(path, 2).endsWith(QLatin1String("/input-001.APD")),
          "a frame file has its place");
  const QString framePath = WriteInput("input-001.APD", frameFile);
  Session session(InputFolder());
  session.ExtractsAttachments = false;
  Progress progress;
  OpenPath(path, session, progress);
  OpenImage& image = session.Image;
  const int width = image.ImageWidth;
  const int height = image.ImageHeight;
  for (int frame = 0; frame <= std::min(image.SeqHeader.Frames, kMostFrames) + 1; ++frame) {
    image.CurrentFrame = frame;
    ShowFrame(frame % 2 == 0, session, progress);
    RequireGoodImage(session);
    ShowFrameFile(frame % 2 == 0, session, progress);
    ShowFrameFromFile(session, progress);
    RequireGoodImage(session);
    Require(image.ImageWidth == width && image.ImageHeight == height, "all frames have one size");
  }
  QFile::remove(path);
  QFile::remove(framePath);
}
