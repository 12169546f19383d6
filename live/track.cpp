#include "live/track.h"

#include "link/commands.h"
#include "platform/beep.h"
#include "platform/keypress.h"
#include "platform/onerror.h"
#include "platform/vbformat.h"
#include "shell/state.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

namespace kw {

Track::Track(QWidget *parent) : LivePanel(QStringLiteral("track"), QStringLiteral("Tracking generator"), 15, parent)
{
    auto *grid = new QGridLayout(this);
    compact(grid);
    ctrack_ = new QCheckBox(QStringLiteral("Tracking-generator"), this);
    ctrack_->setObjectName(QStringLiteral("ctrack"));
    text1_ = new QLineEdit(this);
    text1_->setObjectName(QStringLiteral("Text1"));
    label4_ = new QLabel(this);
    label4_->setObjectName(QStringLiteral("Label4"));
    grid->addWidget(ctrack_, 0, 0, 1, 2);
    grid->addWidget(text1_, 1, 0);
    grid->addWidget(label4_, 1, 1);

    connect(ctrack_, &QCheckBox::clicked, this, [](bool ticked) {
        st.tgon = ticked ? 1 : 0;
        settrackgen();
    });
    onKeyPress(text1_, [this](int &key) { text1Key(key); });
    repaintFromRecord();
}

void Track::text1Key(int &key)
{
    numberBoxKey(key, [this] {
        // tglevel is held in dBmW; the box shows it in the chosen unit.
        ResumeNext onError;
        onError([this] { st.tglevel = vbCSng(text1_->text()) - st.unitoffset; });
        st.tglevel = std::clamp(st.tglevel, -50.0f, 1.0f);
        settglevel();
        text1_->setText(vbFormat(st.tglevel + st.unitoffset, QStringLiteral("###0.0")));
        beep();
    });
}

void Track::repaintFromRecord()
{
    label4_->setText(vbTrim(st.unit));
    text1_->setText(vbFormat(st.tglevel + st.unitoffset, QStringLiteral("###0.0")));
    ctrack_->setChecked(st.tgon != 0);
}

}  // namespace kw
