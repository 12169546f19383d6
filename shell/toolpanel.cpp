#include "shell/toolpanel.h"

#include "link/connection.h"
#include "link/debugboxes.h"
#include "shell/state.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QMouseEvent>

namespace kw {

ToolPanel::ToolPanel(QWidget *parent) : QFrame(parent)
{
    setObjectName(QStringLiteral("Picture1"));
    setFrameShape(QFrame::StyledPanel);
    layout_ = new QHBoxLayout(this);
    layout_->setContentsMargins(4, 2, 4, 2);
    ckrm_ = new QCheckBox(QStringLiteral("RM"), this);
    ckrm_->setObjectName(QStringLiteral("ckrm"));
    ckauto_ = new QCheckBox(QStringLiteral("Auto"), this);
    ckauto_->setObjectName(QStringLiteral("ckauto"));
    layout_->addWidget(ckrm_);
    layout_->addWidget(ckauto_);
    layout_->addStretch(1);
    connect(ckrm_, &QCheckBox::clicked, this, &ToolPanel::rmClicked);
    connect(ckauto_, &QCheckBox::clicked, this, [](bool ticked) { st.ckauto = ticked; st.liveread = ticked; });
}

void ToolPanel::addControl(QWidget *control) { layout_->insertWidget(layout_->count() - 1, control); }

void ToolPanel::refreshFromState()
{
    const QSignalBlocker blockRm(ckrm_);
    const QSignalBlocker blockAuto(ckauto_);
    ckrm_->setChecked(st.ckrm);
    ckauto_->setChecked(st.ckauto);
}

void ToolPanel::mousePressEvent(QMouseEvent *event)
{
    QFrame::mousePressEvent(event);
    countDebugClick();
}

// RM ticked connects, unticked goes offline; either way the box then shows the link as it is.
void ToolPanel::rmClicked(bool ticked)
{
    st.ckrm = ticked;
    if (ticked)
        connectunit();
    else
        disconnectunit();
    refreshFromState();
}

}  // namespace kw
