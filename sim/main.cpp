// kt3400sim: a KT3400 analyser on a pseudo-terminal, for the program, its tests and demos.

#include "sim/benchcontrol.h"
#include "sim/ptyserver.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QDateTime>
#include <QFileInfo>
#include <QTextStream>

#include <csignal>
#include <unistd.h>

namespace {
volatile std::sig_atomic_t quit = 0;
volatile std::sig_atomic_t burstAsked = 0;
void onSignal(int) { quit = 1; }
void onBurst(int) { burstAsked = 1; }
}  // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kt3400sim"));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("KT3400 analyser simulator on a pseudo-terminal"));
    parser.addHelpOption();
    const QCommandLineOption model({QStringLiteral("m"), QStringLiteral("model")}, QStringLiteral("3400 or 3420"), QStringLiteral("model"), QStringLiteral("3420"));
    const QCommandLineOption firmware({QStringLiteral("f"), QStringLiteral("firmware")}, QStringLiteral("firmware version, e.g. 1.70"), QStringLiteral("version"), QStringLiteral("1.70"));
    const QCommandLineOption baud({QStringLiteral("b"), QStringLiteral("baud")}, QStringLiteral("speed the analyser starts at"), QStringLiteral("speed"), QStringLiteral("19200"));
    const QCommandLineOption link({QStringLiteral("l"), QStringLiteral("link")}, QStringLiteral("place a symlink to the device here"), QStringLiteral("path"));
    const QCommandLineOption log(QStringLiteral("log"), QStringLiteral("append every command received to this file"), QStringLiteral("file"));
    const QCommandLineOption pace(QStringLiteral("pace"), QStringLiteral("bytes take their line time (10 bits each)"));
    const QCommandLineOption warmup(QStringLiteral("warmup"), QStringLiteral("value \"#cr\" reports (0 = warm)"), QStringLiteral("n"), QStringLiteral("0"));
    const QCommandLineOption noEcho(QStringLiteral("no-echo"), QStringLiteral("fault: echo nothing"));
    const QCommandLineOption wrongEcho(QStringLiteral("wrong-echo"), QStringLiteral("fault: echo every character one code off"));
    const QCommandLineOption noReply(QStringLiteral("no-reply"), QStringLiteral("fault: echo but never answer"));
    const QCommandLineOption unknownModel(QStringLiteral("unknown-model"), QStringLiteral("fault: answer \"#KT\" with an unknown model"));
    const QCommandLineOption vnZero(QStringLiteral("vn-zero"), QStringLiteral("fault: answer \"#VN\" with 0"));
    const QCommandLineOption dutOff(QStringLiteral("dut-off"), QStringLiteral("the device under test is off: only the room's broadcast FM"));
    const QCommandLineOption noPreamp(QStringLiteral("no-preamp"), QStringLiteral("no preamplifier in the chain: antenna and cable only"));
    const QCommandLineOption badChecksum(QStringLiteral("bad-checksum"), QStringLiteral("fault: sample blocks carry a wrong checksum"));
    const QCommandLineOption cutBlock(QStringLiteral("cut-block"), QStringLiteral("fault: sample blocks stop after n bytes"), QStringLiteral("n"));
    const QCommandLineOption bench(QStringLiteral("bench"),
                                   QStringLiteral("watch this file for the bench: lines \"dut on\"/\"dut off\", \"antenna horizontal\"/\"antenna vertical\""),
                                   QStringLiteral("file"));
    const QCommandLineOption noise(QStringLiteral("noise"), QStringLiteral("fault: stray bytes after every answer"));
    const QCommandLineOption burstEvery(QStringLiteral("burst-every"), QStringLiteral("the bench sends a 0.3 s burst at 433.92 MHz every n seconds (SIGUSR1: one burst now)"), QStringLiteral("n"));
    parser.addOptions({model, firmware, baud, link, log, pace, warmup, noEcho, wrongEcho, noReply, unknownModel, vnZero,
                       dutOff, noPreamp, badChecksum, cutBlock, noise, bench, burstEvery});
    parser.process(app);

    kt::Options options;
    options.model = parser.value(model);
    options.firmware = parser.value(firmware);
    options.baud = parser.value(baud).toInt();
    options.pacing = parser.isSet(pace);
    options.warmup = parser.value(warmup).toInt();
    options.faults.noEcho = parser.isSet(noEcho);
    options.faults.wrongEcho = parser.isSet(wrongEcho);
    options.faults.noReply = parser.isSet(noReply);
    options.faults.unknownModel = parser.isSet(unknownModel);
    options.faults.vnZero = parser.isSet(vnZero);
    options.dutOn = !parser.isSet(dutOff);
    options.preamp = !parser.isSet(noPreamp);
    options.faults.wrongChecksum = parser.isSet(badChecksum);
    options.faults.blockCutAt = parser.isSet(cutBlock) ? parser.value(cutBlock).toInt() : -1;
    if (parser.isSet(noise))
        options.faults.noise = QByteArray("\x01\x7f~", 3);

    kt::PtyServer server(options);
    if (parser.isSet(burstEvery))
        server.withModel([&](kt::Analyser &a) { a.signal().scene().burstPeriod = parser.value(burstEvery).toDouble(); });
    if (!server.start()) {
        QTextStream(stderr) << "kt3400sim: " << server.error() << Qt::endl;
        return 1;
    }
    if (parser.isSet(link) && !server.placeLink(parser.value(link))) {
        QTextStream(stderr) << "kt3400sim: cannot place the link " << parser.value(link) << Qt::endl;
        return 1;
    }
    QTextStream(stdout) << server.devicePath() << Qt::endl;

    std::signal(SIGINT, onSignal);
    std::signal(SIGTERM, onSignal);
    std::signal(SIGUSR1, onBurst);
    qsizetype logged = 0;
    QFile logFile(parser.value(log));
    if (parser.isSet(log))
        logFile.open(QIODevice::Append | QIODevice::Text);
    QDateTime benchChanged;
    while (!quit) {
        usleep(100000);
        if (burstAsked) {
            burstAsked = 0;
            server.withModel([](kt::Analyser &a) { a.burst(0.5); });
        }
        if (parser.isSet(bench)) {
            const QFileInfo info(parser.value(bench));
            if (info.exists() && info.lastModified() != benchChanged) {
                benchChanged = info.lastModified();
                QFile file(info.filePath());
                if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
                    const QString text = QString::fromUtf8(file.readAll());
                    QStringList unknown;
                    server.withModel([&](kt::Analyser &a) { unknown = kt::applyBenchText(text, a.signal().scene()); });
                    for (const QString &line : unknown)
                        QTextStream(stderr) << "kt3400sim: bench: what is \"" << line << "\"?" << Qt::endl;
                }
            }
        }
        if (logFile.isOpen()) {
            const QStringList commands = server.commandLog();
            for (; logged < commands.size(); ++logged)
                logFile.write(commands[logged].toLatin1() + '\n');
            logFile.flush();
        }
    }
    server.stop();
    return 0;
}
