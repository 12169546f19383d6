#pragma once
// The form test, "Test-Settings": one row of table test, every control writing its column at once.

#include <QWidget>

class QCheckBox;
class QLineEdit;
class QRadioButton;

namespace kw {

class Data;
class DBCombo;

class TestForm : public QWidget {
    Q_OBJECT
public:
    explicit TestForm(QWidget *parent = nullptr);

    // The fill of the form from the current row, lookups and all.
    void repaintFromRow();
    // What Return in text box 1..5 or leaving it does: parse, clamp, store, show.
    void validateText(int box);

    Data *data(int number) const { return data_[number]; }

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void activate();
    void rememberTest();
    void checkSpan(int box, float typed);
    void showRef();
    void setActiveButtons(bool sweepStep);
    void writeColumn(const char *column, const QVariant &value);
    void comboChosen(int number);
    void optionClicked(const char *column, int index);

    Data *data_[5] = {};
    DBCombo *combo_[6] = {};
    QLineEdit *text_[6] = {};
    QCheckBox *check_[5] = {};
    QRadioButton *oactive_[2] = {};
    QRadioButton *att_[5] = {};
    QRadioButton *detect_[2] = {};
    QRadioButton *rbw_[3] = {};
    QRadioButton *omode_[2] = {};
    // The box shows ref + unit offset + attenuator; the two are held apart to recompute it.
    float ref_ = 0.0f;
    float unitoffset_ = 0.0f;
    float atten_ = 0.0f;
};

}  // namespace kw
