#include "editors/configeditor.h"

#include "editors/editorwidgets.h"
#include "platform/boundfields.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "shell/uihooks.h"

#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace kw {

namespace {

const char *const kColumns[] = {"devicea", "deviceb", "devicec", "deviced", "devicee"};

QFrame *pathLine(QWidget *parent, const QString &name)
{
    auto *line = new QFrame(parent);
    line->setObjectName(name);
    line->setFrameShape(QFrame::VLine);
    line->setLineWidth(2);
    line->setFixedHeight(14);
    return line;
}

}  // namespace

ConfigEditor::ConfigEditor(QWidget *parent) : EditorForm(parent)
{
    setObjectName(QStringLiteral("configdef"));
    setWindowTitle(QStringLiteral("Configuration"));
    auto *layout = new QVBoxLayout(this);
    combo1_ = pickList(QStringLiteral("DBCombo1"), &data2_, QStringLiteral("configname"), this,
                       [this](const QString &text) { chooseConfiguration(text); });
    layout->addWidget(combo1_);

    auto *chain = new QGridLayout;
    int row = 0;
    auto *dut = new QLabel(QStringLiteral("DUT (Device under test)"), this);
    dut->setFrameShape(QFrame::Box);
    dut->setAlignment(Qt::AlignCenter);
    chain->addWidget(dut, row++, 1);
    chain->addWidget(pathLine(this, QStringLiteral("Line1")), row++, 1, Qt::AlignHCenter);

    // The radiated path: the antenna in A receives what the device sends across the distance.
    frame2_ = new QFrame(this);
    frame2_->setObjectName(QStringLiteral("Frame2"));
    frame2_->setFrameShape(QFrame::StyledPanel);
    auto *radiated = new QGridLayout(frame2_);
    auto *waves = new QLabel(QStringLiteral(")))   radiated   )))"), frame2_);
    waves->setAlignment(Qt::AlignCenter);
    radiated->addWidget(waves, 0, 0, 1, 2);
    label3_ = new QLabel(QStringLiteral("Distance in m"), this);
    label3_->setObjectName(QStringLiteral("Label3"));
    label4_ = new QLabel(this);
    label4_->setObjectName(QStringLiteral("Label4"));
    radiated->addWidget(label3_, 1, 0);
    radiated->addWidget(label4_, 1, 1);
    chain->addWidget(frame2_, row++, 1);

    const char *letters = "ABCDE";
    for (int p = 0; p < 5; ++p) {
        // Position A offers every component, the others no antenna.
        positions_[p] = pickList(QStringLiteral("DBCombo%1").arg(6 - p), p == 0 ? &data1_ : &data3_,
                                 QStringLiteral("losname"), this,
                                 [this, p](const QString &text) { choosePosition(p, text); });
        positions_[p]->setMinimumWidth(320);
        chain->addWidget(new QLabel(QString(QLatin1Char(letters[p])), this), row, 0);
        chain->addWidget(positions_[p], row++, 1);
        chain->addWidget(pathLine(this, QStringLiteral("Line%1").arg(p + 2)), row++, 1, Qt::AlignHCenter);
    }
    auto *analyser = new QLabel(QStringLiteral("Spectrumanalyser"), this);
    analyser->setFrameShape(QFrame::Box);
    analyser->setAlignment(Qt::AlignCenter);
    chain->addWidget(analyser, row++, 1);
    layout->addLayout(chain);
    layout->addStretch(1);

    data1_.setRecordSource(QStringLiteral("loshead"));
    data2_.setRecordSource(QStringLiteral("config"));
    data3_.setRecordSource(QStringLiteral("select * from loshead where lostyp > 0"));
    for (EditorData *d : {&data1_, &data2_, &data3_}) {
        d->setDatabaseName(st.databasefile);
        d->refresh();
    }
}

bool ConfigEditor::radiatedPathShown() const { return !frame2_->isHidden(); }

void ConfigEditor::activate()
{
    // Definitions made or removed by the dialogs since this form last looked.
    for (EditorData *d : {&data1_, &data2_, &data3_})
        d->refresh();
    if (!vbTrim(st.currentconfig).isEmpty())
        data2_.findFirst(QStringLiteral("configname like '") + vbTrim(st.currentconfig) + QLatin1Char('\''));
    paintForm();
}

void ConfigEditor::deactivate()
{
    if (data2_.hasRows())
        st.currentconfig = data2_.text(QStringLiteral("configName"));
}

void ConfigEditor::paintForm()
{
    if (!data2_.hasRows())
        return;
    combo1_->setText(data2_.text(QStringLiteral("configName")));
    st.currentconfig = data2_.text(QStringLiteral("configName"));
    // A number that finds no row leaves the source where it stood, and its name shows.
    data1_.findFirst(QStringLiteral("losNr = ") + vbTrim(data2_.text(QStringLiteral("devicea"))));
    positions_[0]->setText(data1_.text(QStringLiteral("losname")));
    const bool antenna = data1_.hasRows() && data1_.text(QStringLiteral("lostyp")) == QLatin1String("0");
    frame2_->setVisible(antenna);
    label3_->setVisible(antenna);
    label4_->setVisible(antenna);
    if (antenna)
        label4_->setText(vbCStr(float(data1_.number(QStringLiteral("distance")))));
    for (int p = 1; p < 5; ++p) {
        data3_.findFirst(QStringLiteral("losNr like ") + vbTrim(data2_.text(QLatin1String(kColumns[p]))));
        positions_[p]->setText(data3_.text(QStringLiteral("losname")));
    }
}

void ConfigEditor::chooseConfiguration(const QString &name)
{
    if (!data2_.hasRows())
        return;
    data2_.findFirst(QStringLiteral("ConfigName like '") + vbTrim(name) + QLatin1Char('\''));
    paintForm();
}

void ConfigEditor::choosePosition(int position, const QString &name, bool fromList)
{
    EditorData &source = position == 0 ? data1_ : data3_;
    if (!source.hasRows() || position < 0 || position > 4)
        return;
    const bool found = source.findFirst(QStringLiteral("losname = '") + name + QLatin1Char('\''));
    if (position == 0 && fromList)
        frame2_->setVisible(source.text(QStringLiteral("lostyp")) == QLatin1String("0"));
    if (found && data2_.hasRows()) {
        writeBoundField(data2_, QLatin1String(kColumns[position]), source.rows().Field(QStringLiteral("losnr")));
        // The panels take the chain anew from the configuration when they repaint.
        if (uiHooks().refreshForms)
            uiHooks().refreshForms();
    }
    paintForm();
}

}  // namespace kw
