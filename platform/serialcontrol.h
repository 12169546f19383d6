#pragma once
// The serial control: one port, opened at a port number and a settings text such as
// "19200,N,8,1", read one byte at a time. Waiting blocks in the OS; nothing here runs the event loop.

#include <QByteArray>
#include <QString>
#include <memory>

class QSerialPort;

namespace kw {

class SerialControl {
public:
    SerialControl();
    ~SerialControl();

    int commPort() const { return commPort_; }
    void setCommPort(int port);
    QString settings() const { return settings_; }
    // Throws VbError(380) for a settings text it cannot take.
    void setSettings(const QString &settings);

    bool portOpen() const;
    // Opening a port that cannot be opened throws VbError(8002).
    void setPortOpen(bool open);

    // Bytes that wait to be read; looks at the line without blocking.
    int inBufferCount();
    // Throws away everything received so far (InBufferCount = 0).
    void clearInput();
    void clearOutput();
    void setInputLen(int n) { inputLen_ = n; }
    // Takes InputLen bytes (one); empty when nothing waits.
    QByteArray input();
    void output(const QByteArray &bytes);

    // Blocks until a further byte may have arrived or the slice is over.
    void waitForInput(int sliceMs);

    // Every byte that passes, when the debug category is on.
    QString deviceName() const;

    // The device went away under the open port (a pulled adapter, an ended simulator).
    bool deviceFailed() const { return failed_; }

private:
    // Called when the port reports an error: a device that has failed is let go at once.
    void checkDevice();
    int commPort_ = 1;
    QString settings_ = QStringLiteral("9600,N,8,1");
    int inputLen_ = 0;
    // The port stays open for the routines (the next connection closes and reopens it), but
    // nothing is sent, received or watched any more: sends are dropped, waits sleep.
    bool failed_ = false;
    std::unique_ptr<QSerialPort> port_;
};

}  // namespace kw
