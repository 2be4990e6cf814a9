#include "tool/note_command.h"

#include <CLI/CLI.hpp>
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

NoteCommand::NoteCommand(CLI::App& tool)
    : command_(tool.add_subcommand("note", "Show or change comment and memo of an image")) {
  command_->add_option("IMAGE", image_, "SIT or TMP image")->required();
  command_->add_option("--comment", comment_, "New comment; \"none\" clears it");
  command_->add_option("--memo", memo_, "New memo; \"none\" clears it");
  command_->add_flag("--json", json_, "One JSON object");
}

std::optional<int> NoteCommand::Run() const {
  if (!command_->parsed()) {
    return std::nullopt;
  }
  const QString path = FromArgument(image_);
  try {
    const auto text = [](const std::optional<std::string>& argument) {
      return argument ? std::optional(FromArgument(*argument)) : std::nullopt;
    };
    const bool changes = comment_ || memo_;
    if (changes) {
      SaveImageNote(path, {text(comment_), text(memo_)}, Strings());
    }
    if (!changes || json_) {
      Print(ReadImageNote(path), json_);
    }
    return kToolDone;
  } catch (const std::exception& failure) {
    PrintError(path, failure.what());
    return kToolFailed;
  }
}

}  // namespace tessa
