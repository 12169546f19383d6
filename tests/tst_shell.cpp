#include "platform/dialogs.h"
#include "shell/mdi.h"
#include "shell/startup.h"
#include "shell/state.h"
#include "support/programdir.h"

#include <QAction>
#include <QtTest>

using namespace kw;

class TestShell : public QObject {
    Q_OBJECT
private slots:
    void startsOfflineWithTheMenuTable()
    {
        // A first start: no setting.def yet, the delivered database beside the program.
        test::TempProgramDir dir;
        ScriptedDialogs boxes;
        setDialogs(&boxes);
        Mdi window;
        loadMain(window);
        setDialogs(nullptr);
        QCOMPARE(boxes.count(QStringLiteral("Load default settings")), 1);
        QCOMPARE(boxes.shown.size(), size_t(1));
        QVERIFY(st.db.isSet());
        QCOMPARE(window.windowTitle(), QStringLiteral("KW3400R - V1.53       Offline"));
        QVERIFY(window.menuEntry("mnunormal")->isChecked());
        QVERIFY(!window.menuEntry("mnuhelp")->isEnabled());
        QCOMPARE(window.menuEntry("mnuBeenden")->text(), QStringLiteral("E&xit"));
        QCOMPARE(st.portopen, int16_t(0));
    }
};

QTEST_MAIN(TestShell)
#include "tst_shell.moc"
