#include "filesystemview.h"

#include "backgroundrelease.h"
#include "copytobuffer.h"
#include "filelistmodel.h"
#include "fileremover.h"
#include "flatfileview.h"
#include "fullfileview.h"
#include "itemeditdelegate.h"
#include "listingworker.h"
#include "logging.h"
#include "treewidget.h"

#include <QBoxLayout>
#include <QDebug>
#include <QDir>
#include <QFileSystemWatcher>
#include <QInputDialog>
#include <QKeyEvent>
#include <QMessageBox>
#include <QProgressDialog>
#include <QSet>
#include <QStatusBar>
#include <QThread>
#include <QTimer>

namespace {

// The removal question lists at most this many paths; a box taller than the
// screen helps nobody.
constexpr int MaxListedPaths = 25;
// A removal that ends sooner shows no progress window.
constexpr int RemoveProgressDelayMs = 400;
// A burst of changes is shown this long after its first change, and again
// as long as it lasts: the timer is not restarted by later changes.
constexpr int RefreshDelayMs = 150;
// Files rewritten in place change no folder entry, so the watcher misses
// them; lists up to this size are compared with the disk now and then.
constexpr int PollIntervalMs = 2000;
constexpr int PollMaxRows = 10000;

} // namespace

FileSystemView::FileSystemView(QObject *parent)
    : QObject(parent)
    , m_fullView(std::make_unique<FullFileView>())
    , m_flatView(new FlatFileView(this))
    , m_view(m_fullView.get())
{
    m_watcher = new QFileSystemWatcher(this);
    m_refreshTimer = new QTimer(this);
    m_refreshTimer->setSingleShot(true);
    m_refreshTimer->setInterval(RefreshDelayMs);
    m_pollTimer = new QTimer(this);
    m_pollTimer->setInterval(PollIntervalMs);
    connect(m_watcher, &QFileSystemWatcher::directoryChanged, this, &FileSystemView::folderChanged);
    connect(m_refreshTimer, &QTimer::timeout, this, &FileSystemView::refreshInBackground);
    connect(m_pollTimer, &QTimer::timeout, this, [this] {
        if (m_tree && m_tree->isVisible() && model()->count() <= PollMaxRows && !isListing())
            refreshInBackground();
    });
    m_flatView->setDoneCallback([this] { flatListingDone(); });
    m_flatView->setBatchCallback([this] { invalidateTotals(); });
    m_confirm = [](const QString &title, const QString &text) {
        // Enter alone never removes anything.
        return QMessageBox::question(nullptr, title, text, QMessageBox::Yes | QMessageBox::No,
                                     QMessageBox::No)
            == QMessageBox::Yes;
    };
    m_patternPrompt = [this](const QString &title, QString &pattern) {
        bool ok = false;
        const QString text = QInputDialog::getText(m_tree, title, QStringLiteral("Files:"),
                                                   QLineEdit::Normal, pattern, &ok);
        if (ok)
            pattern = text;
        return ok && !text.trimmed().isEmpty();
    };
}

FileSystemView::~FileSystemView()
{
    if (m_removeThread) {
        m_remover->stop();
        m_removeThread->quit();
        m_removeThread->wait();
        m_remover->joined();
        delete m_remover;
        delete m_removeProgress;
    }
    if (m_refresh.isActive()) {
        m_refresh.requestStop();
        m_refresh.wait(10000);
    }
}

FileListModel *FileSystemView::model() const
{
    return m_tree ? m_tree->fileModel() : nullptr;
}

void FileSystemView::init(QBoxLayout *layout, QWidget *parent, QStatusBar *statusBar)
{
    m_statusBar = statusBar;
    m_tree = new TreeWidget(parent);
    if (layout)
        layout->addWidget(m_tree);
    m_tree->installEventFilter(this);
    m_tree->setItemDelegate(new ItemEditDelegate(this, m_tree));
    new CopyToBuffer(m_tree, this);
    m_view->setColumns(m_tree);

    // The list activates a row on Return and on a double click (or a single
    // click, where the platform's style says so); listening to the double
    // click as well would open the row twice.
    connect(m_tree, &QAbstractItemView::activated, this, &FileSystemView::proceedDoubleClick);
    connect(m_tree->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &FileSystemView::updateStatusInfo);
    m_pollTimer->start();
}

bool FileSystemView::canOpen(const QString &folder, QString *reason) const
{
    const QFileInfo info(folder);
    const QString shown = FileListModel::displayName(QDir::toNativeSeparators(folder));
    if (folder.isEmpty() || !info.exists()) {
        *reason = QStringLiteral("The folder %1 does not exist").arg(shown);
        return false;
    }
    if (!info.isDir()) {
        *reason = QStringLiteral("%1 is not a folder").arg(shown);
        return false;
    }
    if (!info.isReadable() || !info.isExecutable()) {
        *reason = QStringLiteral("The folder %1 cannot be opened: permission denied").arg(shown);
        return false;
    }
    return true;
}

void FileSystemView::showMessage(const QString &text)
{
    qWarning().noquote() << text;
    m_statusText = text;
    if (m_statusBar && m_statusActive)
        m_statusBar->showMessage(text);
}

void FileSystemView::setStatusActive(bool active)
{
    m_statusActive = active;
    if (active && m_statusBar)
        m_statusBar->showMessage(m_statusText);
}

bool FileSystemView::changePath(const QString &path)
{
    QString target = currentPath();
    if (!path.isEmpty()) {
        const QString clean = DrivePath::normalize(path);
        qCDebug(lcFiles) << "FileSystemView::DiskName" << m_path.driveOf(clean);
        target = QFileInfo(m_path.resolve(clean)).absoluteFilePath();
        qCDebug(lcFiles) << "FileSystemView::Path" << target;
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

void FileSystemView::showFolder(Focus focus, const QString &cursorPath)
{
    if (!m_tree)
        return;
    FileListModel *rows = model();
    QString currentKey;
    QStringList selectedKeys;
    const bool marking = m_tree->isMarking();
    if (focus == Focus::Keep) {
        currentKey = m_tree->currentRow() >= 0 ? rows->rowAt(m_tree->currentRow()).path
                                               : QString();
        for (int row : m_tree->selectedRowNumbers())
            selectedKeys << rows->rowAt(row).path;
    } else {
        rows->clearMarks();
    }
    m_refreshTimer->stop();
    m_refresh.requestStop();
    m_refresh = {};
    m_refreshAgain = false;
    m_rowsHidden = false;
    watch(currentPath());
    m_flatView->stop();
    rows->clear();
    invalidateTotals();
    if (m_flat)
        Q_EMIT changeIcon(false);
    m_view->showObjects(rows, currentPath());
    if (m_flat && m_view->isBusy()) {
        m_cursorAfterListing = cursorPath;
        return;
    }
    m_tree->applyUserSort();
    if (focus == Focus::Keep && rows->rowOf(currentKey) >= 0) {
        // One look-up per row through the model's index: linear in the selection.
        QVector<int> selected;
        selected.reserve(selectedKeys.size());
        for (const QString &key : qAsConst(selectedKeys)) {
            const int row = rows->rowOf(key);
            if (row >= 0)
                selected << row;
        }
        m_tree->setCurrentRow(rows->rowOf(currentKey), QItemSelectionModel::NoUpdate);
        m_tree->selectRowNumbers(selected);
        m_tree->setMarking(marking);
    } else {
        placeCursor(cursorPath);
    }
    Q_EMIT changeIcon(true);
    updateStatusInfo();
}

void FileSystemView::placeCursor(const QString &path)
{
    const int row = path.isEmpty() ? -1 : model()->rowOf(path);
    if (row >= 0)
        m_tree->setCurrentRow(row);
    else
        selectParentRow();
}

void FileSystemView::flatListingDone()
{
    m_tree->applyUserSort();
    if (!m_tree->currentIndex().isValid() || !m_cursorAfterListing.isEmpty())
        placeCursor(m_cursorAfterListing);
    m_cursorAfterListing.clear();
    invalidateTotals();
    updateStatusInfo();
    Q_EMIT changeIcon(true);
}

void FileSystemView::selectParentRow()
{
    const FileListModel *rows = model();
    for (int row = 0, n = rows->count(); row < n; ++row) {
        if (rows->rowAt(row).kind == FileRow::Parent) {
            m_tree->setCurrentRow(row);
            return;
        }
        // ".." comes first in listing order; a sorted list keeps it on top.
        if (rows->isOrdered())
            break;
    }
    if (rows->count() > 0)
        m_tree->setCurrentRow(0, QItemSelectionModel::NoUpdate);
}

int FileSystemView::rowOfKey(const QString &key) const
{
    return m_tree && !key.isEmpty() ? model()->rowOf(key) : -1;
}

QString FileSystemView::currentFilePath() const
{
    const int row = m_tree ? m_tree->currentRow() : -1;
    if (row < 0 || model()->rowAt(row).kind == FileRow::Parent)
        return QString();
    return model()->rowAt(row).path;
}

bool FileSystemView::setCurrentFilePath(const QString &path)
{
    const int row = rowOfKey(path);
    if (row < 0)
        return false;
    m_tree->setCurrentRow(row, m_tree->isMarking() ? QItemSelectionModel::NoUpdate
                                                   : QItemSelectionModel::ClearAndSelect);
    return true;
}

void FileSystemView::folderChanged()
{
    // Not restarted by later changes: a long burst is still shown as it goes.
    if (!m_refreshTimer->isActive())
        m_refreshTimer->start();
}

void FileSystemView::refreshInBackground()
{
    if (!m_tree || currentPath().isEmpty() || isListing())
        return;
    if (m_refresh.isActive()) {
        m_refreshAgain = true;
        return;
    }
    if (!QFileInfo(currentPath()).isDir() || m_rowsHidden) {
        updateFileView();
        return;
    }
    ListingWorker::Request request;
    request.folder = currentPath();
    request.mask = m_view->mask();
    request.tree = m_flat;
    request.hidden = m_view->showsHidden();
    request.compare = true;
    request.before = m_view->listed();
    auto *worker = new ListingWorker(request);
    connect(worker, &ListingWorker::changesFound, this,
            [this, worker](const FileListing::Changes &changes, const QVector<FileRow> &listing,
                           const FileListing::FolderTotals &totals) {
                if (m_refresh.controls(worker))
                    applyRefresh(changes, listing, totals);
            });
    connect(worker, &ListingWorker::done, this, [this, worker] {
        if (!m_refresh.controls(worker))
            return;
        m_refresh = {};
        if (m_refreshAgain) {
            m_refreshAgain = false;
            refreshInBackground();
        }
    });
    m_refresh = worker->start(QThread::LowPriority);
}

void FileSystemView::applyRefresh(const FileListing::Changes &changes,
                                  const QVector<FileRow> &listing,
                                  const FileListing::FolderTotals &totals)
{
    // Files the mask leaves out change the status line alone.
    const FileListing::FolderTotals before = m_view->folderTotals();
    QVector<FileRow> old = m_view->listed();
    m_view->setListed(listing, totals);
    releaseInBackground(std::move(old));
    if (changes.isEmpty()) {
        if (before.files != totals.files || before.bytes != totals.bytes) {
            invalidateTotals();
            updateStatusInfo();
        }
        return;
    }
    model()->applyChanges(changes);
    if (!m_tree->currentIndex().isValid())
        selectParentRow();
    invalidateTotals();
    updateStatusInfo();
}

void FileSystemView::showHiddenRows()
{
    if (!m_rowsHidden)
        return;
    m_rowsHidden = false;
    for (int row = 0, n = model()->count(); row < n; ++row) {
        if (m_tree->isRowHidden(row, {}))
            m_tree->setRowHidden(row, {}, false);
    }
}

void FileSystemView::updateFileView()
{
    const QString shown = currentPath();
    if (shown.isEmpty() || !m_tree)
        return;
    QString reason;
    if (canOpen(shown, &reason)) {
        // Asked for in person, the list shows the folder as it is: no marks,
        // nothing hidden. Refreshes from the watcher keep both.
        showHiddenRows();
        model()->clearMarks();
        if (m_flat) {
            refreshInBackground();
            return;
        }
        m_refreshTimer->stop();
        FileListing::FolderTotals totals;
        const QVector<FileRow> listing = FileListing::listFolder(
            shown, m_view->mask(), true, m_view->showsHidden(), &totals);
        applyRefresh(FileListing::compare(m_view->listed(), listing), listing, totals);
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

void FileSystemView::proceedDoubleClick(const QModelIndex &index)
{
    if (!index.isValid() || !m_tree)
        return;
    const FileRow row = model()->rowAt(index.row());
    qCDebug(lcFiles) << "DoubleClicked" << row.name;
    if (row.kind == FileRow::Parent)
        showFolderEx(FileView::parentName());
    else if (row.kind == FileRow::Folder)
        showFolderEx(row.fileName(), QFileInfo(row.path).absolutePath());
    else
        Q_EMIT editFile();
}

void FileSystemView::showFolderEx(const QString &rootFolder, const QString &path)
{
    QString target;
    QString cursor;
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
        qCDebug(lcFiles) << "************" << target;
        if (target == currentPath())
            return;
        // The cursor goes back to the folder just left.
        cursor = currentPath();
        m_path.setPath(target);
        Q_EMIT changeFolder(target + QStringLiteral("/.."));
    }
    showFolder(Focus::Parent, cursor);
    updateStatusInfo();
    Q_EMIT changeCurrentPath(currentPath());
}

void FileSystemView::stopFlatListView()
{
    const bool wasBusy = m_flatView->isBusy();
    m_flatView->stop();
    if (wasBusy && m_tree) {
        if (!m_tree->currentIndex().isValid())
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
    if (watched != m_tree || event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    auto *keyEvent = static_cast<QKeyEvent *>(event);
    const bool keypad = keyEvent->modifiers() & Qt::KeypadModifier;
    switch (keyEvent->key()) {
    case Qt::Key_Enter: {
        // The keypad Enter opens a row only when exactly one is selected;
        // the list would otherwise activate its current row on its own.
        const QVector<int> selected = m_tree->selectedRowNumbers();
        if (selected.size() == 1)
            proceedDoubleClick(model()->index(selected.first(), 0));
        return true;
    }
    case Qt::Key_Insert:
        if (keyEvent->modifiers() != Qt::NoModifier)
            break;
        m_tree->toggleMarkAndAdvance();
        return true;
    case Qt::Key_Plus:
    case Qt::Key_Minus:
        if (!keypad)
            break;
        promptPattern(keyEvent->key() == Qt::Key_Plus);
        return true;
    case Qt::Key_Asterisk:
        if (!keypad)
            break;
        invertSelection();
        return true;
    case Qt::Key_H:
        if (keyEvent->modifiers() != Qt::ControlModifier)
            break;
        setShowHidden(!showsHidden());
        return true;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

bool FileSystemView::promptPattern(bool select)
{
    QString pattern = QStringLiteral("*.*");
    if (!m_patternPrompt
        || !m_patternPrompt(select ? QStringLiteral("Select") : QStringLiteral("Unselect"),
                            pattern))
        return false;
    selectByPattern(pattern, select);
    return true;
}

QVector<int> FileSystemView::selectedFileRows() const
{
    QVector<int> rows;
    for (int row : m_tree->selectedRowNumbers()) {
        if (model()->rowAt(row).kind == FileRow::File)
            rows << row;
    }
    return rows;
}

void FileSystemView::selectByPattern(const QString &pattern, bool select)
{
    if (!m_tree)
        return;
    const QStringList filters = FileListing::nameFiltersOf(pattern);
    QVector<int> rows;
    const FileListModel *list = model();
    for (int row = 0, n = list->count(); row < n; ++row) {
        const FileRow &file = list->rowAt(row);
        if (file.kind == FileRow::File && QDir::match(filters, file.fileName()))
            rows << row;
    }
    m_tree->markRows(rows, select);
}

void FileSystemView::invertSelection()
{
    if (!m_tree)
        return;
    const QVector<int> selected = m_tree->isMarking() ? selectedFileRows() : QVector<int>();
    QVector<int> rows;
    const FileListModel *list = model();
    int next = 0;
    for (int row = 0, n = list->count(); row < n; ++row) {
        if (next < selected.size() && selected.at(next) == row) {
            ++next;
            continue;
        }
        if (list->rowAt(row).kind == FileRow::File)
            rows << row;
    }
    m_tree->clearSelection();
    m_tree->markRows(rows, true);
}

void FileSystemView::updateStatusInfo()
{
    if (!m_tree)
        return;
    const FileListModel *rows = model();
    if (!m_totalsValid) {
        FileView::countRows(*rows, &m_rowCount, &m_rowSize);
        // The full list's listing counted the folder's files; the flat list
        // counts those of its top folder here.
        m_folderTotals = m_view->folderTotals();
        if (m_flat && m_view->isFiltered())
            FileListing::listFolder(currentPath(), QString(), false, m_view->showsHidden(),
                                    &m_folderTotals);
        m_totalsValid = true;
    }
    int selectedCount = 0;
    qint64 selectedSize = 0;
    for (int row : m_tree->selectedRowNumbers()) {
        ++selectedCount;
        if (rows->rowAt(row).kind == FileRow::File)
            selectedSize += rows->rowAt(row).bytes;
    }
    const QString selection = QStringLiteral(" %1").arg(selectedCount)
        + QStringLiteral(" selected files ") + QStringLiteral("(")
        + FileListing::sizeText(selectedSize) + QStringLiteral(")");
    auto rowsPart = [this](const QString &word) {
        return QStringLiteral(" %1").arg(m_rowCount) + word + QStringLiteral("(")
            + FileListing::sizeText(m_rowSize) + QStringLiteral(")");
    };
    QString text;
    if (!m_view->isFiltered()) {
        text = rowsPart(QStringLiteral(" files ")) + selection;
    } else {
        text = QStringLiteral(" %1 ").arg(m_folderTotals.files) + QStringLiteral(" files ")
            + QStringLiteral("(%1) ").arg(m_folderTotals.bytes)
            + rowsPart(QStringLiteral(" files in filtered view ")) + selection;
    }
    m_statusText = text;
    if (m_statusBar && m_statusActive)
        m_statusBar->showMessage(text);
}

QString FileSystemView::statusText() const
{
    return m_statusText;
}

QStringList FileSystemView::selectedPaths(bool withMask) const
{
    QStringList paths;
    if (!m_tree)
        return paths;
    for (int row : m_tree->selectedRowNumbers()) {
        const FileRow &file = model()->rowAt(row);
        if (file.kind == FileRow::Parent)
            continue;
        paths << (withMask && file.kind == FileRow::Folder ? file.path + QStringLiteral("/*.*")
                                                           : file.path);
    }
    return paths;
}

QStringList FileSystemView::selectedFiles() const
{
    QStringList files;
    if (!m_tree)
        return files;
    for (int row : selectedFileRows())
        files << model()->rowAt(row).path;
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

void FileSystemView::setShowHidden(bool show)
{
    if (show == showsHidden())
        return;
    m_fullView->setShowHidden(show);
    m_flatView->setShowHidden(show);
    if (!currentPath().isEmpty())
        showFolder(Focus::Keep);
}

bool FileSystemView::showsHidden() const
{
    return m_view->showsHidden();
}

void FileSystemView::setFlatList(bool on)
{
    if (on == m_flat || !m_tree)
        return;
    if (on) {
        m_flat = true;
        m_view = m_flatView;
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
    // Rows are matched by their exact name, so names that differ only in
    // case (A.SQL and a.sql) each keep their own mark.
    model()->addMarks(fileNames, mark == FileMark::Different ? FileRow::DifferentMark
                                                      : FileRow::AbsentMark);
}

void FileSystemView::hideUnmarkedFiles()
{
    qCDebug(lcFiles) << "FileSystemView::HideNotSelectedFiles";
    if (!m_tree)
        return;
    const FileListModel *rows = model();
    for (int row = 0, n = rows->count(); row < n; ++row) {
        const FileRow &file = rows->rowAt(row);
        if (file.kind == FileRow::File && file.mark == FileRow::NoMark) {
            m_tree->setRowHidden(row, {}, true);
            m_rowsHidden = true;
        }
    }
}

void FileSystemView::setRemoveConfirmation(Confirmation confirmation)
{
    m_confirm = std::move(confirmation);
}

void FileSystemView::removeSelection()
{
    const QStringList paths = selectedPaths(false);
    if (paths.isEmpty() || isRemoving())
        return;
    QStringList listed;
    for (int i = 0; i < paths.size() && i < MaxListedPaths; ++i)
        listed << FileListModel::displayName(QDir::toNativeSeparators(paths.at(i)));
    if (paths.size() > MaxListedPaths)
        listed << QStringLiteral("...");
    const QString question = paths.size() == 1
        ? QStringLiteral("Would you like to remove this object?")
        : QStringLiteral("Would you like to remove these %1 objects?").arg(paths.size());
    const QString text = question + QLatin1Char('\n') + listed.join(QLatin1Char('\n'));
    if (!m_confirm || !m_confirm(QStringLiteral("Removing object(s)"), text))
        return;
    // The cursor moves to the nearest row that stays: below, else above.
    QString neighbour;
    const int current = m_tree->currentRow();
    if (current >= 0) {
        for (int row = current; row < model()->count() && neighbour.isEmpty(); ++row) {
            if (!m_tree->isRowSelected(row))
                neighbour = model()->rowAt(row).path;
        }
        for (int row = current - 1; row >= 0 && neighbour.isEmpty(); --row) {
            if (!m_tree->isRowSelected(row))
                neighbour = model()->rowAt(row).path;
        }
    }

    // Tens of thousands of files take minutes to remove: never on this thread.
    m_removeThread = new QThread(this);
    m_remover = new FileRemover(paths);
    m_remover->moveToThread(m_removeThread);
    connect(m_removeThread, &QThread::started, m_remover, &FileRemover::run);
    connect(m_remover, &FileRemover::finished, this,
            [this, neighbour] { finishRemoval(neighbour); });

    m_removeProgress = new QProgressDialog(m_tree->window());
    m_removeProgress->setWindowTitle(QStringLiteral("Removing object(s)"));
    m_removeProgress->setLabelText(tr("Removing..."));
    m_removeProgress->setCancelButtonText(tr("&Cancel"));
    m_removeProgress->setRange(0, 0);
    m_removeProgress->setWindowModality(Qt::WindowModal);
    m_removeProgress->setAutoClose(false);
    m_removeProgress->setAutoReset(false);
    connect(m_removeProgress, &QProgressDialog::canceled, this, [this] {
        if (m_remover)
            m_remover->stop();
    });
    connect(m_remover, &FileRemover::progress, m_removeProgress,
            [this](int removed, const QString &current) {
                m_removeProgress->setLabelText(
                    tr("Removing %1\n%2 removed")
                        .arg(FileListModel::displayName(QDir::toNativeSeparators(current)))
                        .arg(removed));
            });
    // Quick removals finish before anything shows.
    QTimer::singleShot(RemoveProgressDelayMs, m_removeProgress, [this] {
        if (m_removeThread)
            m_removeProgress->show();
    });
    m_removeThread->start();
}

void FileSystemView::finishRemoval(const QString &neighbour)
{
    m_removeThread->quit();
    m_removeThread->wait();
    m_remover->joined();
    delete m_remover;
    m_remover = nullptr;
    delete m_removeThread;
    m_removeThread = nullptr;
    delete m_removeProgress;
    // The watcher would notice too, a moment later; the list should not show
    // removed rows meanwhile.
    updateFileView();
    if (!neighbour.isEmpty() && currentPath() == QFileInfo(neighbour).absolutePath())
        setCurrentFilePath(neighbour);
    Q_EMIT removeFinished();
}

namespace {

// The name to give a file when the user typed @p typed over @p shown, the
// displayed form of @p original. Characters shown as replacements for bytes
// that are not valid text stand for those bytes again, in order; anything
// else is taken as typed. Empty when the replacements cannot be matched up.
QString nameFromTyped(const QString &original, const QString &typed)
{
    QVector<QChar> raw;
    for (const QChar c : original) {
        if (c.isSurrogate())
            raw << c;
    }
    if (raw.isEmpty())
        return typed;
    QString name;
    int next = 0;
    for (const QChar c : typed) {
        if (c == QChar(QChar::ReplacementCharacter)) {
            if (next >= raw.size())
                return QString();
            name += raw.at(next++);
        } else {
            name += c;
        }
    }
    return next == 0 || next == raw.size() ? name : QString();
}

} // namespace

bool FileSystemView::renameRow(int row, const QString &typed)
{
    if (!m_tree || row < 0 || row >= model()->count())
        return false;
    const FileRow file = model()->rowAt(row);
    if (file.kind == FileRow::Parent)
        return false;
    const QString oldName = file.fileName();
    // An edit that changes nothing renames nothing ("foo." stays "foo.").
    if (typed == FileListModel::displayName(oldName))
        return false;
    const QString newName = nameFromTyped(oldName, typed);
    if (newName.isEmpty() || newName == QLatin1String(".") || newName == FileView::parentName()
        || newName.contains(QLatin1Char('/')) || newName.contains(QChar(0)))
        return false;
#ifdef Q_OS_WIN
    if (newName.contains(QLatin1Char('\\')))
        return false;
#endif
    const QString folder = QFileInfo(file.path).absolutePath();
    const QString target = folder + QLatin1Char('/') + newName;
    const QFileInfo existing(target);
    if (existing.exists() || existing.isSymLink())
        return false;

    // Keep the watcher from reloading the list for our own rename.
    const QStringList watched = m_watcher->directories();
    if (!watched.isEmpty())
        m_watcher->removePaths(watched);
    const bool renamed = QDir(folder).rename(oldName, newName);
    if (!watched.isEmpty())
        m_watcher->addPaths(watched);
    if (!renamed)
        return false;

    const QString root = QDir::cleanPath(currentPath());
    const FileRow renamedRow = FileRow::fromInfo(
        QFileInfo(target), root.endsWith(QLatin1Char('/')) ? root : root + QLatin1Char('/'));
    model()->replaceRow(row, renamedRow);
    invalidateTotals();
    return true;
}
