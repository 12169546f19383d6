#include "emc/testform.h"

#include "emc/typednumber.h"
#include "platform/datacontrol.h"
#include "platform/dbcombo.h"
#include "platform/dialogs.h"
#include "platform/onerror.h"
#include "platform/vbformat.h"
#include "shell/state.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace kw {

namespace {

constexpr float kMaxFreq = 1050.0f;

QGroupBox *frame(QWidget *parent, const char *name, const QString &caption)
{
    auto *box = new QGroupBox(caption, parent);
    box->setObjectName(QLatin1String(name));
    return box;
}

QRadioButton *option(QWidget *parent, QButtonGroup *group, const char *array, int index, const QString &caption)
{
    auto *button = new QRadioButton(caption, parent);
    button->setObjectName(QStringLiteral("%1_%2").arg(QLatin1String(array)).arg(index));
    group->addButton(button, index);
    return button;
}

QLabel *label(QWidget *parent, const QString &caption)
{
    auto *l = new QLabel(caption, parent);
    return l;
}

QPushButton *button(QWidget *parent, const char *name, const QString &caption)
{
    auto *b = new QPushButton(caption, parent);
    b->setObjectName(QLatin1String(name));
    return b;
}

}  // namespace

TestForm::TestForm(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("test"));
    setWindowTitle(QStringLiteral("Test-Settings"));

    static const char *const sources[] = {"", "test", "config", "LimitHead", "unit"};
    for (int i = 1; i <= 4; ++i) {
        data_[i] = new Data(this);
        data_[i]->setObjectName(QStringLiteral("Data%1").arg(i));
        data_[i]->setRecordSource(QLatin1String(sources[i]));
        data_[i]->setDatabaseName(st.databasefile);
        data_[i]->hide();
    }
    for (int i = 1; i <= 5; ++i) {
        combo_[i] = new DBCombo(this);
        combo_[i]->setObjectName(QStringLiteral("DBCombo%1").arg(i));
        combo_[i]->setMinimumContentsLength(24);
    }
    combo_[1]->setRowSource(data_[1], QStringLiteral("Name"));
    combo_[2]->setRowSource(data_[2], QStringLiteral("configname"));
    combo_[3]->setRowSource(data_[3], QStringLiteral("limitname"));
    combo_[4]->setRowSource(data_[3], QStringLiteral("limitname"));
    combo_[5]->setRowSource(data_[4], QStringLiteral("unitname"));
    for (int i = 1; i <= 5; ++i) {
        // Selection combos: keys are swallowed, Return and the list choose.
        combo_[i]->keyPress = [this, i](int &key) {
            if (key == 13)
                comboChosen(i);
            key = 0;
        };
        connect(combo_[i], &DBCombo::listChosen, this, [this, i] { comboChosen(i); });
    }
    for (int i = 1; i <= 5; ++i) {
        text_[i] = new QLineEdit(this);
        text_[i]->setObjectName(QStringLiteral("Text%1").arg(i));
        text_[i]->setAlignment(Qt::AlignRight);
        text_[i]->setMaximumWidth(90);
        text_[i]->installEventFilter(this);
    }

    // Configuration
    auto *configFrame = frame(this, "Frame1", QStringLiteral("Configuration"));
    auto *clearConfig = button(configFrame, "Command3", QStringLiteral("Clear"));
    auto *configRow = new QHBoxLayout(configFrame);
    configRow->addWidget(combo_[2], 1);
    configRow->addWidget(clearConfig);

    // Limit
    auto *limitFrame = frame(this, "Frame2", QStringLiteral("Limit"));
    auto *activeGroup = new QButtonGroup(this);
    oactive_[0] = option(limitFrame, activeGroup, "oactive", 0, QStringLiteral("Active"));
    oactive_[1] = option(limitFrame, activeGroup, "oactive", 1, QStringLiteral("Active"));
    auto *clearPeak = button(limitFrame, "Command2", QStringLiteral("Clear"));
    auto *clearAverage = button(limitFrame, "Command1", QStringLiteral("Clear"));
    auto *limitGrid = new QGridLayout(limitFrame);
    limitGrid->addWidget(label(limitFrame, QStringLiteral("Peak / Quasipeak")), 0, 0);
    limitGrid->addWidget(combo_[3], 0, 1);
    limitGrid->addWidget(clearPeak, 0, 2);
    limitGrid->addWidget(oactive_[0], 0, 3);
    limitGrid->addWidget(label(limitFrame, QStringLiteral("Average")), 1, 0);
    limitGrid->addWidget(combo_[4], 1, 1);
    limitGrid->addWidget(clearAverage, 1, 2);
    limitGrid->addWidget(oactive_[1], 1, 3);
    limitGrid->setColumnStretch(1, 1);

    // Detector
    auto *detectorFrame = frame(this, "Frame3", QStringLiteral("Detector"));
    auto *detectGroup = new QButtonGroup(this);
    detect_[0] = option(detectorFrame, detectGroup, "detect", 0, QStringLiteral("Peak"));
    detect_[1] = option(detectorFrame, detectGroup, "detect", 1, QStringLiteral("Quasipeak"));
    check_[1] = new QCheckBox(QStringLiteral("Average"), detectorFrame);
    auto *detectorColumn = new QVBoxLayout(detectorFrame);
    detectorColumn->addWidget(detect_[0]);
    detectorColumn->addWidget(detect_[1]);
    detectorColumn->addWidget(check_[1]);

    // Bandwith
    auto *rbwFrame = frame(this, "Frame4", QStringLiteral("Bandwith"));
    auto *rbwGroup = new QButtonGroup(this);
    auto *rbwColumn = new QVBoxLayout(rbwFrame);
    static const char *const filters[] = {"400kHz", "120kHz", "9kHz"};
    for (int i = 0; i < 3; ++i) {
        rbw_[i] = option(rbwFrame, rbwGroup, "rbw", i, QLatin1String(filters[i]));
        rbwColumn->addWidget(rbw_[i]);
    }

    // Attenuator
    auto *attFrame = frame(this, "Frame5", QStringLiteral("Attenuator"));
    auto *attGroup = new QButtonGroup(this);
    auto *attColumn = new QVBoxLayout(attFrame);
    for (int i = 0; i < 5; ++i) {
        att_[i] = option(attFrame, attGroup, "att", i, QStringLiteral("%1 dB").arg(i * 10));
        attColumn->addWidget(att_[i]);
    }

    // Polarisation
    auto *polFrame = frame(this, "Frame6", QStringLiteral("Polarisation"));
    check_[2] = new QCheckBox(QStringLiteral("Horizontal / L"), polFrame);
    check_[3] = new QCheckBox(QStringLiteral("Vertical / N"), polFrame);
    check_[4] = new QCheckBox(QStringLiteral("Ambient"), polFrame);
    auto *polColumn = new QVBoxLayout(polFrame);
    polColumn->addWidget(check_[2]);
    polColumn->addWidget(check_[3]);
    polColumn->addWidget(check_[4]);

    // Mode
    auto *modeFrame = frame(this, "Frame7", QStringLiteral("Mode"));
    auto *modeGroup = new QButtonGroup(this);
    omode_[0] = option(modeFrame, modeGroup, "omode", 0, QStringLiteral("Sweep + Step"));
    omode_[1] = option(modeFrame, modeGroup, "omode", 1, QStringLiteral("Step"));
    auto *modeColumn = new QVBoxLayout(modeFrame);
    modeColumn->addWidget(omode_[0]);
    modeColumn->addWidget(omode_[1]);

    for (int i = 1; i <= 4; ++i)
        check_[i]->setObjectName(QStringLiteral("Check%1").arg(i));

    // The boxes of the band, the level and the sweep.
    auto *values = new QGridLayout;
    values->addWidget(label(this, QStringLiteral("Startfrequency")), 0, 0);
    values->addWidget(text_[1], 0, 1);
    values->addWidget(label(this, QStringLiteral("MHz")), 0, 2);
    values->addWidget(label(this, QStringLiteral("Stopfrequency")), 1, 0);
    values->addWidget(text_[2], 1, 1);
    values->addWidget(label(this, QStringLiteral("MHz")), 1, 2);
    values->addWidget(label(this, QStringLiteral("Reflevel")), 2, 0);
    values->addWidget(text_[3], 2, 1);
    values->addWidget(label(this, QStringLiteral("Unit")), 3, 0);
    values->addWidget(combo_[5], 3, 1, 1, 2);
    values->addWidget(label(this, QStringLiteral("Lim. distance")), 4, 0);
    values->addWidget(text_[4], 4, 1);
    values->addWidget(label(this, QStringLiteral("dB")), 4, 2);
    values->addWidget(label(this, QStringLiteral("Meas.time")), 5, 0);
    values->addWidget(text_[5], 5, 1);
    values->addWidget(label(this, QStringLiteral("sec")), 5, 2);
    values->addWidget(label(this, QStringLiteral("(sweep)")), 6, 1);

    auto *options = new QHBoxLayout;
    for (QGroupBox *box : {detectorFrame, rbwFrame, attFrame, polFrame, modeFrame})
        options->addWidget(box);

    auto *top = new QHBoxLayout;
    top->addWidget(combo_[1], 1);
    auto *upper = new QHBoxLayout;
    auto *leftColumn = new QVBoxLayout;
    leftColumn->addWidget(configFrame);
    leftColumn->addWidget(limitFrame);
    upper->addLayout(leftColumn, 1);
    upper->addLayout(values);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(upper);
    layout->addLayout(options);

    connect(clearConfig, &QPushButton::clicked, this, [this] { writeColumn("config", QStringLiteral(" ")); repaintFromRow(); });
    connect(clearPeak, &QPushButton::clicked, this, [this] { writeColumn("peak", 0); repaintFromRow(); });
    connect(clearAverage, &QPushButton::clicked, this, [this] { writeColumn("average", 0); repaintFromRow(); });
    for (int i = 0; i < 2; ++i)
        connect(oactive_[i], &QRadioButton::clicked, this, [this, i] { optionClicked("limitbezug", i); });
    for (int i = 0; i < 5; ++i)
        connect(att_[i], &QRadioButton::clicked, this, [this, i] {
            optionClicked("atten", i * 10);
            atten_ = float(i * 10);
            showRef();
        });
    for (int i = 0; i < 2; ++i)
        connect(detect_[i], &QRadioButton::clicked, this, [this, i] { optionClicked("peakdet", i); });
    for (int i = 0; i < 3; ++i)
        connect(rbw_[i], &QRadioButton::clicked, this, [this, i] { optionClicked("rbw", i); });
    for (int i = 0; i < 2; ++i)
        connect(omode_[i], &QRadioButton::clicked, this, [this, i] {
            optionClicked("mode", i);
            setActiveButtons(i == 0);
        });
    static const char *const checkColumns[] = {"", "avdet", "horizontal", "vertical", "ambient"};
    for (int i = 1; i <= 4; ++i)
        connect(check_[i], &QCheckBox::clicked, this, [this, i](bool on) { writeColumn(checkColumns[i], on); });

    // A database of the old shape has no column ambient.
    if (st.dbversion < 1.1f)
        check_[4]->hide();

    ResumeNext onError;
    for (int i = 1; i <= 4; ++i)
        onError([&] { data_[i]->Refresh(); });
}

void TestForm::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // Repaint and remember at every activation inside the frame.
    for (QWidget *w = parentWidget(); w; w = w->parentWidget()) {
        if (auto *area = qobject_cast<QMdiArea *>(w)) {
            connect(area, &QMdiArea::subWindowActivated, this,
                    [this](QMdiSubWindow *sub) {
                        if (sub && sub->widget() == this)
                            activate();
                        else
                            rememberTest();
                    },
                    Qt::UniqueConnection);
            break;
        }
    }
    activate();
}

void TestForm::closeEvent(QCloseEvent *event)
{
    rememberTest();
    QWidget::closeEvent(event);
}

void TestForm::activate()
{
    ResumeNext onError;
    // Tests added or definitions changed elsewhere show up, and the form goes to the test in work.
    for (int i = 1; i <= 4; ++i)
        onError([&] { data_[i]->Refresh(); });
    if (!vbTrim(st.testname).isEmpty())
        onError([&] { data_[1]->FindFirst(QStringLiteral("Name like '") + vbTrim(st.testname) + QStringLiteral("'")); });
    repaintFromRow();
    rememberTest();
}

void TestForm::rememberTest()
{
    if (data_[1] && data_[1]->hasCurrentRow())
        st.testname = data_[1]->currentText(QStringLiteral("Name"));
}

void TestForm::writeColumn(const char *column, const QVariant &value)
{
    ResumeNext onError;
    onError([&] { data_[1]->writeField(QLatin1String(column), value); });
}

void TestForm::optionClicked(const char *column, int index) { writeColumn(column, index); }

void TestForm::setActiveButtons(bool sweepStep)
{
    oactive_[0]->setEnabled(sweepStep);
    oactive_[1]->setEnabled(sweepStep);
    text_[4]->setReadOnly(!sweepStep);
    text_[5]->setReadOnly(!sweepStep);
}

void TestForm::showRef()
{
    text_[3]->setText(vbFormat(ref_ + unitoffset_ + atten_, QStringLiteral("###0.0")));
}

void TestForm::repaintFromRow()
{
    Data *row = data_[1];
    if (!row->hasCurrentRow())
        return;
    ResumeNext onError;
    const auto value = [&](const char *column) { return row->currentValue(QLatin1String(column)); };
    const auto number = [&](const char *column) { return value(column).toDouble(); };

    combo_[1]->setText(row->currentText(QStringLiteral("Name")));

    QString config = QStringLiteral("Not set");
    onError([&] {
        data_[2]->FindFirst(QStringLiteral("configname like '") + row->currentText(QStringLiteral("config")) + QStringLiteral("'"));
        if (!data_[2]->recordset().NoMatch())
            config = data_[2]->currentText(QStringLiteral("configname"));
    });
    combo_[2]->setText(config);

    const bool sweepStep = number("mode") == 0;
    setActiveButtons(sweepStep);

    static const char *const limitColumns[] = {"peak", "average"};
    for (int k = 0; k < 2; ++k) {
        QString name = QStringLiteral("Not set");
        bool found = false;
        onError([&] {
            data_[3]->FindFirst(QStringLiteral("limitnr = ") + QString::number(qlonglong(number(limitColumns[k]))));
            if (!data_[3]->recordset().NoMatch()) {
                name = data_[3]->currentText(QStringLiteral("limitname"));
                found = true;
            }
        });
        combo_[3 + k]->setText(name);
        if (!found)
            oactive_[k]->setEnabled(false);
    }

    const int detector = int(number("peakdet"));
    if (detector >= 0 && detector < 2)
        detect_[detector]->setChecked(true);
    const int filter = int(number("rbw"));
    if (filter >= 0 && filter < 3)
        rbw_[filter]->setChecked(true);

    QString unit = QStringLiteral("dBmW");
    unitoffset_ = 0.0f;
    onError([&] {
        data_[4]->FindFirst(QStringLiteral("unitname like '") + row->currentText(QStringLiteral("unit")) + QStringLiteral("'"));
        if (!data_[4]->recordset().NoMatch()) {
            unit = data_[4]->currentText(QStringLiteral("unitname"));
            unitoffset_ = float(data_[4]->currentValue(QStringLiteral("unitoffset")).toDouble());
        }
    });
    combo_[5]->setText(unit);

    ref_ = float(number("ref"));
    atten_ = float(number("atten"));
    const int attIndex = int(atten_ / 10.0f);
    if (attIndex >= 0 && attIndex < 5)
        att_[attIndex]->setChecked(true);
    showRef();

    text_[2]->setText(vbFormat(float(number("stopfreq")), QStringLiteral("###0.00")));
    text_[1]->setText(vbFormat(float(number("startfreq")), QStringLiteral("###0.00")));

    check_[2]->setChecked(value("horizontal").toBool());
    check_[3]->setChecked(value("vertical").toBool());
    text_[4]->setText(vbFormat(float(number("leveldist")), QStringLiteral("###0.0")));
    text_[5]->setText(vbFormat(number("meastime"), QStringLiteral("####")));
    omode_[sweepStep ? 0 : 1]->setChecked(true);
    const bool averageJudges = number("limitbezug") != 0;
    oactive_[averageJudges ? 1 : 0]->setChecked(true);
    check_[1]->setChecked(value("avdet").toBool());
    if (!check_[4]->isHidden())
        check_[4]->setChecked(value("ambient").toBool());
}

void TestForm::validateText(int box)
{
    Data *row = data_[1];
    if (!row->hasCurrentRow())
        return;
    double typed = 0;
    try {
        typed = typedNumber(text_[box]->text());
    } catch (const VbError &) {
        // Not a number: the box shows the row again, which stays as it was.
        repaintFromRow();
        return;
    }
    ResumeNext onError;
    switch (box) {
    case 1:
    case 2: {
        const float f = float(std::clamp(typed, 0.0, double(kMaxFreq)));
        writeColumn(box == 1 ? "startfreq" : "stopfreq", f);
        text_[box]->setText(vbFormat(f, QStringLiteral("###0.00")));
        checkSpan(box, f);
        break;
    }
    case 3: {
        const float ref = std::clamp(float(typed) - unitoffset_ - atten_, -99.8f, -27.0f);
        writeColumn("ref", ref);
        ref_ = ref;
        showRef();
        break;
    }
    case 4: {
        const float distance = float(std::clamp(typed, -100.0, 100.0));
        writeColumn("leveldist", distance);
        text_[4]->setText(vbFormat(distance, QStringLiteral("###0.0")));
        break;
    }
    case 5: {
        const int seconds = int(std::clamp(vbFix(typed), 1.0, 10000.0));
        writeColumn("meastime", seconds);
        text_[5]->setText(vbFormat(seconds, QStringLiteral("####")));
        break;
    }
    default:
        break;
    }
}

// Below a span of 1 MHz the other frequency is moved, without asking. A start typed against the
// upper end moves itself down by one instead, so the span can stay below 1 MHz.
void TestForm::checkSpan(int box, float typed)
{
    Data *row = data_[1];
    const float start = float(row->currentValue(QStringLiteral("startfreq")).toDouble());
    const float stop = float(row->currentValue(QStringLiteral("stopfreq")).toDouble());
    if (!(stop - start < 1.0f))
        return;
    dialogs().message(QStringLiteral("Testsettings"), QStringLiteral("(Stopfrequency - Startfrequency) < 1MHz"), Buttons::Ok);
    const bool moveStart = box == 1 ? stop >= kMaxFreq : typed == kMaxFreq;
    if (moveStart) {
        const float newStart = start - 1.0f;
        writeColumn("startfreq", newStart);
        text_[1]->setText(vbFormat(newStart, QStringLiteral("###0.00")));
    } else {
        const float newStop = start + 1.0f;
        writeColumn("stopfreq", newStop);
        text_[2]->setText(vbFormat(newStop, QStringLiteral("###0.00")));
    }
}

void TestForm::comboChosen(int number)
{
    static const char *const criteria[] = {"", "Name like '", "configname like '", "limitname like '", "limitname like '", "unitname like '"};
    static const int sources[] = {0, 1, 2, 3, 3, 4};
    Data *source = data_[sources[number]];
    const QString criterion = QLatin1String(criteria[number]) + combo_[number]->Text() + QStringLiteral("'");
    ResumeNext onError;
    bool hit = false;
    onError([&] {
        source->FindFirst(criterion);
        hit = !source->recordset().NoMatch();
    });
    if (!hit)
        return;
    switch (number) {
    case 1:
        rememberTest();
        break;
    case 2:
        writeColumn("config", source->currentValue(QStringLiteral("configname")));
        break;
    case 3:
        writeColumn("peak", source->currentValue(QStringLiteral("limitnr")));
        break;
    case 4:
        writeColumn("average", source->currentValue(QStringLiteral("limitnr")));
        break;
    case 5:
        writeColumn("unit", source->currentValue(QStringLiteral("unitname")));
        break;
    default:
        break;
    }
    repaintFromRow();
}

bool TestForm::eventFilter(QObject *watched, QEvent *event)
{
    for (int i = 1; i <= 5; ++i) {
        if (watched != text_[i])
            continue;
        if (event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent *>(event)->key();
            if (key == Qt::Key_Return || key == Qt::Key_Enter) {
                validateText(i);
                return true;
            }
        } else if (event->type() == QEvent::FocusOut) {
            validateText(i);
        }
        break;
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace kw
