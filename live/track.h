#pragma once
// "Tracking generator": switches the analyser's generator and sets its level in the shown unit.
// On a 3400, which has none, the form still works on the record and nothing is sent.

#include "live/livepanel.h"

class QCheckBox;
class QLabel;
class QLineEdit;

namespace kw {

class Track : public LivePanel {
    Q_OBJECT
public:
    explicit Track(QWidget *parent = nullptr);

    void repaintFromRecord() override;

private:
    void text1Key(int &key);

    QCheckBox *ctrack_;
    QLineEdit *text1_;
    QLabel *label4_;
};

}  // namespace kw
