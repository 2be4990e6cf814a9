#pragma once

#include <QString>
#include <QStringList>
#include <array>

#include "core/notice.h"

namespace tessa {

/// A line of the marker beside the vertical palette strip, in twips of the strip's own frame
/// (195 at the top of the scale, 4020 at its foot).
struct MarkerLine {
  bool Visible = false;
  int Y1 = 0;
  int Y2 = 0;
};

/// Where the range on show comes from, and with it the colour of the toggle button.
enum class RangeSource {
  kStored,  // Red (colour 192), picture 0: the scale stored with the image.
  kImage,   // Green (colour 49152), picture 1: the extremes of the image.
};

struct ZoomState {
  int ZoomLevel = 1;
  int ZoomMin = 1;
  int ZoomMax = 15;
  float ZoomFactor = 1.0F;
  bool FitsWindow = false;  // The scale is below that of ZoomMin and follows the window's size.
  int ZoomCentreX = -1;     // Image position of the last click; -1: none.
  int ZoomCentreY = -1;
};

/// What is to be seen of sound notes. The texts are English in every language.
struct SoundControls {
  bool PlayVisible = false;                                  // btnPlaysound
  bool EmbedVisible = false;                                 // btnEmbedSound
  QString PlayHint = QStringLiteral("Playback Sound File");  // btnPlaysound
  QString LengthText;  // "2.5 s sound note"; empty when the open image has none that can be heard.
  bool TileButtonVisible = false;                            // Command13
  QString TileHint = QStringLiteral("Playback Sound File");  // Command13
  QString TileMenuText = QStringLiteral("Play Sound");       // mnuPUPlaysound
  /// A note is being played: the pointer is busy. The one state that all three play commands go by.
  bool Playing = false;
  QString Message;  // Why the last command did nothing; empty when all went well.
};

/// What the windows show, as the engine wants it. The engine writes it, windows bring themselves
/// into line with it and never write back. The control that shows a field stands beside it.
struct ViewState {
  static constexpr int kStatusPanels = 6;
  static constexpr int kScaleLabels = 11;

  QString Title;
  std::array<QString, kStatusPanels + 1> StatusPanel;  // StatusBar1; panels are numbered from 1.
  QString Comment;                                     // ssComment
  QString Memo;                                        // ssMemo
  bool BusyPointer = false;

  // The frame of the view.
  bool PictureVisible = false;      // Picbuf1
  bool BottomPanelVisible = false;  // SSPanel1
  bool ScalePanelVisible = false;   // SSPanel8
  bool BlankPanelVisible = true;    // SSPanel9: nothing is open.
  QString FrameText;                // Label7: "2 of 10"
  bool FrameRowVisible = false;     // Frame1
  bool HasImage = false;            // The view shows an image, however well it loaded.
  QString PictureTip;               // Tool tip of Picbuf1: the temperature under the cursor.

  // What the user is told.
  tessa::Notice Notice;        // NoticeStrip, above the picture.
  tessa::NoPicture NoPicture;  // NoPicturePanel, in the picture's place.

  // Progress.
  QString LoadingText;  // Panel3D15
  bool LoadingTextVisible = false;
  bool LoadProgressVisible = false;    // SSPanel12
  double LoadProgress = 0.0;           // Percent.
  bool RenderProgressVisible = false;  // SSPanel18
  double RenderProgress = 0.0;

  // Range.
  bool RangeSliderVisible = false;  // RangeV
  bool AutoUpdateVisible = false;   // chkProof
  bool LimitBoxesVisible = false;   // txtRangeVMax, txtRangeVMin
  QString LimitMaxText;             // txtRangeVMax
  QString LimitMinText;             // txtRangeVMin
  bool RangeEntryVisible = false;   // Label3, Label4, Text1, Text2, Command1, Command2
  QString RangeLowText;             // Text1
  QString RangeHighText;            // Text2
  bool RangeToggleVisible = false;  // SSCommand4
  RangeSource Source = RangeSource::kStored;
  std::array<QString, kScaleLabels> ScaleLabel;  // Label1
  bool ScaleStrokesVisible = false;              // Line1
  MarkerLine ExtremesLine;                       // Line2
  MarkerLine MaximumStroke;                      // Line3
  MarkerLine MinimumStroke;                      // Line4

  // Tool panel.
  QStringList PaletteList;           // Combo1: the entry's position is its palette number.
  int PaletteSelection = -1;         // -1: none.
  bool CelsiusSelected = true;       // SSOption1; else SSOption2.
  bool TrendSaysWhiteHot = false;    // Tool tip of btnTrend: "White Hot", else "Black Hot".
  bool VisibleImageEntries = false;  // btnViewVis, mnuView, mnuCopyVis, mnuMerge, mnuSaveComposite

  SoundControls Sound;

  // Events from controls that the engine itself changes are to be passed over while this is set.
  bool SuppressEvents = false;

  ZoomState Zoom;
  QString RotationCaption = QStringLiteral("0");  // SSPanel5 of the view: degrees, entered only.
  QString EdgeCaption = QStringLiteral("0");      // SSPanel7 of the view: magnitude, entered only.
};

}  // namespace tessa
