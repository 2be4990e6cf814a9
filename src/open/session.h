#pragma once

#include <QSet>
#include <QString>

#include "core/application_folder.h"
#include "core/image_follower.h"
#include "core/language_strings.h"
#include "core/open_image.h"
#include "core/settings.h"
#include "core/steps.h"
#include "core/view_state.h"
#include "formats/problem.h"
#include "view/palettes.h"
#include "view/range_slider.h"
#include "view/readout.h"
#include "view/render.h"
#include "view/view_buffers.h"

namespace tessa {

/// Everything that one running program, one batch job or one test has. main() makes it and hands it
/// on; nothing in the program is global beside it.
struct Session {
  explicit Session(ApplicationFolder folder) : Folder(std::move(folder)) {}
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  OpenImage Image;
  ViewState View;
  ViewBuffers Buffers;
  VisibleBuffers Visible;
  RangeSlider Range;  // The model of RangeV.
  Readout Cursor;
  tessa::Palettes Palettes;
  tessa::Settings Settings;
  Strings Words;
  ApplicationFolder Folder;
  /// False where nobody looks at or listens to what images carry: then nothing is cut out of them.
  bool ExtractsAttachments = true;
  ImageFollower* Follower = nullptr;  // Not owned; null where nobody follows.
  QString PendingCommandFile;         // Exact path from the command line that waits to be opened.

  /// Files written by the running or the last conversion of the open sequence.
  QSet<QString> ConversionOutputs;

  // What the last load found wrong.
  Problems Faults;  // With the file.
  StepLog Steps;    // With the steps of the load.
};

/// The references that rendering works on.
RenderPieces PiecesForRendering(Session& session, Progress& progress);

/// Reads the palettes of the program folder; a failed step leaves those that are there.
void ReadPalettes(Session& session);

/// Reads palettes and makes the strips: what has to be done once before anything is opened.
void PrepareSession(Session& session);

/// The settings become what the program starts with: palette, unit and the kind that the load
/// button offers.
void ApplySettings(Session& session);

/// Selects the default palette in the list; a negative one selects nothing.
void SelectDefaultPalette(Session& session);

}  // namespace tessa
