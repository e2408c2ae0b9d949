#include "panel.h"


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
void Panel::addLinesTo(FileComparator &, bool) const {}
void Panel::readSettings(QSettings &, const QString &) {}
void Panel::writeSettings(QSettings &, const QString &) const {}
bool Panel::closeEdit() { return true; }
void Panel::hideUnselectedFiles() {}
void Panel::showPath(const QString &) {}
void Panel::showFolder(const QString &) {}
void Panel::changePath(const QString &) {}
void Panel::changeOutputDirEx(const QString &) {}
void Panel::changeFolderEx(const QString &) {}
void Panel::editSelectedFile(bool) {}
void Panel::openEditFile(const QString &, bool) {}
void Panel::changeConversion(const QString &conversion) { m_conversion = conversion; }
void Panel::showRootDir() {}
void Panel::showPrevDir() {}
void Panel::startConversionSlot() { Q_EMIT startConversionSignal(); }
void Panel::increaseFont() {}
void Panel::decreaseFont() {}
bool Panel::isThreadStopped() { return true; }
void Panel::stopFlatViewThread() {}
void Panel::maximizeSubPanel() {}
void Panel::setOppositePanelVisible(bool) {}
void Panel::changeWaitIcon(bool) {}
