#pragma once

#include <QSet>
#include <atomic>
#include <mutex>
#include <optional>
#include <semaphore>
#include <vector>

#include "camera/card_link.h"
#include "camera/download_files.h"
#include "core/application_folder.h"
#include "tool/streams.h"

namespace tessa {

/// What becomes of files that are there already.
enum class CardTargets { kRefuse, kReplace, kSkip };

/// One call of "card download": brings images of a card on several threads. Each image stands for
/// itself, so the result does not depend on how many there are.
class CardDownload {
 public:
  CardDownload(CardLink& card, DownloadOptions options, CardTargets existing,
               const Palettes& palettes);

  /// Plans the images of one folder, or of all and makes a folder for each. Throws StepFailure when
  /// there is no such folder, or nowhere to write to, or too little space; nothing is written then.
  void Plan(const std::optional<QString>& onlyFolder);
  /// Returns the exit status. `jobs` 0: as many as there are processors; never more than four
  /// times that.
  int Run(int jobs);

 private:
  /// Photographs of tens of megapixels that may be in memory, in colours, at a time.
  static constexpr int kLargeAtOnce = 2;

  struct Job {
    int Folder = 0;
    int Image = 0;
    QString Source;
    ImageTargets Targets;
    std::string Fault;  // Why it cannot be done; empty: it can.
  };
  struct Result {
    QStringList Written;
    QStringList Skipped;  // Files that are there already and stay.
    std::string Fault;    // Files may have been written nevertheless.
    std::vector<std::string> Warnings;
  };
  /// What is to be made of an image, going by the files that are there.
  struct Choice {
    DownloadOptions Wanted;
    QStringList Skipped;
    std::string Refused;  // Why nothing is; empty: it is.
  };

  void PlanFolder(int index);
  QStringList WantedTargets(const ImageTargets& targets) const;
  Choice Choose(const ImageTargets& targets) const;
  void Work(int worker);
  void BringOne(const Job& job, const QString& stage, DownloadConversion& conversion,
                Result& result) const;
  void WriteOne(const Job& job, const DownloadOptions& wanted, const QString& stage,
                DownloadConversion& conversion, Result& result) const;
  void BringSit(const Job& job) const;
  void Report(std::size_t at, Result result);
  void PrintResult(const Job& job, const Result& result);
  void PrintSum() const;

  CardLink& card_;
  DownloadOptions options_;
  CardTargets existing_;
  const Palettes& palettes_;
  Strings words_;  // English by themselves.
  std::vector<Job> jobs_;
  QSet<QString> targets_;            // Of all jobs.
  QStringList folders_;              // To be made.
  std::vector<std::string> faults_;  // Folders of the card that could not be listed.
  std::uint64_t space_ = 0;
  std::counting_semaphore<> largePhotographs_{kLargeAtOnce};
  std::atomic<std::size_t> next_ = 0;

  std::mutex sharing_;  // Guards what follows.
  ApplicationFolder ownFolder_ = OwnFolder();
  std::vector<std::optional<Result>> results_;
  std::size_t printed_ = 0;
  int done_ = 0;
  int skipped_ = 0;
  int failed_ = 0;
  bool hasAllFolders_ = true;
};

}  // namespace tessa
