#pragma once

#include <CLI/App.hpp>
#include <optional>
#include <string>

namespace tessa {

/// The tool's command "thumbnail": what a tile of the browser shows of an image, as a PNG file.
class ThumbnailCommand {
 public:
  explicit ThumbnailCommand(CLI::App& tool);
  ThumbnailCommand(const ThumbnailCommand&) = delete;
  ThumbnailCommand& operator=(const ThumbnailCommand&) = delete;

  /// Runs it when it was called and returns the exit status; nothing when it was not.
  std::optional<int> Run() const;

 private:
  CLI::App* command_;
  std::string image_;
  std::string out_;
  std::string palette_ = "0";
  int size_ = 256;  // Longest side, pixels; 0: as large as the image, with its palette.
  bool force_ = false;
};

}  // namespace tessa
