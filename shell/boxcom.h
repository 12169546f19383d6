#pragma once
#include <QWidget>

class QRadioButton;

namespace kw {

// "Serial port setup": choose port and speed, connect, or search all ports.
class Boxcom : public QWidget {
    Q_OBJECT
public:
    explicit Boxcom(QWidget *parent = nullptr);

    QRadioButton *baud(int index) const { return baud_[index]; }   // 1..5
    QRadioButton *port(int index) const { return port_[index]; }   // 1..4

private:
    void ok();
    void unload();

    QRadioButton *baud_[6] = {};
    QRadioButton *port_[5] = {};
};

}  // namespace kw
