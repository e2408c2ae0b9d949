#pragma once

#include <QList>
#include <QObject>

class Folder;
class QMenu;
class Settings;

/** The folders the user opened lately, oldest first, at most 15. */
class RecentFolderStorage : public QObject
{
    Q_OBJECT
public:
    static RecentFolderStorage &instance();

    RecentFolderStorage();
    ~RecentFolderStorage() override;

    void addFolder(const QString &path);
    QStringList folders() const;
    void clear();

    void readSettings(const Settings &settings);
    void writeSettings(Settings &settings) const;

    void fillMenu(QMenu *menu) const;

    static constexpr int MaxFolders = 15;

Q_SIGNALS:
    void changeRootFolder(const QString &folder);

public Q_SLOTS:
    void changeRootFolderEx(const QString &folder);

private:
    QList<Folder *> m_folders;
};
