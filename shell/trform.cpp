#include "shell/trform.h"

#include "link/debugview.h"

#include <QGridLayout>
#include <QLabel>

namespace kw {

TrForm::TrForm(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("Tr"));
    setWindowTitle(QStringLiteral("Transmission"));
    auto *grid = new QGridLayout(this);
    auto *label1 = new QLabel(QStringLiteral("Send"), this);
    label1->setObjectName(QStringLiteral("Label1"));
    auto *label2 = new QLabel(QStringLiteral("Receive"), this);
    label2->setObjectName(QStringLiteral("Label2"));
    label3_ = new QLabel(this);
    label3_->setObjectName(QStringLiteral("Label3"));
    label4_ = new QLabel(this);
    label4_->setObjectName(QStringLiteral("Label4"));
    label5_ = new QLabel(this);
    label5_->setObjectName(QStringLiteral("Label5"));
    grid->addWidget(label1, 0, 0);
    grid->addWidget(label3_, 0, 1);
    grid->addWidget(label2, 1, 0);
    grid->addWidget(label4_, 1, 1);
    grid->addWidget(label5_, 2, 1);
    setMinimumWidth(420);
    debugView().changed = [this] { refresh(); };
    refresh();
}

TrForm::~TrForm() { debugView().changed = nullptr; }

void TrForm::refresh()
{
    QString received = debugView().label4;
    received.replace(QChar(13), QStringLiteral("\\r"));
    QString sent = debugView().label3;
    sent.replace(QChar(13), QStringLiteral("\\r"));
    label3_->setText(sent);
    label4_->setText(received);
    label5_->setText(debugView().label5);
    // The form is looked at during a transfer, when no event loop runs: paint now.
    repaint();
}

}  // namespace kw
