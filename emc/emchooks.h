#pragma once
// What the run routines tell the form emc. The form installs these while it is loaded; without
// it (tests, a run whose form was closed) they do nothing.

#include <QString>
#include <functional>

namespace kw {

struct EmcHooks {
    std::function<void()> testLoaded;                     // DBCombo1, the view checks and Text1 follow the record
    std::function<void(bool)> comboEnabled;               // DBCombo1
    std::function<void(bool)> startEnabled;               // Command1 "Start"
    std::function<void(const QString &)> frequencyShown;  // Label1
    std::function<void(const QString &)> secondsLeft;     // Label3
    std::function<void(const QString &)> captionShown;    // the caption of emc
    // A row of the measurement file is on disk: "new", "sweep", "flag", "step" or "marked" at f MHz.
    std::function<void(const char *what, double f)> rowWritten;
};

EmcHooks &emcHooks();

// Helpers that call a hook when one is installed.
void showRunFrequency(double mhz);  // Label1 in "###0.00"
void enableTestChoice(bool on);  // DBCombo1
void enableStart(bool on);       // Command1
void tellRowWritten(const char *what, double f);

}  // namespace kw
