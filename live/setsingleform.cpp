#include "live/autostore.h"
#include "live/cycle.h"
#include "live/toolforms.h"
#include "live/trigger.h"
#include "platform/twips.h"
#include "plot/report.h"
#include "shell/forms.h"
#include "shell/keyfilter.h"
#include "shell/state.h"
#include "shell/uihooks.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QShowEvent>

#include <algorithm>
#include <QVBoxLayout>

namespace kw {

namespace {

// The Toolbox opens half an inch up and left of where detec was last placed.
constexpr int kOffsetFromDetec = 500;

class Setsingle : public QWidget {
public:
    Setsingle()
    {
        setWindowTitle(QStringLiteral("Toolbox"));
        auto *label1 = named(new QLabel(QStringLiteral("Triggervalue"), this), "Label1");
        text1_ = named(new QLineEdit(this), "Text1");
        text1_->setMaximumWidth(80);
        label2_ = named(new QLabel(this), "Label2");
        auto *command1 = named(new QPushButton(QStringLiteral("Cursor 1 -->"), this), "Command1");
        auto *command2 = named(new QPushButton(QStringLiteral("Start"), this), "Command2");
        auto *command3 = named(new QPushButton(QStringLiteral("Stop"), this), "Command3");
        check1_ = named(new QCheckBox(QStringLiteral("Print after trigger and wait for trigger"), this), "Check1");
        label3_ = named(new QLabel(this), "Label3");
        label3_->setFrameShape(QFrame::Panel);
        label3_->setFrameShadow(QFrame::Sunken);
        label3_->setAlignment(Qt::AlignCenter);
        auto *label4 = named(new QLabel(QStringLiteral("Read signal after trigger"), this), "Label4");
        auto *frame1 = named(new QGroupBox(QStringLiteral("Freq. Steps"), this), "Frame1");
        text2_ = named(new QLineEdit(QStringLiteral("10"), frame1), "Text2");
        text2_->setMaximumWidth(80);
        auto *mhz = new QLabel(QStringLiteral("MHz"), frame1);
        auto *command4 = named(new QPushButton(QStringLiteral("Step -"), frame1), "Command4");
        auto *command5 = named(new QPushButton(QStringLiteral("Step +"), frame1), "Command5");

        auto *level = new QHBoxLayout;
        level->addWidget(label1);
        level->addWidget(text1_);
        level->addWidget(label2_);
        level->addWidget(command1);
        level->addStretch(1);
        auto *run = new QHBoxLayout;
        run->addWidget(command2);
        run->addWidget(command3);
        run->addWidget(label3_, 1);
        auto *steps = new QHBoxLayout(frame1);
        steps->addWidget(command4);
        steps->addWidget(text2_);
        steps->addWidget(mhz);
        steps->addWidget(command5);
        steps->addStretch(1);
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(label4);
        layout->addLayout(level);
        layout->addLayout(run);
        layout->addWidget(check1_);
        layout->addWidget(frame1);

        setTriggerStatusView([this](const QString &text) { label3_->setText(text); });
        // The wait runs inside a click; when the program closes it must end there too.
        if (auto *app = qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
            connect(app, &QGuiApplication::lastWindowClosed, this, [] { triggerStop(); });

        connect(command2, &QPushButton::clicked, this, [] { triggerStart(); });
        connect(command3, &QPushButton::clicked, this, [] { triggerStop(); });
        // Taken once the box has changed, so the record follows the tick that is shown.
        connect(check1_, &QCheckBox::clicked, this, [](bool ticked) { st.triggerprint = ticked ? 1 : 0; });
        connect(command1, &QPushButton::released, this, [this] {
            triggerFromCursor();
            text1_->setText(triggerText());
        });
        connect(command4, &QPushButton::released, this, [this] { step(-1); });
        connect(command5, &QPushButton::released, this, [this] { step(+1); });
        onKeyPress(text1_, [this](KeyPress &key) {
            if (key.ascii == 13) {
                key.ascii = 0;
                triggerFromText(text1_->text());
                text1_->setText(triggerText());
                return;
            }
            numberKey(key);
        });
        onKeyPress(text2_, [](KeyPress &key) {
            numberKey(key);
            if (key.ascii == 13)
                key.ascii = 0;
        });
        paintFromRecord();
    }

    ~Setsingle() override
    {
        // Unloading stops a waiting trigger at its next look.
        triggerStop();
        setTriggerStatusView(nullptr);
    }

protected:
    void showEvent(QShowEvent *event) override
    {
        QWidget::showEvent(event);
        if (!placed_) {
            placed_ = true;
            if (auto *frame = qobject_cast<QMdiSubWindow *>(parentWidget()))
                frame->move(std::max(0, twipsToPixelsX(st.formpos[9] - kOffsetFromDetec)),
                            std::max(0, twipsToPixelsY(st.formpos[10] - kOffsetFromDetec)));
        }
        paintFromRecord();
    }

private:
    // What the form shows whenever it is painted anew. The level leaves out the attenuator here,
    // unlike after a change, as operators of the instrument have always seen it.
    void paintFromRecord()
    {
        label3_->setText(st.triggerrun == 1 ? kTriggerWaiting : kTriggerIdle);
        label2_->setText(st.unit);
        text1_->setText(triggerPaintText());
        check1_->setChecked(st.triggerprint == 1);
    }

    void step(int direction)
    {
        QString text = text2_->text();
        frequencyStep(direction, text);
        text2_->setText(text);
    }

    QLineEdit *text1_ = nullptr;
    QLineEdit *text2_ = nullptr;
    QLabel *label2_ = nullptr;
    QLabel *label3_ = nullptr;
    QCheckBox *check1_ = nullptr;
    bool placed_ = false;
};

}  // namespace

void registerToolForms()
{
    registerForm(QStringLiteral("autost"), [] { return makeAutost(); });
    registerForm(QStringLiteral("setsingle"), [] { return new Setsingle; });
    liveHooks().autostore = [] { autostoreOnce(); };
    uiHooks().printReport = [] { PrintReport(); };
}

}  // namespace kw
