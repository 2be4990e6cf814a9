#pragma once

#include <string>

namespace tessa {

// The tool's commands for a camera's memory card, which is any folder.

struct CardListCall {
  std::string Card;
  bool Json = false;
};

struct CardDownloadCall {
  std::string Card;
  std::string To;      // Folder.
  std::string Folder;  // Of the card; empty: all.
  bool Sit = false;
  bool Bmp = false;
  bool Jpg = false;
  std::string Quality;
  std::string Scale = "camera";
  std::string Unit = "C";
  std::string Palette = "0";
  bool Bar = false;
  bool Date = false;
  bool Time = false;
  bool Emissivity = false;
  bool Extremes = false;
  bool Memo = false;
  bool Visible = false;
  bool Replace = false;
  bool Skip = false;
  int Jobs = 0;  // 0: as many as there are processors.
};

// Each returns the exit status.

/// Lists folders and images.
int RunCardList(const CardListCall& call);
/// Brings images into a folder.
int RunCardDownload(const CardDownloadCall& call);
/// Deletes all images.
int RunCardDeleteAll(const std::string& card);

}  // namespace tessa
