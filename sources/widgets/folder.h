#pragma once

#include <QObject>
#include <QString>

class QAction;

/** One entry of the recent folders: its path and the menu action that shows it. */
class Folder : public QObject
{
    Q_OBJECT
public:
    explicit Folder(const QString &path, QObject *parent = nullptr);
    ~Folder() override;

    QString path() const { return m_path; }
    QAction *action() const { return m_action; }

Q_SIGNALS:
    void changeRootFolder(const QString &folder);

public Q_SLOTS:
    void changeRootFolderEx();

private:
    QString m_path;
    QAction *m_action;
};
