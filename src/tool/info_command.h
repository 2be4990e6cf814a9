#pragma once

#include <string>
#include <vector>

namespace tessa {

/// The arguments of the tool's info command.
struct InfoCall {
  std::vector<std::string> Files;
  bool Json = false;
  bool Frames = false;  // List the frames of snapshots and sequences as well.
};

/// Says what is known about images; returns the exit status.
int RunInfo(const InfoCall& call);

}  // namespace tessa
