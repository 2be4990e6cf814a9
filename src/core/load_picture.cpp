#include "core/file_access.h"
#include "core/loaders.h"
#include "formats/bmp.h"

namespace tessa {
namespace {

constexpr std::uint64_t kBmpHeadersSize = kBmpFileHeaderSize + 40;

/// The common part of every plain picture: the file goes into the buffer as it is.
void LoadPicture(int fileType, ImageKindValue kind, Session& session) {
  OpenImage& image = session.Image;
  Picbuf& picture = session.Buffers.Picbuf1;
  image.ImageBusy = true;
  session.View.SequenceScaleVisible = false;
  picture.FileType = fileType;
  picture.FileName = image.CurrentFilePath;
  session.Steps.Run("load picture", [&] { picture.LoadFile(session.Faults); });
  image.ImageKind = kind;
}

}  // namespace

void LoadBmpOrTxi(Session& session) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  // The buffer reads the file once more and judges it as a whole; a file that cannot be read leaves
  // the header record as it was.
  Problems faults;
  session.Steps.Run("read bitmap headers", [&] {
    const auto file = ReadFileStart(image.CurrentFilePath, kBmpHeadersSize, faults);
    if (!file) {
      throw StepFailure(faults.front().Text);
    }
    ReadBmpHeaders(file->Data, image.BmpFileHeader, image.BmpInfoHeader, faults);
  });
  if (image.BmpFileHeader.Type != kBmpType) {
    session.Faults.insert(session.Faults.end(), faults.begin(), faults.end());
    return;
  }
  view.StatusPanel[5].clear();
  view.Comment.clear();
  view.Memo.clear();
  image.HasTemperature = false;
  view.RangeToggleVisible = false;
  LoadPicture(Picbuf::kBmp, KindBmp, session);
}

void LoadTiff(Session& session) {
  session.View.Comment.clear();
  session.View.Memo.clear();
  session.View.StatusPanel[5].clear();
  LoadPicture(Picbuf::kTiff, KindTiff, session);
}

void LoadJpeg(Session& session) {
  session.View.Comment.clear();
  session.View.Memo.clear();
  LoadPicture(Picbuf::kJpeg, KindJpeg, session);
}

}  // namespace tessa
