#include "recentfolderstorage.h"

#include "folder.h"
#include "logging.h"

#include <QDebug>
#include <QMenu>
#include <QSettings>

#include <algorithm>

RecentFolderStorage &RecentFolderStorage::instance()
{
    static RecentFolderStorage storage;
    return storage;
}

RecentFolderStorage::RecentFolderStorage() = default;

RecentFolderStorage::~RecentFolderStorage()
{
    clear();
}

void RecentFolderStorage::addFolder(const QString &path)
{
    // The limit is checked before the duplicate is taken out, so re-adding a
    // folder to a full list drops the oldest entry as well.
    if (m_folders.size() >= MaxFolders)
        delete m_folders.takeFirst();
    for (int i = 0; i < m_folders.size(); ++i) {
        if (m_folders.at(i)->path() == path) {
            Folder *old = m_folders.takeAt(i);
            disconnect(old, nullptr, this, nullptr);
            delete old;
            break;
        }
    }
    auto *folder = new Folder(path);
    connect(folder, &Folder::changeRootFolder, this, &RecentFolderStorage::changeRootFolderEx);
    m_folders.append(folder);
}

QStringList RecentFolderStorage::folders() const
{
    QStringList paths;
    for (const Folder *folder : m_folders)
        paths << folder->path();
    return paths;
}

void RecentFolderStorage::clear()
{
    qDeleteAll(m_folders);
    m_folders.clear();
}

void RecentFolderStorage::readSettings(QSettings &settings)
{
    settings.beginGroup(QStringLiteral("RecentOpenFolder"));
    QStringList keys = settings.childKeys();
    // The keys are list positions: "2" comes before "10".
    std::stable_sort(keys.begin(), keys.end(), [](const QString &a, const QString &b) {
        bool aNumber = false;
        bool bNumber = false;
        const int aValue = a.toInt(&aNumber);
        const int bValue = b.toInt(&bNumber);
        if (aNumber != bNumber)
            return aNumber;
        return aNumber ? aValue < bValue : a < b;
    });
    for (const QString &key : qAsConst(keys)) {
        const QString path = settings.value(key, QString()).toString();
        qCDebug(lcFiles) << path;
        if (!path.isEmpty())
            addFolder(path);
    }
    settings.endGroup();
}

void RecentFolderStorage::writeSettings(QSettings &settings) const
{
    settings.beginGroup(QStringLiteral("RecentOpenFolder"));
    settings.remove(QString()); // drop keys beyond the current list
    for (int i = 0; i < m_folders.size(); ++i)
        settings.setValue(QStringLiteral("%1").arg(i), m_folders.at(i)->path());
    settings.endGroup();
}

void RecentFolderStorage::fillMenu(QMenu *menu) const
{
    for (const Folder *folder : m_folders) {
        menu->addAction(folder->action());
    }
}

void RecentFolderStorage::changeRootFolderEx(const QString &folder)
{
    qCDebug(lcFiles) << "edc" << folder;
    Q_EMIT changeRootFolder(folder);
}
