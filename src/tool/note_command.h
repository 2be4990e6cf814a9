#pragma once

#include <CLI/App.hpp>
#include <optional>
#include <string>

namespace tessa {

/// The tool's command "note": shows and changes the comment and the memo of an image.
class NoteCommand {
 public:
  explicit NoteCommand(CLI::App& tool);
  NoteCommand(const NoteCommand&) = delete;
  NoteCommand& operator=(const NoteCommand&) = delete;

  /// Runs it when it was called and returns the exit status; nothing when it was not.
  std::optional<int> Run() const;

 private:
  CLI::App* command_;
  std::string image_;
  std::optional<std::string> comment_;
  std::optional<std::string> memo_;
  bool json_ = false;
};

}  // namespace tessa
