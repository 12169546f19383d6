#include "support/simfixture.h"

#include "link/connection.h"
#include "link/transport.h"
#include "platform/clock.h"
#include "platform/comports.h"
#include "platform/progdir.h"
#include "platform/serialcontrol.h"
#include "shell/state.h"
#include "support/testfiles.h"

#include <QElapsedTimer>
#include <QFile>

namespace kw {

SimBench::SimBench(const kt::Options &options)
{
    resetState();
    // While the line is silent the clock runs ten times fast, so a silent analyser costs 0.2 s, not
    // 2 s. While bytes are under way it keeps real time: a busy machine that is slow to pass them on
    // must not look like an analyser that does not answer.
    st.serialtimeout = 2;
    QElapsedTimer real;
    real.start();
    setTimerSource([this, real, lastNanos = qint64(0), seconds = 1000.0]() mutable {
        const qint64 now = real.nsecsElapsed();
        const double rate = server_ && server_->lineIdle() ? 10.0 : 1.0;
        seconds += static_cast<double>(now - lastNanos) * 1e-9 * rate;
        lastNanos = now;
        return static_cast<float>(seconds);
    });
    setDialogs(&boxes_);
    setProgramDirectory(dir_.path());
    server_ = std::make_unique<kt::PtyServer>(options);
    wire();
}

SimBench::~SimBench()
{
    release();
    setDialogs(nullptr);
    setTimerSource({});
}

void SimBench::wire()
{
    if (!server_->start())
        qFatal("simulator: %s", qPrintable(server_->error()));
    QFile ports(dir_.filePath(QStringLiteral("ports.def")));
    ports.open(QIODevice::WriteOnly | QIODevice::Text);
    // Only Com2 leads anywhere: the machine's own serial ports stay out of the tests.
    ports.write(QStringLiteral("Com1=%1/none1\nCom2=%2\nCom3=%1/none3\nCom4=%1/none4\n")
                    .arg(dir_.path(), server_->devicePath())
                    .toLocal8Bit());
    ports.close();
    reloadComPorts();
}

bool SimBench::connect()
{
    connectunit();
    clearLog();
    return st.portopen == 1;
}

QStringList SimBench::shown() const
{
    return kwtest::boxesOf(boxes_);
}

void SimBench::clearLog()
{
    server_->withModel([](kt::Analyser &a) { a.clearLog(); });
}

void SimBench::release()
{
    try {
        comm1().setPortOpen(false);
    } catch (...) {
    }
    server_->stop();
}

void SimBench::restart(const kt::Options &options)
{
    release();
    server_ = std::make_unique<kt::PtyServer>(options);
    wire();
}

void SimBench::replug(const kt::Options &options)
{
    server_->stop();
    server_ = std::make_unique<kt::PtyServer>(options);
    wire();
}

}  // namespace kw
