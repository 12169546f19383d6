#include "platform/serialcontrol.h"

#include "platform/comports.h"
#include "platform/vbformat.h"

#include <QLoggingCategory>
#include <QSerialPort>
#include <QThread>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <termios.h>

Q_LOGGING_CATEGORY(lcLine, "kw.line", QtWarningMsg)

namespace kw {

namespace {

struct LineSettings {
    qint32 baud = 9600;
    QSerialPort::Parity parity = QSerialPort::NoParity;
    QSerialPort::DataBits dataBits = QSerialPort::Data8;
    QSerialPort::StopBits stopBits = QSerialPort::OneStop;
};

// "19200,N,8,1"; throws VbError(380) (invalid property value) for anything else.
LineSettings parseSettings(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() != 4)
        throw VbError(380);
    LineSettings s;
    bool ok = false;
    s.baud = parts[0].trimmed().toInt(&ok);
    if (!ok || s.baud <= 0)
        throw VbError(380);
    const QString parity = parts[1].trimmed().toUpper();
    if (parity == QLatin1String("N")) s.parity = QSerialPort::NoParity;
    else if (parity == QLatin1String("E")) s.parity = QSerialPort::EvenParity;
    else if (parity == QLatin1String("O")) s.parity = QSerialPort::OddParity;
    else throw VbError(380);
    const int bits = parts[2].trimmed().toInt(&ok);
    if (!ok || bits < 5 || bits > 8)
        throw VbError(380);
    s.dataBits = static_cast<QSerialPort::DataBits>(bits);
    const QString stop = parts[3].trimmed();
    if (stop == QLatin1String("1")) s.stopBits = QSerialPort::OneStop;
    else if (stop == QLatin1String("2")) s.stopBits = QSerialPort::TwoStop;
    else throw VbError(380);
    return s;
}

void applySettings(QSerialPort &port, const LineSettings &s)
{
    port.setBaudRate(s.baud);
    port.setParity(s.parity);
    port.setDataBits(s.dataBits);
    port.setStopBits(s.stopBits);
    port.setFlowControl(QSerialPort::NoFlowControl);
}

}  // namespace

SerialControl::SerialControl() : port_(std::make_unique<QSerialPort>())
{
    // A device can fail while no routine is at work (the event loop meets it first); it is let go
    // after the port's own handler has returned, never inside it.
    QObject::connect(port_.get(), &QSerialPort::errorOccurred, port_.get(), [this] { checkDevice(); },
                     Qt::QueuedConnection);
}

SerialControl::~SerialControl() = default;

void SerialControl::setCommPort(int port)
{
    if (portOpen())
        throw VbError(8005);  // port already open
    commPort_ = port;
}

void SerialControl::setSettings(const QString &settings)
{
    const LineSettings s = parseSettings(settings);
    settings_ = settings;
    if (port_->isOpen())
        applySettings(*port_, s);
}

bool SerialControl::portOpen() const { return failed_ || port_->isOpen(); }

void SerialControl::setPortOpen(bool open)
{
    if (!open) {
        failed_ = false;
        if (port_->isOpen())
            port_->close();
        return;
    }
    if (portOpen())
        throw VbError(8005);
    port_->setPortName(comPortDevice(commPort_));
    if (!port_->open(QIODevice::ReadWrite)) {
        qCWarning(lcLine) << "cannot open" << port_->portName() << port_->errorString();
        throw VbError(8002);
    }
    applySettings(*port_, parseSettings(settings_));
    qCDebug(lcLine) << "open" << port_->portName() << settings_;
}

int SerialControl::inBufferCount()
{
    if (!port_->isOpen())
        return 0;
    // What the line has delivered counts, not only what an earlier look took in: a wait for
    // several bytes must see them arrive while some are already buffered.
    port_->waitForReadyRead(0);
    checkDevice();
    return static_cast<int>(port_->bytesAvailable());
}

void SerialControl::clearInput()
{
    if (!port_->isOpen())
        return;
    port_->clear(QSerialPort::Input);
    port_->readAll();
}

void SerialControl::clearOutput()
{
    if (port_->isOpen())
        port_->clear(QSerialPort::Output);
}

QByteArray SerialControl::input()
{
    if (!port_->isOpen())
        return {};
    if (port_->bytesAvailable() == 0) {
        port_->waitForReadyRead(0);
        checkDevice();
    }
    const QByteArray bytes = port_->read(inputLen_ > 0 ? inputLen_ : port_->bytesAvailable());
    qCDebug(lcLine) << "<" << bytes.toHex(' ');
    return bytes;
}

void SerialControl::output(const QByteArray &bytes)
{
    if (!portOpen())
        throw VbError(8018);  // operation valid only when the port is open
    qCDebug(lcLine) << ">" << bytes.toHex(' ');
    if (failed_)
        return;  // lost on a dead line, as on a cut cable
    port_->write(bytes);
    // The bytes go to the line now; a pty or UART takes a few bytes at once without blocking.
    while (port_->isOpen() && port_->bytesToWrite() > 0)
        if (!port_->waitForBytesWritten(1000))
            break;
    checkDevice();
}

void SerialControl::waitForInput(int sliceMs)
{
    // A failed device answers every look at once; the wait must still take its time, or a wait
    // for the time-out would spin.
    if (failed_) {
        QThread::msleep(static_cast<unsigned long>(std::max(sliceMs, 0)));
        return;
    }
    if (!port_->isOpen())
        return;
    port_->waitForReadyRead(sliceMs);
    checkDevice();
}

void SerialControl::checkDevice()
{
    if (failed_ || !port_->isOpen())
        return;
    const QSerialPort::SerialPortError error = port_->error();
    if (error == QSerialPort::NoError || error == QSerialPort::TimeoutError)
        return;
    // A device that has hung up is not always told as such: its reads may just find nothing
    // (a read error). What has gone answers no question about its line, a working one does.
    QString reason = port_->errorString();
    if (error != QSerialPort::ResourceError) {
        termios line{};
        if (::tcgetattr(static_cast<int>(port_->handle()), &line) == 0) {
            port_->clearError();
            return;
        }
        reason = QString::fromLocal8Bit(std::strerror(errno));
    }
    qCWarning(lcLine) << "device failed:" << port_->portName() << reason;
    // Unsent bytes would be retried for ever against a device that is not there, and a watched
    // device that has hung up reports itself ready again and again: let go of both.
    port_->clear();
    port_->close();
    failed_ = true;
}

QString SerialControl::deviceName() const { return comPortDevice(commPort_); }

}  // namespace kw
