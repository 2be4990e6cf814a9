#include "windows/folder_panel.h"

#include <QComboBox>
#include <QDir>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QScrollBar>
#include <QStorageInfo>
#include <QTreeView>
#include <QVBoxLayout>

#include "browser/file_list.h"
#include "core/file_access.h"
#include "core/path_bytes.h"
#include "widgets/plain_text.h"

namespace tessa {
namespace {

constexpr int kRestMilliseconds = 150;
constexpr int kScrollMilliseconds = 30;
constexpr int kSettleMilliseconds = 3000;
constexpr int kSmallestTree = 52;

/// Where memory cards and sticks are mounted.
bool IsCard(const QString& root) {
  return root.startsWith(QLatin1String("/media/")) || root.startsWith(QLatin1String("/mnt/")) ||
         root.startsWith(QLatin1String("/run/media/"));
}

}  // namespace

FolderPanel::FolderPanel(const char* places, const char* tree, QFileSystemModel& model,
                         QWidget* parent)
    : QWidget(parent), model_(model), places_(new QComboBox(this)), tree_(new QTreeView(this)) {
  places_->setObjectName(QString::fromLatin1(places));
  places_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  tree_->setObjectName(QString::fromLatin1(tree));
  tree_->setModel(&model_);
  for (int column = 1; column < model_.columnCount(); ++column) {
    tree_->hideColumn(column);
  }
  tree_->setHeaderHidden(true);
  tree_->setUniformRowHeights(true);
  tree_->setMinimumHeight(kSmallestTree);
  tree_->setContextMenuPolicy(Qt::CustomContextMenu);
  tree_->header()->setStretchLastSection(false);
  tree_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  rest_.setSingleShot(true);
  rest_.setInterval(kRestMilliseconds);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(places_);
  layout->addWidget(tree_, 1);
  connect(places_, &QComboBox::activated, this, &FolderPanel::PlaceChosen);
  connect(tree_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          &FolderPanel::CurrentChanged);
  connect(tree_, &QTreeView::customContextMenuRequested, this,
          [this](QPoint position) { Q_EMIT MenuAsked(tree_->viewport()->mapToGlobal(position)); });
  connect(&rest_, &QTimer::timeout, this, &FolderPanel::TakeCurrent);
  // Rows that are read or sorted in after a folder was chosen move it out of sight.
  scroll_.setSingleShot(true);
  scroll_.setInterval(kScrollMilliseconds);
  connect(&scroll_, &QTimer::timeout, this, [this] { tree_->scrollTo(tree_->currentIndex()); });
  const auto rowsMoved = [this] {
    if (sinceSet_.isValid() && sinceSet_.elapsed() < kSettleMilliseconds) {
      scroll_.start();
    }
  };
  connect(&model_, &QFileSystemModel::directoryLoaded, this, rowsMoved);
  connect(&model_, &QFileSystemModel::rowsInserted, this, rowsMoved);
  connect(&model_, &QFileSystemModel::layoutChanged, this, rowsMoved);
  connect(tree_->verticalScrollBar(), &QScrollBar::actionTriggered, this, [this] {
    scroll_.stop();
    sinceSet_.invalidate();  // The user looks elsewhere.
  });
}

void FolderPanel::SetPlaces(const QStringList& recentFolders, const Strings& words) {
  const QSignalBlocker blocker(places_);
  places_->clear();
  const auto add = [this](const QString& text, const QString& path) {
    if (places_->findData(path) < 0 && IsFolder(path)) {
      places_->addItem(OneLine(ShownPath(text)), path);
    }
  };
  add(words.LangString(472, "Home"), QDir::homePath());
  for (const QString& folder : recentFolders) {
    add(folder.section(QLatin1Char('/'), -1), folder);
  }
  for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
    if (volume.isValid() && volume.isReady() && IsCard(volume.rootPath())) {
      add(volume.displayName(), volume.rootPath());
    }
  }
  add(words.LangString(481, "Computer"), QDir::rootPath());
  fixedPlaces_ = places_->count();
  ShowPlace();
}

void FolderPanel::SetAccessibleNames(const QString& places, const QString& tree) {
  places_->setAccessibleName(places);
  places_->setToolTip(places);
  places_->setPlaceholderText(places);
  tree_->setAccessibleName(tree);
}

/// The place that the folder is, if any. Folders that the tree cannot show are places while their
/// parent, or they themselves, are chosen.
void FolderPanel::ShowPlace() {
  const QSignalBlocker blocker(places_);
  while (places_->count() > fixedPlaces_) {
    places_->removeItem(fixedPlaces_);
  }
  QStringList further = FoldersWithOddNames(folder_);
  if (!model_.index(folder_).isValid() && IsFolder(folder_)) {
    further.prepend(folder_);
  }
  for (const QString& path : further) {
    if (places_->findData(path) < 0) {
      places_->addItem(OneLine(ShownPath(path.section(QLatin1Char('/'), -1))), path);
    }
  }
  places_->setCurrentIndex(places_->findData(folder_));
}

void FolderPanel::SetFolder(const QString& path) {
  rest_.stop();
  sinceSet_.start();
  folder_ = path;
  const QModelIndex index = model_.index(path);
  {
    const QSignalBlocker blocker(tree_->selectionModel());
    tree_->setCurrentIndex(index);
  }
  tree_->expand(index);
  tree_->scrollTo(index);
  tree_->viewport()->update();
  tree_->setToolTip(PlainToolTip(ShownPath(path)));
  ShowPlace();
}

void FolderPanel::PlaceChosen(int position) {
  const QString path = places_->itemData(position).toString();
  if (path != folder_) {
    SetFolder(path);
    Q_EMIT FolderChanged(path);
  }
}

void FolderPanel::CurrentChanged(const QModelIndex& index) {
  if (index.isValid()) {
    rest_.start();
  }
}

void FolderPanel::Settle() {
  if (rest_.isActive()) {
    rest_.stop();
    TakeCurrent();
  }
}

void FolderPanel::TakeCurrent() {
  const QString path = model_.filePath(tree_->currentIndex());
  if (path != folder_ && !path.isEmpty()) {
    folder_ = path;
    tree_->setToolTip(PlainToolTip(path));
    ShowPlace();
    Q_EMIT FolderChanged(path);
  }
}

}  // namespace tessa
