// Notes: the length rule as keys are typed, the single blank, Exit losing what was typed, and OK
// writing note and headline into the measurement file the plot shows.
#include "platform/recordset.h"
#include "plot/notes.h"
#include "shell/forms.h"
#include "shell/mdi.h"
#include "shell/state.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

using namespace kw;

namespace {

// A measurement file's settings row, as far as the notes touch it.
QString makeFile(const QTemporaryDir &dir)
{
    const QString path = dir.filePath(QStringLiteral("shown.mes"));
    Database file = CreateDatabase(path);
    file.AppendTable({QStringLiteral("Settings"),
                      {{QStringLiteral("Vernr"), FieldType::Integer},
                       {QStringLiteral("note"), FieldType::Memo},
                       {QStringLiteral("headline"), FieldType::Text, 80}}});
    file.Execute(QStringLiteral("insert into settings values (100, 'old note', 'old headline')"));
    file.Close();
    return path;
}

QString column(const QString &path, const QString &name)
{
    return OpenDatabase(path).OpenRecordset(QStringLiteral("select * from settings"), dbOpenSnapshot).FieldText(name);
}

QPlainTextEdit *text1Of(QWidget *form) { return form->findChild<QPlainTextEdit *>(QStringLiteral("Text1")); }
void press(QWidget *form, const char *button)
{
    QTest::mouseClick(form->findChild<QPushButton *>(QString::fromLatin1(button)), Qt::LeftButton);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}  // namespace

class TestNotes : public QObject {
    Q_OBJECT
private slots:
    void init() { resetState(); }

    // The 800th character goes in, the next key (backspace too) is swallowed; trailing blanks
    // do not count.
    void lengthRuleAsTyped()
    {
        Mdi window;
        QWidget *form = showForm(QStringLiteral("notesfrm"));
        QPlainTextEdit *text = text1Of(form);
        QCOMPARE(text->toPlainText(), QStringLiteral(" "));
        text->setPlainText(QString(798, QLatin1Char('x')));
        text->moveCursor(QTextCursor::End);
        QTest::keyClicks(text, QStringLiteral("yz"));
        QCOMPARE(text->toPlainText().size(), 800);
        QTest::keyClick(text, Qt::Key_Backspace);
        QCOMPARE(text->toPlainText().size(), 800);
        QVERIFY(noteTakesKey(QString(799, QLatin1Char('x')) + QStringLiteral("   ")) && !noteTakesKey(QString(800, QLatin1Char('x'))));
    }

    // Exit keeps the note as it was; Clear leaves one blank; OK without a shown file keeps the
    // text in memory only.
    void exitClearAndOkWithoutAFile()
    {
        Mdi window;
        st.note = QStringLiteral("antenna 1 m high");
        QWidget *form = showForm(QStringLiteral("notesfrm"));
        text1Of(form)->setPlainText(QStringLiteral("typed and dropped"));
        press(form, "Command2");
        QCOMPARE(std::pair(formLoaded(QStringLiteral("notesfrm")), st.note), std::pair(false, QStringLiteral("antenna 1 m high")));
        st.note.clear();
        notesExit();
        QCOMPARE(st.note, QStringLiteral(" "));

        form = showForm(QStringLiteral("notesfrm"));
        press(form, "Command1");
        QCOMPARE(text1Of(form)->toPlainText(), QStringLiteral(" "));
        text1Of(form)->setPlainText(QStringLiteral("DUT: power supply, rev. B"));
        press(form, "Command3");
        QCOMPARE(st.note, QStringLiteral("DUT: power supply, rev. B"));
    }

    // OK on a shown file: an empty text goes in as one blank, and an empty headline takes the
    // test name in memory and in the file.
    void okWritesIntoTheShownFile()
    {
        QTemporaryDir dir;
        std::tie(st.measurefile, st.filemode, st.headline, st.testname) =
            std::tuple(makeFile(dir), 1, QStringLiteral("   "), QStringLiteral("EN 55032 class B"));
        QVERIFY(notesOk(QString()));
        QCOMPARE((QStringList{st.note, column(st.measurefile, QStringLiteral("note")), st.headline, column(st.measurefile, QStringLiteral("headline"))}),
                 (QStringList{" ", " ", "EN 55032 class B", "EN 55032 class B"}));

        st.headline = QStringLiteral("  Lab 2  ");
        QVERIFY(notesOk(QStringLiteral("line one\r\nline two")));
        QCOMPARE((QStringList{column(st.measurefile, QStringLiteral("note")), column(st.measurefile, QStringLiteral("headline"))}),
                 (QStringList{"line one\r\nline two", "Lab 2"}));

        // A file that has gone keeps the note in memory and says so.
        st.measurefile = dir.filePath(QStringLiteral("gone.mes"));
        QVERIFY(!notesOk(QStringLiteral("kept")) && st.note == QStringLiteral("kept"));
    }
};

QTEST_MAIN(TestNotes)
#include "tst_notes.moc"
