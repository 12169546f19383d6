#include "shell/boxcom.h"

#include "link/connection.h"
#include "link/transport.h"
#include "platform/comports.h"
#include "platform/serialcontrol.h"
#include "shell/state.h"
#include "shell/uihooks.h"

#include <QButtonGroup>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace kw {

namespace {
const int kSpeeds[] = {0, 4800, 9600, 19200, 38400, 115200};
}

Boxcom::Boxcom(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("boxcom"));
    setWindowTitle(QStringLiteral("Serial port setup"));
    auto *frame2 = new QGroupBox(QStringLiteral("Baudrate:"), this);
    frame2->setObjectName(QStringLiteral("Frame2"));
    auto *frame1 = new QGroupBox(QStringLiteral("Port:"), this);
    frame1->setObjectName(QStringLiteral("Frame1"));
    auto *baudLayout = new QVBoxLayout(frame2);
    auto *portLayout = new QVBoxLayout(frame1);
    // Exclusive groups that may also have nothing set (a speed or port the record does not list).
    auto *baudGroup = new QButtonGroup(this);
    auto *portGroup = new QButtonGroup(this);
    for (int i = 1; i <= 5; ++i) {
        baud_[i] = new QRadioButton(QString::number(kSpeeds[i]), frame2);
        baud_[i]->setObjectName(QStringLiteral("baud%1").arg(i));
        baudLayout->addWidget(baud_[i]);
        baudGroup->addButton(baud_[i], i);
        baud_[i]->setChecked(kSpeeds[i] == st.baudrate);
    }
    for (int i = 1; i <= 4; ++i) {
        port_[i] = new QRadioButton(QStringLiteral("Com%1").arg(i), frame1);
        port_[i]->setObjectName(QStringLiteral("port%1").arg(i));
        // The device behind the button, as the port map beside setting.def has it.
        auto *row = new QHBoxLayout;
        auto *device = new QLabel(comPortDevice(i), frame1);
        device->setObjectName(QStringLiteral("device%1").arg(i));
        device->setEnabled(false);
        row->addWidget(port_[i]);
        row->addWidget(device, 1);
        portLayout->addLayout(row);
        portGroup->addButton(port_[i], i);
        port_[i]->setChecked(i == st.comport);
    }
    auto *command1 = new QPushButton(QStringLiteral("Autosearch"), this);
    command1->setObjectName(QStringLiteral("Command1"));
    auto *cbok = new QPushButton(QStringLiteral("&Ok"), this);
    cbok->setObjectName(QStringLiteral("cbok"));
    auto *cbabbruch = new QPushButton(QStringLiteral("E&xit"), this);
    cbabbruch->setObjectName(QStringLiteral("cbabbruch"));

    auto *frames = new QHBoxLayout;
    frames->addWidget(frame2);
    frames->addWidget(frame1);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(command1);
    buttons->addStretch(1);
    buttons->addWidget(cbok);
    buttons->addWidget(cbabbruch);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(frames);
    layout->addLayout(buttons);

    connect(cbok, &QPushButton::clicked, this, &Boxcom::ok);
    connect(cbabbruch, &QPushButton::clicked, this, &Boxcom::unload);
    connect(command1, &QPushButton::clicked, this, [] { autosearch(); });
    uiHooks().closeBoxcom = [this] { unload(); };
}

void Boxcom::ok()
{
    if (comm1().portOpen() && st.portopen == 1) {
        disconnectunit();
        st.portopen = 0;
    }
    busypointer();
    for (int i = 1; i <= 5; ++i)
        if (baud_[i]->isChecked())
            st.baudrate = kSpeeds[i];
    for (int i = 1; i <= 4; ++i)
        if (port_[i]->isChecked())
            st.comport = static_cast<int16_t>(i);
    connectunit();
    unload();
}

void Boxcom::unload()
{
    uiHooks().closeBoxcom = nullptr;
    QWidget *window = parentWidget() && qobject_cast<QMdiSubWindow *>(parentWidget()) ? parentWidget() : this;
    window->close();
    deleteLater();
}

}  // namespace kw
