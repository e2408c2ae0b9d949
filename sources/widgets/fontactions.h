#pragma once

#include <QObject>

class Panel;
class QAction;
class QWidget;

/** The two actions that make both panels' editor font larger or smaller together. */
class FontActions : public QObject
{
    Q_OBJECT
public:
    explicit FontActions(QObject *parent);

    /** Wires both actions to both panels and adds them to @p widget (a tool bar). */
    void connectActions(Panel *first, Panel *second, QWidget *widget);
    void show(bool visible);

    QAction *increaseAction() const { return m_increase; }
    QAction *decreaseAction() const { return m_decrease; }

private:
    QAction *m_increase;
    QAction *m_decrease;
};
