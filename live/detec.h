#pragma once
// "Display Mode": the trace on the analyser's screen, its calculation of average and max hold,
// Memory B and its stored settings; which traces the program reads and draws, and the limit lines.

#include "live/livepanel.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QPushButton;

namespace kw {

class Data;
class DBCombo;

class Detec : public LivePanel {
    Q_OBJECT
public:
    explicit Detec(QWidget *parent = nullptr);

    void repaintFromRecord() override;
    void refreshLists() override;

private:
    void odetClicked(int index);
    void check7Clicked(bool ticked);
    void chooseLimit(DBCombo *combo, int32_t &limitnr);
    // Shows the limit of that number in the combo; returns whether it was found.
    bool showLimit(DBCombo *combo, int32_t limitnr, QString &name, int16_t &log, float *distance);

    QButtonGroup *odet_;
    QCheckBox *check7_;
    QPushButton *command4_;
    QComboBox *cset_;
    QCheckBox *check1_;
    QCheckBox *check2_;
    QCheckBox *check3_;
    QButtonGroup *omemb_;
    QCheckBox *check5_;
    QCheckBox *check6_;
    DBCombo *dbcombo1_;
    DBCombo *dbcombo2_;
    Data *data1_;
};

}  // namespace kw
