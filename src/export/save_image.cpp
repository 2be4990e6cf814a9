#include "export/save_image.h"

#include <algorithm>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/units.h"
#include "export/composite.h"
#include "formats/txi_words.h"

namespace tessa {
namespace {

constexpr int kQuality = 95;

/// The open file's exact path less its last `cut` characters, with `ending`.
QString Suggest(const OpenImage& image, int cut, const QString& ending) {
  return image.CurrentFilePath.chopped(std::min<qsizetype>(cut, image.CurrentFilePath.size())) +
         ending;
}

bool IsOpen(const Session& session) {
  return !session.Image.CurrentFile.isEmpty();
}

void WriteBmp(Picbuf& source, const QString& path, StepLog& steps) {
  source.FileType = Picbuf::kBmp;
  source.FileName = path;
  steps.Run("save BMP", [&] { source.SaveFile(); });
}

/// Saves at quality 95 and brings the buffer back to its resting state.
void WriteJpeg(Picbuf& source, const QString& path, StepLog& steps) {
  source.FileType = Picbuf::kJpeg;
  source.JpegQuality = source.JpegQuality2 = kQuality;
  source.FileName = path;
  steps.Run("save JPEG", [&] { source.SaveFile(); });
  source.JpegQuality = source.JpegQuality2 = 0;
  source.FileName.clear();
  source.FileType = Picbuf::kBmp;
}

/// Image with bar, image alone, or nothing when the user cancelled.
Picbuf* AskForSource(const QString& question, Session& session, Dialogs& dialogs) {
  switch (dialogs.AskYesNoCancel(question)) {
    case Answer::kYes:
      BuildPaletteView(session);
      return &session.Buffers.Picbuf3;
    case Answer::kNo:
      return &session.Buffers.Picbuf1;
    case Answer::kCancel:
      break;
  }
  return nullptr;
}

std::optional<QString> AskForComposite(const QString& ending, const QString& filter,
                                       Session& session, Dialogs& dialogs) {
  if (!IsOpen(session)) {
    return std::nullopt;
  }
  return dialogs.AskSaveFile(
      {Suggest(session.Image, 4, QStringLiteral("-COMP.") + ending),
       {filter + QStringLiteral(" (*.%1 *.%2)").arg(ending, ending.toLower())},
       ending});
}

void CopyWhole(const Picbuf& buffer, StepLog& steps) {
  steps.Run("copy to clipboard", [&] { buffer.CopyToClipboard(true); });
}

}  // namespace

void SaveBmp(Session& session, Dialogs& dialogs) {
  if (!IsOpen(session)) {
    return;
  }
  const Strings& words = session.Words;
  Picbuf* const source =
      AskForSource(words.LangString(154, "Do you wish to Save Temperature Data in the BITMAP"),
                   session, dialogs);
  if (source == nullptr) {
    return;
  }
  const auto path =
      dialogs.AskSaveFile({Suggest(session.Image, 3, QStringLiteral("BMP")),
                           {QStringLiteral("Bitmap ") + words.LangString(168, "File") +
                                QStringLiteral(" (*.BMP *.bmp)"),
                            words.LangString(291, "All Images") + QStringLiteral(" (*)")},
                           QStringLiteral("BMP")});
  if (path) {
    WriteBmp(*source, *path, session.Steps);
  }
}

void SaveJpeg(Session& session, Dialogs& dialogs) {
  if (!IsOpen(session)) {
    return;
  }
  // This question stays English in every language.
  Picbuf* const source = AskForSource(
      QStringLiteral("Do You Wish To Include the Palette Bar In The JPEG"), session, dialogs);
  if (source == nullptr) {
    return;
  }
  const auto path = dialogs.AskSaveFile(
      {Suggest(session.Image, 3, QStringLiteral("JPG")),
       {QStringLiteral("JPEG Files (*.JPG *.jpg)"), QStringLiteral("All Files (*)")},
       QStringLiteral("JPG")});
  if (path) {
    WriteJpeg(*source, *path, session.Steps);
  }
}

bool CanSaveTxi(const OpenImage& image) {
  return !image.CurrentFile.isEmpty() &&
         (image.ImageKind == KindRti || (image.ImageKind == KindBmp && image.HasTemperature));
}

void SaveTxi(Session& session, Dialogs& dialogs) {
  OpenImage& image = session.Image;
  if (!CanSaveTxi(image)) {
    return;
  }
  const QString name = image.ImageKind == KindRti
                           ? FolderOfPath(image.CurrentFilePath) + QStringLiteral("/Frame") +
                                 QString::number(image.CurrentFrame) + QStringLiteral(".TXI")
                           : Suggest(image, 4, QStringLiteral(".TXI"));
  const auto path = dialogs.AskSaveFile(
      {name, {QStringLiteral("TXI Files (*.TXI *.txi)")}, QStringLiteral("TXI")});
  if (!path) {
    return;
  }
  Picbuf& picture = session.Buffers.Picbuf1;
  picture.FileType = Picbuf::kBmp;
  // A limit that no word can hold leaves the word of an ordinary bitmap.
  const auto word = [&](double shown) {
    return EncodeTxiWord(FromDisplayUnits(shown, image.FileUnits)).value_or(0);
  };
  session.Steps.Run("save TXI", [&] {
    WriteWholeFile(
        *path,
        EncodeBmp8(picture.BufWidth(), picture.BufHeight(), picture.Pixels(), picture.Stride(),
                   picture.Palette(), word(image.ShownLow), word(image.ShownHigh)),
        Overwrite::kReplace);
  });
  picture.FileName = image.CurrentFilePath;
}

void SaveCompositeBmp(Session& session, Dialogs& dialogs) {
  const auto path =
      AskForComposite(QStringLiteral("BMP"), QStringLiteral("Bitmap Files"), session, dialogs);
  if (path) {
    BuildCompositeView(session);
    WriteBmp(session.Buffers.Picbuf3, *path, session.Steps);
    session.Buffers.Picbuf3.FileName.clear();
  }
}

void SaveCompositeJpeg(Session& session, Dialogs& dialogs) {
  const auto path =
      AskForComposite(QStringLiteral("JPG"), QStringLiteral("JPEG Files"), session, dialogs);
  if (path) {
    BuildCompositeView(session);
    WriteJpeg(session.Buffers.Picbuf3, *path, session.Steps);
  }
}

void SaveVisible(const QString& ending, Picbuf& picture, Session& session, Dialogs& dialogs) {
  const bool isJpeg = ending == QLatin1String("JPG");
  const auto path =
      dialogs.AskSaveFile({Suggest(session.Image, 4, QStringLiteral("-VIS.") + ending),
                           {(isJpeg ? QStringLiteral("JPEG ") : QStringLiteral("Bitmap ")) +
                            session.Words.LangString(168, "File") +
                            QStringLiteral(" (*.%1 *.%2)").arg(ending, ending.toLower())},
                           ending});
  if (path && isJpeg) {
    WriteJpeg(picture, *path, session.Steps);
  } else if (path) {
    WriteBmp(picture, *path, session.Steps);
    picture.FileName.clear();
  }
  // The resting state of this buffer.
  picture.FileType = Picbuf::kJpeg;
  picture.JpegQuality = picture.JpegQuality2 = kQuality;
}

void CopyImage(Session& session) {
  CopyWhole(session.Buffers.Picbuf1, session.Steps);
}

void CopyPaletteBar(Session& session) {
  BuildPaletteView(session);
  CopyWhole(session.Buffers.PicBuf6, session.Steps);
}

void CopyImageWithPaletteBar(Session& session) {
  BuildPaletteView(session);
  CopyWhole(session.Buffers.Picbuf3, session.Steps);
}

void CopyVisible(Session& session) {
  CopyWhole(session.Visible.Picbuf3, session.Steps);
}

void CopyComposite(Session& session) {
  BuildCompositeView(session);
  CopyWhole(session.Buffers.Picbuf3, session.Steps);
}

}  // namespace tessa
