#include "live/autostore.h"
#include "live/cycle.h"
#include "live/toolforms.h"
#include "platform/vbformat.h"
#include "shell/forms.h"
#include "shell/keyfilter.h"
#include "shell/state.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kw {

namespace {

class Autost : public QWidget {
public:
    Autost()
    {
        setWindowTitle(QStringLiteral("AutoStore"));
        auto *command1 = named(new QPushButton(QStringLiteral("Select &Filename"), this), "Command1");
        label1_ = named(new QLabel(QStringLiteral("Filename"), this), "Label1");
        label1_->setFrameShape(QFrame::Panel);
        label1_->setFrameShadow(QFrame::Sunken);
        label1_->setMinimumWidth(320);
        auto *label3 = named(new QLabel(QStringLiteral("Store every"), this), "Label3");
        text1_ = named(new QLineEdit(QStringLiteral("10"), this), "Text1");
        text1_->setMaximumWidth(70);
        auto *label2 = named(new QLabel(QStringLiteral("seconds"), this), "Label2");
        auto *label5 = named(new QLabel(QStringLiteral("Next storage:"), this), "Label5");
        label4_ = named(new QLabel(this), "Label4");
        // The file the last storage wrote.
        label6_ = named(new QLabel(this), "Label6");
        label6_->setEnabled(false);
        check1_ = named(new QCheckBox(QStringLiteral("Print after storage"), this), "Check1");
        command2_ = named(new QPushButton(QStringLiteral("&Start"), this), "Command2");
        auto *command4 = named(new QPushButton(QStringLiteral("S&top"), this), "Command4");
        auto *command3 = named(new QPushButton(QStringLiteral("E&xit"), this), "Command3");

        auto *grid = new QGridLayout;
        grid->addWidget(command1, 0, 0);
        grid->addWidget(label1_, 0, 1, 1, 2);
        grid->addWidget(label3, 1, 0);
        grid->addWidget(text1_, 1, 1);
        grid->addWidget(label2, 1, 2);
        grid->addWidget(label5, 2, 0);
        grid->addWidget(label4_, 2, 1, 1, 2);
        grid->addWidget(check1_, 3, 0, 1, 3);
        grid->addWidget(label6_, 4, 0, 1, 3);
        auto *buttons = new QHBoxLayout;
        buttons->addWidget(command2_);
        buttons->addWidget(command4);
        buttons->addStretch(1);
        buttons->addWidget(command3);
        auto *layout = new QVBoxLayout(this);
        layout->addLayout(grid);
        layout->addLayout(buttons);

        // Load.
        st.autostorecount = 0;
        text1_->setText(vbCStr(int(st.autostoreinterval)));
        check1_->setChecked(st.autostoreprint == 1);
        label1_->setText(vbTrim(st.automessfile));
        command2_->setText(st.autostoreon ? QStringLiteral("Pause") : QStringLiteral("&Start"));

        connect(command1, &QPushButton::clicked, this, [this] {
            if (autostoreChooseFile())
                label1_->setText(vbTrim(st.automessfile) + QStringLiteral("XXX.mes"));
        });
        connect(command2_, &QPushButton::clicked, this, [this] {
            autostoreStartPause();
            showStartCaption();
        });
        connect(command4, &QPushButton::clicked, this, [this] {
            autostoreStop();
            showStartCaption();
        });
        connect(command3, &QPushButton::clicked, this, [this] {
            if (autostoreExit())
                unloadSelf(this);
        });
        connect(check1_, &QCheckBox::clicked, this, [](bool ticked) { st.autostoreprint = ticked ? 1 : 0; });
        onKeyPress(text1_, [this](KeyPress &key) {
            if (key.ascii == 13) {
                key.ascii = 0;
                takeInterval();
            }
        });
        connect(text1_, &QLineEdit::editingFinished, this, [this] { takeInterval(); });

        liveHooks().autostore = [this] { label6_->setText(autostoreOnce()); };
        liveHooks().autostoreNextShown = [this] { label4_->setText(vbLongTime(st.autostorenext)); };
    }

    ~Autost() override
    {
        // Closing the form ends storing; live reading goes on as it stands.
        st.autostoreon = 0;
        liveHooks().autostore = [] { autostoreOnce(); };
        liveHooks().autostoreNextShown = nullptr;
    }

private:
    void takeInterval() { text1_->setText(autostoreTakeInterval(text1_->text())); }
    void showStartCaption() { command2_->setText(st.autostoreon ? QStringLiteral("Pause") : QStringLiteral("Start")); }

    QLabel *label1_ = nullptr;
    QLabel *label4_ = nullptr;
    QLabel *label6_ = nullptr;
    QLineEdit *text1_ = nullptr;
    QCheckBox *check1_ = nullptr;
    QPushButton *command2_ = nullptr;
};

}  // namespace

QWidget *makeAutost() { return new Autost; }

}  // namespace kw
