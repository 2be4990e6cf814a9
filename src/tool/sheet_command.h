#pragma once

#include <CLI/App.hpp>
#include <optional>
#include <string>
#include <vector>

namespace tessa {

/// The tool's command "sheet": pictures of images, ten to a page, into a PDF file or on paper.
class SheetCommand {
 public:
  explicit SheetCommand(CLI::App& tool);
  SheetCommand(const SheetCommand&) = delete;
  SheetCommand& operator=(const SheetCommand&) = delete;

  /// Runs it and returns the exit status; nothing when it was not called.
  std::optional<int> Run() const;

 private:
  int WriteSheets() const;

  CLI::App* command_;
  std::vector<std::string> files_;
  std::string out_;
  std::string printer_;
  std::string heading_;
  std::string palette_ = "0";
  bool force_ = false;
};

}  // namespace tessa
