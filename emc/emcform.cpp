#include "emc/emcform.h"

#include "emc/emchooks.h"
#include "emc/loadtest.h"
#include "emc/resultsform.h"
#include "emc/rundriver.h"
#include "emc/typednumber.h"
#include "live/cycle.h"
#include "platform/datacontrol.h"
#include "platform/dbcombo.h"
#include "platform/onerror.h"
#include "platform/vbformat.h"
#include "shell/forms.h"
#include "shell/state.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kw {

namespace {

// The label of grafik that names the largest-level trace: "Peak" while a test is on show.
void nameMaxTrace(const QString &text)
{
    if (QWidget *plot = loadedForm(QStringLiteral("grafik")))
        if (auto *label = plot->findChild<QLabel *>(QStringLiteral("Label3")))
            label->setText(text);
}

uint8_t *viewFlag(int check)
{
    switch (check) {
    case 1: return &st.viewmaxhold;
    case 2: return &st.viewqpeak;
    case 3: return &st.viewaverage;
    case 4: return &st.viewb;
    case 5: return &st.viewhorizontal;
    case 6: return &st.viewvertical;
    case 7: return &st.calcon;
    case 8: return &st.viewambient;
    default: return nullptr;
    }
}

}  // namespace

EmcForm::EmcForm(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("emc"));
    caption_ = QStringLiteral("EMC");
    setWindowTitle(caption_);

    static const char *const sources[] = {"", "test", "unit", "config", "LimitHead", "loshead"};
    for (int i = 1; i <= 5; ++i) {
        data_[i] = new Data(this);
        data_[i]->setObjectName(QStringLiteral("Data%1").arg(i));
        data_[i]->setRecordSource(QLatin1String(sources[i]));
        data_[i]->setDatabaseName(st.databasefile);
        data_[i]->hide();
        ResumeNext onError;
        onError([&] { data_[i]->Refresh(); });
    }
    combo1_ = new DBCombo(this);
    combo1_->setObjectName(QStringLiteral("DBCombo1"));
    combo1_->setMinimumContentsLength(28);
    combo1_->setRowSource(data_[1], QStringLiteral("Name"));
    combo1_->keyPress = [this](int &key) {
        if (key == 13)
            testChosen();
        key = 0;
    };
    connect(combo1_, &DBCombo::listChosen, this, &EmcForm::testChosen);

    static const char *const captions[] = {"", "Start", "Stop", "View settings", "Refresh graph"};
    for (int i = 1; i <= 4; ++i) {
        command_[i] = new QPushButton(QLatin1String(captions[i]), this);
        command_[i]->setObjectName(QStringLiteral("Command%1").arg(i));
    }
    label1_ = new QLabel(vbFormat(st.centerfreq, QStringLiteral("###0.00")), this);
    label1_->setObjectName(QStringLiteral("Label1"));
    label1_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto *label2 = new QLabel(QStringLiteral("MHz"), this);
    label2->setObjectName(QStringLiteral("Label2"));
    label3_ = new QLabel(this);
    label3_->setObjectName(QStringLiteral("Label3"));
    label3_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    auto *frame1 = new QGroupBox(QStringLiteral("View"), this);
    frame1->setObjectName(QStringLiteral("Frame1"));
    static const char *const checkCaptions[] = {"", "Peak", "QPeak", "Average", "Sweep", "Calc/View Horizontal",
                                                "Calc/View Vertical", "Calc On", "View Ambient"};
    auto *viewColumn = new QVBoxLayout(frame1);
    for (int i = 1; i <= 8; ++i) {
        check_[i] = new QCheckBox(QLatin1String(checkCaptions[i]), i <= 4 ? static_cast<QWidget *>(frame1) : this);
        check_[i]->setObjectName(QStringLiteral("Check%1").arg(i));
        if (i <= 4)
            viewColumn->addWidget(check_[i]);
        // Each box changes only what the plot shows.
        connect(check_[i], &QCheckBox::clicked, this, [i](bool on) {
            *viewFlag(i) = on ? 1 : 0;
            st.redrawflag = 1;
        });
    }
    text1_ = new QLineEdit(this);
    text1_->setObjectName(QStringLiteral("Text1"));
    text1_->setAlignment(Qt::AlignRight);
    text1_->setMaximumWidth(60);
    text1_->installEventFilter(this);
    auto *label5 = new QLabel(QStringLiteral("dB"), this);
    label5->setObjectName(QStringLiteral("Label5"));

    auto *frequencyRow = new QHBoxLayout;
    frequencyRow->addWidget(label1_, 1);
    frequencyRow->addWidget(label2);
    frequencyRow->addWidget(label3_);
    auto *calcRow = new QHBoxLayout;
    calcRow->addWidget(check_[7]);
    calcRow->addWidget(text1_);
    calcRow->addWidget(label5);
    calcRow->addStretch(1);
    auto *buttons = new QHBoxLayout;
    for (int i = 1; i <= 4; ++i)
        buttons->addWidget(command_[i]);
    buttons->addWidget(resultsButton(this));
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(combo1_);
    layout->addLayout(buttons);
    layout->addLayout(frequencyRow);
    layout->addWidget(frame1);
    layout->addWidget(check_[5]);
    layout->addWidget(check_[6]);
    layout->addLayout(calcRow);
    layout->addWidget(check_[8]);
    layout->addStretch(1);

    connect(command_[1], &QPushButton::clicked, this, [] { emcStart(); });
    connect(command_[2], &QPushButton::clicked, this, [] { emcStop(); });
    connect(command_[3], &QPushButton::clicked, this, [] { showForm(QStringLiteral("test")); });
    connect(command_[4], &QPushButton::clicked, this, [] { st.redrawflag = 1; });

    installHooks();
    st.reloadtest = 1;
    nameMaxTrace(QStringLiteral("Peak"));
}

EmcForm::~EmcForm() { uninstallHooks(); }

void EmcForm::installHooks()
{
    EmcHooks &hooks = emcHooks();
    hooks.testLoaded = [this] { showLoadedTest(); };
    hooks.comboEnabled = [this](bool on) { combo1_->setEnabled(on); };
    hooks.startEnabled = [this](bool on) { command_[1]->setEnabled(on); };
    hooks.frequencyShown = [this](const QString &text) { label1_->setText(text); };
    hooks.secondsLeft = [this](const QString &text) { label3_->setText(text); };
    hooks.captionShown = [this](const QString &text) {
        setWindowTitle(text);
        if (parentWidget())
            parentWidget()->setWindowTitle(text);
    };
}

void EmcForm::uninstallHooks()
{
    EmcHooks &hooks = emcHooks();
    hooks.testLoaded = nullptr;
    hooks.comboEnabled = nullptr;
    hooks.startEnabled = nullptr;
    hooks.frequencyShown = nullptr;
    hooks.secondsLeft = nullptr;
    hooks.captionShown = nullptr;
}

void EmcForm::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (st.reloadtest == 1)
        loadtest();
    else
        showLoadedTest();
}

void EmcForm::closeEvent(QCloseEvent *event)
{
    st.viewqpeak = 0;
    if (!vbTrim(combo1_->Text()).isEmpty())
        st.testname = combo1_->Text();
    st.mode = 1;
    uninstallHooks();
    nameMaxTrace(QStringLiteral("Max. Hold"));
    eraseall();
    st.redrawflag = 1;
    QWidget::closeEvent(event);
}

void EmcForm::showLoadedTest()
{
    combo1_->setText(st.testname);
    for (int i = 1; i <= 8; ++i)
        check_[i]->setChecked(*viewFlag(i) != 0);
    text1_->setText(QString::number(st.calcoffset));
    label1_->setText(vbFormat(st.centerfreq, QStringLiteral("###0.00")));
}

void EmcForm::testChosen()
{
    st.testname = combo1_->Text();
    st.reloadtest = 1;
    loadtest();
    st.redrawflag = 1;
}

void EmcForm::offsetEntered()
{
    try {
        st.calcoffset = vbCInt(typedNumber(text1_->text()));
    } catch (const VbError &) {
        // Not a whole number of dB that fits: the box shows the offset in use.
    }
    text1_->setText(QString::number(st.calcoffset));
    st.redrawflag = 1;
}

bool EmcForm::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != text1_ || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    auto *key = static_cast<QKeyEvent *>(event);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
        offsetEntered();
        return true;
    }
    const QString typed = key->text();
    if (key->key() == Qt::Key_Backspace || key->key() == Qt::Key_Left || key->key() == Qt::Key_Right ||
        key->key() == Qt::Key_Delete || key->key() == Qt::Key_Tab)
        return false;
    if (typed.size() == 1 && (typed[0].isDigit() || typed[0] == QLatin1Char('-')))
        return false;
    if (typed == QLatin1String(",") || typed == QLatin1String(".")) {
        text1_->insert(QString(numberLocale().decimal));
        return true;
    }
    return true;  // every other key is swallowed
}

}  // namespace kw
