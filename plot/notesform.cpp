#include "plot/notesform.h"

#include "platform/dialogs.h"
#include "plot/notes.h"
#include "shell/forms.h"
#include "shell/keyfilter.h"
#include "shell/state.h"

#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kw {

namespace {

class Notesfrm : public QWidget {
public:
    Notesfrm()
    {
        setWindowTitle(QStringLiteral("Notes"));
        text1_ = named(new QPlainTextEdit(this), "Text1");
        auto *command1 = named(new QPushButton(QStringLiteral("&Clear"), this), "Command1");
        auto *command2 = named(new QPushButton(QStringLiteral("E&xit"), this), "Command2");
        auto *command3 = named(new QPushButton(QStringLiteral("&OK"), this), "Command3");
        auto *buttons = new QHBoxLayout;
        buttons->addWidget(command1);
        buttons->addStretch(1);
        buttons->addWidget(command3);
        buttons->addWidget(command2);
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(text1_, 1);
        layout->addLayout(buttons);
        resize(520, 360);

        text1_->setPlainText(st.note);
        // Every key counts, backspace too: at the limit only the mouse can shorten the text.
        onKeyPress(text1_, [this](KeyPress &key) {
            if (!noteTakesKey(text1_->toPlainText()))
                key.ascii = 0;
        });
        connect(command1, &QPushButton::released, this, [this] { text1_->setPlainText(notesClear()); });
        connect(command2, &QPushButton::released, this, [this] {
            notesExit();
            unloadSelf(this);
        });
        connect(command3, &QPushButton::released, this, [this] {
            if (!notesOk(text1_->toPlainText()))
                dialogs().message(QStringLiteral("Notes"),
                                  QStringLiteral("The notes could not be written into ") + st.measurefile +
                                      QStringLiteral(".\nThey are kept for the next measurement file."));
            unloadSelf(this);
        });
    }

private:
    QPlainTextEdit *text1_ = nullptr;
};

}  // namespace

void registerNotesForm()
{
    registerForm(QStringLiteral("notesfrm"), [] { return new Notesfrm; });
}

}  // namespace kw
