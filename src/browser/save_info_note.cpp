#include "browser/save_info_note.h"

#include <sys/stat.h>

#include "browser/note_record.h"
#include "core/file_access.h"
#include "core/kinds.h"
#include "core/path_bytes.h"
#include "formats/ansi_text.h"

namespace tessa {
namespace {

const NoteRecord* RecordOf(const ImageInfo& info) {
  switch (KindOfName(ShownPath(info.FileName).toUpper().trimmed()).Name) {
    case FileKind::kSit:
      return &kSitRecord;
    case FileKind::kTmp:
      return info.Type == QLatin1String("3303 Image") ? &kLegacyRecord : &kTmpRecord;
    default:
      return nullptr;
  }
}

void ClearReadOnly(const QString& path) {
  const QByteArray name = PathToBytes(path);
  struct stat facts {};
  if (::stat(name.constData(), &facts) == 0 && (facts.st_mode & S_IWUSR) == 0) {
    ::chmod(name.constData(), (facts.st_mode & 07777) | S_IWUSR);
  }
}

std::string FieldBytes(const QString& text, const NoteField& field) {
  std::string ansi = Utf8ToAnsi(text.toStdString());
  ansi.resize(field.Size, '\0');
  return ansi;
}

}  // namespace

void SaveInfoNote(const ImageInfo& info, const ImageNote& texts, Session& session,
                  ThumbnailPages* pages) {
  const NoteRecord* const record = RecordOf(info);
  if (record == nullptr || info.Origin.isEmpty()) {
    return;
  }
  const QString comment = WithoutNone(texts.Comment, session.Words);
  const QString memo = WithoutNone(texts.Memo, session.Words);
  ClearReadOnly(info.FileName);
  WriteNote(info.FileName, *record,
            {FieldBytes(comment, record->Comment), FieldBytes(memo, record->Memo)});

  const QString none = session.Words.LangString(198, "None");
  const ImageNote shown = {comment.isEmpty() ? none : comment, memo.isEmpty() ? none : memo};
  bool isOpen = info.Origin == QLatin1String("-1");
  if (!isOpen && pages != nullptr) {
    Tile& tile = pages->Places.at(static_cast<std::size_t>(info.Origin.toInt())).Content;
    tile.Comment = shown.Comment;
    tile.Memo = shown.Memo;
    isOpen = IsSameFile(info.FileName, session.Image.CurrentFilePath);
  }
  if (isOpen) {
    session.View.Comment = shown.Comment;
    session.View.Memo = shown.Memo;
  }
}

}  // namespace tessa
