#include "shell/mdi.h"
#include "shell/startup.h"
#include "shell/state.h"

#include <QAction>
#include <QtTest>

using namespace kw;

class TestShell : public QObject {
    Q_OBJECT
private slots:
    void startsOfflineWithTheMenuTable()
    {
        Mdi window;
        loadMain(window);
        QCOMPARE(window.windowTitle(), QStringLiteral("KW3400R - V1.53       Offline"));
        QVERIFY(window.menuEntry("mnunormal")->isChecked());
        QVERIFY(!window.menuEntry("mnuhelp")->isEnabled());
        QCOMPARE(window.menuEntry("mnuBeenden")->text(), QStringLiteral("E&xit"));
        QCOMPARE(st.portopen, int16_t(0));
    }
};

QTEST_MAIN(TestShell)
#include "tst_shell.moc"
