#pragma once

#include <CLI/App.hpp>
#include <optional>
#include <string>

#include "tool/card_download.h"

namespace tessa {

/// The tool's commands for a camera's memory card: "card list", "card download" and
/// "card delete-all".
class CardCommands {
 public:
  explicit CardCommands(CLI::App& tool);
  CardCommands(const CardCommands&) = delete;
  CardCommands& operator=(const CardCommands&) = delete;

  /// Runs whichever of them was called and returns the exit status; nothing when none was.
  std::optional<int> Run() const;

 private:
  void AddDownload();
  int List() const;
  int Download() const;
  int DeleteAll() const;

  CLI::App* command_;
  CLI::App* listCommand_;
  CLI::App* downloadCommand_;
  CLI::App* deleteCommand_;
  std::string card_;
  bool json_ = false;
  bool yes_ = false;

  std::string to_;
  std::string folder_;
  bool sit_ = false;
  bool bmp_ = false;
  bool jpg_ = false;
  std::string quality_;
  std::string scale_ = "camera";
  std::string unit_ = "C";
  std::string palette_ = "0";
  bool bar_ = false;
  bool date_ = false;
  bool time_ = false;
  bool emissivity_ = false;
  bool extremes_ = false;
  bool memo_ = false;
  bool visible_ = false;
  bool replace_ = false;
  bool skip_ = false;
  int jobs_ = 0;
};

}  // namespace tessa
