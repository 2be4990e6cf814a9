#pragma once

#include "core/dialogs.h"
#include "open/session.h"

namespace tessa {

// The save and copy commands of the main window. Each asks what it needs and says in ViewState's
// notice what came of it: without a picture nothing but that there is none; after a save the file's
// name; after a failed one the reason, and the place is asked for again. Every file is written
// whole or not at all. The copy commands need a QGuiApplication.

/// The image as a bitmap, after the question whether the palette bar goes with it.
void SaveBmp(Session& session, Dialogs& dialogs);

/// The same as a JPEG of quality 95. The image on show stays 8-bit.
void SaveJpeg(Session& session, Dialogs& dialogs);

/// True for the images that can be saved as TXI: snapshots, and bitmaps with temperatures.
bool CanSaveTxi(const OpenImage& image);

/// A bitmap whose header carries the range on show. For other images than CanSaveTxi only a notice
/// says why not.
void SaveTxi(Session& session, Dialogs& dialogs);

/// Image, palette bar and visible-light picture side by side.
void SaveCompositeBmp(Session& session, Dialogs& dialogs);
void SaveCompositeJpeg(Session& session, Dialogs& dialogs);

/// The visible-light picture alone, from the given buffer; `ending` is "BMP" or "JPG".
void SaveVisible(const QString& ending, Picbuf& picture, Session& session, Dialogs& dialogs);

void CopyImage(Session& session);
void CopyPaletteBar(Session& session);
void CopyImageWithPaletteBar(Session& session);
void CopyVisible(Session& session);
void CopyComposite(Session& session);

}  // namespace tessa
