#include "export/save_image.h"

#include <QScopeGuard>
#include <algorithm>
#include <functional>
#include <optional>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/tell.h"
#include "core/units.h"
#include "export/composite.h"
#include "formats/txi_words.h"
#include "open/no_picture.h"

namespace tessa {
namespace {

constexpr int kQuality = 95;

/// The open file's exact path less its last `cut` characters, with `ending`.
QString Suggest(const OpenImage& image, int cut, const QString& ending) {
  return image.CurrentFilePath.chopped(std::min<qsizetype>(cut, image.CurrentFilePath.size())) +
         ending;
}

/// True when there is something to save or to copy; otherwise the user is told that there is not.
bool HasPictureOrTell(Session& session) {
  if (HasPicture(session)) {
    return true;
  }
  Tell(NoticeKind::kQuiet, session.Words.LangString(436, "There is no image to save or to copy."),
       session.View);
  return false;
}

/// Why `step` failed, in plain words; nothing when it came through.
std::optional<QString> FailureOf(const char* name, const std::function<void()>& step,
                                 StepLog& steps) {
  std::string reason;
  const bool done = steps.Run(name, [&] {
    try {
      step();
    } catch (const std::exception& failure) {
      reason = failure.what();
      throw;
    }
  });
  return done ? std::nullopt : std::optional(QString::fromStdString(reason));
}

QString NameOfPath(const QString& path) {
  return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

/// The folder that is there on the way to `path`.
QString NearestFolder(const QString& path) {
  QString folder = FolderOfPath(path);
  while (!IsFolder(folder) && folder != FolderOfPath(folder)) {
    folder = FolderOfPath(folder);
  }
  return folder;
}

/// Asks for a place and writes there. A place that cannot be written is told and asked for anew,
/// from a folder that is there, until the user cancels or insists on the place that was refused
/// last. True when the file is written.
bool AskAndSave(SaveFileQuestion question, const char* step, Session& session, Dialogs& dialogs,
                const std::function<void(const QString& path)>& write) {
  const Strings& words = session.Words;
  QString refused;
  while (const auto path = dialogs.AskSaveFile(question)) {
    const QString name = NameOfPath(*path);
    const auto failure = FailureOf(
        step, [&] { write(*path); }, session.Steps);
    if (!failure) {
      Tell(NoticeKind::kQuiet, words.LangString(434, "Saved %1").arg(ShownPath(name)),
           session.View);
      return true;
    }
    const QString folder = FolderOfPath(*path);
    // The path, with which a reason begins, stands in the sentence already.
    const QString reason =
        IsFolder(folder)
            ? QString(*failure).remove(*path + QLatin1String(" cannot be written: "))
            : words.LangString(449, "the folder %1 is not there").arg(ShownPath(folder));
    question.Refusal = words.LangString(435, "Could not save %1: %2").arg(ShownPath(name), reason);
    question.Suggestion = NearestFolder(*path) + QLatin1Char('/') + name;
    Tell(NoticeKind::kFailed, question.Refusal, session.View);
    if (*path == refused) {
      break;
    }
    refused = *path;
  }
  return false;
}

void WriteBmp(Picbuf& source, const QString& path) {
  source.FileType = Picbuf::kBmp;
  source.FileName = path;
  source.SaveFile();
}

/// Saves at quality 95; whatever came of it, the buffer is back in its resting state.
void WriteJpeg(Picbuf& source, const QString& path) {
  const auto rest = qScopeGuard([&] {
    source.JpegQuality = source.JpegQuality2 = 0;
    source.FileName.clear();
    source.FileType = Picbuf::kBmp;
  });
  source.FileType = Picbuf::kJpeg;
  source.JpegQuality = source.JpegQuality2 = kQuality;
  source.FileName = path;
  source.SaveFile();
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

/// Asks where the composite goes; it is built only after the answer.
void SaveComposite(const QString& ending, const QString& filter, Session& session, Dialogs& dialogs,
                   void (*write)(Picbuf& source, const QString& path)) {
  if (!HasPictureOrTell(session)) {
    return;
  }
  AskAndSave({Suggest(session.Image, 4, QStringLiteral("-COMP.") + ending),
              {filter + QStringLiteral(" (*.%1 *.%2)").arg(ending, ending.toLower())},
              ending,
              {}},
             "save composite", session, dialogs, [&](const QString& path) {
               BuildCompositeView(session);
               write(session.Buffers.Picbuf3, path);
             });
  session.Buffers.Picbuf3.FileName.clear();
}

void CopyWhole(const Picbuf& buffer, Session& session) {
  const auto failure = FailureOf(
      "copy to clipboard", [&] { buffer.CopyToClipboard(true); }, session.Steps);
  if (failure) {
    Tell(NoticeKind::kFailed, session.Words.LangString(440, "Could not copy: %1").arg(*failure),
         session.View);
  }
}

}  // namespace

void SaveBmp(Session& session, Dialogs& dialogs) {
  if (!HasPictureOrTell(session)) {
    return;
  }
  const Strings& words = session.Words;
  Picbuf* const source =
      AskForSource(words.LangString(154, "Do you wish to Save Temperature Data in the BITMAP"),
                   session, dialogs);
  if (source == nullptr) {
    return;
  }
  AskAndSave({Suggest(session.Image, 3, QStringLiteral("BMP")),
              {QStringLiteral("Bitmap ") + words.LangString(168, "File") +
                   QStringLiteral(" (*.BMP *.bmp)"),
               words.LangString(291, "All Images") + QStringLiteral(" (*)")},
              QStringLiteral("BMP"),
              {}},
             "save BMP", session, dialogs, [&](const QString& path) { WriteBmp(*source, path); });
}

void SaveJpeg(Session& session, Dialogs& dialogs) {
  if (!HasPictureOrTell(session)) {
    return;
  }
  // This question stays English in every language.
  Picbuf* const source = AskForSource(
      QStringLiteral("Do You Wish To Include the Palette Bar In The JPEG"), session, dialogs);
  if (source == nullptr) {
    return;
  }
  AskAndSave({Suggest(session.Image, 3, QStringLiteral("JPG")),
              {QStringLiteral("JPEG Files (*.JPG *.jpg)"), QStringLiteral("All Files (*)")},
              QStringLiteral("JPG"),
              {}},
             "save JPEG", session, dialogs, [&](const QString& path) { WriteJpeg(*source, path); });
}

bool CanSaveTxi(const OpenImage& image) {
  return !image.CurrentFile.isEmpty() &&
         (image.ImageKind == KindRti || (image.ImageKind == KindBmp && image.HasTemperature));
}

void SaveTxi(Session& session, Dialogs& dialogs) {
  OpenImage& image = session.Image;
  if (!HasPictureOrTell(session)) {
    return;
  }
  if (!CanSaveTxi(image)) {
    Tell(NoticeKind::kQuiet,
         session.Words.LangString(
             437, "Only snapshots, and bitmaps with temperatures, can be saved as TXI."),
         session.View);
    return;
  }
  const QString name = image.ImageKind == KindRti
                           ? FolderOfPath(image.CurrentFilePath) + QStringLiteral("/Frame") +
                                 QString::number(image.CurrentFrame) + QStringLiteral(".TXI")
                           : Suggest(image, 4, QStringLiteral(".TXI"));
  Picbuf& picture = session.Buffers.Picbuf1;
  picture.FileType = Picbuf::kBmp;
  // A limit that no word can hold leaves the word of an ordinary bitmap.
  const auto word = [&](double shown) {
    return EncodeTxiWord(FromDisplayUnits(shown, image.FileUnits)).value_or(0);
  };
  AskAndSave({name, {QStringLiteral("TXI Files (*.TXI *.txi)")}, QStringLiteral("TXI"), {}},
             "save TXI", session, dialogs, [&](const QString& path) {
               WriteWholeFile(path,
                              EncodeBmp8(picture.BufWidth(), picture.BufHeight(), picture.Pixels(),
                                         picture.Stride(), picture.Palette(), word(image.ShownLow),
                                         word(image.ShownHigh)),
                              Overwrite::kReplace);
             });
  picture.FileName = image.CurrentFilePath;
}

void SaveCompositeBmp(Session& session, Dialogs& dialogs) {
  SaveComposite(QStringLiteral("BMP"), QStringLiteral("Bitmap Files"), session, dialogs, WriteBmp);
}

void SaveCompositeJpeg(Session& session, Dialogs& dialogs) {
  SaveComposite(QStringLiteral("JPG"), QStringLiteral("JPEG Files"), session, dialogs, WriteJpeg);
}

void SaveVisible(const QString& ending, Picbuf& picture, Session& session, Dialogs& dialogs) {
  const bool isJpeg = ending == QLatin1String("JPG");
  AskAndSave({Suggest(session.Image, 4, QStringLiteral("-VIS.") + ending),
              {(isJpeg ? QStringLiteral("JPEG ") : QStringLiteral("Bitmap ")) +
               session.Words.LangString(168, "File") +
               QStringLiteral(" (*.%1 *.%2)").arg(ending, ending.toLower())},
              ending,
              {}},
             "save visible picture", session, dialogs,
             [&](const QString& path) { (isJpeg ? WriteJpeg : WriteBmp)(picture, path); });
  // The resting state of this buffer.
  picture.FileName.clear();
  picture.FileType = Picbuf::kJpeg;
  picture.JpegQuality = picture.JpegQuality2 = kQuality;
}

void CopyImage(Session& session) {
  if (HasPictureOrTell(session)) {
    CopyWhole(session.Buffers.Picbuf1, session);
  }
}

void CopyPaletteBar(Session& session) {
  if (HasPictureOrTell(session)) {
    BuildPaletteView(session);
    CopyWhole(session.Buffers.PicBuf6, session);
  }
}

void CopyImageWithPaletteBar(Session& session) {
  if (HasPictureOrTell(session)) {
    BuildPaletteView(session);
    CopyWhole(session.Buffers.Picbuf3, session);
  }
}

void CopyVisible(Session& session) {
  if (HasPictureOrTell(session)) {
    CopyWhole(session.Visible.Picbuf3, session);
  }
}

void CopyComposite(Session& session) {
  if (HasPictureOrTell(session)) {
    BuildCompositeView(session);
    CopyWhole(session.Buffers.Picbuf3, session);
  }
}

}  // namespace tessa
