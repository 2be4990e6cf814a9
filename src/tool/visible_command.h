#pragma once

#include <string>

namespace tessa {

/// The arguments of the tool's visible command.
struct VisibleCall {
  std::string File;
  std::string Out;
  bool Force = false;
};

/// Writes the JPEG inside a SIT image as it is; returns the exit status.
int RunVisible(const VisibleCall& call);

}  // namespace tessa
