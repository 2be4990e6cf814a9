#pragma once

#include <optional>
#include <string>

namespace tessa {

/// The arguments of the tool's note command.
struct NoteCall {
  std::string Image;
  std::optional<std::string> Comment;  // New texts; none: they are only shown.
  std::optional<std::string> Memo;
  bool Json = false;
};

/// Shows or changes the comment and the memo of an image; returns the exit status.
int RunNote(const NoteCall& call);

}  // namespace tessa
