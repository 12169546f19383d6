#include "shell/forms.h"
#include "shell/mdi.h"
#include "shell/startup.h"
#include "shell/state.h"
#include "support/programdir.h"
#include "platform/dialogs.h"
#include <QtTest>
using namespace kw;
class Shots : public QObject {
    Q_OBJECT
private slots:
    void shots()
    {
        kw::test::TempProgramDir dir;
        ScriptedDialogs boxes;
        setDialogs(&boxes);
        Mdi window;
        loadMain(window);
        st.unit = QStringLiteral("dBuV");
        for (const char *name : {"autost", "setsingle", "saveset", "loadset", "notesfrm", "about"}) {
            QWidget *f = showForm(QString::fromLatin1(name));
            QVERIFY(f);
            f->adjustSize();
            QCoreApplication::processEvents();
            f->grab().save(QStringLiteral("/tmp/w15shots/%1.png").arg(QString::fromLatin1(name)));
        }
        setDialogs(nullptr);
    }
};
QTEST_MAIN(Shots)
#include "tst_zzshots.moc"
