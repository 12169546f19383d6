#pragma once
// The forms of the report: setprn ("Printer settings") with the options and the buttons, and
// printe ("Print Preview") with the picture r the preview draws on.

#include <QWidget>

class QCheckBox;
class QLineEdit;

namespace kw {

class Mdi;
class PictureBox;

class Setprn : public QWidget {
    Q_OBJECT
public:
    explicit Setprn(QWidget *parent = nullptr);
    ~Setprn() override;
    // The refresh of the form: the record into the controls, and the preview drawn anew.
    void refresh();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void option(QCheckBox *box, uint8_t &field);
    void storeHeadline();
    void pdf();

    QLineEdit *text1_ = nullptr;
    QCheckBox *check1_ = nullptr;
    QCheckBox *check2_ = nullptr;
    QCheckBox *check5_ = nullptr;
    QCheckBox *check6_ = nullptr;
    QCheckBox *check7_ = nullptr;
    bool placed_ = false;
};

class Printe : public QWidget {
    Q_OBJECT
public:
    explicit Printe(QWidget *parent = nullptr);
    ~Printe() override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    PictureBox *r_ = nullptr;
    bool placed_ = false;
};

// setprn and printe in the table of forms.
void registerReportForms();
// "&Print" of the menu and the Print button of the tool bar: the settings and the preview.
void showPrintSettings();
// mnuprint to showPrintSettings.
void connectPrintMenu(Mdi &window);

}  // namespace kw
