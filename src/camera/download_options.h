#pragma once

#include <QString>
#include <array>

namespace tessa {

/// What the user chose for a download, in the form in which the window's controls hold it: check
/// boxes are 0 or 1 (a file may say otherwise, and only 1 counts as ticked), boxes of text stay
/// unvalidated.
struct DownloadOptions {
  // Positions in Overlay.
  static constexpr int kDate = 0;
  static constexpr int kTime = 1;
  static constexpr int kEmissivity = 2;
  static constexpr int kExtremes = 3;
  static constexpr int kMemo = 4;
  static constexpr int kVisible = 5;
  // Values of Scale.
  static constexpr int kCameraScale = 0;
  static constexpr int kAutoScale = 1;
  static constexpr int kCustomScale = 2;

  QString TargetPath;    // Folder on disk, exact.
  int PaletteIndex = 0;  // Position in the palette list; kept even when no such palette exists.
  int Sit = 0;
  int Bmp = 0;
  int Jpeg = 0;
  QString JpegQuality;  // Counts from 5 to 100; anything else means 95.
  int Scale = kCameraScale;
  int Unit = 0;     // 0 degrees Celsius, 1 Fahrenheit.
  QString MinTemp;  // Limits of the custom scale as typed, in Unit.
  QString MaxTemp;
  int PaletteBar = 0;
  std::array<int, 6> Overlay{};
};

/// Takes a new unit and converts both custom limits to it; an empty one stays empty.
void ChooseUnit(int unit, DownloadOptions& options);

/// True when SIT, BMP or JPEG is wanted.
bool WantsAnyFormat(const DownloadOptions& options);
/// True when the images are to become pictures.
bool WantsPictures(const DownloadOptions& options);
/// Number of lines of the text below a picture.
int OverlayLines(const DownloadOptions& options);
/// The quality for JPEG pictures, 5 to 100.
int JpegQualityOf(const DownloadOptions& options);

}  // namespace tessa
