#pragma once
#include <QWidget>

class QLabel;

namespace kw {

// "Transmission": shows the characters sent and received while transmission debugging is on.
class TrForm : public QWidget {
    Q_OBJECT
public:
    explicit TrForm(QWidget *parent = nullptr);
    ~TrForm() override;

private:
    void refresh();
    QLabel *label3_;
    QLabel *label4_;
    QLabel *label5_;
};

}  // namespace kw
