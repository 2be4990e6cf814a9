#include <algorithm>

#include "formats/frame_array.h"
#include "require.h"

using tessa::fuzz::Require;

/// The first two bytes are the size that is asked for, the others the array.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tessa::ByteReader reader({data, size});
  const int width = reader.U8();
  const int height = reader.U8();
  const tessa::ByteSpan array = reader.Take(reader.Remaining());
  const tessa::FrameArrayHeader header = tessa::ReadFrameArrayHeader(array);
  const auto frame = tessa::DecodeFrameArray(array, width, height);
  if (!frame) {
    return 0;
  }
  Require(header.Describes(width, height), "only an array of the asked size is a frame");
  Require(header.ByteSize() <= array.size(), "a frame lies in its bytes");
  Require(frame->Pixels.size() == static_cast<std::size_t>(width * height),
          "it has all its pixels");
  const tessa::Bytes again =
      tessa::EncodeFrameArray(width, height, frame->Pixels, header.BytesPerElement);
  Require(again.size() == header.ByteSize(), "the size is that of the elements");
  Require(std::equal(again.begin() + tessa::kFrameArrayHeaderSize, again.end(),
                     array.begin() + tessa::kFrameArrayHeaderSize),
          "elements survive a round trip");
  return 0;
}
