#include "copytobuffer.h"

#include "treewidget.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>

CopyToBuffer::CopyToBuffer(TreeWidget *tree, QObject *parent)
    : QObject(parent)
    , m_tree(tree)
{
    m_action = new QAction(QStringLiteral("&Copy"), this);
    m_action->setShortcut(QKeySequence(QStringLiteral("Ctrl+C")));
    // Both panels carry such an action; each must answer only for its own list.
    m_action->setShortcutContext(Qt::WidgetShortcut);
    tree->addAction(m_action);
    tree->setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(m_action, &QAction::triggered, this, &CopyToBuffer::copySelectedToBuffer);
}

QString CopyToBuffer::selectionText() const
{
    QString text;
    const QAbstractItemModel *model = m_tree->model();
    for (int row : m_tree->selectedRowNumbers()) {
        text += model->index(row, 0).data().toString() + QLatin1Char(' ')
            + model->index(row, 1).data().toString() + QLatin1Char(' ')
            + model->index(row, 2).data().toString() + QLatin1Char('\n');
    }
    return text;
}

void CopyToBuffer::copySelectedToBuffer()
{
    QApplication::clipboard()->setText(selectionText(), QClipboard::Clipboard);
}
