// The form test's clamps, repairs and lookups in both locales, and the new/copy/delete dialogs;
// every edit must be in the file at once.

#include "emc/testdialogs.h"
#include "emc/testform.h"
#include "platform/datacontrol.h"
#include "platform/dbcombo.h"
#include "platform/dialogs.h"
#include "platform/recordset.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "support/programdir.h"
#include "support/testfiles.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>
#include <memory>

using namespace kw;

namespace {

const QString kRadiated = QStringLiteral("CISPR 32 B radiated 3 m");

// The delivered database in a program directory of its own, open as the application database.
struct Bench {
    test::TempProgramDir dir;
    ScriptedDialogs boxes;
    explicit Bench(bool german = false, float version = 1.1f)
    {
        resetState();
        setNumberLocale(german ? NumberLocale::deDE() : NumberLocale::enUS());
        st.databasefile = dir.file(QStringLiteral("default.mdb"));
        st.db = OpenDatabase(st.databasefile);
        st.dbversion = version;
        setDialogs(&boxes);
    }
    ~Bench()
    {
        setDialogs(nullptr);
        st.db.Close();
        setNumberLocale(NumberLocale::enUS());
    }
    // Start and stop of the radiated test as the file holds them.
    std::pair<float, float> band() const
    {
        return {float(stored(kRadiated, "startfreq").toDouble()), float(stored(kRadiated, "stopfreq").toDouble())};
    }
    // A column of a test as the file holds it, through a connection of its own.
    QVariant stored(const QString &test, const QString &column) const
    {
        Database other = OpenDatabase(st.databasefile);
        Recordset rows = other.OpenRecordset(QStringLiteral("test"), dbOpenSnapshot);
        rows.FindFirst(QStringLiteral("Name = '") + test + QStringLiteral("'"));
        const QVariant v = rows.NoMatch() ? QVariant() : rows.Field(column);
        other.Close();
        return v;
    }
    void set(const QString &test, const QString &column, const QVariant &value) const
    {
        Recordset rows = st.db.OpenRecordset(QStringLiteral("test"));
        rows.FindFirst(QStringLiteral("Name = '") + test + QStringLiteral("'"));
        rows.Edit();
        rows.SetField(column, value);
        rows.Update();
    }
};

std::unique_ptr<TestForm> openForm(const QString &test)
{
    st.testname = test;
    auto form = std::make_unique<TestForm>();
    form->show();
    return form;
}

void type(QWidget *form, const char *box, const QString &text)
{
    auto *edit = form->findChild<QLineEdit *>(QLatin1String(box));
    edit->setText(text);
    QTest::keyClick(edit, Qt::Key_Return);
}

QString shown(QWidget *form, const char *box) { return form->findChild<QLineEdit *>(QLatin1String(box))->text(); }

// A number as the locale shows it ("1048.50" or "1048,50").
QString local(const char *text)
{
    QString s = QLatin1String(text);
    return s.replace(QLatin1Char('.'), numberLocale().decimal);
}

}  // namespace

class TestDefinition : public QObject {
    Q_OBJECT
private slots:
    void frequencies_data()
    {
        QTest::addColumn<bool>("german");
        QTest::newRow("en-US") << false;
        QTest::newRow("de-DE") << true;
    }
    // A start typed against the upper end moves itself down by one; otherwise the stop follows, up to 1051.
    void frequencies()
    {
        QFETCH(bool, german);
        Bench bench(german);
        auto form = openForm(kRadiated);
        const QString span = QStringLiteral("Testsettings|(Stopfrequency - Startfrequency) < 1MHz");

        type(form.get(), "Text2", QStringLiteral("1050"));
        type(form.get(), "Text1", german ? QStringLiteral("1049,5") : QStringLiteral("1049.5"));
        QCOMPARE(std::tuple(kwtest::boxesOf(bench.boxes), bench.band(), shown(form.get(), "Text1")),
                 std::tuple(QStringList{span}, std::pair(1048.5f, 1050.0f), local("1048.50")));

        // The other mark is taken as the decimal mark as well.
        type(form.get(), "Text1", german ? QStringLiteral("20.25") : QStringLiteral("20,25"));
        QCOMPARE(std::pair(bench.band().first, shown(form.get(), "Text1")), std::pair(20.25f, local("20.25")));

        type(form.get(), "Text2", QStringLiteral("400"));
        type(form.get(), "Text1", QStringLiteral("1200"));  // clamped to 1050, above the stop
        QCOMPARE(std::pair(bench.band(), shown(form.get(), "Text2")), std::pair(std::pair(1050.0f, 1051.0f), local("1051.00")));

        // After the stop: 1050 typed (or clamped to it) moves the start down by one.
        type(form.get(), "Text1", local("1049.8"));
        bench.boxes.shown.clear();
        type(form.get(), "Text2", QStringLiteral("1060"));
        QCOMPARE(std::tuple(kwtest::boxesOf(bench.boxes), bench.band(), shown(form.get(), "Text1")),
                 std::tuple(QStringList{span}, std::pair(1048.8f, 1050.0f), local("1048.80")));
        // Below: the stop becomes start + 1 whatever was typed.
        type(form.get(), "Text2", QStringLiteral("-7"));
        QCOMPARE(std::tuple(bench.band().second, shown(form.get(), "Text2"), bench.boxes.shown.size()),
                 std::tuple(1049.8f, local("1049.80"), size_t(2)));
    }

    void levelsAndTimes_data() { frequencies_data(); }
    // Reflevel through unit and attenuator, distance and dwell clamped, each shown in its format.
    void levelsAndTimes()
    {
        QFETCH(bool, german);
        Bench bench(german);
        bench.set(kRadiated, QStringLiteral("unit"), QStringLiteral("dBµV"));  // offset 107
        bench.set(kRadiated, QStringLiteral("atten"), 10);
        auto form = openForm(kRadiated);

        // Typed in the unit over the attenuator, stored in dBmW, clamped to what the analyser takes.
        for (const auto &[typed, stored, box] : {std::tuple{"200", -27.0f, "90.0"}, {"-50", -99.8f, "17.2"}, {"50.5", -66.5f, "50.5"}}) {
            type(form.get(), "Text3", local(typed));
            QCOMPARE(std::pair(float(bench.stored(kRadiated, "ref").toDouble()), shown(form.get(), "Text3")), std::pair(stored, local(box)));
        }

        // The attenuator moves the box, not the stored level.
        form->findChild<QRadioButton *>(QStringLiteral("att_3"))->click();
        QCOMPARE(std::tuple(bench.stored(kRadiated, "atten").toDouble(), shown(form.get(), "Text3"),
                            float(bench.stored(kRadiated, "ref").toDouble())), std::tuple(30.0, local("70.5"), -66.5f));

        for (const auto &[typed, metres, box] : {std::tuple{"150", 100.0, "100.0"}, {"-3.5", -3.5, "-3.5"}}) {
            type(form.get(), "Text4", local(typed));
            QCOMPARE(std::pair(bench.stored(kRadiated, "leveldist").toDouble(), shown(form.get(), "Text4")), std::pair(metres, local(box)));
        }

        // Not a number: nothing stored, the box shows the row again.
        for (const auto &[typed, seconds] : {std::pair{"0", 1}, {"12.7", 12}, {"99999", 10000}, {"abc", 10000}}) {
            type(form.get(), "Text5", local(typed));
            QCOMPARE(std::pair(bench.stored(kRadiated, "meastime").toInt(), shown(form.get(), "Text5")), std::pair(seconds, QString::number(seconds)));
        }
        QVERIFY(bench.boxes.shown.empty());
    }

    // Lookups that find nothing say "Not set"; a limit that is gone disables its button.
    void missingDefinitions()
    {
        Bench bench;
        bench.set(kRadiated, QStringLiteral("peak"), 77);
        bench.set(kRadiated, QStringLiteral("config"), QStringLiteral("gone"));
        bench.set(kRadiated, QStringLiteral("unit"), QStringLiteral("furlongs"));
        auto form = openForm(kRadiated);
        QStringList combos;
        for (const char *name : {"DBCombo3", "DBCombo2", "DBCombo5"})
            combos << form->findChild<DBCombo *>(QLatin1String(name))->Text();
        QCOMPARE(combos, QStringList({"Not set", "Not set", "dBmW"}));
        auto *averageActive = form->findChild<QRadioButton *>(QStringLiteral("oactive_1"));
        // The delivered test has no average limit.
        QVERIFY(!form->findChild<QRadioButton *>(QStringLiteral("oactive_0"))->isEnabled() && !averageActive->isEnabled());

        // Choosing a limit by name writes its number and frees the button.
        auto *average = form->findChild<DBCombo *>(QStringLiteral("DBCombo4"));
        average->setText(QStringLiteral("cispr 32 class b conducted av"));
        QTest::keyClick(average, Qt::Key_Return);
        QVERIFY(bench.stored(kRadiated, "average").toInt() == 4 && averageActive->isEnabled());
        averageActive->click();
        QCOMPARE(bench.stored(kRadiated, "limitbezug").toInt(), 1);
        form->findChild<QPushButton *>(QStringLiteral("Command1"))->click();  // Clear the average
        form->findChild<QPushButton *>(QStringLiteral("Command3"))->click();  // Clear the configuration
        QVERIFY(bench.stored(kRadiated, "average").toInt() == 0 && !averageActive->isEnabled() &&
                bench.stored(kRadiated, "config").toString() == QStringLiteral(" "));

        // A unit chosen by name recomputes the reference box with its offset.
        auto *unit = form->findChild<DBCombo *>(QStringLiteral("DBCombo5"));
        unit->setText(QStringLiteral("dBµV"));
        QTest::keyClick(unit, Qt::Key_Return);
        QCOMPARE(std::pair(bench.stored(kRadiated, "unit").toString(), shown(form.get(), "Text3")),
                 std::pair(QStringLiteral("dBµV"), QStringLiteral("87.0")));  // -30 + 107 + 10
    }

    // Options write at once; Step locks what only a sweep uses; an old database has no ambient box.
    void optionsAndVersions()
    {
        {
            Bench bench;
            auto form = openForm(kRadiated);
            form->findChild<QRadioButton *>(QStringLiteral("omode_1"))->click();
            QVERIFY(bench.stored(kRadiated, "mode").toInt() == 1 && form->findChild<QLineEdit *>(QStringLiteral("Text5"))->isReadOnly() &&
                    !form->findChild<QRadioButton *>(QStringLiteral("oactive_0"))->isEnabled());
            for (const char *name : {"rbw_2", "detect_0", "Check1", "Check4", "Check3"})
                form->findChild<QAbstractButton *>(QLatin1String(name))->click();
            QCOMPARE(std::tuple(bench.stored(kRadiated, "rbw").toInt(), bench.stored(kRadiated, "peakdet").toInt(),
                                bench.stored(kRadiated, "avdet").toBool(), bench.stored(kRadiated, "ambient").toBool(),
                                bench.stored(kRadiated, "vertical").toBool(), form->findChild<QCheckBox *>(QStringLiteral("Check4"))->isHidden()),
                     std::tuple(2, 0, true, true, false, false));
            // Closing remembers the test for the next form.
            st.testname.clear();
            form->close();
            QCOMPARE(st.testname, kRadiated);
        }
        Bench old(false, 1.0f);
        auto form = openForm(kRadiated);
        QVERIFY(form->findChild<QCheckBox *>(QStringLiteral("Check4"))->isHidden());
    }

    // Add New refuses a name in any case; Copy takes everything but ambient; Delete shows the next.
    void newCopyDelete()
    {
        Bench bench;
        bench.set(kRadiated, QStringLiteral("ambient"), true);
        NewTestForm dialog;
        auto *name = dialog.findChild<QLineEdit *>(QStringLiteral("Text1"));
        name->setText(QStringLiteral(" Shielded room "));
        dialog.addNew();
        QCOMPARE(std::tuple(bench.stored(QStringLiteral("Shielded room"), "Name").isValid(),
                            dialog.findChild<DBCombo *>(QStringLiteral("DBCombo2"))->Text(), st.testname),
                 std::tuple(true, QStringLiteral("Shielded room"), QStringLiteral("Shielded room")));
        name->setText(QStringLiteral("SHIELDED ROOM"));
        dialog.addNew();
        QCOMPARE(kwtest::boxesOf(bench.boxes), QStringList{QStringLiteral("Add new|Configuration exist ( SHIELDED ROOM )")});

        auto *source = dialog.findChild<DBCombo *>(QStringLiteral("DBCombo1"));
        source->setText(kRadiated);
        QTest::keyClick(source, Qt::Key_Return);
        dialog.copy();
        for (const char *column : {"config", "peak", "average", "startfreq", "stopfreq", "peakdet", "avdet", "rbw", "ref",
                                   "unit", "atten", "horizontal", "vertical", "mode", "leveldist", "meastime", "limitbezug"})
            QCOMPARE(bench.stored(QStringLiteral("Shielded room"), column), bench.stored(kRadiated, column));
        QVERIFY(!bench.stored(QStringLiteral("Shielded room"), "ambient").toBool());

        DelTestForm remove;
        auto *victim = remove.findChild<DBCombo *>(QStringLiteral("DBCombo2"));
        victim->setText(QStringLiteral("CISPR 32 B conducted"));
        remove.deleteTest();
        QCOMPARE(std::pair(bench.stored(QStringLiteral("CISPR 32 B conducted"), "Name").isValid(), victim->Text()),
                 std::pair(false, QStringLiteral("Shielded room")));
    }
};

QTEST_MAIN(TestDefinition)
#include "tst_testdefinition.moc"
