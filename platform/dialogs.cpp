#include "platform/dialogs.h"

#include "platform/printer.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPrintDialog>

namespace kw {

namespace {

QMessageBox::StandardButtons standardButtons(Buttons buttons)
{
    switch (buttons) {
    case Buttons::Ok: return QMessageBox::Ok;
    case Buttons::OkCancel: return QMessageBox::Ok | QMessageBox::Cancel;
    case Buttons::YesNo: return QMessageBox::Yes | QMessageBox::No;
    case Buttons::YesNoCancel: return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    }
    return QMessageBox::Ok;
}

// "Text (*.mes)|*.mes|All (*.*)|*.*" -> "Text (*.mes);;All (*.*)"
QString qtFilter(const QString &filter)
{
    const QStringList parts = filter.split(QLatin1Char('|'));
    QStringList names;
    for (int i = 0; i < parts.size(); i += 2)
        names << parts[i];
    return names.join(QStringLiteral(";;"));
}

// Unattended runs (the test suite) must never wait for a person: a box that no test scripted is
// written to the log and answered as if OK or cancel was pressed.
bool unattended() { return qEnvironmentVariableIsSet("KW_UNATTENDED"); }

class RealDialogs : public Dialogs {
public:
    Answer message(const QString &title, const QString &text, Buttons buttons) override
    {
        if (unattended()) {
            qWarning("unattended box: %s: %s", qPrintable(title), qPrintable(text));
            return buttons == Buttons::Ok ? Answer::Ok : Answer::Cancel;
        }
        // The system's texts break lines with carriage returns alone.
        QString shown = text;
        shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
        QMessageBox box(QMessageBox::NoIcon, title, shown, standardButtons(buttons), QApplication::activeWindow());
        switch (box.exec()) {
        case QMessageBox::Cancel: return Answer::Cancel;
        case QMessageBox::Yes: return Answer::Yes;
        case QMessageBox::No: return Answer::No;
        default: return Answer::Ok;
        }
    }
    std::optional<QString> input(const QString &title, const QString &prompt, const QString &start) override
    {
        if (unattended())
            return std::nullopt;
        bool ok = false;
        const QString text = QInputDialog::getText(QApplication::activeWindow(), title, prompt, QLineEdit::Normal, start, &ok);
        if (!ok)
            return std::nullopt;
        return text;
    }
    std::optional<QString> openFile(const QString &title, const QString &filter, const QString &dir) override
    {
        if (unattended())
            return std::nullopt;
        const QString name = QFileDialog::getOpenFileName(QApplication::activeWindow(), title, dir, qtFilter(filter));
        if (name.isEmpty())
            return std::nullopt;
        return name;
    }
    std::optional<QString> saveFile(const QString &title, const QString &filter, const QString &dir) override
    {
        if (unattended())
            return std::nullopt;
        const QString name = QFileDialog::getSaveFileName(QApplication::activeWindow(), title, dir, qtFilter(filter));
        if (name.isEmpty())
            return std::nullopt;
        return name;
    }
    bool printerSetup() override
    {
        if (unattended())
            return false;
        QPrintDialog box(&printer(), QApplication::activeWindow());
        box.setWindowTitle(QStringLiteral("Printer setup"));
        return box.exec() == QDialog::Accepted;
    }
};

RealDialogs realDialogs;
Dialogs *current = &realDialogs;
int boxesUp = 0;

// Every box, real or scripted, is counted while it is up.
class CountedDialogs : public Dialogs {
public:
    Answer message(const QString &title, const QString &text, Buttons buttons) override
    {
        const Up up;
        return current->message(title, text, buttons);
    }
    std::optional<QString> input(const QString &title, const QString &prompt, const QString &start) override
    {
        const Up up;
        return current->input(title, prompt, start);
    }
    std::optional<QString> openFile(const QString &title, const QString &filter, const QString &dir) override
    {
        const Up up;
        return current->openFile(title, filter, dir);
    }
    std::optional<QString> saveFile(const QString &title, const QString &filter, const QString &dir) override
    {
        const Up up;
        return current->saveFile(title, filter, dir);
    }
    bool printerSetup() override
    {
        const Up up;
        return current->printerSetup();
    }

private:
    struct Up {
        Up() { ++boxesUp; }
        ~Up() { --boxesUp; }
        Up(const Up &) = delete;
        Up &operator=(const Up &) = delete;
    };
};

CountedDialogs countedDialogs;

}  // namespace

Dialogs &dialogs() { return countedDialogs; }

bool boxShowing() { return boxesUp > 0; }

void setDialogs(Dialogs *replacement) { current = replacement ? replacement : &realDialogs; }

namespace {
// The next scripted answer; an empty queue answers as a cancelled box.
std::optional<QString> takeNext(std::deque<std::optional<QString>> &queue)
{
    if (queue.empty() || !queue.front()) {
        if (!queue.empty())
            queue.pop_front();
        return std::nullopt;
    }
    const QString text = *queue.front();
    queue.pop_front();
    return text;
}
}  // namespace

Answer ScriptedDialogs::message(const QString &title, const QString &text, Buttons buttons)
{
    shown.push_back({QStringLiteral("message"), title, text, buttons});
    if (answers.empty())
        return buttons == Buttons::YesNo || buttons == Buttons::YesNoCancel ? Answer::Yes : Answer::Ok;
    const Answer a = answers.front();
    answers.pop_front();
    return a;
}

std::optional<QString> ScriptedDialogs::input(const QString &title, const QString &prompt, const QString &start)
{
    shown.push_back({QStringLiteral("input"), title, prompt + QLatin1Char('|') + start, Buttons::OkCancel});
    return takeNext(inputs);
}

std::optional<QString> ScriptedDialogs::openFile(const QString &title, const QString &filter, const QString &)
{
    shown.push_back({QStringLiteral("open"), title, filter, Buttons::OkCancel});
    return takeNext(files);
}

std::optional<QString> ScriptedDialogs::saveFile(const QString &title, const QString &filter, const QString &)
{
    shown.push_back({QStringLiteral("save"), title, filter, Buttons::OkCancel});
    return takeNext(files);
}

bool ScriptedDialogs::printerSetup()
{
    shown.push_back({QStringLiteral("printer"), QString(), QString(), Buttons::OkCancel});
    if (answers.empty())
        return true;
    const Answer a = answers.front();
    answers.pop_front();
    return a != Answer::Cancel;
}

int ScriptedDialogs::count(const QString &title) const
{
    int n = 0;
    for (const auto &box : shown)
        n += box.title == title;
    return n;
}

}  // namespace kw
