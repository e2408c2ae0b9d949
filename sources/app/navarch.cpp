#include "navarch.h"

#include "commandline.h"
#include "conversion.h"
#include "edit.h"

#include <QDebug>

Navarch::Navarch()
    : QObject(nullptr)
{
    m_commands.insert(CONVERSION, new Conversion(nullptr));
    m_commands.insert(EDIT, new Edit(1, nullptr));
    m_commands.insert(COMMAND_LINE, new CommandLine(nullptr));
}

Navarch::~Navarch()
{
    qDeleteAll(m_commands);
    m_commands.clear();
}

Navarch &Navarch::instance()
{
    static Navarch registry;
    return registry;
}

Command *Navarch::getCommand(const CommandType &type)
{
    const auto it = m_commands.constFind(type);
    if (it != m_commands.constEnd())
        return it.value();
    qDebug().noquote().nospace() << "Unknown command " << static_cast<int>(type);
    return nullptr;
}

bool isConversionRunning()
{
    auto *conversion = dynamic_cast<Conversion *>(Navarch::instance().getCommand(CONVERSION));
    return conversion && conversion->state() != QProcess::NotRunning;
}
