#include "open/visible_image.h"

#include <QFile>
#include <algorithm>
#include <limits>

namespace tessa {
namespace {

constexpr int kVisibleWidth = 640;
constexpr int kVisibleHeight = 480;
constexpr int kVisibleQuality = 95;

bool StartsAsJpeg(ByteSpan bytes) {
  return bytes.size() >= 2 && bytes[0] == 0xFF && bytes[1] == 0xD8;
}

/// Stretches the temporary file's picture, less its last column, to the size that it is shown in.
void ScaleVisible(const QString& path, Session& session) {
  Picbuf& shown = session.Visible.Picbuf3;
  Picbuf& loaded = session.Visible.PicBuf2;
  session.Steps.Run("create visible buffer",
                    [&] { shown.CreateBuffer(0, kVisibleHeight, kVisibleWidth, 24); });
  shown.FileName = loaded.FileName = path;
  shown.FileType = loaded.FileType = Picbuf::kJpeg;
  session.Steps.Run("load visible picture", [&] {
    Problems faults;
    try {
      loaded.LoadFile(faults);
    } catch (const StepFailure& failure) {
      // The infrared picture stands all the same.
      session.Faults.push_back(
          {ProblemKind::kBadValue, 0, "VisibleImage",
           std::string("the visible picture cannot be shown: ") + failure.what(), false});
      throw;
    }
  });
  loaded.SelLeft = loaded.SelTop = shown.SelLeft = shown.SelTop = 0;
  loaded.SelWidth = loaded.BufWidth() - 1;
  loaded.SelHeight = loaded.BufHeight();
  shown.SelWidth = shown.BufWidth();
  shown.SelHeight = shown.BufHeight();
  session.Steps.Run("scale visible picture", [&] { shown.CopyFrom(true, loaded, true); });
  loaded.FreeBuffer();
}

}  // namespace

Bytes CutOutVisible(const RandomFile& file, std::uint64_t position) {
  if (position == 0 || file.Size() <= position || !StartsAsJpeg(file.ReadAt(position - 1, 2))) {
    return {};
  }
  return file.ReadAt(position - 1, std::numeric_limits<std::uint64_t>::max());
}

void ExtractVisible(std::uint64_t position, Session& session) {
  OpenImage& image = session.Image;
  image.HasVisibleImage = false;
  session.View.VisibleImageEntries = false;
  if (position == 0) {
    return;
  }
  session.Steps.Run("extract visible picture", [&] {
    const auto file = RandomFile::Open(image.CurrentFilePath, session.Faults);
    if (!file) {
      throw StepFailure(session.Faults.back().Text);
    }
    if (file->Size() <= position || !StartsAsJpeg(file->ReadAt(position - 1, 2))) {
      session.Faults.push_back(
          {ProblemKind::kBadValue, std::min(position - 1, file->Size()), "VisibleImage",
           "the header promises a visible picture, but no JPEG starts there", false});
      throw StepFailure(session.Faults.back().Text);
    }
    image.HasVisibleImage = true;
    session.View.VisibleImageEntries = true;
    if (!session.ExtractsAttachments) {
      return;
    }
    const QString path = session.Folder.TemporaryFile(kVisibleFileName);
    WriteWholeFile(path, CutOutVisible(*file, position), Overwrite::kReplace);
    ScaleVisible(path, session);
    Picbuf& shown = session.Visible.Picbuf3;
    shown.JpegQuality = shown.JpegQuality2 = kVisibleQuality;
    session.Steps.Run("save visible picture", [&] { shown.SaveFile(); });
  });
}

}  // namespace tessa
