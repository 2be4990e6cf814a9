#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <chrono>

namespace tessa {

/// The names in a folder, without regard to case. They are read anew when the last reading is more
/// than a moment old: so a run over thousands of files stays quick and still sees what other
/// programs do.
class FolderNames {
 public:
  /// `path` in the system's bytes.
  explicit FolderNames(QByteArray path) : path_(std::move(path)) {}

  /// Reads the folder unless that was done a moment ago. Returns the number of the last reading.
  int Refresh();
  /// False when the folder could not be read to its end.
  bool IsComplete() const { return isComplete_; }
  bool Has(const QString& name) const { return Alike(name).contains(name); }
  /// The names that equal `name` but for capital letters.
  QStringList Alike(const QString& name) const { return names_.value(name.toCaseFolded()); }
  const QHash<QString, QStringList>& All() const { return names_; }
  /// What this program put into the folder or took from it.
  void Add(const QString& name);
  void Remove(const QString& name) { names_[name.toCaseFolded()].removeAll(name); }

 private:
  QByteArray path_;
  QHash<QString, QStringList> names_;  // By case-folded name.
  bool isComplete_ = false;
  int readings_ = 0;
  std::chrono::steady_clock::time_point readAt_;
  std::chrono::steady_clock::duration took_{};  // By the last reading.
};

}  // namespace tessa
