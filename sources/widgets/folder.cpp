#include "folder.h"

#include <QAction>

Folder::Folder(const QString &path, QObject *parent)
    : QObject(parent)
    , m_path(path)
    , m_action(new QAction(path, nullptr))
{
    connect(m_action, &QAction::triggered, this, &Folder::changeRootFolderEx);
}

Folder::~Folder()
{
    delete m_action;
}

void Folder::changeRootFolderEx()
{
    Q_EMIT changeRootFolder(m_path);
}
