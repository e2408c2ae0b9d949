#include "fontactions.h"
#include "panel.h"

#include <QAction>
#include <QWidget>

FontActions::FontActions(QObject *parent)
    : QObject(parent)
    , m_increase(new QAction(QIcon(QStringLiteral(":/images/Increase.png")),
                             tr("Increase font"), this))
    , m_decrease(new QAction(QIcon(QStringLiteral(":/images/Decrease.png")),
                             tr("Decrease font"), this))
{
}

void FontActions::connectActions(Panel *first, Panel *second, QWidget *widget)
{
    connect(m_increase, &QAction::triggered, first, &Panel::increaseFont);
    connect(m_increase, &QAction::triggered, second, &Panel::increaseFont);
    connect(m_decrease, &QAction::triggered, first, &Panel::decreaseFont);
    connect(m_decrease, &QAction::triggered, second, &Panel::decreaseFont);
    if (widget) {
        widget->addAction(m_increase);
        widget->addAction(m_decrease);
    }
}

void FontActions::show(bool visible)
{
    m_increase->setVisible(visible);
    m_decrease->setVisible(visible);
}
