#pragma once
// The editors of one limit ("Limit - definition", Limitdef) or one loss/gain component
// ("Loss/Gain Components", losdef): the points as a grid and a small plot, the point in work, the
// bound head fields, and import and export of the points as a text table.

#include "editors/definitionplot.h"
#include "editors/editordata.h"
#include "editors/editorform.h"

class QLabel;
class QRadioButton;
class QTableWidget;

namespace kw {

class BoundCheckBox;
class BoundTextBox;
class NumberBox;
class DBCombo;
class PictureBox;

class DefinitionEditor : public EditorForm {
    Q_OBJECT
public:
    DefinitionEditor(Family family, QWidget *parent = nullptr);
    ~DefinitionEditor() override;

    void activate() override;
    void deactivate() override;

    // The form's paint: combo, points of the definition, unit or type, grid and plot.
    void paintForm();
    // FillLimitGrid / FillComponentGrid.
    void fillGrid();

    // The events a user triggers, callable from tests.
    void chooseDefinition(const QString &name);  // DBCombo1
    void chooseUnit(const QString &name);        // DBCombo2 (limits)
    void chooseType(int lostyp);                 // Option1 (components)
    void enterPoint();                           // Text2's Enter
    void gridClicked(int row);
    void gridKey(int row, int key);
    void importFile();
    void exportFile();

    const LevelView &view() const { return view_; }
    const DefinitionRange &range() const { return range_; }
    EditorData &data1() { return data1_; }
    EditorData &data2() { return data2_; }

private:
    void keepHead();
    void showHead();
    QString definitionName();
    QString levelHeader();

    Family family_;
    EditorData data1_, data2_, data3_;
    LevelView view_;
    DefinitionRange range_;
    DefinitionPoints points_;

    DBCombo *combo1_ = nullptr;
    DBCombo *combo2_ = nullptr;
    QTableWidget *grid_ = nullptr;
    NumberBox *text1_ = nullptr;
    NumberBox *text2_ = nullptr;
    BoundTextBox *text3_ = nullptr;
    BoundTextBox *text4_ = nullptr;
    BoundTextBox *text5_ = nullptr;
    BoundTextBox *text6_ = nullptr;
    BoundCheckBox *check1_ = nullptr;
    BoundCheckBox *check2_ = nullptr;
    QLabel *label3_ = nullptr;
    QRadioButton *option_[3] = {};
    PictureBox *pic1_ = nullptr;
    PictureBox *pic2_ = nullptr;
    PictureBox *pic3_ = nullptr;
};

}  // namespace kw
