#include "folder.h"

#include "filenamecodec.h"

#include <QAction>

Folder::Folder(const QString &path, QObject *parent)
    : QObject(parent)
    , m_path(path)
    // A single "&" in a menu text would mark a mnemonic and vanish.
    , m_action(new QAction(FileNameCodec::displayName(path).replace(QLatin1Char('&'),
                                                                    QLatin1String("&&")),
                           nullptr))
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
