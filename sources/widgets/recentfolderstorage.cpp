#include "recentfolderstorage.h"

#include "folder.h"
#include "logging.h"
#include "settings.h"

#include <QDebug>
#include <QMenu>

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

void RecentFolderStorage::readSettings(const Settings &settings)
{
    const QStringList paths = settings.recentFolders();
    for (const QString &path : paths) {
        qCDebug(lcFiles) << path;
        if (!path.isEmpty())
            addFolder(path);
    }
}

void RecentFolderStorage::writeSettings(Settings &settings) const
{
    settings.setRecentFolders(folders());
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
