#include "tool/note_command.h"

#include <QJsonDocument>
#include <QJsonObject>

#include "browser/image_note.h"
#include "core/plain_line.h"
#include "tool/streams.h"

namespace tessa {
namespace {

void Print(const ImageNote& note, bool json) {
  if (json) {
    const QJsonObject object = {{QStringLiteral("Comment"), note.Comment},
                                {QStringLiteral("Memo"), note.Memo}};
    PrintOut(PlainJson(QJsonDocument(object).toJson()));
  } else {
    PrintOut(QByteArray::fromStdString("Comment: " + PlainUtf8(note.Comment) +
                                       "\nMemo: " + PlainUtf8(note.Memo) + '\n'));
  }
}

}  // namespace

int RunNote(const NoteCall& call) {
  const QString path = FromArgument(call.Image);
  try {
    const auto text = [](const std::optional<std::string>& argument) {
      return argument ? std::optional(FromArgument(*argument)) : std::nullopt;
    };
    const bool changes = call.Comment || call.Memo;
    if (changes) {
      SaveImageNote(path, {text(call.Comment), text(call.Memo)}, Strings());
    }
    if (!changes || call.Json) {
      Print(ReadImageNote(path), call.Json);
    }
    return kToolDone;
  } catch (const std::exception& failure) {
    PrintError(path, failure.what());
    return kToolFailed;
  }
}

}  // namespace tessa
