#pragma once

namespace tessa {

/// How the engine lets its surroundings breathe during long work. The figures themselves stand in
/// ViewState; these calls only say "now". The plain class does nothing, which suits batch work.
class Progress {
 public:
  Progress() = default;
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  virtual ~Progress() = default;

  /// The view records changed and should be on screen before the work goes on.
  virtual void Repaint() {}
  /// A percentage in ViewState moved. Called often: an implementation may skip most calls.
  virtual void Advance() {}
  /// Pending events may run now. User actions must be kept out by the busy flags.
  virtual void LetEventsRun() {}
};

}  // namespace tessa
