#pragma once

#include <CLI/App.hpp>
#include <optional>
#include <string>
#include <vector>

namespace tessa {

/// The tool's commands that move whole images about: "copy", "move" and "delete".
class TransferCommands {
 public:
  explicit TransferCommands(CLI::App& tool);
  TransferCommands(const TransferCommands&) = delete;
  TransferCommands& operator=(const TransferCommands&) = delete;

  /// Runs whichever of them was called and returns the exit status; nothing when none was.
  std::optional<int> Run() const;

 private:
  CLI::App* AddBringing(CLI::App& tool, const char* name, const char* description);
  int Bring(bool moves) const;
  int Delete() const;

  CLI::App* copyCommand_;
  CLI::App* moveCommand_;
  CLI::App* deleteCommand_;
  std::vector<std::string> files_;
  std::string to_;
  bool embedSounds_ = false;
  bool replace_ = false;
  bool skip_ = false;
  bool yes_ = false;
};

}  // namespace tessa
