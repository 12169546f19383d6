// The three live panels against the simulator over a real pty: what each control sends and leaves.
#include "editors/definitiondialogs.h"
#include "editors/editorwidgets.h"
#include "link/commands.h"
#include "platform/beep.h"
#include "platform/dbcombo.h"
#include "platform/vbformat.h"
#include "shell/forms.h"
#include "shell/mdi.h"
#include "shell/startup.h"
#include "shell/state.h"
#include "support/simfixture.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

using namespace kw;

namespace {

// The panels of a started program, with the delivered database beside it.
struct Program {
    explicit Program(SimBench &bench)
    {
        QFile::copy(qEnvironmentVariable("KW_DEFAULT_MDB"), bench.dir() + QStringLiteral("/default.mdb"));
        loadMain(window);
    }
    Mdi window;
};

QWidget *formOf(const char *name) { return loadedForm(QString::fromLatin1(name)); }

QAbstractButton *option(const char *form, const char *array, int index)
{
    return formOf(form)->findChild<QButtonGroup *>(QString::fromLatin1(array))->button(index);
}

void typeInto(QWidget *box, const QString &text)
{
    if (auto *edit = qobject_cast<QLineEdit *>(box))
        edit->clear();
    QTest::keyClicks(box, text);
    QTest::keyClick(box, Qt::Key_Return);
}

}  // namespace

class TestLivePanels : public QObject {
    Q_OBJECT
private slots:
    void cleanup() { setNumberLocale(NumberLocale::enUS()); }

    void startupShowsThePanelsInNormalMode()
    {
        SimBench bench;
        Program program(bench);
        QStringList titles;
        for (const char *name : {"measur", "track", "detec"})
            titles << (formLoaded(QString::fromLatin1(name)) ? formOf(name)->windowTitle() : QString());
        QCOMPARE(titles, QStringList({"Measurement", "Tracking generator", "Display Mode"}));
        auto *units = formOf("measur")->findChild<DBCombo *>(QStringLiteral("DBCombo1"));
        QVERIFY(units->count() >= 9 && units->Text() == QStringLiteral("dBmW") && bench.log().isEmpty());  // no traffic at start

        // A limit and a configuration made in the editors' dialogs are in the panels' lists at once.
        for (const auto &[family, form, combo] : {std::tuple(Family::Limit, "detec", "DBCombo1"),
                                                  std::tuple(Family::Configuration, "measur", "DBCombo2")}) {
            NewCopyDialog dialog(family);
            dialog.nameBox()->setText(QStringLiteral("Made today"));
            dialog.addNew();
            dialog.close();
            QVERIFY2(formOf(form)->findChild<DBCombo *>(QString::fromLatin1(combo))->findText(QStringLiteral("Made today")) >= 0, form);
        }

        // A closed panel comes back from the Settings menu.
        unloadForm(QStringLiteral("detec"));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!formLoaded(QStringLiteral("detec")));
        program.window.menuEntry(QStringLiteral("Detectors"))->trigger();
        QVERIFY(formLoaded(QStringLiteral("detec")));
    }

    // Text1 and Text2: the clamps, the texts they leave in both decimal marks, the wire texts.
    void numberBoxesClampAndFormat_data()
    {
        QTest::addColumn<bool>("comma");
        QTest::newRow("decimal point") << false;
        QTest::newRow("decimal comma") << true;
    }
    void numberBoxesClampAndFormat()
    {
        QFETCH(bool, comma);
        SimBench bench;
        Program program(bench);
        if (comma) {
            setNumberLocale(NumberLocale::deDE());
            st.decimalchar = 44;
        }
        QVERIFY(bench.connect());
        auto *text1 = formOf("measur")->findChild<QLineEdit *>(QStringLiteral("Text1"));
        auto *text2 = formOf("measur")->findChild<QLineEdit *>(QStringLiteral("Text2"));

        typeInto(text1, QStringLiteral("10k60.0"));  // the k is dropped, the point becomes the mark
        QCOMPARE(std::pair(st.centerfreq, text1->text()), std::pair(1050.0f, comma ? QStringLiteral("1050,00") : QStringLiteral("1050.00")));
        typeInto(text1, QStringLiteral("123,25"));
        QCOMPARE(st.centerfreq, 123.25f);
        typeInto(text1, QStringLiteral("-5"));
        QCOMPARE(text1->text(), comma ? QStringLiteral("0,00") : QStringLiteral("0.00"));
        QCOMPARE(bench.log().filter(QStringLiteral("#cf")),
                 QStringList({QStringLiteral("#cf1050.000"), QStringLiteral("#cf0123.250"), QStringLiteral("#cf0000.000")}));

        const int beeps = beepCount();
        bench.clearLog();
        const QString mark(QChar(st.decimalchar));
        typeInto(text2, QStringLiteral("-10"));  // the attenuator's 10 dB: the analyser's level is 10 lower
        QCOMPARE(std::tuple(st.reflevel, text2->text(), bench.log().contains(QStringLiteral("#rl-27.0"))),
                 std::tuple(-27.0f, QStringLiteral("-17") + mark + QStringLiteral("0"), true));
        typeInto(text2, QStringLiteral("-150"));
        QCOMPARE(beepCount(), beeps + 2);
        // No number: the level stays and the box shows it again.
        typeInto(text2, QStringLiteral("-"));
        QCOMPARE(std::pair(st.reflevel, text2->text()), std::pair(-99.8f, QStringLiteral("-89") + mark + QStringLiteral("8")));
    }

    // Under calculation every control but Check1 restarts it with "#dm1".
    void everyControlButCorrectionRestartsTheCalculation()
    {
        SimBench bench;
        Program program(bench);
        QVERIFY(bench.connect());
        st.calc = 1;
        QWidget *measur = formOf("measur");
        const auto restarts = [&](const std::function<void()> &act) {
            bench.clearLog();
            act();
            return int(bench.log().count(QStringLiteral("#dm1")));
        };
        const auto box = [&](const char *name) { return measur->findChild<QWidget *>(QString::fromLatin1(name)); };
        const QList<int> counts{restarts([] { option("measur", "ospan", 3)->click(); }),
                                restarts([] { option("measur", "obw", 1)->click(); }),
                                restarts([] { option("measur", "oatt", 2)->click(); }),
                                restarts([&] { static_cast<QCheckBox *>(box("CVideo"))->click(); }),
                                restarts([&] { static_cast<QCheckBox *>(box("db"))->click(); }),
                                restarts([&] { typeInto(box("Text1"), QStringLiteral("200")); }),
                                restarts([&] { typeInto(box("Text2"), QStringLiteral("-20")); }),
                                restarts([&] { static_cast<QCheckBox *>(box("Check1"))->click(); })};
        QCOMPARE(counts, QList<int>({1, 1, 1, 1, 1, 1, 1, 0}));
        QCOMPARE(std::tuple(st.videofilter, st.dbperdiv, st.correctionon, st.redrawflag),
                 std::tuple(uint8_t(1), uint8_t(5), uint8_t(1), uint8_t(1)));

        bench.clearLog();
        readallsettings();
        QCOMPARE(std::tuple(st.span, st.bandwith, st.attenuator, st.centerfreq, option("measur", "ospan", 3)->isChecked()),
                 std::tuple(int16_t(100), int16_t(120), 20.0f, 200.0f, true));
    }

    // A span that no button has, read back from the analyser, leaves every span button unset.
    // Recall goes out before the connection is made: offline it reaches nothing.
    void unknownSpanAndRecallOffline()
    {
        SimBench bench;
        Program program(bench);
        option("measur", "ospan", 6)->click();
        st.span = 3;
        refreshforms();
        QCOMPARE(formOf("measur")->findChild<QButtonGroup *>(QStringLiteral("ospan"))->checkedButton(), nullptr);
        st.span = 0;
        refreshforms();
        QVERIFY(option("measur", "ospan", 10)->isChecked());

        formOf("detec")->findChild<QPushButton *>(QStringLiteral("Command3"))->click();
        const QStringList log = bench.log();
        QVERIFY(st.portopen == 1 && !log.contains(QStringLiteral("#rc1")) && log.contains(QStringLiteral("#cf")));
    }

    // A unit moves the shown levels; a configuration with an antenna shows its distance.
    void unitAndConfiguration()
    {
        SimBench bench;
        Program program(bench);
        QWidget *measur = formOf("measur");
        auto *units = measur->findChild<DBCombo *>(QStringLiteral("DBCombo1"));
        std::tie(st.reflevel, st.attenuator, st.tglevel) = std::tuple(-30.0f, 10.0f, -20.0f);
        units->setText(QStringLiteral(" dBµV "));
        QTest::keyClick(units, Qt::Key_Return);
        QCOMPARE(std::tuple(st.unit, st.unitoffset, st.redrawflag, measur->findChild<QLineEdit *>(QStringLiteral("Text2"))->text(),
                            formOf("track")->findChild<QLabel *>(QStringLiteral("Label4"))->text(),
                            formOf("track")->findChild<QLineEdit *>(QStringLiteral("Text1"))->text()),
                 std::tuple(QStringLiteral("dBµV"), 107.0f, uint8_t(1), QStringLiteral("87.0"), QStringLiteral("dBµV"),
                            QStringLiteral("87.0")));
        // Typing into the list is refused; an unknown text changes nothing.
        units->setText(QStringLiteral("furlongs"));
        QTest::keyClick(units, Qt::Key_Return);
        QCOMPARE(st.unit, QStringLiteral("dBµV"));

        auto *configs = measur->findChild<DBCombo *>(QStringLiteral("DBCombo2"));
        auto *label3 = measur->findChild<QLabel *>(QStringLiteral("Label3"));
        QVERIFY(!label3->isVisibleTo(measur));
        configs->setText(configs->itemText(0));
        QTest::keyClick(configs, Qt::Key_Return);
        QVERIFY(st.configname == configs->itemText(0) && st.configdist > 0 && label3->isVisibleTo(measur));
        measur->findChild<QCheckBox *>(QStringLiteral("Check1"))->click();
        QCOMPARE(measur->findChild<QLabel *>(QStringLiteral("Label4"))->text(), vbCStr(st.configdist) + QStringLiteral(" m"));

        configs->setText(QStringLiteral("no such chain"));
        QTest::keyClick(configs, Qt::Key_Return);
        QCOMPARE(st.correctionon, uint8_t(0));
    }

    // A-B and the calculation exclude each other; the analyser's memories and Memory B.
    void displayModeAndMemories()
    {
        SimBench bench;
        Program program(bench);
        QVERIFY(bench.connect());
        QWidget *detec = formOf("detec");
        auto *check7 = detec->findChild<QCheckBox *>(QStringLiteral("Check7"));
        QVERIFY(!option("detec", "odet", 3)->isEnabled() && !option("detec", "odet", 4)->isEnabled());

        check7->click();
        QCOMPARE(std::pair(st.calc, bench.log()), std::pair(uint8_t(1), QStringList({"#dm1", "#vm0", "#vm"})));
        option("detec", "odet", 4)->click();
        QCOMPARE(std::pair(st.vmtrace, st.viewmaxhold), std::pair(uint8_t(3), uint8_t(1)));
        option("detec", "odet", 3)->click();
        QCOMPARE(st.vmtrace, uint8_t(0));

        bench.clearLog();
        option("detec", "odet", 2)->click();
        const QStringList log = bench.log();
        // The settings are read.
        QCOMPARE(std::pair(log.mid(0, 2), log.contains(QStringLiteral("#cf"))), std::pair(QStringList({"#dm0", "#vm2"}), true));
        QCOMPARE(std::tuple(st.calc, st.readmode, st.viewab, option("detec", "omemb", 2)->isChecked()),
                 std::tuple(uint8_t(0), uint8_t(2), uint8_t(1), true));
        bench.clearLog();
        check7->click();
        QVERIFY(!check7->isChecked() && bench.log().isEmpty());

        // Memories: save the state in 0, change it, recall it.
        option("detec", "odet", 0)->click();
        auto *cset = detec->findChild<QComboBox *>(QStringLiteral("cset"));
        QCOMPARE(cset->count(), 10);
        const int beeps = beepCount();
        QTest::keyClick(cset, Qt::Key_5);
        QCOMPARE(std::pair(beepCount(), st.memorynumber), std::pair(beeps + 1, uint8_t(1)));
        cset->activated(0);
        QCOMPARE(st.memorynumber, uint8_t(0));
        option("measur", "ospan", 3)->click();
        bench.clearLog();
        detec->findChild<QPushButton *>(QStringLiteral("Command2"))->click();
        QCOMPARE(bench.log(), QStringList({QStringLiteral("#sv0")}));
        option("measur", "ospan", 0)->click();
        detec->findChild<QPushButton *>(QStringLiteral("Command3"))->click();
        QVERIFY(st.span == 100 && option("measur", "ospan", 3)->isChecked());

        bench.clearLog();
        detec->findChild<QPushButton *>(QStringLiteral("Command1"))->click();
        QCOMPARE(bench.log(), QStringList({QStringLiteral("#sa")}));
        option("detec", "omemb", 1)->click();
        QCOMPARE(std::pair(st.viewb, st.viewab), std::pair(uint8_t(1), uint8_t(0)));
    }

    // The average limit's distance takes the place of the max hold limit's when it is shown.
    void limitDistances()
    {
        SimBench bench;
        Program program(bench);
        QWidget *detec = formOf("detec");
        auto *combo1 = detec->findChild<DBCombo *>(QStringLiteral("DBCombo1"));
        auto *combo2 = detec->findChild<DBCombo *>(QStringLiteral("DBCombo2"));
        QCOMPARE(combo1->Text(), QStringLiteral("Not set"));
        combo1->setText(QStringLiteral("CISPR 32 Class B radiated 10 m"));
        QTest::keyClick(combo1, Qt::Key_Return);
        combo2->setText(QStringLiteral("CISPR 32 Class B radiated 3 m"));
        QTest::keyClick(combo2, Qt::Key_Return);
        QCOMPARE(std::pair(st.limitnrmax, st.limitnrave), std::pair(7, 8));
        auto *check5 = detec->findChild<QCheckBox *>(QStringLiteral("Check5"));
        auto *check6 = detec->findChild<QCheckBox *>(QStringLiteral("Check6"));
        check5->click();
        QCOMPARE(std::tuple(st.viewlimitmax, st.lmaxdist, st.maxholdname),
                 std::tuple(uint8_t(1), 10.0f, QStringLiteral("CISPR 32 Class B radiated 10 m")));
        QList<float> distances;
        for (QCheckBox *box : {check6, check5, check6}) {
            box->click();
            distances << st.lmaxdist;
        }
        QCOMPARE(std::pair(distances, st.averagename), std::pair(QList<float>({3.0f, 3.0f, 0.0f}), QStringLiteral("CISPR 32 Class B radiated 3 m")));
    }

    // The generator's level in the shown unit and its clamps.
    void trackingGenerator()
    {
        SimBench bench;
        Program program(bench);
        QVERIFY(bench.connect());
        auto *text1 = formOf("track")->findChild<QLineEdit *>(QStringLiteral("Text1"));
        typeInto(text1, QStringLiteral("-60"));
        QCOMPARE(st.tglevel, -50.0f);
        typeInto(text1, QStringLiteral("5"));
        QCOMPARE(std::pair(st.tglevel, text1->text()), std::pair(1.0f, QStringLiteral("1.0")));
        st.unitoffset = 107;
        typeInto(text1, QStringLiteral("57"));
        QCOMPARE(std::pair(st.tglevel, text1->text()), std::pair(-50.0f, QStringLiteral("57.0")));
        typeInto(text1, QStringLiteral("87.04"));
        formOf("track")->findChild<QCheckBox *>(QStringLiteral("ctrack"))->click();
        // The analyser keeps a tenth of a dB; the read-back replaces what was typed.
        const QStringList sent = bench.log().filter(QRegularExpression(QStringLiteral("^#t[lg]")));
        QVERIFY(st.tgon == 1 && sent.contains(QStringLiteral("#tl-20.0")) && sent.contains(QStringLiteral("#tg1")));
        QCOMPARE(std::pair(st.tglevel, text1->text()), std::pair(-20.0f, QStringLiteral("87.0")));
    }
};

QTEST_MAIN(TestLivePanels)
#include "tst_livepanels.moc"
