#include "platform/dialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>

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

// The classic dialog's properties on the platform dialog. The default extension goes on in lower
// case, as the program names its own files, so that saved files match the patterns on a file
// system that tells case apart.
std::optional<QString> platformFileDialog(const FileRequest &r)
{
    QFileDialog box(QApplication::activeWindow(), r.title, r.dir);
    const QStringList parts = r.filter.split(QLatin1Char('|'));
    QStringList names;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        // Qt reads the patterns from the brackets of the name; the pattern half is what counts.
        names << parts[i].trimmed().section(QLatin1Char('('), 0, 0).trimmed() + QStringLiteral(" (") + parts[i + 1].trimmed() + QLatin1Char(')');
    }
    box.setNameFilters(names);
    if (r.filterIndex >= 1 && r.filterIndex <= names.size())
        box.selectNameFilter(names[r.filterIndex - 1]);
    QString ext = r.defaultExt;
    if (ext.startsWith(QLatin1Char('.')))
        ext.remove(0, 1);
    box.setDefaultSuffix(ext.toLower());
    box.setAcceptMode(r.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    box.setFileMode(r.save || !(r.flags & FileRequest::FileMustExist) ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    box.setOption(QFileDialog::DontConfirmOverwrite, !(r.flags & FileRequest::OverwritePrompt));
    for (;;) {
        if (box.exec() != QDialog::Accepted || box.selectedFiles().isEmpty())
            return std::nullopt;
        const QString name = box.selectedFiles().constFirst();
        if (!(r.flags & FileRequest::CreatePrompt) || QFileInfo::exists(name))
            return name;
        const auto create = QMessageBox::question(&box, r.title, QFileInfo(name).fileName() +
                                                  QStringLiteral("\nThis file does not exist.\nDo you want to create it?"));
        if (create == QMessageBox::Yes)
            return name;
    }
}

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
    std::optional<QString> chooseFile(const FileRequest &request) override
    {
        if (unattended())
            return std::nullopt;
        return platformFileDialog(request);
    }
};

RealDialogs realDialogs;
Dialogs *current = &realDialogs;

}  // namespace

std::optional<QString> Dialogs::chooseFile(const FileRequest &r)
{
    return r.save ? saveFile(r.title, r.filter, r.dir) : openFile(r.title, r.filter, r.dir);
}

Dialogs &dialogs() { return *current; }

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

std::optional<QString> ScriptedDialogs::chooseFile(const FileRequest &request)
{
    shown.push_back({request.save ? QStringLiteral("save") : QStringLiteral("open"), request.title, request.filter, Buttons::OkCancel});
    fileRequests.push_back(request);
    return takeNext(files);
}

int ScriptedDialogs::count(const QString &title) const
{
    int n = 0;
    for (const auto &box : shown)
        n += box.title == title;
    return n;
}

}  // namespace kw
