#pragma once

#include <QString>
#include <optional>
#include <string>
#include <vector>

namespace tessa {

/// The arguments of the tool's frames command.
struct FramesCall {
  std::string File;
  std::string Prefix;
  std::string To;
  std::string Frames;  // "1-10,15"; empty: all.
  std::string Folder = ".";
  std::string Palette = "0";
  std::string Range = "stored";
  std::string Unit = "C";
  bool Reverse = false;
  bool Force = false;
};

/// The numbers in "1-10,15", each from 1 to `last`, in order and none twice; all when the text is
/// empty, nothing when it makes no sense.
std::optional<std::vector<int>> ParseFrames(const QString& text, int last);

/// Writes frames of a snapshot or sequence into files of their own, all in one range; returns the
/// exit status. Stopped early, it leaves whole files only.
int RunFrames(const FramesCall& call);

}  // namespace tessa
