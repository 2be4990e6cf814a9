#include "browser/file_list.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <QCollator>
#include <QSet>
#include <algorithm>
#include <memory>
#include <optional>

#include "core/file_access.h"
#include "core/path_bytes.h"

namespace tessa {
namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

/// A plain file, or a link to one; the kind of most entries is known without asking for it.
bool IsPlainFile(const DIR& folder, const dirent& entry) {
  if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) {
    return entry.d_type == DT_REG;
  }
  struct stat facts {};
  return ::fstatat(::dirfd(const_cast<DIR*>(&folder)), entry.d_name, &facts, 0) == 0 &&
         S_ISREG(facts.st_mode);
}

/// The endings ".BMP" and so on of a pattern.
QList<QByteArray> EndingsOf(const QString& pattern) {
  QList<QByteArray> endings;
  for (const QString& one : pattern.split(QLatin1Char(';'))) {
    endings.append(one.mid(1).toLatin1());
  }
  return endings;
}

bool Matches(const QByteArray& name, const QList<QByteArray>& endings) {
  return !name.startsWith('.') &&
         std::any_of(endings.begin(), endings.end(), [&](const QByteArray& ending) {
           return name.right(ending.size()).compare(ending, Qt::CaseInsensitive) == 0;
         });
}

std::optional<QStringList> NamesIn(const QString& path, const QString& pattern) {
  const std::unique_ptr<DIR, CloseFolder> folder(::opendir(PathToBytes(path).constData()));
  if (folder == nullptr) {
    return std::nullopt;
  }
  const QList<QByteArray> endings = EndingsOf(pattern);
  QStringList names;
  while (const dirent* const entry = ::readdir(folder.get())) {
    const QByteArray name(entry->d_name);
    if (Matches(name, endings) && IsPlainFile(*folder, *entry)) {
      names.append(PathFromBytes(name));
    }
  }
  return names;
}

/// Sorted for people; names that they would take for equal, by their bytes.
std::vector<FileList::Item> Sorted(const QStringList& names) {
  // The plain locale knows no order but that of the codes.
  const QLocale locale;
  QCollator collator(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
  collator.setNumericMode(true);
  collator.setCaseSensitivity(Qt::CaseInsensitive);
  struct Keyed {
    QCollatorSortKey Key;
    QString Name;
  };
  std::vector<Keyed> keyed;
  keyed.reserve(static_cast<std::size_t>(names.size()));
  for (const QString& name : names) {
    keyed.push_back({collator.sortKey(ShownPath(name)), name});
  }
  std::sort(keyed.begin(), keyed.end(), [](const Keyed& first, const Keyed& second) {
    const int order = first.Key.compare(second.Key);
    return order != 0 ? order < 0 : first.Name < second.Name;
  });
  std::vector<FileList::Item> items;
  items.reserve(keyed.size());
  for (const Keyed& one : keyed) {
    items.push_back({one.Name, false});
  }
  return items;
}

}  // namespace

QStringList FoldersWithOddNames(const QString& path) {
  const std::unique_ptr<DIR, CloseFolder> folder(::opendir(PathToBytes(path).constData()));
  QStringList found;
  while (const dirent* const entry = folder ? ::readdir(folder.get()) : nullptr) {
    const QString name = PathFromBytes(entry->d_name);
    if (!name.startsWith(QLatin1Char('.')) && ShownPath(name) != name &&
        IsFolder(JoinPath(path, name))) {
      found.append(JoinPath(path, name));
    }
  }
  found.sort();
  return found;
}

QString PatternOfFilter(int index) {
  const bool isInTable = index >= 0 && index < static_cast<int>(kImageFilters.size());
  return QString::fromLatin1(
      kImageFilters[isInTable ? static_cast<std::size_t>(index) : 0].Pattern);
}

bool FileList::Read(const QString& folder, const QString& pattern) {
  const auto names = NamesIn(folder, pattern);
  if (!names) {
    return false;
  }
  items_ = Sorted(*names);
  return true;
}

bool FileList::ReadAgain(const QString& folder, const QString& pattern) {
  QSet<QString> selected;
  for (const Item& item : items_) {
    if (item.Selected) {
      selected.insert(item.Name);
    }
  }
  if (!Read(folder, pattern)) {
    return false;
  }
  for (Item& item : items_) {
    item.Selected = selected.contains(item.Name);
  }
  return true;
}

void FileList::SelectAll(bool selected) {
  for (Item& item : items_) {
    item.Selected = selected;
  }
}

int FileList::SelectedCount() const {
  return static_cast<int>(
      std::count_if(items_.begin(), items_.end(), [](const Item& item) { return item.Selected; }));
}

QStringList FileList::SelectedNames() const {
  QStringList names;
  for (const Item& item : items_) {
    if (item.Selected) {
      names.append(item.Name);
    }
  }
  return names;
}

int FileList::Find(const QString& name) const {
  const auto found = std::find_if(items_.begin(), items_.end(),
                                  [&](const Item& item) { return item.Name == name; });
  return found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
}

}  // namespace tessa
