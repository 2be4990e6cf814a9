#include "browser/transfer_names.h"

#include <filesystem>

#include "core/path_bytes.h"

namespace tessa {
namespace {

constexpr std::chrono::milliseconds kMoment{20};

}  // namespace

int FolderNames::Refresh() {
  namespace fs = std::filesystem;
  if (readings_ > 0 && std::chrono::steady_clock::now() - readAt_ < kMoment) {
    return readings_;
  }
  names_.clear();
  std::error_code error;
  fs::directory_iterator entry(path_.toStdString(), error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    Add(PathFromBytes(QByteArray::fromStdString(entry->path().filename().string())));
  }
  isComplete_ = !error;
  readAt_ = std::chrono::steady_clock::now();
  return ++readings_;
}

void FolderNames::Add(const QString& name) {
  QStringList& alike = names_[name.toCaseFolded()];
  if (!alike.contains(name)) {
    alike += name;
  }
}

}  // namespace tessa
