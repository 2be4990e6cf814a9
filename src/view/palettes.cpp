#include "view/palettes.h"

#include <algorithm>

#include "core/file_access.h"
#include "formats/palette_file.h"

namespace tessa {
namespace {

void ApplyToView(const Palettes& palettes, ViewBuffers& buffers) {
  ApplyPalette(buffers.Picbuf1, palettes.CurrentPalette);
  ApplyPalette(buffers.PicBuf2, palettes.CurrentPalette);
  ApplyPalette(buffers.Picbuf7, palettes.CurrentPalette);
  ApplyPalette(buffers.Picbuf3, palettes.CurrentPalette);
}

}  // namespace

void LoadPalettes(Palettes& palettes, ViewState& view, const ApplicationFolder& folder,
                  Problems& faults) {
  FillPaletteList(view);
  const auto file =
      ReadFileStart(folder.FindForReading(QStringLiteral("palette.dta")), kPaletteFileSize, faults);
  if (!file) {
    return;
  }
  DecodePaletteFile(file->Data, palettes.PaletteTable, faults);
  palettes.PaletteTable.back() = palettes.PaletteTable.front();
}

void FillPaletteList(ViewState& view) {
  const int selected = std::max(view.PaletteSelection, 0);
  view.PaletteList.clear();
  for (int i = 0; i < kOfferedPalettes; ++i) {
    const std::string_view name = PaletteNames[static_cast<std::size_t>(i)];
    view.PaletteList.append(QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())));
  }
  view.PaletteSelection = selected;
}

int FindPalette(const QString& nameOrNumber) {
  bool isNumber = false;
  const int number = nameOrNumber.toInt(&isNumber);
  if (isNumber) {
    return number >= 0 && number < kOfferedPalettes ? number : -1;
  }
  for (int i = 0; i < kOfferedPalettes; ++i) {
    const std::string_view name = PaletteNames[static_cast<std::size_t>(i)];
    if (nameOrNumber.compare(QLatin1String(name.data(), static_cast<qsizetype>(name.size())),
                             Qt::CaseInsensitive) == 0) {
      return i;
    }
  }
  return -1;
}

void UsePalette(Palettes& palettes, int index) {
  palettes.PaletteIndex = index;
  palettes.CurrentPalette = palettes.PaletteTable.at(static_cast<std::size_t>(index));
  palettes.CurrentPaletteCopy = palettes.CurrentPalette;
}

void ApplyPalette(Picbuf& buffer, const ColourTable& table) {
  buffer.CreatePalette(table);
  buffer.Refresh();
}

void SelectPalette(int listPosition, const OpenImage& image, ViewState& view, Palettes& palettes,
                   ViewBuffers& buffers) {
  if (listPosition < 0 || listPosition >= kOfferedPalettes) {
    return;
  }
  view.PaletteSelection = listPosition;
  if (image.CurrentFile.isEmpty() || !view.HasImage) {
    return;
  }
  UsePalette(palettes, listPosition);
  ApplyToView(palettes, buffers);
  buffers.PicBuf2.UpdatePalette();
  view.BusyPointer = false;
}

void ReversePalette(const OpenImage& image, ViewState& view, Palettes& palettes,
                    ViewBuffers& buffers) {
  if (image.CurrentFile.isEmpty() || view.PaletteSelection < 0) {
    return;
  }
  view.TrendSaysWhiteHot = !view.TrendSaysWhiteHot;
  ReverseTable(palettes.PaletteTable.at(static_cast<std::size_t>(view.PaletteSelection)));
  UsePalette(palettes, view.PaletteSelection);
  ApplyToView(palettes, buffers);
}

void ReverseTable(ColourTable& table) {
  std::reverse(table.begin(), table.end());
}

}  // namespace tessa
