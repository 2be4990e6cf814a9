#pragma once

#include <QString>
#include <QStringList>
#include <array>
#include <vector>

namespace tessa {

/// One choice of the browser's image type list: what is shown, and which files it leaves.
struct ImageFilter {
  const char* Word;  // In front of the number's text; empty: none.
  int TextId;
  const char* DefaultText;
  const char* Pattern;  // "*.BMP;*.TIF": endings in any letter case.
};

inline constexpr std::array<ImageFilter, 8> kImageFilters = {
    {{"", 291, "All Images", "*.BMP;*.TIF;*.JPG;*.TXI;*.TMP;*.SIT;*.RTI"},
     {"BMP ", 177, "Images", "*.BMP"},
     {"TIFF ", 177, "Images", "*.TIF"},
     {"JPEG ", 177, "Images", "*.JPG"},
     {"SIT ", 177, "Images", "*.SIT"},
     {"TXI ", 177, "Images", "*.TXI"},
     {"TMP ", 177, "Images", "*.TMP"},
     {"", 221, "RTI Snapshots", "*.RTI"}}};

/// The pattern of an entry; that of all images for any number beyond the table.
QString PatternOfFilter(int index);

/// The folders inside `folder`, by their exact paths, whose names are no UTF-8: trees of folders
/// made by the toolkit leave them out. Hidden ones stay out here too.
QStringList FoldersWithOddNames(const QString& folder);

/// File1: the images of one folder and which of them are selected, the one store of the selection.
class FileList {
 public:
  struct Item {
    QString Name;  // Exactly as on disk (core/path_bytes.h).
    bool Selected = false;
  };

  /// Lists the plain files of `folder` that match `pattern`, in any letter case, without hidden
  /// ones, sorted as people count: without regard to case, numbers by their value. Nothing is
  /// selected then. False, and the former list stays, when the folder cannot be read.
  bool Read(const QString& folder, const QString& pattern);
  /// The same, and what was selected and is still there stays selected.
  bool ReadAgain(const QString& folder, const QString& pattern);

  int Count() const { return static_cast<int>(items_.size()); }
  const Item& At(int index) const { return items_.at(static_cast<std::size_t>(index)); }
  void Select(int index, bool selected) {
    items_.at(static_cast<std::size_t>(index)).Selected = selected;
  }
  void SelectAll(bool selected);
  bool HasSelection() const { return SelectedCount() > 0; }
  int SelectedCount() const;
  /// In the order of the list.
  QStringList SelectedNames() const;
  /// Position of a name; -1: not in the list.
  int Find(const QString& name) const;

 private:
  std::vector<Item> items_;
};

}  // namespace tessa
