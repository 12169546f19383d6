#include "platform/datacontrol.h"
#include "platform/dbcombo.h"
#include "platform/onerror.h"
#include "platform/recordset.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace kw;

class TestBoundControls : public QObject {
    Q_OBJECT

    QTemporaryDir dir_;
    QString path_;

private slots:
    void init()
    {
        static int n = 0;
        path_ = dir_.filePath(QStringLiteral("units%1.mdb").arg(++n));
        Database db = CreateDatabase(path_);
        db.AppendTable({QStringLiteral("unit"),
                        {{QStringLiteral("unitname"), FieldType::Text, 20}, {QStringLiteral("unitoffset"), FieldType::Single}}});
        db.AppendTable({QStringLiteral("config"),
                        {{QStringLiteral("configname"), FieldType::Text, 50}, {QStringLiteral("unit"), FieldType::Text, 20}}});
        db.Execute(QStringLiteral("insert into unit values ('dBmW', 0), ('dBuV', 107), ('dBuA', 73.5)"));
        db.Execute(QStringLiteral("insert into config values ('Bench', 'dBuV'), ('Chamber', 'dBuA')"));
        db.Close();
    }

    // Moves and searches made through the control reach a bound combo; the list stays whole.
    void boundComboFollowsTheCurrentRow()
    {
        QWidget form;
        auto *units = new Data(&form);
        auto *configs = new Data(&form);
        units->setRecordSource(QStringLiteral("unit"));
        configs->setRecordSource(QStringLiteral("config"));
        auto *combo = new DBCombo(&form);
        combo->setRowSource(units, QStringLiteral("unitname"));
        combo->setDataSource(configs, QStringLiteral("unit"));
        QCOMPARE(combo->count(), 0);

        units->setDatabaseName(path_ + QStringLiteral("   "));  // blank-padded as the record keeps it
        configs->setDatabaseName(path_);
        units->Refresh();
        configs->Refresh();
        QCOMPARE(units->DatabaseName(), path_);
        QCOMPARE(std::tuple(combo->count(), combo->itemText(2), combo->Text()), std::tuple(3, QStringLiteral("dBuA"), QStringLiteral("dBuV")));

        configs->FindFirst(QStringLiteral("configname = 'chamber'"));
        QCOMPARE(combo->Text(), QStringLiteral("dBuA"));
        configs->MoveNext();  // past the last row: nothing to show
        QCOMPARE(std::tuple(combo->Text(), combo->count()), std::tuple(QString(), 3));

        // Reading the list leaves the row source where the code put it.
        units->FindFirst(QStringLiteral("unitname = 'dBuA'"));
        combo->refill();
        QCOMPARE(std::tuple(units->currentText(QStringLiteral("unitoffset")), units->currentValue(QStringLiteral("unitoffset")).toDouble()),
                 std::tuple(QStringLiteral("73.5"), 73.5));
        QVERIFY(units->currentValue(QStringLiteral("nosuchfield")).isNull());
    }

    // Rows written elsewhere show after Refresh; a failed write leaves the stored value shown.
    void refreshAndWrites()
    {
        Data data;
        data.setDatabaseName(path_);
        data.setRecordSource(QStringLiteral("select * from unit order by unitname"));
        data.Refresh();
        QSignalSpy refreshed(&data, &Data::refreshed);
        QSignalSpy moved(&data, &Data::rowMoved);
        QSignalSpy validated(&data, &Data::validate);

        Database other = OpenDatabase(path_);
        other.Execute(QStringLiteral("insert into unit values ('dBpW', -30)"));
        other.Close();
        QCOMPARE(data.listOf(QStringLiteral("unitname")).join(QLatin1Char(',')), QStringLiteral("dBmW,dBpW,dBuA,dBuV"));
        data.Refresh();
        QCOMPARE(std::tuple(int(refreshed.count()), int(validated.count())), std::tuple(1, 1));
        QVERIFY(data.recordset().RecordCount() > 0);

        data.FindFirst(QStringLiteral("unitname = 'dBpW'"));
        data.writeField(QStringLiteral("unitoffset"), 90.0);
        QCOMPARE(data.currentText(QStringLiteral("unitoffset")), QStringLiteral("90"));
        ResumeNext on;
        on([&] { data.writeField(QStringLiteral("unitoffset"), QStringLiteral("ninety")); });
        QCOMPARE(on.number, 3421);
        QCOMPARE(data.currentText(QStringLiteral("unitoffset")), QStringLiteral("90"));
        QVERIFY(moved.count() >= 3);

        Recordset check = OpenDatabase(path_).OpenRecordset(QStringLiteral("unit"), dbOpenSnapshot);
        check.FindFirst(QStringLiteral("unitname = 'dBpW'"));
        QCOMPARE(check.FieldNumber(QStringLiteral("unitoffset")), 90.0);
    }

    // A missing database or table is an error the form passes over; the controls then show nothing.
    void badSources()
    {
        QWidget form;
        auto *data = new Data(&form);
        auto *combo = new DBCombo(&form);
        combo->setRowSource(data, QStringLiteral("unitname"));
        combo->setText(QStringLiteral("typed"));
        ResumeNext on;
        data->setDatabaseName(dir_.filePath(QStringLiteral("missing.mdb")));
        data->setRecordSource(QStringLiteral("unit"));
        on([&] { data->Refresh(); });
        QCOMPARE(on.number, 3024);
        QVERIFY(!data->isOpen() && !data->hasCurrentRow());
        on([&] { data->MoveFirst(); });
        QCOMPARE(std::tuple(on.number, combo->count(), combo->Text()), std::tuple(91, 0, QStringLiteral("typed")));

        data->setDatabaseName(path_);
        data->setRecordSource(QStringLiteral("nosuchtable"));
        on.clear();
        on([&] { data->Refresh(); });
        QVERIFY(on.number != 0);
        data->setRecordSource(QStringLiteral("unit"));
        data->Refresh();
        QCOMPARE(combo->count(), 3);
    }

    // Keys pass the form's key-press handler; Return is the form's, never a choice from the list.
    void keysAndListChoice()
    {
        Data data;
        data.setDatabaseName(path_);
        data.setRecordSource(QStringLiteral("unit"));
        data.Refresh();
        DBCombo combo;
        combo.setRowSource(&data, QStringLiteral("unitname"));
        QStringList seen;
        combo.keyPress = [&](int &key) {
            seen << QString::number(key);
            if (key == 'x')
                key = 0;
            else if (key == 'a')
                key = 'A';
        };
        QSignalSpy chosen(&combo, &DBCombo::listChosen);
        combo.show();
        QVERIFY(QTest::qWaitForWindowExposed(&combo));
        combo.setText(QString());
        QTest::keyClicks(&combo, QStringLiteral("dxa"));
        QCOMPARE(combo.Text(), QStringLiteral("dA"));
        QTest::keyClick(&combo, Qt::Key_Return);
        QCOMPARE(seen.join(QLatin1Char(',')), QStringLiteral("100,120,97,13"));
        QCOMPARE(std::tuple(int(chosen.count()), combo.count()), std::tuple(0, 3));  // Return added nothing

        combo.showPopup();
        QAbstractItemView *list = combo.view();
        QVERIFY(QTest::qWaitForWindowExposed(list->window()));
        const QRect second = list->visualRect(list->model()->index(1, 0));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, second.center());
        QCOMPARE(std::tuple(int(chosen.count()), combo.Text()), std::tuple(1, QStringLiteral("dBuV")));
    }
};

QTEST_MAIN(TestBoundControls)
#include "tst_boundcontrols.moc"
