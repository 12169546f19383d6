#include "link/debugboxes.h"
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
        QCOMPARE(std::tuple(boxes.count(QStringLiteral("Load default settings")), boxes.shown.size(), st.portopen),
                 std::tuple(1, size_t(1), int16_t(0)));
        QVERIFY(st.db.isSet() && window.menuEntry("mnunormal")->isChecked());
        QCOMPARE(window.windowTitle(), QStringLiteral("KW3400R - V1.53       Offline"));
    }

    // The fifth click asks three numbers; debugging can be switched on there but not off.
    void theFifthClickOpensTheDebugBoxes()
    {
        resetState();
        ScriptedDialogs boxes;
        setDialogs(&boxes);
        boxes.inputs = {QString("7"), QString("1"), QString("120")};
        for (int i = 0; i < 4; ++i)
            countDebugClick();
        QVERIFY(boxes.shown.empty());
        countDebugClick();
        QCOMPARE(boxes.shown.size(), size_t(3));
        QCOMPARE((QStringList{boxes.shown[0].title, boxes.shown[0].text, boxes.shown[2].text}),
                 (QStringList{"Transmission timing setup", "Serial timeout in s (+1s)[1]|4", "Noisevalue default=50|50"}));
        // 120 is not below 100.
        QCOMPARE(std::tuple(st.serialtimeout, st.transmissiondebug, st.noisevalue, st.debugclicks),
                 std::tuple(uint8_t(7), uint8_t(1), 50.0, uint8_t(0)));

        boxes.inputs = {QString("0"), QString("0"), std::nullopt};
        for (int i = 0; i < 5; ++i)
            countDebugClick();
        QCOMPARE(std::tuple(st.serialtimeout, st.transmissiondebug), std::tuple(uint8_t(7), uint8_t(1)));
        setDialogs(nullptr);
    }
};

QTEST_MAIN(TestShell)
#include "tst_shell.moc"
