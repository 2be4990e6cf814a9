#pragma once

#include <QString>
#include <semaphore>

#include "camera/download_options.h"
#include "core/file_access.h"
#include "core/language_strings.h"
#include "core/pixel_stores.h"
#include "core/steps.h"
#include "formats/sit.h"
#include "view/palettes.h"
#include "view/picbuf.h"

namespace tessa {

/// Makes the picture of a downloaded camera image (a SIT file of 320 x 240 pixels) with palette
/// bar, photograph and text band. Owns all its buffers and touches no open image, so several may
/// work in threads of their own. Needs a QGuiApplication for the bar and the text band.
class DownloadConversion {
 public:
  /// Words and palettes are not changed and have to stay for as long as the conversion.
  DownloadConversion(const Strings& words, const Palettes& palettes);

  /// Used by all conversions that follow.
  DownloadOptions Options;
  /// Lets only some of several conversions decode a large photograph at a time, for the sake of
  /// memory. None: no limit. Has to stay for as long as the conversion.
  std::counting_semaphore<>* LargePhotographs = nullptr;

  /// Leaves the picture of the file at `path` in PicBuf2. Of a file that cannot be read the picture
  /// is flat and goes by the header of the image before; `Faults` then says so.
  void dwnLoadThumbSIT(const QString& path);
  /// Adds the band of text below PicBuf2; `lineCount` lines high, the right block ending at column
  /// `rightEdge`.
  void dwnBuildOvl(int lineCount, int rightEdge);
  /// Lets all pictures go.
  void dwnCleanUp();

  Picbuf PicBuf2;  // The finished picture.

  // Facts of the image converted last.
  float DwnImageMin = 0.0F;  // Extremes inside the calibrated range, degrees Celsius.
  float DwnImageMax = 0.0F;
  QString DwnDateText;
  QString DwnTimeText;
  QString DwnEmissivityText;
  QString DwnScaleMinText;  // Ends of the scale in the chosen unit, which they name.
  QString DwnScaleMaxText;
  QString DwnMemoText;
  bool HasVisibleImage = false;
  Problems Faults;  // What is wrong with the file.
  StepLog Steps;

 private:
  void UsePaletteOfOptions();
  void TakeHeaderTexts();
  void dwnGetMinMaxTemp(const RawRaster& raster, double& min, double& max, double offset,
                        double slope);
  void ChooseScale(double& min, double& max);
  void MapTemperatures(double min, double max);
  void dwnProcessVisible(const RandomFile& file, std::uint64_t position);
  /// Fills pbVis with the photograph.
  void TakePhotograph(const Bytes& jpeg, std::uint64_t position);
  void dwnGetMainImage(Picbuf& picture, Picbuf& barPicture, double lo, double hi);
  QString LeftBlock() const;
  /// `width`: of its widest line, pixels.
  QString RightBlock(int& width) const;
  /// "23.5 °C" in the chosen unit.
  QString DegreesText(double celsius) const;
  bool Wants(int overlay) const {
    return Options.Overlay.at(static_cast<std::size_t>(overlay)) == 1;
  }
  char Unit() const { return Options.Unit == 0 ? 'C' : 'F'; }

  const Strings& words_;
  const Palettes& palettes_;
  SitHeader header_;          // Of the image converted last.
  TemperatureGrid DwnTemps_;  // Degrees Celsius.
  ColourTable DwnPalette_{};
  Picbuf Picbuf1_;   // The palette bar, its hottest colour at the top.
  Picbuf pbVis_;     // The photograph, 640 x 480.
  Picbuf pbResult_;  // The picture while it is put together.
};

}  // namespace tessa
