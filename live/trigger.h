#pragma once
// Trigger mode of the Toolbox: the analyser watches the signal by itself against a level, reports
// the crossing unasked, and the program then reads the trace it kept. Also the centre frequency
// stepped by a fixed amount. The form setsingle shows what these leave.

#include <QString>
#include <functional>

namespace kw {

// The status texts of the trigger.
inline const QString kTriggerIdle = QStringLiteral("Not activ");
inline const QString kTriggerInit = QStringLiteral("Init");
inline const QString kTriggerWaiting = QStringLiteral("Wait for trigger");
inline const QString kTriggerReading = QStringLiteral("Read Datas");

// Where the status goes (the form's label); tests listen here too.
void setTriggerStatusView(std::function<void(const QString &)> view);
QString triggerStatus();

// "Start": continuous reading off, arm, and wait for reports until stopped. Runs in the click and
// yields while it waits; there is no time-out.
void triggerStart();
// The loop itself: arm, wait, read, print and arm again when asked.
void triggerLoop();
// "Stop" and the unload of the form: the waiting loop ends at its next look.
void triggerStop();

// The trigger level as the form shows it after a change: with unit offset and attenuator.
QString triggerText();
// The level as the form shows it when painted: the attenuator is left out there.
QString triggerPaintText();
// Return in the level box: the typed level (unit offset and attenuator taken off), clamped.
void triggerFromText(const QString &text);
// "Cursor 1 -->": the level of cursor 1, brought back through the chain and the distance term.
void triggerFromCursor();

// "Step -" (direction -1) and "Step +" (+1): the centre frequency moved by the step in MHz,
// sent (connecting for it when offline) and read back when connected. stepText is rewritten
// as its number's general text.
void frequencyStep(int direction, QString &stepText);

}  // namespace kw
