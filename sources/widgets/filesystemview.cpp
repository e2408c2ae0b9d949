#include "filesystemview.h"

#include "copytobuffer.h"
#include "fileitem.h"
#include "flatfileview.h"
#include "fullfileview.h"
#include "itemeditdelegate.h"
#include "treewidget.h"

#include <QBoxLayout>
#include <QDebug>
#include <QDir>
#include <QFileSystemWatcher>
#include <QKeyEvent>
#include <QMessageBox>
#include <QSet>
#include <QStatusBar>
#include <QTimer>

namespace {

// The removal question lists at most this many paths; a box taller than the
// screen helps nobody.
constexpr int MaxListedPaths = 25;

} // namespace

FileSystemView::FileSystemView(QObject *parent)
    : QObject(parent)
    , m_fullView(std::make_unique<FullFileView>())
    , m_flatView(std::make_unique<FlatFileView>())
    , m_view(m_fullView.get())
{
    m_watcher = new QFileSystemWatcher(this);
    m_refreshTimer = new QTimer(this);
    m_refreshTimer->setSingleShot(true);
    // Changes come in bursts (a copy, an unpacked archive): list once per burst.
    m_refreshTimer->setInterval(150);
    connect(m_watcher, &QFileSystemWatcher::directoryChanged, m_refreshTimer,
            qOverload<>(&QTimer::start));
    connect(m_refreshTimer, &QTimer::timeout, this, &FileSystemView::updateFileView);
    m_flatView->setDoneCallback([this] { flatListingDone(); });
    m_flatView->setBatchCallback([this] { invalidateTotals(); });
    m_confirm = [](const QString &title, const QString &text) {
        return QMessageBox::question(nullptr, title, text, QMessageBox::Yes | QMessageBox::No)
            == QMessageBox::Yes;
    };
}

FileSystemView::~FileSystemView()
{
    m_flatView->stop();
}

void FileSystemView::init(QBoxLayout *layout, QWidget *parent, QStatusBar *statusBar)
{
    m_statusBar = statusBar;
    m_tree = new TreeWidget(parent);
    if (layout)
        layout->addWidget(m_tree);
    m_tree->installEventFilter(this);
    m_tree->setItemDelegate(new ItemEditDelegate(this, m_tree));
    m_copyToBuffer = new CopyToBuffer(m_tree, this);
    m_view->setColumns(m_tree);

    // The list activates a row on Return and on a double click (or a single
    // click, where the platform's style says so); listening to the double
    // click as well would open the row twice.
    connect(m_tree, &QTreeWidget::itemActivated, this, &FileSystemView::proceedDoubleClick);
    connect(m_tree, &QTreeWidget::itemSelectionChanged, this, &FileSystemView::updateStatusInfo);
}

bool FileSystemView::canOpen(const QString &folder, QString *reason) const
{
    const QFileInfo info(folder);
    if (folder.isEmpty() || !info.exists()) {
        *reason = QStringLiteral("The folder %1 does not exist")
                      .arg(QDir::toNativeSeparators(folder));
        return false;
    }
    if (!info.isDir()) {
        *reason = QStringLiteral("%1 is not a folder").arg(QDir::toNativeSeparators(folder));
        return false;
    }
    if (!info.isReadable() || !info.isExecutable()) {
        *reason = QStringLiteral("The folder %1 cannot be opened: permission denied")
                      .arg(QDir::toNativeSeparators(folder));
        return false;
    }
    return true;
}

void FileSystemView::showMessage(const QString &text)
{
    qWarning().noquote() << text;
    m_statusText = text;
    if (m_statusBar)
        m_statusBar->showMessage(text);
}

bool FileSystemView::changePath(const QString &path)
{
    QString target = currentPath();
    if (!path.isEmpty()) {
        const QString clean = DrivePath::normalize(path);
        qDebug() << "FileSystemView::DiskName" << m_path.driveOf(clean);
        target = QFileInfo(m_path.resolve(clean)).absoluteFilePath();
        qDebug() << "FileSystemView::Path" << target;
    }
    QString reason;
    if (!canOpen(target, &reason)) {
        showMessage(reason);
        return false;
    }
    m_path.setPath(target);
    showFolder(Focus::Parent);
    Q_EMIT changeCurrentPath(currentPath());
    return true;
}

void FileSystemView::showRoot()
{
    const QString drive = m_path.driveOf(currentPath());
    const QString root = drive.isEmpty() ? QDir::rootPath() : drive;
    QString reason;
    if (!canOpen(root, &reason)) {
        showMessage(reason);
        return;
    }
    m_path.setPath(root);
    showFolder(Focus::Parent);
    Q_EMIT changeCurrentPath(currentPath());
}

void FileSystemView::watch(const QString &folder)
{
    const QStringList watched = m_watcher->directories();
    if (!watched.isEmpty())
        m_watcher->removePaths(watched);
    if (!folder.isEmpty())
        m_watcher->addPath(folder);
}

QStringList FileSystemView::watchedFolders() const
{
    return m_watcher->directories();
}

void FileSystemView::showFolder(Focus focus)
{
    if (!m_tree)
        return;
    QString currentKey;
    QSet<QString> selectedKeys;
    if (focus == Focus::Keep) {
        currentKey = FileInfoMap::keyOf(m_tree->currentItem());
        for (const QTreeWidgetItem *item : m_tree->selectedItems())
            selectedKeys.insert(FileInfoMap::keyOf(item));
    }
    m_refreshTimer->stop();
    watch(currentPath());
    m_flatView->stop();
    m_map.clear();
    m_tree->clear();
    invalidateTotals();
    if (m_flat)
        Q_EMIT changeIcon(false);
    m_view->showObjects(m_tree, currentPath(), m_map);
    if (m_flat && m_view->isBusy())
        return;
    m_tree->applyUserSort();
    if (focus == Focus::Keep && !currentKey.isEmpty() && itemForKey(currentKey)) {
        m_tree->setCurrentItem(itemForKey(currentKey), 0, QItemSelectionModel::NoUpdate);
        for (const QString &key : qAsConst(selectedKeys)) {
            if (QTreeWidgetItem *item = itemForKey(key))
                item->setSelected(true);
        }
    } else {
        selectParentRow();
    }
    Q_EMIT changeIcon(true);
    updateStatusInfo();
}

void FileSystemView::flatListingDone()
{
    m_tree->applyUserSort();
    if (!m_tree->currentItem())
        selectParentRow();
    invalidateTotals();
    updateStatusInfo();
    Q_EMIT changeIcon(true);
}

void FileSystemView::selectParentRow()
{
    // The flat list shows ".." in its name column, after the empty folder cell.
    const QList<QTreeWidgetItem *> found = m_tree->findItems(
        FileView::parentName(), Qt::MatchExactly | Qt::MatchCaseSensitive, m_view->nameColumn());
    if (!found.isEmpty()) {
        m_tree->setCurrentItem(found.first(), 0, QItemSelectionModel::ClearAndSelect
                                                     | QItemSelectionModel::Rows);
    } else if (m_tree->topLevelItemCount() > 0) {
        m_tree->setCurrentItem(m_tree->topLevelItem(0), 0, QItemSelectionModel::NoUpdate);
    }
}

QTreeWidgetItem *FileSystemView::itemForKey(const QString &key) const
{
    if (!m_tree || key.isEmpty())
        return nullptr;
    for (int i = 0, n = m_tree->topLevelItemCount(); i < n; ++i) {
        QTreeWidgetItem *item = m_tree->topLevelItem(i);
        if (FileInfoMap::keyOf(item) == key)
            return item;
    }
    return nullptr;
}

void FileSystemView::updateFileView()
{
    const QString shown = currentPath();
    if (shown.isEmpty())
        return;
    QString reason;
    if (canOpen(shown, &reason)) {
        showFolder(Focus::Keep);
        return;
    }
    // The folder went away (or became unreadable) while shown: fall back to
    // the nearest folder above it that can still be opened.
    QString folder = shown;
    QString ignored;
    while (!canOpen(folder, &ignored)) {
        const QString up = DrivePath::normalize(QFileInfo(folder).absolutePath());
        if (up == folder)
            break;
        folder = up;
    }
    m_path.setPath(folder);
    showFolder(Focus::Parent);
    showMessage(reason);
    Q_EMIT changeCurrentPath(currentPath());
}

void FileSystemView::proceedDoubleClick(QTreeWidgetItem *item, int)
{
    if (!item)
        return;
    bool found = false;
    const QFileInfo info = m_map.value(item, &found);
    const QString name = item->text(m_view->nameColumn());
    qDebug() << "DoubleClicked" << name;
    if (name == FileView::parentName() && (!found || info.fileName() == FileView::parentName())) {
        showFolderEx(FileView::parentName());
    } else if (found && info.isDir()) {
        showFolderEx(info.fileName(), info.absolutePath());
    } else if (found) {
        Q_EMIT editFile();
    }
}

void FileSystemView::showFolderEx(const QString &rootFolder, const QString &path)
{
    QString target;
    if (rootFolder != FileView::parentName()) {
        const QString base = (m_flat || path.isEmpty()) ? currentPath() : path;
        if (!QFileInfo(base).isDir())
            return;
        target = DrivePath::normalize(QDir(base).filePath(rootFolder));
        QString reason;
        if (!canOpen(target, &reason)) {
            showMessage(reason);
            return;
        }
        m_path.setPath(target);
        Q_EMIT changeFolder(target);
    } else {
        target = m_path.parentPath();
        qDebug() << "************" << target;
        if (target == currentPath())
            return;
        m_path.setPath(target);
        Q_EMIT changeFolder(target + QStringLiteral("/.."));
    }
    showFolder(Focus::Parent);
    updateStatusInfo();
    Q_EMIT changeCurrentPath(currentPath());
}

void FileSystemView::stopFlatListView()
{
    const bool wasBusy = m_flatView->isBusy();
    m_flatView->stop();
    if (wasBusy && m_tree) {
        if (!m_tree->currentItem())
            selectParentRow();
        invalidateTotals();
        updateStatusInfo();
    }
    Q_EMIT changeIcon(true);
}

bool FileSystemView::isListing() const
{
    return m_flat && m_flatView->isBusy();
}

bool FileSystemView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_tree && event->type() == QEvent::KeyPress) {
        auto *keyEvent = static_cast<QKeyEvent *>(event);
        if (keyEvent->key() == Qt::Key_Enter) {
            // The keypad Enter opens a row only when exactly one is selected;
            // the list would otherwise activate its current row on its own.
            const QList<QTreeWidgetItem *> selected = m_tree->selectedItems();
            if (selected.size() == 1)
                proceedDoubleClick(selected.first(), 0);
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

void FileSystemView::updateStatusInfo()
{
    if (!m_tree)
        return;
    if (!m_totalsValid) {
        m_view->countRows(m_tree, m_map, &m_rowCount, &m_rowSize);
        m_folderFiles = 0;
        m_folderSize = 0;
        if (m_view->isFiltered()) {
            for (const QFileInfo &info : QDir(currentPath()).entryInfoList(QDir::Files)) {
                ++m_folderFiles;
                m_folderSize += info.size();
            }
        }
        m_totalsValid = true;
    }
    const QString selection = m_view->selectionStatus(m_tree, m_map);
    auto rowsPart = [this](const QString &word) {
        return QStringLiteral(" %1").arg(m_rowCount) + word + QStringLiteral("(")
            + FileView::sizeText(m_rowSize) + QStringLiteral(")");
    };
    QString text;
    if (!m_view->isFiltered()) {
        text = rowsPart(QStringLiteral(" files ")) + selection;
    } else {
        text = QStringLiteral(" %1 ").arg(m_folderFiles) + QStringLiteral(" files ")
            + QStringLiteral("(%1) ").arg(m_folderSize)
            + rowsPart(QStringLiteral(" files in filtered view ")) + selection;
    }
    m_statusText = text;
    if (m_statusBar)
        m_statusBar->showMessage(text);
}

QString FileSystemView::statusText() const
{
    return m_statusText;
}

QList<QFileInfo> FileSystemView::selectedInfos() const
{
    QList<QFileInfo> infos;
    if (!m_tree)
        return infos;
    for (int i = 0, n = m_tree->topLevelItemCount(); i < n; ++i) {
        const QTreeWidgetItem *item = m_tree->topLevelItem(i);
        if (!item->isSelected())
            continue;
        bool found = false;
        const QFileInfo info = m_map.value(item, &found);
        if (found && info.fileName() != FileView::parentName())
            infos << info;
    }
    return infos;
}

QStringList FileSystemView::selectedPaths(bool withMask) const
{
    QStringList paths;
    for (const QFileInfo &info : selectedInfos()) {
        QString path = info.absoluteFilePath();
        if (withMask && info.isDir())
            path += QStringLiteral("/*.*");
        paths << path;
    }
    return paths;
}

QStringList FileSystemView::selectedFiles() const
{
    QStringList files;
    for (const QFileInfo &info : selectedInfos()) {
        if (!info.isDir())
            files << info.absoluteFilePath();
    }
    return files;
}

void FileSystemView::setMask(const QString &mask)
{
    m_fullView->setMask(mask);
    m_flatView->setMask(mask);
    if (!currentPath().isEmpty())
        showFolder(Focus::Keep);
}

QString FileSystemView::mask() const
{
    return m_view->mask();
}

void FileSystemView::setFlatList(bool on)
{
    if (on == m_flat || !m_tree)
        return;
    if (on) {
        m_flat = true;
        m_view = m_flatView.get();
        m_tree->resetUserSort();
        m_view->setColumns(m_tree);
        showFolder(Focus::Parent);
        return;
    }
    const bool wasBusy = m_flatView->isBusy();
    m_flatView->stop();
    m_flat = false;
    m_view = m_fullView.get();
    m_tree->resetUserSort();
    m_view->setColumns(m_tree);
    m_path.setPath(currentPath());
    showFolder(Focus::Parent);
    Q_EMIT changeCurrentPath(currentPath());
    if (wasBusy)
        Q_EMIT changeIcon(true);
}

void FileSystemView::markFiles(const QStringList &fileNames, FileMark mark)
{
    if (!m_tree || fileNames.isEmpty())
        return;
    // Rows are matched by their exact file name, so names that differ only in
    // case (A.SQL and a.sql) each keep their own mark.
    const QSet<QString> wanted(fileNames.cbegin(), fileNames.cend());
    const int column = m_view->nameColumn();
    for (int i = 0; i < m_tree->topLevelItemCount(); ++i) {
        QTreeWidgetItem *item = m_tree->topLevelItem(i);
        bool found = false;
        const QFileInfo info = m_map.value(item, &found);
        if (!found || info.isDir() || !wanted.contains(info.fileName()))
            continue;
        QColor color = item->foreground(column).color();
        if (mark == DifferentMark)
            color.setGreen(100);
        else
            color.setRed(255);
        item->setForeground(column, color);
        QFont font = item->font(column);
        font.setWeight(75);
        item->setFont(column, font);
    }
}

void FileSystemView::hideUnmarkedFiles()
{
    qDebug() << "FileSystemView::HideNotSelectedFiles";
    if (!m_tree)
        return;
    const int column = m_view->nameColumn();
    for (int i = 0, n = m_tree->topLevelItemCount(); i < n; ++i) {
        QTreeWidgetItem *item = m_tree->topLevelItem(i);
        bool found = false;
        const QFileInfo info = m_map.value(item, &found);
        if (!found || info.isDir() || info.fileName() == FileView::parentName())
            continue;
        // A row never coloured by a mark has no foreground of its own.
        const bool uncoloured = !item->data(column, Qt::ForegroundRole).isValid();
        const QColor color = item->foreground(column).color();
        if (uncoloured || (color.red() == 0 && color.green() == 0 && color.black() == 0))
            item->setHidden(true);
    }
}

void FileSystemView::setRemoveConfirmation(Confirmation confirmation)
{
    m_confirm = std::move(confirmation);
}

void FileSystemView::removeSelection()
{
    const QStringList paths = selectedPaths(false);
    if (paths.isEmpty())
        return;
    QStringList listed;
    for (int i = 0; i < paths.size() && i < MaxListedPaths; ++i)
        listed << QDir::toNativeSeparators(paths.at(i));
    if (paths.size() > MaxListedPaths)
        listed << QStringLiteral("...");
    const QString text = QStringLiteral("Would you like to remove next %1 object(s):\n%2")
                             .arg(paths.size())
                             .arg(listed.join(QLatin1Char('\n')));
    if (!m_confirm || !m_confirm(QStringLiteral("Removing object(s)"), text))
        return;
    for (const QString &path : paths)
        removePath(path);
    // The watcher would notice too, a moment later; the list should not show
    // removed rows meanwhile.
    updateFileView();
}

bool FileSystemView::removePath(const QString &path)
{
    const QFileInfo info(path);
    // A link is removed itself, never what it points to.
    if (info.isSymLink() || info.isJunction() || !info.isDir())
        return QFile::remove(path);
    bool removed = true;
    const QFileInfoList entries = QDir(path).entryInfoList(
        QDir::Files | QDir::Dirs | QDir::System | QDir::NoDotAndDotDot, QDir::NoSort);
    for (const QFileInfo &entry : entries)
        removed = removePath(entry.absoluteFilePath()) && removed;
    // Hidden entries are not listed above, so a folder that holds some stays.
    return QDir().rmdir(path) && removed;
}

bool FileSystemView::renameItem(QTreeWidgetItem *item, const QString &newName)
{
    bool found = false;
    const QFileInfo info = m_map.value(item, &found);
    if (!found || info.fileName() == FileView::parentName())
        return false;
    if (newName.isEmpty() || newName == QLatin1String(".") || newName == FileView::parentName()
        || newName.contains(QLatin1Char('/')) || newName.contains(QChar(0))
        || newName == info.fileName())
        return false;
#ifdef Q_OS_WIN
    if (newName.contains(QLatin1Char('\\')))
        return false;
#endif
    const QString folder = info.absolutePath();
    const QString target = folder + QLatin1Char('/') + newName;
    const QFileInfo existing(target);
    if (existing.exists() || existing.isSymLink())
        return false;

    // Keep the watcher from reloading the list for our own rename.
    const QStringList watched = m_watcher->directories();
    if (!watched.isEmpty())
        m_watcher->removePaths(watched);
    const bool renamed = QDir(folder).rename(info.fileName(), newName);
    if (!watched.isEmpty())
        m_watcher->addPaths(watched);
    if (!renamed)
        return false;

    const QFileInfo renamedInfo(target);
    const bool isFolder = renamedInfo.isDir();
    item->setText(m_view->nameColumn(), isFolder ? newName : renamedInfo.completeBaseName());
    item->setText(m_view->extColumn(), isFolder ? QString() : renamedInfo.suffix());
    m_map.remove(FileInfoMap::keyOf(item));
    const QString key = FileInfoMap::keyOf(renamedInfo);
    m_map.insert(key, renamedInfo);
    item->setData(0, FileInfoMap::KeyRole, key);
    invalidateTotals();
    return true;
}
