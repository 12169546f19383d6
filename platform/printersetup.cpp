#include "platform/printersetup.h"

#include "platform/papersurface.h"

#include <QApplication>
#include <QPrintDialog>
#include <QPrinter>

namespace kw {

void showPrinterSetup()
{
    if (qEnvironmentVariableIsSet("KW_UNATTENDED"))
        return;
    // Qt's own dialog, not the desktop's: it also offers printing into a PDF file.
    QPrintDialog dialog(&reportPrinter(), QApplication::activeWindow());
    dialog.setWindowTitle(QStringLiteral("Printer setup"));
    dialog.setOption(QAbstractPrintDialog::PrintToFile, true);
    dialog.setOptions(dialog.options() & ~QAbstractPrintDialog::PrintPageRange & ~QAbstractPrintDialog::PrintSelection);
    dialog.exec();
}

}  // namespace kw
