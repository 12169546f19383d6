#include "shell/menu.h"

#include "editors/editorforms.h"
#include "emc/emcforms.h"
#include "link/connection.h"
#include "platform/dialogs.h"
#include "plot/printforms.h"
#include "shell/mdi.h"
#include "shell/measurementmenu.h"
#include "shell/modes.h"
#include "shell/startup.h"
#include "shell/toolmenu.h"
#include "shell/state.h"
#include "store/appdb.h"
#include "store/settingfile.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>

namespace kw {

namespace {

struct Entry {
    const char *name;
    const char *caption;  // "-" is a separator; a caption ending in ">" opens a sub-menu
};

// The menu table, in order. Sub-menus follow their entry until the "<" marker.
const Entry dataMenu[] = {
    {"mnuload", "&Load>"}, {"mnulsettings", "&Settings"}, {"mnulmeasure", "&Measurements"}, {"", "<"},
    {"mnusave", "&Save>"}, {"mnussettings", "&Settings"}, {"mnusmeasurement", "&Measurement"}, {"", "<"},
    {"mnutrena", "-"},
    {"mnunew", "&New/Copy>"}, {"mnunewlim", "&Limitdefinition"}, {"mnulosnew", "Loss/Gain-&Components"},
    {"mnuconfnew", "C&onfig"}, {"mnunedit", "&EMC-Test"}, {"", "<"},
    {"mnuopen", "&Edit>"}, {"mnulimitdef", "&Limitdefinition"}, {"mnuopenlos", "Loss/Gain-&Components"},
    {"mnuconfigdef", "C&onfig"}, {"mnutestdef", "&EMC-Test"}, {"", "<"},
    {"tenn1", "-"},
    {"mnudelete", "&Delete>"}, {"mnudellim", "&Limitdefinition"}, {"mnudelloss", "Loss/Gain-&Components"},
    {"mnudelconf", "C&onfig"}, {"mnudtest", "&EMC-Test"}, {"", "<"},
    {"mnutrenn", "-"},
    {"mnuprint", "&Print"}, {"mnuprsetup", "Prin&ter setup"},
    {"trn1", "-"},
    {"mnuseldata", "D&atabase selection"},
    {"trenn6", "-"},
    {"mnuBeenden", "E&xit"},
};
const Entry settingsMenu[] = {
    {"mnuconf", "&Configuration"}, {"mnutrenf", "-"}, {"Measurement", "&Measurement"},
    {"Detectors", "&Display Mode"}, {"Tracking", "&Tracking"},
};
const Entry modeMenu[] = {
    {"mnunormal", "&Normal"}, {"mnuemc", "&EMC"}, {"trns", "-"}, {"mnuautostore", "&Autostore"},
};
const Entry helpMenu[] = {
    {"mnuhelp", "&Help"}, {"trnq", "-"}, {"mnuhlp_deu", "&Deutsch"}, {"mnuhlp_eng", "&English"},
    {"trnr", "-"}, {"mnuabout", "&About/Support"},
};

template <size_t N>
void fill(QMenu *top, const Entry (&entries)[N])
{
    QMenu *menu = top;
    for (const Entry &e : entries) {
        const QString caption = QString::fromUtf8(e.caption);
        if (caption == QLatin1String("<")) {
            menu = top;
        } else if (caption == QLatin1String("-")) {
            menu->addSeparator()->setObjectName(QString::fromLatin1(e.name));
        } else if (caption.endsWith(QLatin1Char('>'))) {
            menu = top->addMenu(caption.chopped(1));
            menu->setObjectName(QString::fromLatin1(e.name));
            menu->menuAction()->setObjectName(QString::fromLatin1(e.name));
        } else {
            QAction *action = menu->addAction(caption);
            action->setObjectName(QString::fromLatin1(e.name));
        }
    }
}

}  // namespace

void buildMainMenu(Mdi &window)
{
    QMenuBar *bar = window.menuBar();
    QMenu *data = bar->addMenu(QStringLiteral("&Data"));
    data->setObjectName(QStringLiteral("mnuKonfiguration"));
    fill(data, dataMenu);
    QMenu *settings = bar->addMenu(QStringLiteral("&Settings"));
    settings->setObjectName(QStringLiteral("settings"));
    fill(settings, settingsMenu);
    QMenu *mode = bar->addMenu(QStringLiteral("&Mode"));
    mode->setObjectName(QStringLiteral("mnumode"));
    fill(mode, modeMenu);
    QMenu *help = bar->addMenu(QStringLiteral("?"));
    help->setObjectName(QStringLiteral("mnuhlp"));
    fill(help, helpMenu);

    for (const char *name : {"mnuhelp", "mnuhlp_deu", "mnuhlp_eng"})
        window.menuEntry(QString::fromLatin1(name))->setEnabled(false);
    for (const char *name : {"mnunormal", "mnuemc"})
        window.menuEntry(QString::fromLatin1(name))->setCheckable(true);
    window.menuEntry(QStringLiteral("mnunormal"))->setChecked(true);

    onMenu(window, QStringLiteral("mnuprsetup"), [](Mdi &) { dialogs().printerSetup(); });
    onMenu(window, QStringLiteral("mnuseldata"), &mnuseldata);
    registerMeasurementMenu(window);
    onMenu(window, QStringLiteral("mnuBeenden"), &mnuBeenden);
    connectToolEntries(window);
    connectPrintMenu(window);
    wireEditorMenu(window);
    emcMenu(window);
    onMenu(window, QStringLiteral("mnunormal"), [](Mdi &) { mnunormal(); });
    onMenu(window, QStringLiteral("mnuemc"), [](Mdi &) { mnuemc(); });
}

void onMenu(Mdi &window, const QString &name, void (*command)(Mdi &))
{
    QAction *action = window.menuEntry(name);
    if (!action)
        return;
    QObject::connect(action, &QAction::triggered, &window, [&window, command] { command(window); });
}

void mnuBeenden(Mdi &window)
{
    if (st.portopen == 1)
        disconnectunit();
    writeSettingFile();
    window.close();
}

}  // namespace kw
