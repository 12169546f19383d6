#include "sim/ptyserver.h"

#include <QFile>

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace kt {

namespace {

int speedToBaud(speed_t speed)
{
    switch (speed) {
    case B1200: return 1200;
    case B2400: return 2400;
    case B4800: return 4800;
    case B9600: return 9600;
    case B19200: return 19200;
    case B38400: return 38400;
    case B57600: return 57600;
    case B115200: return 115200;
    default: return 0;
    }
}

speed_t baudToSpeed(int baud)
{
    switch (baud) {
    case 4800: return B4800;
    case 9600: return B9600;
    case 38400: return B38400;
    case 115200: return B115200;
    default: return B19200;
    }
}

void sleepUntil(timespec deadline) { while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &deadline, nullptr) == EINTR) {} }

timespec later(timespec t, long nanos)
{
    t.tv_nsec += nanos;
    while (t.tv_nsec >= 1000000000L) {
        t.tv_nsec -= 1000000000L;
        ++t.tv_sec;
    }
    return t;
}

}  // namespace

PtyServer::PtyServer(const Options &options) : model_(options) {}

PtyServer::~PtyServer() { stop(); }

bool PtyServer::start()
{
    master_ = posix_openpt(O_RDWR | O_NOCTTY);
    if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0) {
        error_ = QStringLiteral("cannot open a pseudo-terminal");
        return false;
    }
    devicePath_ = QString::fromLocal8Bit(ptsname(master_));
    // Holding the slave open ourselves keeps the master readable while the program has it closed.
    slave_ = ::open(ptsname(master_), O_RDWR | O_NOCTTY);
    if (slave_ < 0) {
        error_ = QStringLiteral("cannot open ") + devicePath_;
        return false;
    }
    termios tio{};
    tcgetattr(slave_, &tio);
    cfmakeraw(&tio);
    cfsetispeed(&tio, baudToSpeed(model_.baud()));
    cfsetospeed(&tio, baudToSpeed(model_.baud()));
    tcsetattr(slave_, TCSANOW, &tio);
    if (pipe(wakePipe_) != 0) {
        error_ = QStringLiteral("cannot make a pipe");
        return false;
    }
    stopping_ = false;
    thread_ = std::thread([this] { serve(); });
    return true;
}

void PtyServer::unplug() { unplugged_ = true; }

void PtyServer::stop()
{
    if (thread_.joinable()) {
        stopping_ = true;
        const char wake = 1;
        [[maybe_unused]] const auto n = ::write(wakePipe_[1], &wake, 1);
        thread_.join();
    }
    for (int *fd : {&master_, &slave_, &wakePipe_[0], &wakePipe_[1]}) {
        if (*fd >= 0)
            ::close(*fd);
        *fd = -1;
    }
    if (!linkPath_.isEmpty()) {
        QFile::remove(linkPath_);
        linkPath_.clear();
    }
}

bool PtyServer::placeLink(const QString &linkPath)
{
    QFile::remove(linkPath);
    if (!QFile::link(devicePath_, linkPath))
        return false;
    linkPath_ = linkPath;
    return true;
}

void PtyServer::withModel(const std::function<void(Analyser &)> &f)
{
    std::lock_guard lock(mutex_);
    f(model_);
}

QStringList PtyServer::commandLog()
{
    std::lock_guard lock(mutex_);
    return model_.commandLog();
}

void PtyServer::inject(const QByteArray &bytes)
{
    if (master_ >= 0)
        [[maybe_unused]] const auto n = ::write(master_, bytes.constData(), bytes.size());
}

int PtyServer::lineBaud() const
{
    termios tio{};
    if (master_ < 0 || tcgetattr(master_, &tio) != 0)
        return 0;
    return speedToBaud(cfgetispeed(&tio));
}

bool PtyServer::lineIdle() const
{
    if (busy_ || master_ < 0)
        return false;
    int towardsAnalyser = 0;
    int towardsProgram = 0;
    if (ioctl(master_, FIONREAD, &towardsAnalyser) != 0 || ioctl(slave_, FIONREAD, &towardsProgram) != 0)
        return false;
    return towardsAnalyser == 0 && towardsProgram == 0;
}

// With pacing on, each byte costs its line time: ten bits at the analyser's speed. A byte the
// program sent has taken one byte time to arrive; every byte sent back takes one more, one after
// the other. Deadlines are absolute, so the sleeps do not add up their wake-up delays.
void PtyServer::send(const QByteArray &bytes, int baud, bool pacing)
{
    if (!pacing) {
        qsizetype done = 0;
        while (done < bytes.size()) {
            const ssize_t n = ::write(master_, bytes.constData() + done, bytes.size() - done);
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0)
                return;
            done += n;
        }
        return;
    }
    const long byteNanos = 10L * 1000000000L / baud;
    timespec next{};
    clock_gettime(CLOCK_MONOTONIC, &next);
    next = later(next, byteNanos);  // the byte that was heard
    for (const char c : bytes) {
        next = later(next, byteNanos);
        sleepUntil(next);
        if (::write(master_, &c, 1) < 0 && errno != EINTR)
            return;
    }
}

void PtyServer::watchTrigger()
{
    QByteArray out;
    int baud = 0;
    bool pacing = false;
    {
        std::lock_guard lock(mutex_);
        if (unplugged_)
            return;
        out = model_.watch();
        baud = model_.baud();
        pacing = model_.options().pacing;
    }
    if (!out.isEmpty()) {
        busy_ = true;
        send(out, baud, pacing);
        busy_ = false;
    }
}

void PtyServer::serve()
{
    // Line times are a fraction of a millisecond: ask the kernel for tight wake-ups.
    prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
    pollfd fds[2] = {{master_, POLLIN, 0}, {wakePipe_[0], POLLIN, 0}};
    char buffer[256];
    while (!stopping_) {
        bool armed = false;
        {
            std::lock_guard lock(mutex_);
            armed = model_.armed();
        }
        // An armed trigger makes the analyser look at the signal once a sweep by itself.
        const int ready = poll(fds, 2, armed ? int(kSweepSeconds * 1000) : -1);
        if (ready < 0) {
            if (errno == EINTR)
                continue;
            return;
        }
        if (fds[1].revents)
            return;
        if (ready == 0) {
            watchTrigger();
            continue;
        }
        if (!(fds[0].revents & POLLIN))
            continue;
        // Marked before the read empties the queue, so the line never looks idle in between.
        busy_ = true;
        const ssize_t n = ::read(master_, buffer, sizeof buffer);
        // Unplugged, what the program sends goes nowhere.
        const ssize_t heardBytes = unplugged_ ? 0 : n;
        const int heard = lineBaud();
        for (ssize_t i = 0; i < heardBytes; ++i) {
            QByteArray out;
            int baud = 0;
            bool pacing = false;
            {
                std::lock_guard lock(mutex_);
                baud = model_.baud();
                pacing = model_.options().pacing;
                // Bytes sent at another speed arrive as noise the analyser does not take.
                if (heard != baud)
                    continue;
                out = model_.receive(buffer[i]);
            }
            send(out, baud, pacing);
        }
        busy_ = false;
    }
}

}  // namespace kt
