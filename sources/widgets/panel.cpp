#include "panel.h"

#include "logging.h"
#include "filecomparator.h"
#include "settings.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>

#include "filelistmodel.h"
#include "filesystemview.h"
#include "recentfolderstorage.h"
#include "treewidget.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QBoxLayout>
#include <QDir>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollBar>
#include <QToolButton>
#include <QWidget>

namespace {

// The left panel shows the source side of a conversion.
Settings::Side sideOf(const Panel &panel)
{
    return panel.isLeft() ? Settings::Source : Settings::Target;
}

} // namespace

Panel::Panel(QBoxLayout *layout, QWidget *parentWidget, QStatusBar *statusBar, QLabel *pathLabel,
             bool isLeft, QObject *parent)
    : QObject(parent)
    , m_isLeft(isLeft)
    , m_pathLabel(pathLabel)
{
    m_container = new QWidget(parentWidget);
    m_container->setObjectName(isLeft ? QStringLiteral("leftPanel") : QStringLiteral("rightPanel"));
    auto *outer = new QVBoxLayout(m_container);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(2);
    layout->addWidget(m_container);
    createTitleBar();
    m_contentLayout = new QVBoxLayout;
    m_contentLayout->setContentsMargins(0, 0, 0, 0);
    outer->addLayout(m_contentLayout);

    m_view = new FileSystemView(this);
    m_view->init(m_contentLayout, m_container, statusBar);
    m_container->setFocusProxy(m_view->treeWidget());
    if (m_pathLabel) {
        // The label takes the width the layout gives it, never the path's.
        m_pathLabel->setMinimumWidth(1);
        QSizePolicy policy(QSizePolicy::Expanding, m_pathLabel->sizePolicy().verticalPolicy());
        policy.setHorizontalStretch(1);
        m_pathLabel->setSizePolicy(policy);
        m_pathLabel->installEventFilter(this);
    }

    connect(m_view, &FileSystemView::changeCurrentPath, this, &Panel::changeOutputDirEx);
    connect(m_view, &FileSystemView::changeFolder, this, &Panel::changeFolderEx);
    connect(m_view, &FileSystemView::editFile, this, [this] { editSelectedFile(); });
    connect(m_view, &FileSystemView::changeIcon, this, &Panel::changeWaitIcon);
    connect(m_view, &FileSystemView::changeAbsolutePath, this, &Panel::changeAbsolutePath);
    connect(m_maximizeButton, &QToolButton::clicked, this, &Panel::maximizeSubPanel);
    connect(m_closeButton, &QToolButton::clicked, this, [this] { closeEdit(); });
}

Panel::~Panel() = default;

void Panel::createTitleBar()
{
    auto *bar = new QHBoxLayout;
    bar->setContentsMargins(2, 0, 2, 0);
    auto *caption = new QLabel(QStringLiteral("file name:"), m_container);
    m_fileNameLabel = new QLabel(m_container);
    m_fileNameLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_maximizeButton = new QToolButton(m_container);
    m_maximizeButton->setIcon(QIcon(QStringLiteral(":/images/file.png")));
    m_maximizeButton->setToolTip(QStringLiteral("Maximize Panel"));
    m_maximizeButton->setCheckable(true);
    m_maximizeButton->setAutoRaise(true);
    m_maximizeButton->setFocusPolicy(Qt::NoFocus);
    m_closeButton = new QToolButton(m_container);
    m_closeButton->setIcon(QIcon(QStringLiteral(":/images/close.png")));
    m_closeButton->setToolTip(QStringLiteral("Close Panel"));
    m_closeButton->setAutoRaise(true);
    m_closeButton->setFocusPolicy(Qt::NoFocus);
    bar->addWidget(caption);
    bar->addWidget(m_fileNameLabel, 1);
    bar->addWidget(m_maximizeButton);
    bar->addWidget(m_closeButton);
    static_cast<QVBoxLayout *>(m_container->layout())->addLayout(bar);
}

bool Panel::isActive() const
{
    const QWidget *focus = m_container->focusWidget();
    return m_container->hasFocus() || (focus && focus->hasFocus());
}

QString Panel::currentPath() const
{
    return m_view->currentPath();
}

QStringList Panel::selectedPaths(bool withMask) const
{
    return m_view->selectedPaths(withMask);
}

QStringList Panel::selectedFiles() const
{
    return m_view->selectedFiles();
}

QScrollBar *Panel::editorScrollBar() const
{
    // Asked of the editor itself: the panel may be hidden (the other side maximized).
    return m_edit ? m_edit->verticalScrollBar() : nullptr;
}

bool Panel::handleKey(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
        if (isEditing()) {
            closeEdit();
            return true;
        }
        if (m_view->isListing()) {
            m_view->stopFlatListView();
            return true;
        }
        return false;
    case Qt::Key_F3:
        if (isEditing())
            return false;
        editSelectedFile(false);
        return true;
    case Qt::Key_F4:
        if (isEditing())
            return false;
        editSelectedFile(true);
        return true;
    case Qt::Key_F7:
        if (isEditing())
            return false;
        Q_EMIT makeDirRequested();
        return true;
    case Qt::Key_F8:
    case Qt::Key_Delete:
        if (isEditing() || event->modifiers() != Qt::NoModifier)
            return false;
        Q_EMIT removeRequested();
        return true;
    default:
        return false;
    }
}

void Panel::setKeyFilter(QObject *filter)
{
    m_container->installEventFilter(filter);
    m_view->treeWidget()->installEventFilter(filter);
}

bool Panel::owns(const QObject *object) const
{
    for (const QObject *o = object; o; o = o->parent()) {
        if (o == m_container)
            return true;
    }
    return false;
}

void Panel::readSettings(const Settings &settings)
{
    const Settings::PanelState state = settings.panel(sideOf(*this));
    m_view->setMask(state.mask);
    m_view->setShowHidden(state.showHidden);
    if (state.path.isEmpty() || !m_view->changePath(state.path))
        m_view->changePath(QDir::homePath());
}

void Panel::writeSettings(Settings &settings) const
{
    settings.setPanel(sideOf(*this),
                      {m_view->currentPath(), m_view->mask(), m_view->showsHidden()});
}

void Panel::hideUnselectedFiles()
{
    m_view->hideUnmarkedFiles();
}

void Panel::showPath(const QString &folder)
{
    if (!m_pathLabel)
        return;
    m_shownPath = FileListModel::displayName(QDir::toNativeSeparators(folder));
    m_pathLabel->setToolTip(m_shownPath);
    elidePath();
}

void Panel::elidePath()
{
    // A long path is shortened in the middle, where it says least, so that
    // it neither widens the window nor moves the buttons beside it.
    const int width = qMax(0, m_pathLabel->contentsRect().width());
    m_pathLabel->setText(
        m_pathLabel->fontMetrics().elidedText(m_shownPath, Qt::ElideMiddle, width));
}

bool Panel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_pathLabel && event->type() == QEvent::Resize)
        elidePath();
    return QObject::eventFilter(watched, event);
}

void Panel::showFolder(const QString &folder)
{
    const QStringList parts = folder.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    if (parts.isEmpty())
        return;
    m_view->showFolderEx(parts.last());
}

void Panel::changePath(const QString &rootPath)
{
    if (m_view->changePath(rootPath))
        RecentFolderStorage::instance().addFolder(m_view->currentPath());
}

void Panel::changeOutputDirEx(const QString &outputDir)
{
    showPath(outputDir);
    Q_EMIT changeCurrentPath(outputDir);
}

void Panel::changeFolderEx(const QString &folderName)
{
    Q_EMIT changeFolder(folderName);
}

void Panel::changeConversion(const QString &conversion)
{
    m_conversion = conversion;
}

void Panel::showRootDir()
{
    m_view->showRoot();
}

void Panel::showPrevDir()
{
    m_view->showFolderEx(QStringLiteral(".."));
}

void Panel::startConversionSlot()
{
    Q_EMIT startConversionSignal();
}

bool Panel::isThreadStopped()
{
    return !m_view->isListing();
}

void Panel::stopFlatViewThread()
{
    m_view->stopFlatListView();
}

void Panel::maximizeSubPanel()
{
    const bool maximized = m_maximizeButton->isChecked();
    m_maximizeButton->setToolTip(maximized ? QStringLiteral("Minimize Panel")
                                           : QStringLiteral("Maximize Panel"));
    Q_EMIT showOppositePanel(!maximized);
}

void Panel::setOppositePanelVisible(bool isHide)
{
    m_container->setVisible(!isHide);
}

void Panel::changeWaitIcon(bool ready)
{
    if (ready)
        Q_EMIT changeCursorArray();
    else
        Q_EMIT changeCursorBusy();
}

// Editing state

void Panel::editSelectedFile(bool isEdit)
{
    // The row under the cursor, whatever else is marked.
    const QString path = m_view->currentFilePath();
    if (!path.isEmpty() && !QFileInfo(path).isDir())
        openEditFile(path, isEdit);
}

void Panel::openEditFile(const QString &absoluteFilePath, bool isEdit)
{
    // Synchronous viewing passes the other panel's file name: take it from this folder.
    QString path = absoluteFilePath;
    if (QFileInfo(path).isRelative() && !currentPath().isEmpty())
        path = QDir(currentPath()).filePath(path);
    qCDebug(lcFiles) << "absolute file path" << path;
    // A new file replaces the open one in place: the panel stays in the editing state.
    const bool replacing = m_edit != nullptr;
    if (m_edit) {
        if (!m_edit->closeEditor())
            return;
        storeFontSize();
        Edit *old = m_edit;
        m_edit = nullptr;
        old->deleteLater();
    }

    QBoxLayout *layout = m_contentLayout;
    const Settings settings;
    const QString encoding = settings.encodingOption(sideOf(*this));
    auto *edit = new Edit(this);
    edit->setHostLayout(layout);
    edit->setCodec(encoding.isEmpty() ? QByteArray("System") : encoding.toLatin1());
    edit->setReadOnly(!isEdit);
    edit->setFile(path);
    edit->changeConversion(m_conversion);
    edit->execute();
    if (!edit->errorString().isEmpty()) {
        const QString message = edit->errorString();
        delete edit;
        if (replacing) {
            // The old file is already closed: go back to the browser.
            showBrowserAgain();
        }
        QMessageBox::warning(m_container, QStringLiteral("Morvane Navarch"), message);
        return;
    }
    edit->setFontSize(settings.fontSize());

    // The editor takes the browser's place; whatever else the panel shows comes back on close.
    for (int i = 0; i < layout->count(); ++i) {
        QWidget *w = layout->itemAt(i)->widget();
        if (w && w != edit->widget() && !w->isHidden()) {
            m_hiddenForEdit << w;
            w->hide();
        }
    }
    m_fileNameLabel->setText(QDir::toNativeSeparators(path));
    connect(edit, &Edit::hide, this, &Panel::closeEdit);
    connect(edit, &Edit::startConversion, this, &Panel::startConversionSlot);
    m_edit = edit;
    Q_EMIT startEdit(QFileInfo(path).fileName());
}

bool Panel::closeEdit()
{
    if (!m_edit)
        return true;
    // Hiding a focused editor passes the focus down the window's tab chain;
    // the user closed it to go on in this panel's list.
    const QWidget *focus = QApplication::focusWidget();
    const QWidget *editor = m_edit->widget();
    const bool hadFocus = focus && editor && (focus == editor || editor->isAncestorOf(focus));
    if (!m_edit->closeEditor())
        return false;
    storeFontSize();
    Edit *edit = m_edit;
    m_edit = nullptr;
    if (QWidget *w = edit->widget())
        w->hide();
    edit->deleteLater();
    showBrowserAgain();
    if (hadFocus)
        m_view->treeWidget()->setFocus(Qt::OtherFocusReason);
    return true;
}

void Panel::showBrowserAgain()
{
    for (const QPointer<QWidget> &w : qAsConst(m_hiddenForEdit)) {
        if (w)
            w->show();
    }
    m_hiddenForEdit.clear();
    m_fileNameLabel->clear();
    Q_EMIT closeEditSignal();
}

void Panel::storeFontSize() const
{
    Settings().setFontSize(m_edit->fontSize());
}

void Panel::increaseFont()
{
    if (!m_edit)
        return;
    m_edit->zoomIn();
    storeFontSize();
}

void Panel::decreaseFont()
{
    if (!m_edit)
        return;
    m_edit->zoomOut();
    storeFontSize();
}

void Panel::addLinesTo(FileComparator &comparator, bool isLeft) const
{
    if (!m_edit)
        return;
    // One index past the last line is fed too, as an empty line.
    const int count = m_edit->lineCount();
    for (int line = 0; line <= count; ++line)
        comparator.addLine(m_edit->lineText(line), line, isLeft ? LeftPart : RightPart);
}
