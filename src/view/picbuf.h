#pragma once

#include <QImage>
#include <QSize>
#include <QString>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "formats/bmp.h"
#include "formats/problem.h"
#include "view/loaded_picture.h"

namespace tessa {

inline constexpr Colour kWhite = 0xFFFFFF;

/// An image buffer: pixels of 8 bits (palette indices) or 24 bits (colours), a palette, a selection
/// rectangle, simple drawing, picture files, and the settings of its zoomed view. Owned by the
/// ViewBuffers of a session or by a window. An operation that cannot do its work throws StepFailure
/// or std::out_of_range and leaves the buffer as it was; callers run it as a step.
class Picbuf {
 public:
  // Values of FileType.
  static constexpr int kTiff = 1;
  static constexpr int kBmp = 3;
  static constexpr int kJpeg = 7;

  // Size in pixels, each side at most 32767; 0 for a buffer that was never filled.
  int BufWidth() const { return width_; }
  int BufHeight() const { return height_; }
  int BufDepth() const { return depth_; }

  // The selection rectangle, pixels.
  int SelLeft = 0;
  int SelTop = 0;
  int SelWidth = 0;
  int SelHeight = 0;

  QString FileName;  // Exact path for LoadFile and SaveFile.
  int FileType = kBmp;
  int JpegQuality = 0;  // 0 to 100.
  int JpegQuality2 = 0;

  QString Text;  // What DrawSelText draws.
  Colour ForeColor = 0;
  int TextAlign = 1;  // 1 left, 2 centred.
  int TextOptionA = 0;
  int TextOptionB = 0;

  // How the buffer is shown: screen pixels per image pixel is ZoomNumerator / ZoomDenominator, and
  // Xpan, Ypan is the image position at the view's origin.
  double ZoomNumerator = 1.0;
  double ZoomDenominator = 1.0;
  int Xpan = 0;
  int Ypan = 0;

  /// Called by Refresh and by every change of pixels or palette; set by the widget that shows the
  /// buffer.
  std::function<void()> Changed;

  // Creation, files, conversion.
  void CreateBuffer(Colour fill, int height, int width, int bits);
  /// Reads FileName as FileType says. What was wrong with the file, also after a success, is added
  /// to `faults`.
  void LoadFile(Problems& faults, PictureUse use = PictureUse::kColours);
  /// The picture becomes this buffer's.
  void Take(LoadedPicture&& picture);
  /// Writes FileName as FileType says (BMP or JPEG), replacing an older file as a whole.
  void SaveFile() const;
  void FreeBuffer();
  void ConvertDepth(int bits);
  /// Luminance (299 R + 587 G + 114 B + 500) / 1000 as indices into a grey palette.
  void ReduceTo8Bit();

  // Pixels and palette.
  /// One cell a pixel: the index, or the colour in a 24-bit buffer. A row array that is too short
  /// for the row is filled as far as it goes, then std::out_of_range is thrown.
  void GetRow(std::span<std::int32_t> cells, int row) const;
  /// The same in cells of 8 bits, for an 8-bit buffer alone.
  void GetRow(std::span<std::uint8_t> cells, int row) const;
  /// The low 8 bits of each cell count in an 8-bit buffer. A row array that is too short for the
  /// row is refused.
  void PutRow(std::span<const std::int32_t> cells, int row);
  void PutRow(std::span<const std::uint8_t> cells, int row);
  /// The indices of one row of an 8-bit buffer, for writing in place.
  std::span<std::uint8_t> IndexRow(int row);
  void CreatePalette(const ColourTable& table);
  void SetPaletteTable(const ColourTable& table) { CreatePalette(table); }
  void UpdatePalette() { Refresh(); }
  Colour GetPaletteColor(int index) const;
  void SetPaletteColor(Colour colour, int index);
  const ColourTable& Palette() const { return palette_; }

  // Selection copy and drawing.
  /// Copies the selections or the wholes that the flags name, stretched to the nearest neighbour
  /// where sizes differ, in the depth of this buffer. What of a selection lies outside its buffer
  /// is passed over. Without any selection this buffer becomes a whole copy of the source.
  void CopyFrom(bool useSourceSelection, const Picbuf& source, bool useOwnSelection);
  void DrawSelFrame();
  /// Draws Text from the top of the selection on, line by line; what does not fit is cut off. Needs
  /// a QGuiApplication for its fonts.
  void DrawSelText();
  /// Straight lines through points x, y, x, y ...
  void DrawPolyline(std::span<const std::int32_t> points);
  void CopyToClipboard(bool whole) const;
  /// The picture for anything of the toolkit that shows one.
  QImage ViewPicture() const { return ToImage().copy(); }

  // View.
  /// 0-based image column under client position `clientX` (logical pixels of the control).
  int ClientToImageX(int clientX) const;
  int ClientToImageY(int clientY) const;
  void ScrollView(int vertical, int horizontal);
  void Refresh();

  /// The pixels as a picture of the toolkit that shares this buffer's memory: valid until the
  /// buffer next changes.
  QImage ToImage() const;
  std::span<const std::uint8_t> Pixels() const { return pixels_; }
  /// Bytes from one row to the next.
  std::size_t Stride() const { return stride_; }

 private:
  struct Area {
    int Left;
    int Top;
    int Width;
    int Height;
  };

  void Allocate(int width, int height, int depth);
  Area Selection() const;
  std::uint8_t* PixelAt(int column, int row);
  const std::uint8_t* PixelAt(int column, int row) const;
  Colour ColourAt(int column, int row) const;
  void PutColour(int column, int row, Colour colour);
  /// Copies the named columns (-1: none) of a row of `source` to the pixels from `left` on.
  void CopyRow(const Picbuf& source, int sourceRow, std::span<const int> sourceColumns, int left,
               int row);
  void DrawLine(int x0, int y0, int x1, int y1);
  std::uint8_t NearestIndex(Colour colour) const;
  Bytes Encode() const;

  int width_ = 0;
  int height_ = 0;
  int depth_ = 0;
  std::size_t stride_ = 0;  // Rounded up to 4 bytes.
  std::vector<std::uint8_t> pixels_;
  ColourTable palette_{};
};

/// Width and height of `text` as DrawSelText draws it, pixels. Needs a QGuiApplication.
QSize MeasureText(const QString& text);

}  // namespace tessa
