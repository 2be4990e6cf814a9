#include "browser/thumbnail_pages.h"

#include <algorithm>

#include "browser/transfer.h"
#include "core/path_bytes.h"

namespace tessa {
namespace {

QString UpperPath(const QString& path) {
  return ShownPath(path).toUpper();
}

/// The folder without the separator at its end, which the root alone keeps.
QString WithoutSeparator(QString folder) {
  while (folder.size() > 1 && folder.endsWith(QLatin1Char('/'))) {
    folder.chop(1);
  }
  return folder;
}

}  // namespace

QString FitName(const QString& name, double limit, const TextMeasure& measure) {
  if (measure(name) <= limit) {
    return name;
  }
  const QString dots = QStringLiteral("...");
  for (qsizetype kept = name.size() - 1; kept > 0; --kept) {
    if (name[kept].isLowSurrogate()) {
      continue;  // Never half a character.
    }
    QString fitted = name.left(kept) + dots;
    if (measure(fitted) <= limit) {
      return fitted;
    }
  }
  return dots;
}

ThumbnailPages::ThumbnailPages(BrowserMemory& memory, TextMeasure measure)
    : memory_(memory), measure_(std::move(measure)) {
  TileTextLimit = measure_(QString::fromLatin1(kCaptionTemplate));
  if (memory_.DefaultImageTypeIndex >= static_cast<int>(kImageFilters.size())) {
    memory_.DefaultImageTypeIndex = 0;
  }
}

bool ThumbnailPages::ChangeFolder(const QString& folder) {
  BrowserReady = false;
  const QString path = WithoutSeparator(folder);
  if (!Files.Read(path, PatternOfFilter(memory_.DefaultImageTypeIndex))) {
    BrowserReady = true;
    return false;
  }
  SourceFolder = path;
  if (UpperPath(path) != memory_.SavedBrowserPath) {
    memory_.SavedBrowserPath.clear();
    memory_.SavedBrowserPage = 0;
  }
  LoadThumbNail();
  if (PageCount > 0 && PageCount >= memory_.SavedBrowserPage) {
    if (memory_.SavedBrowserPage > PageCount - 1) {
      memory_.SavedBrowserPage = 0;
    }
  }
  ListingDone(CurrentPage);
  return true;
}

void ThumbnailPages::ListingDone(int page) {
  BrowserReady = true;
  CheckTransfer();
  CheckButtons(page);
}

void ThumbnailPages::ChangeFilter(int index) {
  memory_.SavedBrowserPath.clear();
  memory_.SavedBrowserPage = 0;
  memory_.DefaultImageTypeIndex = index;
  ChangeFolder(SourceFolder);
}

bool ThumbnailPages::ReadAgain() {
  const bool isRead = Files.ReadAgain(SourceFolder, PatternOfFilter(memory_.DefaultImageTypeIndex));
  ShowListing(CurrentPage);
  return isRead;
}

bool ThumbnailPages::ReadAfterTransfer(int page) {
  const bool isRead = Files.Read(SourceFolder, PatternOfFilter(memory_.DefaultImageTypeIndex));
  ShowListing(page);
  return isRead;
}

bool ThumbnailPages::IsPageStale() const {
  return std::any_of(Places.begin(), Places.end(), [](const Place& place) {
    return place.Visible && StampOf(place.Path) != place.Stamp;
  });
}

void ThumbnailPages::ShowListing(int page) {
  BrowserReady = false;
  const int last = std::max(0, (Files.Count() - 1) / kTiles);
  const int savedPage = std::exchange(memory_.SavedBrowserPage, std::min(page - 1, last));
  LoadThumbNail();
  memory_.SavedBrowserPage = savedPage;
  ListingDone(CurrentPage);
}

void ThumbnailPages::HideTiles() {
  for (Place& place : Places) {
    place.Visible = false;
  }
}

void ThumbnailPages::LoadThumbNail() {
  HideTiles();
  BackEnabled = false;
  ForwardEnabled = false;
  const int count = Files.Count();
  if (count == 0) {
    PageCount = 0;
    LastPageCount = 0;
    CurrentPage = 1;
    Places.fill({});
    return;
  }
  PageCount = count / kTiles;
  LastPageCount = kTiles;
  if (count % kTiles != 0) {
    LastPageCount = count % kTiles;
    ++PageCount;
  }
  ForwardEnabled = PageCount > 1;
  const int saved = memory_.SavedBrowserPage + 1;
  CurrentPage = saved <= PageCount ? saved : 1;
  BuildImage(CurrentPage);
}

void ThumbnailPages::FillPlace(int tile) {
  Place& place = Places.at(static_cast<std::size_t>(tile));
  const QString& exact = Files.At(FileIndex).Name;
  const QString name = UpperPath(exact);
  place.Path = JoinPath(SourceFolder, exact);
  place.Hint = UpperPath(place.Path);
  place.Caption = FitName(name, TileTextLimit, measure_);
  place.Stamp = StampOf(place.Path);
  place.Content = DecodeTile(place.Path, EmptySound::kRemove);
  ShrinkPicture(LargestSide, place.Content.Picture);
}

void ThumbnailPages::BuildImage(int page) {
  Places.fill({});
  const int count = page == PageCount ? LastPageCount : kTiles;
  for (int tile = 0; tile < count; ++tile) {
    FileIndex = (page - 1) * kTiles + tile;
    if (FileIndex >= Files.Count()) {
      break;
    }
    if (Loading) {
      Loading(tile, count, UpperPath(Files.At(FileIndex).Name));
    }
    FillPlace(tile);
  }
  // All tiles appear at once.
  for (int tile = 0; tile < count && IndexOf(tile) < Files.Count(); ++tile) {
    UpdateSelection(tile);
    Places[static_cast<std::size_t>(tile)].Visible = true;
  }
}

void ThumbnailPages::CheckButtons(int page) {
  const bool turns = PageCount > 1;
  BackEnabled = turns && page > 1;
  ForwardEnabled = turns && page < PageCount;
}

void ThumbnailPages::UpdateSelection(int tile) {
  if (IndexOf(tile) < Files.Count()) {
    Places.at(static_cast<std::size_t>(tile)).Marked = Files.At(IndexOf(tile)).Selected;
  }
}

void ThumbnailPages::ResetSelection() {
  for (int tile = 0; tile < kTiles; ++tile) {
    if (Places[static_cast<std::size_t>(tile)].Visible) {
      UpdateSelection(tile);
    }
  }
  CheckTransfer();
}

void ThumbnailPages::CheckTransfer() {
  const TransferButtons buttons =
      tessa::CheckTransfer(Files.HasSelection(), SourceFolder, TargetFolder);
  DeleteEnabled = buttons.Delete;
  TransferEnabled = buttons.CopyAndTransfer;
}

void ThumbnailPages::Turn(int page) {
  if (page >= 1 && page <= PageCount && page != CurrentPage) {
    ShowPage(page);
  }
}

void ThumbnailPages::ShowPage(int page) {
  if (!BrowserReady || page < 1 || page > PageCount) {
    return;
  }
  CurrentPage = page;
  ResetSelection();
  BuildImage(CurrentPage);
  CheckButtons(CurrentPage);
}

void ThumbnailPages::Pick(int tile) {
  const int index = IndexOf(tile);
  const Place& place = Places.at(static_cast<std::size_t>(tile));
  if (!place.Visible || index >= Files.Count()) {
    return;
  }
  const bool selects = !Files.At(index).Selected;
  Files.Select(index, selects);
  if (selects) {
    memory_.SelectedPath = place.Path;
    memory_.SelectedName = UpperPath(Files.At(index).Name);
  }
  UpdateSelection(tile);
  CheckTransfer();
}

void ThumbnailPages::SelectAll(bool selected) {
  Files.SelectAll(selected);
  for (int tile = 0; tile < kTiles; ++tile) {
    const Place& place = Places[static_cast<std::size_t>(tile)];
    if (place.Visible) {
      UpdateSelection(tile);
      memory_.SelectedPath = place.Caption;  // On purpose no path: one image has to be picked.
    }
  }
  CheckTransfer();
}

std::optional<ChosenImage> ThumbnailPages::ChooseSelected() {
  if (memory_.SelectedPath.isEmpty()) {
    return std::nullopt;
  }
  return Leave(memory_.SelectedPath, memory_.SelectedName);
}

std::optional<ChosenImage> ThumbnailPages::ChooseTile(int tile) {
  const Place& place = Places.at(static_cast<std::size_t>(tile));
  if (!place.Visible) {
    return std::nullopt;
  }
  memory_.SelectedPath = place.Path;
  memory_.SelectedName = UpperPath(Files.At(IndexOf(tile)).Name);
  return ChooseSelected();
}

std::optional<ChosenImage> ThumbnailPages::ChoosePopup() {
  const Place& place = Places.at(static_cast<std::size_t>(PopupTile));
  if (!place.Visible) {
    return std::nullopt;
  }
  const bool hasName = PopupFileIndex < Files.Count();
  return Leave(place.Path, hasName ? UpperPath(Files.At(PopupFileIndex).Name) : QString());
}

ChosenImage ThumbnailPages::Leave(const QString& path, const QString& name) {
  memory_.SavedBrowserPath = UpperPath(SourceFolder);
  // The page is kept only with a filter that leaves one kind of image.
  memory_.SavedBrowserPage = memory_.DefaultImageTypeIndex == 0 ? 0 : std::max(CurrentPage - 1, 0);
  return {path, name};
}

}  // namespace tessa
