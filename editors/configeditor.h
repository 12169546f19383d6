#pragma once
// The configuration editor ("Configuration", configdef): the chain of up to five components from
// the device under test to the analyser, position A the only one that may hold an antenna.

#include "editors/editordata.h"
#include "editors/editorform.h"

class QFrame;
class QLabel;

namespace kw {

class DBCombo;

class ConfigEditor : public EditorForm {
    Q_OBJECT
public:
    explicit ConfigEditor(QWidget *parent = nullptr);

    void activate() override;
    void deactivate() override;
    void paintForm();

    void chooseConfiguration(const QString &name);  // DBCombo1
    // Position 0..4 (A..E): DBCombo6, DBCombo5 ... DBCombo2. fromList: a mouse release on the list.
    void choosePosition(int position, const QString &name, bool fromList = true);

    EditorData &data2() { return data2_; }
    DBCombo *positionCombo(int position) const { return positions_[position]; }
    bool radiatedPathShown() const;

private:
    EditorData data1_, data2_, data3_;
    DBCombo *combo1_ = nullptr;
    DBCombo *positions_[5] = {};
    QFrame *frame2_ = nullptr;
    QLabel *label3_ = nullptr;
    QLabel *label4_ = nullptr;
};

}  // namespace kw
