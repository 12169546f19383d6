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

// The common file dialog's properties. flags are the classic dialog's bits; of them the platform
// dialog honours the overwrite prompt, the create prompt and that an opened file must exist.
struct FileRequest {
    static constexpr int OverwritePrompt = 0x2;
    static constexpr int HideReadOnly = 0x4;
    static constexpr int PathMustExist = 0x800;
    static constexpr int FileMustExist = 0x1000;
    static constexpr int CreatePrompt = 0x2000;

    bool save = false;
    QString title;
    QString filter;      // "Measurement (*.mes) |*.mes|EMC (*.emc) |*.emc": name and pattern pairs
    int filterIndex = 1; // 1-based pair shown first
    QString defaultExt;  // added to a name typed without one ("MES", ".emc")
    int flags = 0;
    QString dir;
};

struct ShownBox {
    QString kind;  // "message", "input", "open", "save"
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
    // The file dialog with all its properties; empty optional when cancelled. By default the
    // plain open or save dialog.
    virtual std::optional<QString> chooseFile(const FileRequest &request);
};

// The dialogs in use; real boxes unless a test installed a scripted set.
Dialogs &dialogs();
void setDialogs(Dialogs *replacement);  // nullptr restores the real boxes

// Answers come from queues; an empty queue answers Ok / cancel. Every box is recorded.
class ScriptedDialogs : public Dialogs {
public:
    std::deque<Answer> answers;
    std::deque<std::optional<QString>> inputs;
    std::deque<std::optional<QString>> files;
    std::vector<ShownBox> shown;
    std::vector<FileRequest> fileRequests;  // every chooseFile, in order

    Answer message(const QString &title, const QString &text, Buttons buttons) override;
    std::optional<QString> input(const QString &title, const QString &prompt, const QString &start) override;
    std::optional<QString> openFile(const QString &title, const QString &filter, const QString &dir) override;
    std::optional<QString> saveFile(const QString &title, const QString &filter, const QString &dir) override;
    // Recorded in shown as "open" or "save" with the filter as text, and in fileRequests; answered
    // from files.
    std::optional<QString> chooseFile(const FileRequest &request) override;

    int count(const QString &title) const;
};

}  // namespace kw
