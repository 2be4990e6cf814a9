#pragma once

#include <QString>

namespace tessa {

enum class NoticeKind {
  kQuiet,   // For information: something was done, or a picture came with a fault.
  kFailed,  // Something that the user asked for was not done.
};

/// One thing that the user is told without being interrupted. The engine writes it, windows show it
/// until the user closes it or the next one takes its place.
struct Notice {
  NoticeKind Kind = NoticeKind::kQuiet;
  QString Text;            // Plain, in the language of the moment; empty: nothing to tell.
  int Further = 0;         // How many more of the same sort there are.
  int Generation = 0;      // Counts up with every notice, so that equal words are told anew.
  bool AboutFile = false;  // Tells of the open file, and goes with it.
};

/// What stands in the view's place when the open file gave no picture.
struct NoPicture {
  bool Shown = false;
  QString FileName;  // As it is on disk.
  QString Reason;    // A sentence in the language of the moment.
  QString Detail;    // What the reader found; English. Empty when it says no more than Reason.
  QString Advice;
  QString Folder;  // Exact path of the folder that can be shown; empty: there is none.
};

}  // namespace tessa
