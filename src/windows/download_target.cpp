#include "windows/download_target.h"

#include <QComboBox>
#include <QEvent>
#include <QFileDialog>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "widgets/eliding_label.h"
#include "widgets/plain_text.h"
#include "windows/folder_panel.h"

namespace tessa {
namespace {

constexpr int kTreeWidth = 380;
constexpr int kLookMilliseconds = 1000;
/// Parts of the paper's colour to one of the text's.
constexpr int kGreyShare = 4;
constexpr int kDarkBelow = 128;
/// Marks the entry that was added for the chosen folder.
constexpr int kOwnEntry = Qt::UserRole + 1;

}  // namespace

QColor FaultColour(const QPalette& colours) {
  const bool isDark = colours.color(QPalette::Window).lightness() < kDarkBelow;
  return isDark ? QColor(0xFF, 0x8A, 0x80) : QColor(0xC0, 0, 0);
}

QLabel* MakeElided(const char* name, QWidget* parent) {
  auto* const label = new ElidingLabel(Qt::ElideMiddle, parent);
  label->setObjectName(QString::fromLatin1(name));
  label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  return label;
}

QLabel* MakeHeading(const QString& text, QWidget* parent) {
  auto* const label = new PlainLabel(text, parent);
  QFont font = label->font();
  font.setBold(true);
  label->setFont(font);
  return label;
}

DownloadTarget::DownloadTarget(QString& path, const QStringList& recentFolders,
                               const Strings& words, QWidget* parent)
    : QWidget(parent), path_(path), words_(words) {
  folders_.setFilter(QDir::Dirs | QDir::NoDotAndDotDot);
  folders_.setReadOnly(true);
  folders_.setRootPath(QDir::rootPath());
  // Before the tree hears of it and moves on to another line.
  connect(&folders_, &QFileSystemModel::rowsAboutToBeRemoved, this, [this] {
    current_ = panel_ == nullptr ? QString() : folders_.filePath(panel_->Tree().currentIndex());
  });
  MakeControls();
  connect(&folders_, &QFileSystemModel::rowsRemoved, this, [this] {
    if (folders_.filePath(panel_->Tree().currentIndex()) != current_) {
      QMetaObject::invokeMethod(this, &DownloadTarget::KeepFolder, Qt::QueuedConnection);
    }
  });
  for (QObject* const watched :
       std::initializer_list<QObject*>{places_, &panel_->Tree(), panel_->Tree().viewport()}) {
    watched->installEventFilter(this);
  }
  connect(panel_, &FolderPanel::FolderChanged, this, &DownloadTarget::TakeChoice);
  ShowTreeFocus();
  look_.setInterval(kLookMilliseconds);
  connect(&look_, &QTimer::timeout, this, &DownloadTarget::ShowFault);
  look_.start();
  panel_->SetPlaces(recentFolders, words_);
}

void DownloadTarget::MakeControls() {
  const QString caption = words_.LangString(255, "Target Path");
  shown_ = MakeElided("TargetPath", this);
  auto* const choose = new QPushButton(QStringLiteral("\u2026"), this);
  choose->setObjectName(QStringLiteral("cmdTargetFolder"));
  choose->setAutoDefault(false);
  choose->setFixedWidth(choose->sizeHint().height() * 3 / 2);
  choose->setAccessibleName(caption + QChar(0x2026));
  choose->setToolTip(choose->accessibleName());
  connect(choose, &QPushButton::clicked, this, &DownloadTarget::Ask);
  choose_ = choose;
  fault_ = new PlainLabel(this);
  fault_->setObjectName(QStringLiteral("TargetFault"));
  fault_->hide();
  panel_ = new FolderPanel("Drive2", "Dir2", folders_, this);
  panel_->setMinimumWidth(kTreeWidth);
  panel_->SetAccessibleNames(caption + QStringLiteral(": ") + words_.LangString(155, "Drive"),
                             caption);
  places_ = panel_->findChild<QComboBox*>(QStringLiteral("Drive2"));
  auto* const row = new QHBoxLayout;
  row->addWidget(shown_, 1);
  row->addWidget(choose_);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(MakeHeading(caption, this));
  layout->addLayout(row);
  layout->addWidget(fault_);
  layout->addWidget(panel_, 1);
}

/// A tree that gets the focus without a line takes its first one; nobody chose that.
bool DownloadTarget::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::FocusIn:
      isUsersAct_ = false;
      ShowTreeFocus();
      break;
    case QEvent::FocusOut:
      ShowTreeFocus();
      break;
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::Wheel:
      isUsersAct_ = true;
      break;
    default:
      break;
  }
  return QWidget::eventFilter(watched, event);
}

void DownloadTarget::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && panel_ != nullptr) {
    ShowFault();
    ShowTreeFocus();
  }
}

/// The chosen line is grey while keys go elsewhere.
void DownloadTarget::ShowTreeFocus() {
  QTreeView& tree = panel_->Tree();
  QPalette colours = palette();
  if (!tree.hasFocus()) {
    const QColor text = colours.color(QPalette::Active, QPalette::Text);
    const QColor base = colours.color(QPalette::Active, QPalette::Base);
    const auto mixed = [](int of, int with) { return (of + kGreyShare * with) / (1 + kGreyShare); };
    colours.setColor(QPalette::Highlight,
                     QColor(mixed(text.red(), base.red()), mixed(text.green(), base.green()),
                            mixed(text.blue(), base.blue())));
    colours.setColor(QPalette::HighlightedText, text);
  }
  tree.setPalette(colours);
}

void DownloadTarget::TakeChoice(const QString& folder) {
  if (!isUsersAct_) {
    KeepFolder();
    return;
  }
  path_ = folder;
  ShowFolder();
  Q_EMIT Changed();
}

void DownloadTarget::Use(const QString& folder) {
  path_ = folder;
  if (panel_->Folder() != folder) {
    panel_->SetFolder(folder);
  }
  ShowFolder();
  Q_EMIT Changed();
}

void DownloadTarget::KeepFolder() {
  panel_->SetFolder(path_);
  ShowFolder();
}

void DownloadTarget::ScrollToFolder() {
  panel_->Tree().scrollTo(panel_->Tree().currentIndex());
}

QWidgetList DownloadTarget::FocusOrder() const {
  return {choose_, places_, &panel_->Tree()};
}

void DownloadTarget::Ask() {
  const QString chosen = QFileDialog::getExistingDirectory(
      this, words_.LangString(255, "Target Path"), IsFolder(path_) ? path_ : QDir::homePath());
  if (!chosen.isEmpty()) {
    Use(chosen);
  }
}

void DownloadTarget::ShowFolder() {
  const QString shown = ShownPath(path_);
  shown_->setText(OneLine(shown));
  shown_->setToolTip(PlainToolTip(shown));
  ShowPlace();
  ShowFault();
}

/// The list of places has an entry for the chosen folder, also when it is none of the usual ones.
void DownloadTarget::ShowPlace() {
  if (const int former = places_->findData(true, kOwnEntry); former >= 0) {
    places_->removeItem(former);
  }
  if (places_->findData(path_) < 0) {
    const QString name = FileNameOf(path_);
    places_->addItem(OneLine(ShownPath(name.isEmpty() ? path_ : name)), path_);
    places_->setItemData(places_->count() - 1, true, kOwnEntry);
  }
  places_->setCurrentIndex(places_->findData(path_));
}

QString DownloadTarget::Fault() const {
  if (!IsFolder(path_)) {
    return words_.LangString(568, "The target folder is not there.");
  }
  return IsWritable(path_) ? QString()
                           : words_.LangString(569, "The target folder cannot be written to.");
}

void DownloadTarget::ShowFault() {
  const QString fault = Fault();
  QPalette colours = palette();
  colours.setColor(QPalette::WindowText, FaultColour(colours));
  fault_->setPalette(colours);
  const bool isNew = fault_->text() != fault;
  fault_->setText(fault);
  fault_->setVisible(!fault.isEmpty());
  if (isNew && fault.isEmpty()) {
    panel_->SetFolder(path_);  // It is there again.
    ShowPlace();
    Q_EMIT Changed();
  }
}

void DownloadTarget::Settle() {
  panel_->Settle();
}

}  // namespace tessa
