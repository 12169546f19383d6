// The program as installed: `cmake --install` of this build into a temporary prefix puts every
// file in its place, and the installed program starts from there and keeps its files per user.
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString buildDir() { return QDir(QCoreApplication::applicationDirPath() + QStringLiteral("/..")).absolutePath(); }

QString readAll(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

}  // namespace

class TestInstall : public QObject {
    Q_OBJECT
    QTemporaryDir root_;
    QString prefix_;

private slots:
    void initTestCase()
    {
        QVERIFY(root_.isValid());
        prefix_ = root_.filePath(QStringLiteral("usr"));
        QProcess install;
        install.start(QStringLiteral("cmake"), {QStringLiteral("--install"), buildDir(), QStringLiteral("--prefix"), prefix_});
        QVERIFY(install.waitForFinished(60000));
        QVERIFY2(install.exitCode() == 0, install.readAllStandardError().constData());
    }

    void everyFileInItsPlace()
    {
        for (const char *file : {"bin/kw3400r", "bin/kt3400sim", "share/kw3400r/default.mdb", "share/applications/kw3400r.desktop",
                                 "share/icons/hicolor/scalable/apps/kw3400r.svg"})
            QVERIFY2(QFileInfo(prefix_ + QLatin1Char('/') + QLatin1String(file)).size() > 0, file);
        QVERIFY(QFileInfo(prefix_ + QStringLiteral("/bin/kw3400r")).isExecutable());
        const QString desktop = readAll(prefix_ + QStringLiteral("/share/applications/kw3400r.desktop"));
        QVERIFY(desktop.startsWith(QStringLiteral("[Desktop Entry]\n")));
        QVERIFY(desktop.contains(QStringLiteral("\nExec=kw3400r\n")) && desktop.contains(QStringLiteral("\nIcon=kw3400r\n")));
        QVERIFY(readAll(prefix_ + QStringLiteral("/share/kw3400r/default.mdb")).startsWith(QStringLiteral("SQLite format 3")));
    }

    // Started from the prefix, which the test could write to, the program still keeps
    // setting.def and its own copy of the database in the per-user directory.
    void installedProgramStartsAndWorksPerUser()
    {
        const QString data = root_.filePath(QStringLiteral("home/.local/share"));
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("HOME"), root_.filePath(QStringLiteral("home")));
        env.insert(QStringLiteral("XDG_DATA_HOME"), data);
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("KW_UNATTENDED"), QStringLiteral("1"));
        QProcess program;
        program.setProcessEnvironment(env);
        program.setWorkingDirectory(root_.path());
        program.start(prefix_ + QStringLiteral("/bin/kw3400r"), {});
        QVERIFY(program.waitForStarted(10000));

        const QString own = data + QStringLiteral("/Vorlane Instruments/KW3400R");
        QElapsedTimer clock;
        clock.start();
        while (!QFileInfo::exists(own + QStringLiteral("/setting.def")) && program.state() == QProcess::Running &&
               clock.elapsed() < 20000)
            QTest::qWait(50);
        const bool running = program.state() == QProcess::Running;
        program.terminate();
        program.waitForFinished(5000);
        QVERIFY2(running, program.readAllStandardError().constData());
        QVERIFY(QFileInfo(own + QStringLiteral("/default.mdb")).size() > 0 && QFileInfo::exists(own + QStringLiteral("/setting.def")));
        QCOMPARE(QDir(prefix_ + QStringLiteral("/bin")).entryList(QDir::Files), (QStringList{"kt3400sim", "kw3400r"}));
    }
};

QTEST_MAIN(TestInstall)
#include "tst_install.moc"
