#pragma once
// Message and input boxes behind one interface, so that tests can queue the answers and read back
// every box that was shown.

#include <QString>
#include <QStringList>
#include <optional>
#include <deque>
#include <vector>

namespace kw {

enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };
enum class Answer { Ok, Cancel, Yes, No };

struct ShownBox {
    QString kind;  // "message", "input", "open", "save", "printer"
    QString title;
    QString text;
    Buttons buttons = Buttons::Ok;
};

class Dialogs {
public:
    virtual ~Dialogs() = default;
    virtual Answer message(const QString &title, const QString &text, Buttons buttons = Buttons::Ok) = 0;
    // Empty optional: the box was cancelled.
    virtual std::optional<QString> input(const QString &title, const QString &prompt, const QString &start) = 0;
    // File dialogs: empty optional when cancelled. filter as "Text (*.mes)|*.mes".
    virtual std::optional<QString> openFile(const QString &title, const QString &filter, const QString &dir) = 0;
    virtual std::optional<QString> saveFile(const QString &title, const QString &filter, const QString &dir) = 0;
    // The platform's printer set-up on the program's printer (platform/printer.h); false when
    // cancelled.
    virtual bool printerSetup() = 0;
};

// The dialogs in use; real boxes unless a test installed a scripted set.
Dialogs &dialogs();
void setDialogs(Dialogs *replacement);  // nullptr restores the real boxes

// True while a box shown through dialogs() is up. A box runs an event loop of its own in which
// the main window's timers still fire; their work must wait until the box is answered.
bool boxShowing();

// Answers come from queues; an empty queue answers Ok / cancel. Every box is recorded.
class ScriptedDialogs : public Dialogs {
public:
    std::deque<Answer> answers;
    std::deque<std::optional<QString>> inputs;
    std::deque<std::optional<QString>> files;
    std::vector<ShownBox> shown;

    Answer message(const QString &title, const QString &text, Buttons buttons) override;
    std::optional<QString> input(const QString &title, const QString &prompt, const QString &start) override;
    std::optional<QString> openFile(const QString &title, const QString &filter, const QString &dir) override;
    std::optional<QString> saveFile(const QString &title, const QString &filter, const QString &dir) override;
    // Recorded as a box of kind "printer"; answers Ok unless a Cancel is queued.
    bool printerSetup() override;

    int count(const QString &title) const;
};

}  // namespace kw
