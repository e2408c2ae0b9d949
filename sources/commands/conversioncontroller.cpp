#include "conversioncontroller.h"

#include "conversion.h"
#include "navarch.h"

#include <QWidget>

ConversionController::ConversionController(QWidget *window)
    : QObject(window)
    , m_window(window)
{
}

Conversion *ConversionController::conversion() const
{
    return dynamic_cast<Conversion *>(Navarch::instance().getCommand(CONVERSION));
}

void ConversionController::runOrPause(const QStringList &, const QString &, const QString &,
                                      const QStringList &, const QString &)
{
}

void ConversionController::StopConversion()
{
}
