#include "panel.h"
#include "filecomparator.h"
#include "settings.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>


#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QWidget>

// Placeholder until the file panels land: a blank area under the path label.
Panel::Panel(QBoxLayout *layout, QWidget *parentWidget, QStatusBar *, QLabel *pathLabel,
             bool isLeft, QObject *parent)
    : QObject(parent)
    , m_isLeft(isLeft)
    , m_pathLabel(pathLabel)
{
    m_container = new QWidget(parentWidget);
    m_container->setFocusPolicy(Qt::StrongFocus);
    layout->addWidget(m_container);
}

Panel::~Panel() = default;

bool Panel::isActive() const { return m_container->hasFocus(); }
QString Panel::currentPath() const { return QString(); }
QStringList Panel::selectedPaths(bool) const { return {}; }
QStringList Panel::selectedFiles() const { return {}; }
bool Panel::handleKey(QKeyEvent *) { return false; }

void Panel::setKeyFilter(QObject *filter)
{
    m_keyFilter = filter;
    m_container->installEventFilter(filter);
}

bool Panel::owns(const QObject *object) const
{
    for (const QObject *o = object; o; o = o->parent()) {
        if (o == m_container)
            return true;
    }
    return false;
}
void Panel::readSettings(QSettings &, const QString &) {}
void Panel::writeSettings(QSettings &, const QString &) const {}
void Panel::hideUnselectedFiles() {}
void Panel::showPath(const QString &) {}
void Panel::showFolder(const QString &) {}
void Panel::changePath(const QString &) {}
void Panel::changeOutputDirEx(const QString &) {}
void Panel::changeFolderEx(const QString &) {}
void Panel::changeConversion(const QString &conversion) { m_conversion = conversion; }
void Panel::showRootDir() {}
void Panel::showPrevDir() {}
void Panel::startConversionSlot() { Q_EMIT startConversionSignal(); }
bool Panel::isThreadStopped() { return true; }
void Panel::stopFlatViewThread() {}
void Panel::maximizeSubPanel() {}
void Panel::setOppositePanelVisible(bool) {}
void Panel::changeWaitIcon(bool) {}

// Editing state

void Panel::editSelectedFile(bool isEdit)
{
    const QStringList files = selectedFiles();
    if (!files.isEmpty())
        openEditFile(files.first(), isEdit);
}

void Panel::openEditFile(const QString &absoluteFilePath, bool isEdit)
{
    // Synchronous viewing passes the other panel's file name: take it from this folder.
    QString path = absoluteFilePath;
    if (QFileInfo(path).isRelative() && !currentPath().isEmpty())
        path = QDir(currentPath()).filePath(path);
    qDebug() << "absolute file path" << path;
    // A new file replaces the open one in place: the panel stays in the editing state.
    const bool replacing = m_edit != nullptr;
    if (m_edit) {
        if (!m_edit->closeEditor())
            return;
        Settings settings;
        Settings::writeMainWindowValue(settings, QStringLiteral("FontSize"), m_edit->fontSize());
        Edit *old = m_edit;
        m_edit = nullptr;
        old->deleteLater();
    }

    auto *layout = qobject_cast<QBoxLayout *>(m_container->layout());
    if (!layout) {
        layout = new QVBoxLayout(m_container);
        layout->setContentsMargins(0, 0, 0, 0);
    }
    Settings settings;
    const QString encoding =
        settings.value(m_isLeft ? QStringLiteral("/SRCENC=") : QStringLiteral("/TRGENC="))
            .toString();
    auto *edit = new Edit(EDIT, this);
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
            for (const QPointer<QWidget> &w : qAsConst(m_hiddenForEdit)) {
                if (w)
                    w->show();
            }
            m_hiddenForEdit.clear();
            if (m_pathLabel)
                m_pathLabel->setText(m_labelTextBeforeEdit);
            m_labelTextBeforeEdit.clear();
            Q_EMIT closeEditSignal();
        }
        QMessageBox::warning(m_container, QStringLiteral("Morvane Navarch"), message);
        return;
    }
    edit->setFontSize(
        Settings::readMainWindowValue(settings, QStringLiteral("FontSize"), 12).toInt());

    // The editor takes the browser's place; whatever else the panel shows comes back on close.
    for (int i = 0; i < layout->count(); ++i) {
        QWidget *w = layout->itemAt(i)->widget();
        if (w && w != edit->widget() && !w->isHidden()) {
            m_hiddenForEdit << w;
            w->hide();
        }
    }
    if (m_pathLabel) {
        if (!replacing)
            m_labelTextBeforeEdit = m_pathLabel->text();
        m_pathLabel->setText(tr("file name: %1").arg(QDir::toNativeSeparators(path)));
    }
    connect(edit, &Edit::hide, this, &Panel::closeEdit);
    connect(edit, &Edit::startConversion, this, &Panel::startConversionSlot);
    m_edit = edit;
    Q_EMIT startEdit(QFileInfo(path).fileName());
}

bool Panel::closeEdit()
{
    if (!m_edit)
        return true;
    if (!m_edit->closeEditor())
        return false;
    Settings settings;
    Settings::writeMainWindowValue(settings, QStringLiteral("FontSize"), m_edit->fontSize());
    Edit *edit = m_edit;
    m_edit = nullptr;
    if (QWidget *w = edit->widget())
        w->hide();
    edit->deleteLater();
    for (const QPointer<QWidget> &w : qAsConst(m_hiddenForEdit)) {
        if (w)
            w->show();
    }
    m_hiddenForEdit.clear();
    if (m_pathLabel)
        m_pathLabel->setText(m_labelTextBeforeEdit);
    m_labelTextBeforeEdit.clear();
    Q_EMIT closeEditSignal();
    return true;
}

void Panel::increaseFont()
{
    if (!m_edit)
        return;
    m_edit->zoomIn();
    Settings settings;
    Settings::writeMainWindowValue(settings, QStringLiteral("FontSize"), m_edit->fontSize());
}

void Panel::decreaseFont()
{
    if (!m_edit)
        return;
    m_edit->zoomOut();
    Settings settings;
    Settings::writeMainWindowValue(settings, QStringLiteral("FontSize"), m_edit->fontSize());
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
