// The main window's menu as the user reads it, and the change between normal and EMC mode.
#include "platform/dialogs.h"
#include "shell/forms.h"
#include "shell/mdi.h"
#include "shell/modes.h"
#include "shell/startup.h"
#include "shell/state.h"
#include "shell/toolpanel.h"
#include "store/settingfile.h"
#include "support/programdir.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QtTest>

using namespace kw;

namespace {

// Each entry as "name caption", a separator as "name -", a sub-menu's entries indented under it.
void listMenu(const QMenu *menu, const QString &indent, QStringList &out)
{
    for (const QAction *a : menu->actions()) {
        if (a->isSeparator()) {
            out << indent + a->objectName() + QStringLiteral(" -");
        } else {
            out << indent + a->objectName() + QLatin1Char(' ') + a->text();
            if (a->menu())
                listMenu(a->menu(), indent + QStringLiteral("  "), out);
        }
    }
}

// The window as a mode leaves it: its forms alone, its menu entry ticked, the Toolbox free in
// normal mode only.
bool inMode(Mdi &window, bool emc)
{
    const bool panels = formLoaded("measur") && formLoaded("track") && formLoaded("detec");
    const bool toolbox = window.toolPanel()->findChild<QPushButton *>(QStringLiteral("Command6"))->isEnabled();
    return panels != emc && formLoaded("emc") == emc && toolbox != emc && st.mode == (emc ? 1 : 0) &&
           window.menuEntry("mnuemc")->isChecked() == emc && window.menuEntry("mnunormal")->isChecked() != emc;
}

void fillTraces()
{
    std::tie(st.grafikmin, st.grafikmax) = std::pair(-250, -50);
    for (int i = 1; i <= 2001; ++i)
        st.sampledata[size_t(i)] = -100;
}

bool erased() { return st.grafikmin == 1000 && st.sampledata[1000] == 0; }

}  // namespace

class TestMenu : public QObject {
    Q_OBJECT
private slots:
    void theMenuTable()
    {
        test::TempProgramDir dir;
        ScriptedDialogs boxes;
        setDialogs(&boxes);
        Mdi window;
        QStringList menus;
        for (const QAction *top : window.menuBar()->actions())
            menus << top->menu()->objectName() + QLatin1Char(' ') + top->text();
        QCOMPARE(menus, QStringList({"mnuKonfiguration &Data", "settings &Settings", "mnumode &Mode", "mnuhlp ?"}));

        QStringList entries;
        for (const QAction *top : window.menuBar()->actions())
            listMenu(top->menu(), QString(), entries);
        const QStringList table = {
            "mnuload &Load", "  mnulsettings &Settings", "  mnulmeasure &Measurements",
            "mnusave &Save", "  mnussettings &Settings", "  mnusmeasurement &Measurement",
            "mnuresults &Results", "mnuexport Exp&ort", "  mnuexpmeasurement &Measurement (CSV)...",
            "  mnuexpresults &Results (CSV)...",
            "mnutrena -",
            "mnunew &New/Copy", "  mnunewlim &Limitdefinition", "  mnulosnew Loss/Gain-&Components",
            "  mnuconfnew C&onfig", "  mnunedit &EMC-Test",
            "mnuopen &Edit", "  mnulimitdef &Limitdefinition", "  mnuopenlos Loss/Gain-&Components",
            "  mnuconfigdef C&onfig", "  mnutestdef &EMC-Test",
            "tenn1 -",
            "mnudelete &Delete", "  mnudellim &Limitdefinition", "  mnudelloss Loss/Gain-&Components",
            "  mnudelconf C&onfig", "  mnudtest &EMC-Test",
            "mnutrenn -", "mnuprint &Print", "mnuprsetup Prin&ter setup", "trn1 -",
            "mnuseldata D&atabase selection", "trenn6 -", "mnuBeenden E&xit",
            "mnuconf &Configuration", "mnutrenf -", "Measurement &Measurement", "Detectors &Display Mode",
            "Tracking &Tracking",
            "mnunormal &Normal", "mnuemc &EMC", "trns -", "mnuautostore &Autostore",
            "mnuhelp &Help", "trnq -", "mnuhlp_deu &Deutsch", "mnuhlp_eng &English", "trnr -",
            "mnuabout &About/Support",
        };
        QCOMPARE(entries, table);

        // The help entries are greyed out.
        QVERIFY(!window.menuEntry("mnuhelp")->isEnabled() && !window.menuEntry("mnuhlp_deu")->isEnabled() &&
                !window.menuEntry("mnuhlp_eng")->isEnabled() && window.menuEntry("mnuabout")->isEnabled());

        // The printer set-up is the platform's dialog.
        window.menuEntry("mnuprsetup")->trigger();
        QCOMPARE(boxes.shown.back().kind, QStringLiteral("printer"));

        // Configuration is refused while the busy pointer shows.
        st.busycursor = 1;
        window.menuEntry("mnuconf")->trigger();
        QVERIFY(!formLoaded("boxcom"));
        st.busycursor = 0;
        window.menuEntry("mnuconf")->trigger();
        QVERIFY(formLoaded("boxcom"));
        setDialogs(nullptr);
    }

    void normalAndEmcMode()
    {
        test::TempProgramDir dir;
        ScriptedDialogs boxes;
        setDialogs(&boxes);
        Mdi window;
        loadMain(window);
        QVERIFY(inMode(window, false));
        auto *uncal = window.findChild<QLabel *>(QStringLiteral("Label11"));
        QVERIFY(uncal);

        st.viewaverage = st.viewmaxhold = st.viewb = 1;
        st.viewsample = 0;
        uncal->show();
        fillTraces();
        window.menuEntry("mnuemc")->trigger();
        QVERIFY(inMode(window, true) && uncal->isHidden() && erased());
        QCOMPARE(loadedForm("emc")->windowTitle(), QStringLiteral("EMC"));
        // EMC mode keeps the view as it stands, and neither way touches the file extension.
        QCOMPARE(std::pair(st.viewaverage + st.viewmaxhold + st.viewb + st.viewsample, st.measext), std::pair(3, QStringLiteral(".mes")));

        // Once more: the traces go again, the forms stay as they are.
        QWidget *emc = loadedForm("emc");
        fillTraces();
        window.menuEntry("mnuemc")->trigger();
        QVERIFY(erased() && inMode(window, true) && loadedForm("emc") == emc);

        // Back: Sample alone, the panels, the Toolbox.
        fillTraces();
        window.menuEntry("mnunormal")->trigger();
        QVERIFY(inMode(window, false) && erased());
        QCOMPARE(std::tuple(st.viewsample, st.viewaverage + st.viewmaxhold + st.viewb + st.viewab, st.measext),
                 std::tuple(uint8_t(1), 0, QStringLiteral(".mes")));

        // A start with EMC mode saved comes up in it.
        st.mode = 1;
        writeSettingFile();
        window.close();
        Mdi again;
        loadMain(again);
        QVERIFY(inMode(again, true) && st.measext == QStringLiteral(".emc"));
        setDialogs(nullptr);
    }
};

QTEST_MAIN(TestMenu)
#include "tst_menu.moc"
