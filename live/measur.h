#pragma once
// "Measurement": the panel that sets the analyser. Every control acts at once; the panel shows
// what the record holds after each repaint.

#include "live/livepanel.h"

class QButtonGroup;
class QCheckBox;
class QLabel;
class QLineEdit;

namespace kw {

class Data;
class DBCombo;

class Measur : public LivePanel {
    Q_OBJECT
public:
    explicit Measur(QWidget *parent = nullptr);

    void repaintFromRecord() override;
    void refreshLists() override;

private:
    void text1Key(int &key);
    void text2Key(int &key);
    void chooseUnit();
    void chooseConfiguration();

    QLineEdit *text1_;
    QLineEdit *text2_;
    QButtonGroup *ospan_;
    QButtonGroup *obw_;
    QButtonGroup *oatt_;
    QCheckBox *cvideo_;
    QCheckBox *db_;
    QCheckBox *check1_;
    DBCombo *dbcombo1_;
    DBCombo *dbcombo2_;
    Data *data1_;
    Data *data2_;
    Data *data3_;
    QLabel *label3_;
    QLabel *label4_;
};

}  // namespace kw
