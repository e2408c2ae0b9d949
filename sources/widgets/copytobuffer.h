#pragma once

#include <QObject>

class QAction;
class TreeWidget;

/**
 * Ctrl+C in a file list: puts the texts of the selected rows (first three
 * columns, one row per line) on the clipboard.
 */
class CopyToBuffer : public QObject
{
    Q_OBJECT
public:
    CopyToBuffer(TreeWidget *tree, QObject *parent = nullptr);

    QAction *action() const { return m_action; }
    /** The text that copySelectedToBuffer() puts on the clipboard. */
    QString selectionText() const;

public Q_SLOTS:
    void copySelectedToBuffer();

private:
    TreeWidget *m_tree;
    QAction *m_action;
};
