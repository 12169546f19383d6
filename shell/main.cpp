#include "shell/mdi.h"
#include "shell/startup.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("KW3400R"));
    QApplication::setOrganizationName(QStringLiteral("Vorlane Instruments"));
    kw::Mdi window;
    kw::loadMain(window);
    window.show();
    return QApplication::exec();
}
