#include "open/no_picture.h"

#include <algorithm>
#include <filesystem>
#include <new>
#include <string_view>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/tell.h"
#include "open/attachments.h"
#include "view/readout.h"

namespace tessa {
namespace {

struct LeadIn {
  int TextId;
  const char* DefaultText;
  bool SaysAll = false;  // The reader's own sentence would only repeat it.
};

LeadIn LeadInForKind(ProblemKind kind) {
  switch (kind) {
    case ProblemKind::kUnreadable:
      return {422, "The file cannot be read."};
    case ProblemKind::kWrongKind:
      return {423, "This is no image that the program reads."};
    case ProblemKind::kTruncated:
      return {424, "The file is incomplete."};
    case ProblemKind::kBadValue:
      return {425, "The file has a fault."};
    case ProblemKind::kUnsupported:
      return {426, "The program does not read this form of the file."};
    case ProblemKind::kTooLarge:
      return {427, "The image is too large to be opened."};
  }
  return {422, "The file cannot be read."};
}

/// What the disk says of the path comes before what the reader made of it.
LeadIn LeadInFor(const Problem& problem, const QString& path) {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path name(PathToBytes(path).toStdString());
  const fs::file_type type = fs::status(name, error).type();
  if (type == fs::file_type::not_found) {
    return {420, "The file is not there.", true};
  }
  if (type == fs::file_type::directory) {
    return {428, "This is a folder, no image.", true};
  }
  if (type == fs::file_type::regular && fs::file_size(name, error) == 0 && !error) {
    return {421, "The file is empty.", true};
  }
  return LeadInForKind(problem.Kind);
}

/// A reader's sentence as one that stands alone.
QString Sentence(const std::string& text) {
  QString sentence = QString::fromStdString(text).trimmed();
  if (sentence.isEmpty()) {
    return sentence;
  }
  sentence[0] = sentence[0].toUpper();
  return sentence.endsWith(QLatin1Char('.')) ? sentence : sentence + QLatin1Char('.');
}

QString InWords(const LeadIn& lead, const Strings& words) {
  return words.LangString(lead.TextId, lead.DefaultText);
}

/// Steps that ran out of memory leave no trace in the file's own problems.
bool RanOutOfMemory(const StepLog& steps) {
  const auto& failures = steps.Failures();
  return std::any_of(failures.begin(), failures.end(), [](const FailedStep& failure) {
    return failure.Reason == std::bad_alloc().what();
  });
}

/// A load that left no picture has a problem that says so.
void NameTheProblem(Session& session) {
  if (FindNoImage(session.Faults) != nullptr) {
    return;
  }
  if (RanOutOfMemory(session.Steps)) {
    session.Faults.push_back(
        {ProblemKind::kTooLarge, 0, "File", "there is not enough memory for it", true});
  } else if (session.Buffers.Picbuf1.BufWidth() == 0) {
    const auto& failures = session.Steps.Failures();
    session.Faults.push_back(
        {ProblemKind::kUnreadable, 0, "File",
         failures.empty() ? "no picture came of the file" : failures.back().Reason, true});
  }
}

/// Every trace of an image goes out of records and buffers; the file's names and the kind that the
/// load button offers stay.
void ForgetImage(Session& session) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  ReleaseAttachments(session);
  OpenImage none;
  none.CurrentFile = std::move(image.CurrentFile);
  none.CurrentFileName = std::move(image.CurrentFileName);
  none.CurrentFilePath = std::move(image.CurrentFilePath);
  none.ImageKind = image.ImageKind;
  none.PreviousKindIndex = image.PreviousKindIndex;
  none.DisplayUnits = image.DisplayUnits;
  none.FileUnits = image.FileUnits;
  none.SavedTempGrid = std::move(image.SavedTempGrid);
  none.ImageBusy = image.ImageBusy;
  none.UiLocked = image.UiLocked;
  none.ThumbBrowserActive = image.ThumbBrowserActive;
  image = std::move(none);
  for (Picbuf* buffer : {&session.Buffers.Picbuf1, &session.Buffers.Picbuf3,
                         &session.Buffers.PicBuf6, &session.Buffers.Picbuf8}) {
    buffer->FreeBuffer();
  }
  session.Cursor = Readout{};
  view.Comment.clear();
  view.Memo.clear();
  std::fill(view.StatusPanel.begin(), view.StatusPanel.begin() + 6, QString());
  view.PictureTip.clear();
  view.FrameText.clear();
  view.RangeSliderVisible = view.AutoUpdateVisible = view.LimitBoxesVisible = false;
  view.RangeEntryVisible = view.RangeToggleVisible = false;
  view.LimitMaxText.clear();
  view.LimitMinText.clear();
  view.RangeLowText.clear();
  view.RangeHighText.clear();
  view.ScaleLabel.fill(QString());
  view.ScaleStrokesVisible = false;
  view.ExtremesLine = view.MaximumStroke = view.MinimumStroke = MarkerLine{};
}

void ShowNone(const Problem& problem, Session& session) {
  ViewState& view = session.View;
  const Strings& words = session.Words;
  const QString& path = session.Image.CurrentFilePath;
  const LeadIn lead = LeadInFor(problem, path);
  const QString folder = FolderOfPath(path);
  view.NoPicture = {true,
                    ShownPath(path.mid(path.lastIndexOf(QLatin1Char('/')) + 1)),
                    InWords(lead, words),
                    lead.SaysAll ? QString() : Sentence(problem.Text),
                    words.LangString(429, "Open another image, or look into the file's folder."),
                    PathExists(folder + QLatin1String("/.")) ? folder : QString()};
  view.PictureVisible = view.BottomPanelVisible = view.ScalePanelVisible = false;
  view.BlankPanelVisible = view.FrameRowVisible = view.HasImage = false;
}

/// A picture that came with faults: the first one in words, and how many more there are.
void TellFirstFault(Session& session) {
  const Problem& first = session.Faults.front();
  Tell(NoticeKind::kQuiet,
       InWords(LeadInForKind(first.Kind), session.Words) + QLatin1Char(' ') + Sentence(first.Text),
       session.View);
  session.View.Notice.Further = static_cast<int>(session.Faults.size()) - 1;
  session.View.Notice.AboutFile = true;
}

}  // namespace

QString WhyNoPicture(const Problem& problem, const QString& path, const Strings& words) {
  const LeadIn lead = LeadInFor(problem, path);
  const QString reason = InWords(lead, words);
  return lead.SaysAll ? reason : reason + QLatin1Char('\n') + Sentence(problem.Text);
}

bool HasPicture(const Session& session) {
  return !session.Image.CurrentFile.isEmpty() && session.Buffers.Picbuf1.BufWidth() > 0;
}

void LoadAfresh(Session& session, const std::function<void()>& load) {
  ViewState& view = session.View;
  view.NoPicture = {};
  view.HasImage = false;
  DismissNotice(view);
  session.Buffers.Picbuf1.FreeBuffer();
  view.Comment.clear();
  view.Memo.clear();
  view.StatusPanel[5].clear();
  try {
    load();
  } catch (const std::bad_alloc&) {
    session.Faults.push_back(
        {ProblemKind::kTooLarge, 0, "File", "there is not enough memory for it", true});
  } catch (const std::exception& failure) {
    session.Faults.push_back({ProblemKind::kUnreadable, 0, "File", failure.what(), true});
  }
  NameTheProblem(session);
}

void TellAboutFile(Session& session) {
  if (const Problem* const problem = FindNoImage(session.Faults)) {
    ForgetImage(session);
    ShowNone(*problem, session);
  } else if (!session.Faults.empty()) {
    TellFirstFault(session);
  }
}

void RetellAboutFile(Session& session) {
  const Problem* const problem = FindNoImage(session.Faults);
  if (session.View.NoPicture.Shown && problem != nullptr) {
    ShowNone(*problem, session);
  } else if (session.View.Notice.AboutFile && !session.Faults.empty()) {
    TellFirstFault(session);
  }
}

}  // namespace tessa
