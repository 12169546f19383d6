#pragma once
// Puts the analyser model behind a pseudo-terminal that any serial port layer opens like a real
// port. The analyser hears only at its own line speed: bytes the program sends at another speed
// are lost, as they would be on a real line.

#include "sim/analyser.h"

#include <QString>
#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

namespace kt {

class PtyServer {
public:
    explicit PtyServer(const Options &options = {});
    ~PtyServer();
    PtyServer(const PtyServer &) = delete;
    PtyServer &operator=(const PtyServer &) = delete;

    // Opens the pseudo-terminal and starts serving on a thread. False with error() set on failure.
    bool start();
    void stop();
    // The cable is cut: nothing is heard or answered any more, but the device stays where it is, so
    // its name cannot pass to another pseudo-terminal while the program still holds it.
    void unplug();
    bool running() const { return thread_.joinable(); }
    QString error() const { return error_; }

    // The slave device the program opens, and an optional symlink placed to it.
    QString devicePath() const { return devicePath_; }
    bool placeLink(const QString &linkPath);

    // Runs f on the model while the server holds it still.
    void withModel(const std::function<void(Analyser &)> &f);
    QStringList commandLog();

    // Puts bytes on the line from the analyser's side at once, outside any command.
    void inject(const QByteArray &bytes);

    // The speed the program has set on the line, as the analyser sees it (0 if unknown).
    int lineBaud() const;

    // True while nothing is under way on the line: no byte waits in either direction and the
    // analyser is not working on what it heard. A silence then is the analyser's own.
    bool lineIdle() const;

private:
    void serve();
    void watchTrigger();
    void send(const QByteArray &bytes, int baud, bool pacing);

    Analyser model_;
    std::mutex mutex_;
    std::thread thread_;
    int master_ = -1;
    int slave_ = -1;
    int wakePipe_[2] = {-1, -1};
    std::atomic<bool> stopping_{false};
    std::atomic<bool> busy_{false};
    std::atomic<bool> unplugged_{false};
    QString devicePath_;
    QString linkPath_;
    QString error_;
};

}  // namespace kt
