#pragma once

#include <QString>
#include <array>
#include <functional>
#include <optional>

#include "browser/file_list.h"
#include "browser/tile.h"
#include "core/file_access.h"

namespace tessa {

/// What outlives the browser's window for as long as the program runs.
struct BrowserMemory {
  QString SavedBrowserPath;       // Upper case.
  int SavedBrowserPage = 0;       // From 0.
  int DefaultImageTypeIndex = 0;  // Position in kImageFilters.
  QString SelectedPath;  // The image that was picked last; a fitted caption after "Select All".
  QString SelectedName;
  QString CurrentPrinter;  // As chosen last; empty: the system's default.
  QString TargetFolder;    // As chosen last; empty: that of the settings.
};

/// Width of a text in the unit of the limit that it is held against.
using TextMeasure = std::function<double(const QString&)>;

/// `name`, or as much of its beginning as fits together with "..." behind it. A name of which
/// nothing fits is the dots alone.
QString FitName(const QString& name, double limit, const TextMeasure& measure);

/// The text whose width is the limit of captions.
inline constexpr const char* kCaptionTemplate = "SSPanel33333333";

/// An image that was chosen to be opened.
struct ChosenImage {
  QString Path;  // As on disk.
  QString Name;  // Upper case.
};

/// The pages of the browser: which images of a folder stand on which page of ten tiles, what the
/// tiles show, and what is selected. Knows no window; touches the disk to list a folder and to read
/// the ten files of the page on show.
class ThumbnailPages {
 public:
  static constexpr int kTiles = 10;

  struct Place {
    bool Visible = false;
    bool Marked = false;  // Selected, yellow.
    QString Caption;      // The fitted name, upper case.
    QString Hint;         // The full path, upper case.
    QString Path;         // The same as on disk.
    Tile Content;
    std::optional<FileStamp> Stamp;  // Of the file as it was read.
  };

  /// `memory` outlives the pages.
  ThumbnailPages(BrowserMemory& memory, TextMeasure measure);

  // Hooks for the window; each may stay empty.
  std::function<void(int tile, int count, const QString& name)> Loading;

  /// The folder on show changes: lists it and builds its page. A folder that cannot be read leaves
  /// the former list and gives false.
  bool ChangeFolder(const QString& folder);
  /// Another entry of kImageFilters: the folder is listed anew from its first page.
  void ChangeFilter(int index);
  /// Lists the folder once more; page and selection stay as far as they can. A folder that cannot
  /// be read any more leaves the former list and gives false.
  bool ReadAgain();
  /// The same after files were taken out of the folder on purpose: the selection ends, and `page`,
  /// or the last one where there are no longer so many, comes on show.
  bool ReadAfterTransfer(int page);
  /// True when a file of the page on show is no longer what was read.
  bool IsPageStale() const;
  /// The pages of the present list, and the tiles of the page on show.
  void LoadThumbNail();
  /// Reads the files of a page, from 1, into the tiles.
  void BuildImage(int page);
  void CheckButtons(int page);
  void UpdateSelection(int tile);
  /// Shows the marks anew. Selected files stay selected on all pages.
  void ResetSelection();
  void CheckTransfer();

  /// Combo3: goes to a page, from 1, unless a folder is being listed.
  void ShowPage(int page);
  void ShowFirst() { Turn(1); }
  void ShowPrevious() { Turn(CurrentPage - 1); }
  void ShowNext() { Turn(CurrentPage + 1); }
  void ShowLast() { Turn(PageCount); }

  /// A pick with the left button: selects the tile's file or takes it out of the selection.
  void Pick(int tile);
  /// "Select All" and "Reset All".
  void SelectAll(bool selected);

  /// Position in the list of the file of a tile of the page on show.
  int IndexOf(int tile) const { return (CurrentPage - 1) * kTiles + tile; }

  /// "Load": what was picked last, if anything.
  std::optional<ChosenImage> ChooseSelected();
  /// A double click on a tile.
  std::optional<ChosenImage> ChooseTile(int tile);
  /// "Load Image" of the tile `PopupTile`; its name is that at PopupFileIndex.
  std::optional<ChosenImage> ChoosePopup();

  QString SourceFolder;  // As on disk, without its last separator.
  QString TargetFolder;
  FileList Files;
  std::array<Place, kTiles> Places;
  int PageCount = 0;
  int LastPageCount = 0;  // Tiles of the last page.
  int CurrentPage = 1;
  int FileIndex = 0;  // Of the tile in hand.
  bool BrowserReady = false;
  bool BackEnabled = false;      // First and Previous.
  bool ForwardEnabled = false;   // Next and Last.
  bool TransferEnabled = false;  // Copy and transfer.
  bool DeleteEnabled = false;
  double TileTextLimit = 0.0;
  /// The target of the tiles' menu. Opening it from a picture leaves PopupFileIndex as it was.
  int PopupTile = 0;
  int PopupFileIndex = 0;
  /// Pictures larger than this many pixels a side are kept smaller.
  int LargestSide = 1024;

  BrowserMemory& Memory() { return memory_; }

 private:
  void Turn(int page);
  void HideTiles();
  void FillPlace(int tile);
  void ListingDone(int page);
  void ShowListing(int page);
  ChosenImage Leave(const QString& path, const QString& name);

  BrowserMemory& memory_;
  TextMeasure measure_;
};

}  // namespace tessa
