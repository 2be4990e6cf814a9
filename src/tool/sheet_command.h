#pragma once

#include <string>
#include <vector>

namespace tessa {

/// The arguments of the tool's sheet command.
struct SheetCall {
  std::vector<std::string> Files;
  std::string Out;
  std::string Printer;
  std::string Heading;  // Empty: the folder of the first file.
  std::string Palette = "0";
  bool Force = false;
};

/// Puts pictures of images, ten to a page, into a PDF file or on paper; returns the exit status.
int RunSheet(const SheetCall& call);

}  // namespace tessa
