#include "live/measur.h"

#include "levels/correctiontables.h"
#include "levels/units.h"
#include "link/commands.h"
#include "live/cycle.h"
#include "platform/beep.h"
#include "platform/datacontrol.h"
#include "platform/dbcombo.h"
#include "platform/keypress.h"
#include "platform/onerror.h"
#include "platform/vbformat.h"
#include "shell/state.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

namespace kw {

namespace {

const int kSpans[] = {1000, 500, 200, 100, 50, 20, 10, 5, 2, 1, 0, 30};
const int kBandwidths[] = {400, 120, 9};
const int kAttenuators[] = {0, 10, 20, 30, 40};

template <size_t N>
int indexOf(const int (&values)[N], double value)
{
    for (size_t i = 0; i < N; ++i)
        if (values[i] == value)
            return int(i);
    return -1;
}

}  // namespace

Measur::Measur(QWidget *parent) : LivePanel(QStringLiteral("measur"), QStringLiteral("Measurement"), 6, parent)
{
    auto *grid = new QGridLayout(this);
    compact(grid);
    grid->addWidget(named(new QLabel(QStringLiteral("Centerfreq. in MHz"), this), "Label1"), 0, 0);
    text1_ = named(new QLineEdit(this), "Text1");
    grid->addWidget(text1_, 0, 1);
    grid->addWidget(named(new QLabel(QStringLiteral("Ref. level A"), this), "Label2"), 1, 0);
    text2_ = named(new QLineEdit(this), "Text2");
    grid->addWidget(text2_, 1, 1);

    auto *frame1 = named(new QGroupBox(QStringLiteral("Span"), this), "Frame1");
    ospan_ = optionArray(frame1, QStringLiteral("ospan"),
                         {QStringLiteral("1000 MHz"), QStringLiteral("500 MHz"), QStringLiteral("200 MHz"),
                          QStringLiteral("100 MHz"), QStringLiteral("50 MHz"), QStringLiteral("20 MHz"),
                          QStringLiteral("10 MHz"), QStringLiteral("5 MHz"), QStringLiteral("2 MHz"),
                          QStringLiteral("1 MHz"), QStringLiteral("Zero Span"), QStringLiteral("30 MHz")},
                         3);
    grid->addWidget(frame1, 2, 0, 1, 2);
    auto *frame2 = named(new QGroupBox(QStringLiteral("Bandwidth"), this), "Frame2");
    obw_ = optionArray(frame2, QStringLiteral("obw"),
                       {QStringLiteral("400 kHz"), QStringLiteral("120 kHz"), QStringLiteral("9 kHz")});
    grid->addWidget(frame2, 3, 0);
    auto *frame3 = named(new QGroupBox(QStringLiteral("Attenuator"), this), "Frame3");
    oatt_ = optionArray(frame3, QStringLiteral("oatt"),
                        {QStringLiteral("0   dB"), QStringLiteral("10 dB"), QStringLiteral("20 dB"),
                         QStringLiteral("30 dB"), QStringLiteral("40 dB")},
                        2);
    grid->addWidget(frame3, 3, 1);

    cvideo_ = named(new QCheckBox(QStringLiteral("Video Filter"), this), "CVideo");
    db_ = named(new QCheckBox(QStringLiteral("5dB/DIV."), this), "db");
    check1_ = named(new QCheckBox(QStringLiteral("Correction On"), this), "Check1");
    auto *boxes = new QHBoxLayout;
    boxes->addWidget(cvideo_);
    boxes->addWidget(db_);
    boxes->addWidget(check1_);
    grid->addLayout(boxes, 4, 0, 1, 2);

    data1_ = named(new Data(this), "Data1");
    data1_->setRecordSource(QStringLiteral("unit"));
    data2_ = named(new Data(this), "Data2");
    data2_->setRecordSource(QStringLiteral("config"));
    data3_ = named(new Data(this), "Data3");
    data3_->setRecordSource(QStringLiteral("loshead"));
    dbcombo1_ = named(new DBCombo(this), "DBCombo1");
    dbcombo1_->setRowSource(data1_, QStringLiteral("unitname"));
    dbcombo2_ = named(new DBCombo(this), "DBCombo2");
    dbcombo2_->setRowSource(data2_, QStringLiteral("configname"));
    // A long configuration name must not widen the panel.
    dbcombo2_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    dbcombo2_->setMinimumContentsLength(14);
    grid->addWidget(dbcombo1_, 5, 0);
    grid->addWidget(dbcombo2_, 5, 1);
    label3_ = named(new QLabel(QStringLiteral("Distance in m"), this), "Label3");
    label4_ = named(new QLabel(this), "Label4");
    grid->addWidget(label3_, 6, 0);
    grid->addWidget(label4_, 6, 1);

    // The Load: the data controls open on the database in use, never on a placeholder.
    for (Data *source : {data1_, data2_, data3_}) {
        source->setDatabaseName(st.databasefile);
        ResumeNext onError;
        onError([source] { source->Refresh(); });
    }

    connect(ospan_, &QButtonGroup::idClicked, this, [](int i) {
        st.span = int16_t(kSpans[i]);
        setspan();
        restartCalculation();
        eraseall();
    });
    connect(obw_, &QButtonGroup::idClicked, this, [](int i) {
        st.bandwith = int16_t(kBandwidths[i]);
        setbandwith();
        restartCalculation();
    });
    connect(oatt_, &QButtonGroup::idClicked, this, [this](int i) {
        st.attenuator = float(kAttenuators[i]);
        repaintFromRecord();
        setattenuator();
        restartCalculation();
    });
    connect(cvideo_, &QCheckBox::clicked, this, [](bool ticked) {
        st.videofilter = ticked ? 1 : 0;
        setvideofilter();
        restartCalculation();
    });
    connect(db_, &QCheckBox::clicked, this, [](bool ticked) {
        st.dbperdiv = ticked ? 5 : 10;
        setdbperdiv();
        restartCalculation();
    });
    connect(check1_, &QCheckBox::clicked, this, [this](bool ticked) {
        st.correctionon = ticked ? 1 : 0;
        repaintFromRecord();
        st.redrawflag = 1;
    });
    onKeyPress(text1_, [this](int &key) { text1Key(key); });
    onKeyPress(text2_, [this](int &key) { text2Key(key); });
    // The selection combos take no typing: they act on Return and on the list.
    dbcombo1_->keyPress = [this](int &key) {
        if (key == 13)
            chooseUnit();
        key = 0;
    };
    connect(dbcombo1_, &DBCombo::listChosen, this, &Measur::chooseUnit);
    dbcombo2_->keyPress = [this](int &key) {
        if (key == 13)
            chooseConfiguration();
        key = 0;
    };
    connect(dbcombo2_, &DBCombo::listChosen, this, &Measur::chooseConfiguration);

    repaintFromRecord();
}

void Measur::text1Key(int &key)
{
    numberBoxKey(key, [this] {
        ResumeNext onError;
        onError([this] { st.centerfreq = vbCSng(text1_->text()); });
        st.centerfreq = std::clamp(st.centerfreq, 0.0f, 1050.0f);
        text1_->setText(vbFormat(st.centerfreq, QStringLiteral("###0.00")));
        setcenterfreq();
        restartCalculation();
        eraseall();
    });
}

void Measur::text2Key(int &key)
{
    numberBoxKey(key, [this] {
        // The screen shows the analyser's level plus the attenuator plus the unit's offset.
        ResumeNext onError;
        onError([this] { st.reflevel = reflevelfromtyped(vbCSng(text2_->text())); });
        st.reflevel = std::clamp(st.reflevel, -99.8f, -27.0f);
        setreflevel();
        text2_->setText(vbFormat(shownreflevel(), QStringLiteral("###0.0")));
        beep();
        restartCalculation();
    });
}

void Measur::chooseUnit()
{
    ResumeNext onError;
    if (onError.test([this] { return data1_->recordset().RecordCount() > 0; })) {
        const QString name = vbTrim(dbcombo1_->Text());
        onError([&] {
            data1_->FindFirst(QStringLiteral("unitname = '") + name + QStringLiteral("'"));
            if (data1_->recordset().NoMatch())
                return;
            st.unit = name.left(20);
            st.unitoffset = float(data1_->recordset().FieldNumber(QStringLiteral("unitoffset")));
        });
    }
    st.redrawflag = 1;
    repaintFromRecord();
    repaintPanel(QStringLiteral("track"));
}

void Measur::chooseConfiguration()
{
    ResumeNext onError;
    if (onError.test([this] { return data2_->recordset().RecordCount() > 0; })) {
        const QString name = vbTrim(dbcombo2_->Text());
        onError([&] {
            data2_->FindFirst(QStringLiteral("configname = '") + name + QStringLiteral("'"));
            if (data2_->recordset().NoMatch()) {
                st.correctionon = 0;
                return;
            }
            st.configname = name;
            st.filemode = 0;
        });
    }
    repaintFromRecord();
}

void Measur::refreshLists()
{
    ResumeNext onError;
    onError([this] { data2_->Refresh(); });
}

void Measur::repaintFromRecord()
{
    setOption(ospan_, indexOf(kSpans, st.span));
    setOption(oatt_, indexOf(kAttenuators, st.attenuator));
    setOption(obw_, indexOf(kBandwidths, st.bandwith));
    cvideo_->setChecked(st.videofilter != 0);
    check1_->setChecked(st.correctionon != 0);
    db_->setChecked(st.dbperdiv == 5);

    // The configuration: its components, and the antenna's distance where it has one. Traces
    // from a stepped measurement keep the name and distance they came with.
    bool antenna = false;
    if (st.filemode == 0) {
        const bool found = setupconfiguration(st.configname);
        antenna = found && st.configdist > 0;
        dbcombo2_->setText(st.configname);
    }
    label3_->setVisible(antenna);
    label4_->setVisible(antenna);
    if (antenna)
        label4_->setText(vbCStr(st.configdist) + (st.correctionon == 1 ? QStringLiteral(" m") : QString()));

    chooseunit(st.unit, true, true);
    dbcombo1_->setText(st.unit);

    text1_->setText(vbFormat(st.centerfreq, QStringLiteral("###0.00")));
    text2_->setText(vbFormat(shownreflevel(), QStringLiteral("###0.0")));
}

}  // namespace kw
