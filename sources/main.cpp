#include "mainwindow.h"

#include <QApplication>
#include <QFontDatabase>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/MyriadProLight.otf"));
    QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/MyriadProRegular.otf"));
    QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/MyriadProSemibold.otf"));
    MainWindow window(nullptr, &app, QString());
    window.show();
    return app.exec();
}
