#pragma once

#include <string>
#include <vector>

namespace tessa {

/// The arguments of the tool's export command.
struct ExportCall {
  std::vector<std::string> Files;
  std::string Out;
  std::string Folder;
  std::string To;
  std::string Palette = "0";
  std::string Range = "stored";
  std::string Unit = "C";
  int Frame = 0;
  int Jobs = 0;  // 0: as many as there are processors.
  bool Bar = false;
  bool Composite = false;
  bool Visible = false;
  bool Reverse = false;
  bool Force = false;
};

/// Exports every image of the call; returns the exit status.
int RunExport(const ExportCall& call);

}  // namespace tessa
