#include "platform/clock.h"

#include <QDateTime>
#include <QTime>

namespace kw {

namespace {
std::function<float()> timerSource;
std::function<double()> nowSource;
}  // namespace

float timerSeconds()
{
    if (timerSource)
        return timerSource();
    return static_cast<float>(QTime::currentTime().msecsSinceStartOfDay() / 1000.0);
}

double nowDate()
{
    if (nowSource)
        return nowSource();
    const QDateTime now = QDateTime::currentDateTime();
    const qint64 days = QDate(1899, 12, 30).daysTo(now.date());
    const int seconds = now.time().msecsSinceStartOfDay() / 1000;
    return static_cast<double>(days) + seconds / 86400.0;
}

void setTimerSource(std::function<float()> source) { timerSource = std::move(source); }
void setNowSource(std::function<double()> source) { nowSource = std::move(source); }

}  // namespace kw
