#include "live/detec.h"

#include "link/commands.h"
#include "link/connection.h"
#include "platform/beep.h"
#include "platform/datacontrol.h"
#include "platform/dbcombo.h"
#include "platform/keypress.h"
#include "platform/onerror.h"
#include "platform/vbformat.h"
#include "shell/state.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace kw {

Detec::Detec(QWidget *parent) : LivePanel(QStringLiteral("detec"), QStringLiteral("Display Mode"), 9, parent)
{
    // Two columns: what the analyser does beside what the program reads and draws.
    auto *top = new QGridLayout(this);
    compact(top);

    auto *frame1 = named(new QGroupBox(QStringLiteral("Analyzer"), this), "Frame1");
    auto *analyser = new QVBoxLayout(frame1);
    compact(analyser);
    auto *traces = new QWidget(frame1);
    odet_ = optionArray(traces, QStringLiteral("odet"),
                        {QStringLiteral("Sample"), QStringLiteral("Memory B"), QStringLiteral("Memory A - B"),
                         QStringLiteral("Average"), QStringLiteral("Max. Hold")});
    analyser->addWidget(traces);
    check7_ = named(new QCheckBox(QStringLiteral("Calculation On"), frame1), "Check7");
    command4_ = named(new QPushButton(QStringLiteral("Reset Calculation"), frame1), "Command4");
    auto *command1 = named(new QPushButton(QStringLiteral("Save A -> B"), frame1), "Command1");
    analyser->addWidget(check7_);
    analyser->addWidget(command4_);
    analyser->addWidget(command1);
    top->addWidget(frame1, 0, 0);

    auto *frame3 = named(new QGroupBox(QStringLiteral("Settings"), this), "Frame3");
    auto *memories = new QGridLayout(frame3);
    compact(memories);
    cset_ = named(new QComboBox(frame3), "cset");
    auto *command2 = named(new QPushButton(QStringLiteral("Save"), frame3), "Command2");
    auto *command3 = named(new QPushButton(QStringLiteral("Recall"), frame3), "Command3");
    memories->addWidget(cset_, 0, 0, 1, 2);
    memories->addWidget(command2, 1, 0);
    memories->addWidget(command3, 1, 1);
    top->addWidget(frame3, 1, 0);

    auto *frame4 = named(new QGroupBox(QStringLiteral("Read / View"), this), "Frame4");
    auto *view = new QVBoxLayout(frame4);
    compact(view);
    check1_ = named(new QCheckBox(QStringLiteral("Sample"), frame4), "Check1");
    check2_ = named(new QCheckBox(QStringLiteral("Average"), frame4), "Check2");
    check3_ = named(new QCheckBox(QStringLiteral("Max. Hold"), frame4), "Check3");
    for (QCheckBox *c : {check1_, check2_, check3_})
        view->addWidget(c);
    auto *memoryView = new QWidget(frame4);
    omemb_ = optionArray(memoryView, QStringLiteral("omemb"),
                         {QStringLiteral("Memory Off"), QStringLiteral("Memory B"), QStringLiteral("Memory A-B")});
    view->addWidget(memoryView);
    check5_ = named(new QCheckBox(QStringLiteral("View Max. Hold limit"), frame4), "Check5");
    dbcombo1_ = named(new DBCombo(frame4), "DBCombo1");
    check6_ = named(new QCheckBox(QStringLiteral("View Average limit"), frame4), "Check6");
    dbcombo2_ = named(new DBCombo(frame4), "DBCombo2");
    for (DBCombo *combo : {dbcombo1_, dbcombo2_}) {
        combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        combo->setMinimumContentsLength(18);
    }
    for (QWidget *w : std::initializer_list<QWidget *>{check5_, dbcombo1_, check6_, dbcombo2_})
        view->addWidget(w);
    top->addWidget(frame4, 0, 1, 2, 1);

    data1_ = named(new Data(this), "Data1");
    data1_->setRecordSource(QStringLiteral("LimitHead"));
    dbcombo1_->setRowSource(data1_, QStringLiteral("limitname"));
    dbcombo2_->setRowSource(data1_, QStringLiteral("limitname"));
    data1_->setDatabaseName(st.databasefile);
    {
        ResumeNext onError;
        onError([this] { data1_->Refresh(); });
    }

    connect(odet_, &QButtonGroup::idClicked, this, &Detec::odetClicked);
    connect(check7_, &QCheckBox::clicked, this, &Detec::check7Clicked);
    connect(command4_, &QPushButton::clicked, this, [this] {
        if (st.calc == 0) {
            st.calc = 1;
            repaintFromRecord();
        }
        setcalcon();
    });
    connect(command1, &QPushButton::clicked, this, [] { savetob(); });
    connect(command2, &QPushButton::clicked, this, [] { savememory(); });
    // Recall goes out before the connection is looked at: offline it reaches nothing, and the
    // connection made after it reads the settings the analyser already had.
    connect(command3, &QPushButton::clicked, this, [] {
        recallmemory();
        if (st.portopen == 0)
            connectunit();
        restartCalculation();
        readallsettings();
    });
    connect(cset_, &QComboBox::activated, this, [](int index) {
        if (index >= 0)
            st.memorynumber = uint8_t(index);
    });
    onKeyPress(cset_, [](int &key) {
        key = 0;
        beep();
    });
    const auto viewFlag = [this](QCheckBox *box, uint8_t &flag) {
        connect(box, &QCheckBox::clicked, this, [&flag](bool ticked) {
            flag = ticked ? 1 : 0;
            st.redrawflag = 1;
        });
    };
    viewFlag(check1_, st.viewsample);
    viewFlag(check2_, st.viewaverage);
    viewFlag(check3_, st.viewmaxhold);
    connect(omemb_, &QButtonGroup::idClicked, this, [](int i) {
        st.viewb = i == 1 ? 1 : 0;
        st.viewab = i == 2 ? 1 : 0;
        st.redrawflag = 1;
    });
    const auto limitFlag = [this](QCheckBox *box, uint8_t &flag) {
        connect(box, &QCheckBox::clicked, this, [this, &flag](bool ticked) {
            flag = ticked ? 1 : 0;
            repaintFromRecord();
            st.redrawflag = 1;
        });
    };
    limitFlag(check5_, st.viewlimitmax);
    limitFlag(check6_, st.viewlimitave);
    const auto limitCombo = [this](DBCombo *combo, int32_t &limitnr) {
        combo->keyPress = [this, combo, &limitnr](int &key) {
            if (key == 13)
                chooseLimit(combo, limitnr);
            key = 0;
        };
        connect(combo, &DBCombo::listChosen, this, [this, combo, &limitnr] { chooseLimit(combo, limitnr); });
    };
    limitCombo(dbcombo1_, st.limitnrmax);
    limitCombo(dbcombo2_, st.limitnrave);

    repaintFromRecord();
}

void Detec::odetClicked(int index)
{
    st.readmode = uint8_t(index);
    // vmtrace is set anew before every block read; the values here reach only the next
    // reference level read, and they are the ones the analyser has always been given.
    switch (index) {
    case 0:
        st.vmtrace = 0;
        st.viewsample = 1;
        setreadmode();
        break;
    case 1:
        st.vmtrace = 1;
        st.viewb = 1;
        st.viewab = 0;
        setreadmode();
        break;
    case 2:
        // A-B and the calculation exclude each other.
        if (st.calc == 1) {
            setcalcoff();
            st.calc = 0;
        }
        st.vmtrace = 2;
        st.viewb = 0;
        st.viewab = 1;
        setreadmode();
        readallsettings();
        break;
    case 3:
        st.vmtrace = 0;
        st.viewaverage = 1;
        setreadmode();
        break;
    case 4:
        st.vmtrace = 3;
        st.viewmaxhold = 1;
        setreadmode();
        break;
    default:
        break;
    }
    repaintFromRecord();
}

void Detec::check7Clicked(bool ticked)
{
    if (ticked && odet_->checkedId() == 2) {
        check7_->setChecked(false);
        return;
    }
    if (ticked) {
        setcalcon();
        st.calc = 1;
    } else {
        setcalcoff();
        st.calc = 0;
    }
    queryreadmode();
    repaintFromRecord();
}

void Detec::chooseLimit(DBCombo *combo, int32_t &limitnr)
{
    ResumeNext onError;
    if (onError.test([this] { return data1_->recordset().RecordCount() > 0; })) {
        onError([&] {
            data1_->FindFirst(QStringLiteral("limitname = '") + vbTrim(combo->Text()) + QStringLiteral("'"));
            if (data1_->recordset().NoMatch())
                return;
            limitnr = int32_t(data1_->recordset().FieldNumber(QStringLiteral("limitnr")));
            st.filemode = 0;
        });
    }
    st.redrawflag = 1;
}

bool Detec::showLimit(DBCombo *combo, int32_t limitnr, QString &name, int16_t &log, float *distance)
{
    bool found = false;
    ResumeNext onError;
    onError([&] {
        data1_->FindFirst(QStringLiteral("limitnr = ") + vbStr(int(limitnr)).trimmed());
        found = !data1_->recordset().NoMatch();
    });
    if (found && st.filemode == 0) {
        onError([&] { name = data1_->recordset().FieldText(QStringLiteral("limitname")); });
        onError([&] { log = data1_->recordset().Field(QStringLiteral("loga")).toBool() ? -1 : 0; });
        if (distance)
            onError([&] { *distance = float(data1_->recordset().FieldNumber(QStringLiteral("distance"))); });
        combo->setText(name);
    } else if (st.filemode != 0) {
        combo->setText(name);
    } else {
        combo->setText(QStringLiteral("Not set"));
    }
    return found;
}

void Detec::refreshLists()
{
    ResumeNext onError;
    onError([this] { data1_->Refresh(); });
}

void Detec::repaintFromRecord()
{
    setOption(odet_, st.readmode);

    const QSignalBlocker quiet(cset_);
    cset_->clear();
    for (int row = 1; row <= st.digitcount && row < int(st.digits.size()); ++row)
        cset_->addItem(vbTrim(st.digits[size_t(row)]));
    cset_->setCurrentIndex(st.memorynumber < cset_->count() ? st.memorynumber : -1);

    check1_->setChecked(st.viewsample != 0);
    check2_->setChecked(st.viewaverage != 0);
    check3_->setChecked(st.viewmaxhold != 0);
    check5_->setChecked(st.viewlimitmax != 0);
    check6_->setChecked(st.viewlimitave != 0);
    setOption(omemb_, st.viewb == 1 ? 1 : st.viewab == 1 ? 2 : 0);

    // The max hold limit and its distance.
    float distance = 0.0f;
    const bool maxFound = showLimit(dbcombo1_, st.limitnrmax, st.maxholdname, st.lmaxlog, &distance);
    if (maxFound && st.filemode == 0)
        st.lmaxdist = check5_->isChecked() ? distance : 0.0f;
    else if (!maxFound && st.filemode == 0)
        st.lmaxdist = 0.0f;

    // The average limit: its distance goes into lmaxdist too, so a shown average limit decides
    // the distance the plot scales both limits for.
    distance = 0.0f;
    const bool aveFound = showLimit(dbcombo2_, st.limitnrave, st.averagename, st.lavelog, &distance);
    if (aveFound && st.filemode == 0) {
        if (check6_->isChecked())
            st.lmaxdist = distance;
        else if (!check5_->isChecked())
            st.lmaxdist = 0.0f;
    } else if (!aveFound && st.filemode == 0 && !check5_->isChecked()) {
        st.lavedist = 0.0f;
    }

    check7_->setChecked(st.calc != 0);
    odet_->button(3)->setEnabled(st.calc == 1);
    odet_->button(4)->setEnabled(st.calc == 1);
    command4_->setEnabled(st.calc != 0);
}

}  // namespace kw
