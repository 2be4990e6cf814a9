#include "open/file_ending.h"

#include <array>

#include "core/open_image.h"

namespace tessa {

Ending EndingOf(const QString& upperCasedPath) {
  struct Known {
    const char* Text;
    Ending Value;
  };
  static constexpr std::array<Known, 8> kKnown = {{{"BIN", Ending::kBin},
                                                   {"TMP", Ending::kTmp},
                                                   {"SIT", Ending::kSit},
                                                   {"RTI", Ending::kRti},
                                                   {"BMP", Ending::kBmp},
                                                   {"TXI", Ending::kTxi},
                                                   {"TIF", Ending::kTif},
                                                   {"JPG", Ending::kJpg}}};
  const QString ending = KindEnding(upperCasedPath);
  for (const Known& known : kKnown) {
    if (ending == QLatin1String(known.Text)) {
      return known.Value;
    }
  }
  // The long forms of two endings, as desktops give them.
  if (upperCasedPath.endsWith(QLatin1String(".TIFF"))) {
    return Ending::kTif;
  }
  if (upperCasedPath.endsWith(QLatin1String(".JPEG"))) {
    return Ending::kJpg;
  }
  return Ending::kOther;
}

bool HasRowPass(Ending ending) {
  return ending != Ending::kBin && ending != Ending::kTmp && ending != Ending::kSit &&
         ending != Ending::kRti;
}

}  // namespace tessa
