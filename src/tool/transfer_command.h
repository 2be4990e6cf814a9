#pragma once

#include <string>
#include <vector>

namespace tessa {

/// The arguments of the tool's commands copy and move.
struct BringCall {
  std::vector<std::string> Files;
  std::string To;  // Folder.
  bool Moves = false;
  bool EmbedSounds = false;
  bool Replace = false;
  bool Skip = false;
};

/// Brings images and their sound files into a folder; returns the exit status.
int RunBring(const BringCall& call);
/// Deletes images and their sound files; returns the exit status.
int RunDelete(const std::vector<std::string>& files);

}  // namespace tessa
