#include "settings.h"

Settings::Settings()
    : QSettings(organisation(), application())
{
}

QString Settings::organisation()
{
    const QString name = QStringLiteral("Quillon Systems Ltd.\\Morvane 6.0\\Qt Tools");
#ifdef Q_OS_WIN
    return name;
#else
    QString nested = name;
    return nested.replace(QLatin1Char('\\'), QLatin1Char('/'));
#endif
}

QString Settings::application()
{
    return QStringLiteral("Morvane Navarch");
}

QVariant Settings::readMainWindowValue(QSettings &settings, const QString &key,
                                       const QVariant &defaultValue)
{
    settings.beginGroup(QStringLiteral("Main Window"));
    const QVariant value = settings.value(key, defaultValue);
    settings.endGroup();
    return value;
}

void Settings::writeMainWindowValue(QSettings &settings, const QString &key,
                                    const QVariant &value)
{
    settings.beginGroup(QStringLiteral("Main Window"));
    settings.setValue(key, value);
    settings.endGroup();
}
