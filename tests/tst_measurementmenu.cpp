#include "platform/dialogs.h"
#include "platform/onerror.h"
#include "platform/recordset.h"
#include "shell/forms.h"
#include "shell/mdi.h"
#include "shell/state.h"
#include "store/measurementfile.h"
#include "support/programdir.h"
#include "support/testfiles.h"

#include <QAction>
#include <QtTest>

using namespace kw;

namespace {

int rowCount(const QString &path, const QString &table)
{
    Database file = OpenDatabase(path);
    const int n = file.OpenRecordset(table, dbOpenSnapshot).RecordCount();
    file.Close();
    return n;
}

void trigger(Mdi &window, const char *entry) { window.menuEntry(QLatin1String(entry))->trigger(); }

}  // namespace

class TestMeasurementMenu : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    ScriptedDialogs boxes_;
    std::unique_ptr<test::TempProgramDir> program_;

    QString file(const QString &name) const { return dir_.filePath(name); }
    bool shown(const char *form) const { return formLoaded(QLatin1String(form)); }

private slots:
    void init()
    {
        resetState();
        boxes_ = ScriptedDialogs();
        setDialogs(&boxes_);
        program_ = std::make_unique<test::TempProgramDir>();
        st.db = OpenDatabase(program_->file(QStringLiteral("default.mdb")));
    }
    void cleanup()
    {
        setDialogs(nullptr);
        ResumeNext on;
        on([] { st.db.Close(); });
        program_.reset();
    }

    void saveAsksForAMesFileAndCancelWritesNothing()
    {
        Mdi window;
        boxes_.files = {std::nullopt};
        trigger(window, "mnusmeasurement");
        QCOMPARE(boxes_.fileRequests.size(), size_t(1));
        const FileRequest &r = boxes_.fileRequests[0];
        QCOMPARE(std::tuple(r.save, r.title, r.filter, r.defaultExt, r.filterIndex, r.flags),
                 std::tuple(true, QStringLiteral("Select Measurement"), QStringLiteral("Measurement (*.mes) |*.mes"),
                            QStringLiteral("MES"), 1, 8198));
        // No message after a cancel.
        QCOMPARE(std::tuple(boxes_.shown.size(), st.busycursor, st.measurefile), std::tuple(size_t(1), uint8_t(0), QString()));

        const QString path = file(QStringLiteral("bench.mes"));
        boxes_.files = {path};
        trigger(window, "mnusmeasurement");
        // Saving does not switch the plot to the file.
        QCOMPARE(std::tuple(st.measurefile, rowCount(path, QStringLiteral("measurement")), st.filemode, st.busycursor),
                 std::tuple(path, 2001, uint8_t(0), uint8_t(0)));
    }

    void loadShowsTheFileInItsModesWindows()
    {
        Mdi window;
        const QString mes = file(QStringLiteral("live.mes"));
        boxes_.files = {mes};
        trigger(window, "mnusmeasurement");

        // An EMC file made by a run of a stepped test.
        const QString emc = file(QStringLiteral("run.emc"));
        std::tie(st.measurefile, st.testname, st.runmode) = std::tuple(emc, QStringLiteral("radiated"), 1);
        CreateMeasurementFile();
        WriteEmcHeader();
        Database run = OpenDatabase(emc);
        run.Execute(QStringLiteral("insert into measurement (Frequency) values (30), (1000)"));
        run.Close();

        showForm(QStringLiteral("measur"));
        boxes_.files = {emc};
        trigger(window, "mnulmeasure");
        const FileRequest &r = boxes_.fileRequests.back();
        QCOMPARE(std::tuple(r.save, r.title, r.filter, r.defaultExt, r.filterIndex, r.flags),
                 std::tuple(false, QStringLiteral("Select Measurement"),
                            QStringLiteral("Measurement (*.MES) |*.MES|EMC (*.emc) |*.emc"), QStringLiteral("mes"), 1, 6148));
        QCOMPARE(window.windowTitle(), QStringLiteral("KW3400R - V1.53   File: ") + emc);
        QCOMPARE(std::tuple(st.filemode, st.redrawflag, st.mode, st.testname),
                 std::tuple(uint8_t(1), uint8_t(1), uint8_t(1), QStringLiteral("radiated")));
        QVERIFY(!window.menuEntry(QStringLiteral("mnusmeasurement"))->isEnabled() && shown("emc") && !shown("measur") &&
                window.menuEntry(QStringLiteral("mnuemc"))->isChecked() && st.busycursor == 0);

        // In EMC mode the dialog offers EMC files first; a .mes brings the panels back.
        boxes_.files = {mes};
        trigger(window, "mnulmeasure");
        QCOMPARE(std::tuple(boxes_.fileRequests.back().filterIndex, st.mode), std::tuple(2, uint8_t(0)));
        QVERIFY(shown("measur") && shown("track") && shown("detec") && !shown("emc") && window.menuEntry(QStringLiteral("mnunormal"))->isChecked());
        QVERIFY(st.pointcount == 2001 && boxes_.shown.size() == boxes_.fileRequests.size());  // no message on the way
    }

    void aMissingFileIsNamedAndChangesNothing()
    {
        Mdi window;
        const QString before = window.windowTitle();
        st.measurefile = QStringLiteral("/data/shown.mes");
        const QString missing = file(QStringLiteral("gone.mes"));
        boxes_.files = {missing};
        trigger(window, "mnulmeasure");
        QCOMPARE(kwtest::boxesOf(boxes_).last(), QStringLiteral("Select Measurement|File not found ( ") + missing + QStringLiteral(" )"));
        QCOMPARE(std::tuple(st.measurefile, window.windowTitle(), st.busycursor), std::tuple(QStringLiteral("/data/shown.mes"), before, uint8_t(0)));
    }
};

QTEST_MAIN(TestMeasurementMenu)
#include "tst_measurementmenu.moc"
