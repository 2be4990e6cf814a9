#include "browser/transfer_names.h"

#include <algorithm>
#include <filesystem>

#include "core/path_bytes.h"

namespace tessa {
namespace {

using Clock = std::chrono::steady_clock;

constexpr Clock::duration kMoment = std::chrono::milliseconds(20);
constexpr int kShare = 10;  // Of the time, at most one part in so many goes into reading.

}  // namespace

int FolderNames::Refresh() {
  namespace fs = std::filesystem;
  const auto begin = Clock::now();
  if (readings_ > 0 && begin - readAt_ < std::max(kMoment, kShare * took_)) {
    return readings_;
  }
  names_.clear();
  std::error_code error;
  fs::directory_iterator entry(path_.toStdString(), error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    Add(PathFromBytes(QByteArray::fromStdString(entry->path().filename().string())));
  }
  isComplete_ = !error;
  readAt_ = Clock::now();
  took_ = readAt_ - begin;
  return ++readings_;
}

void FolderNames::Add(const QString& name) {
  QStringList& alike = names_[name.toCaseFolded()];
  if (!alike.contains(name)) {
    alike += name;
  }
}

}  // namespace tessa
