#include "store/settingsforms.h"

#include "platform/datacontrol.h"
#include "platform/dbcombo.h"
#include "platform/onerror.h"
#include "platform/recordset.h"
#include "platform/vbformat.h"
#include "shell/forms.h"
#include "shell/keyfilter.h"
#include "shell/state.h"
#include "store/namedsettings.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QShowEvent>
#include <QVBoxLayout>

namespace kw {

namespace {

// Name fields take no key once the trimmed text is longer than this.
constexpr int kNameKeyLimit = 80;

// A Data control of the dialog over the application database, opened at the load; one that could
// not open leaves the recordset unset, and the work on it passes its errors over.
Data *openData(QWidget *form, const char *name, const QString &source, int type = dbOpenDynaset)
{
    auto *data = named(new Data(form), name);
    data->setRecordSource(source);
    data->setRecordsetType(type);
    data->setDatabaseName(st.databasefile);
    ResumeNext onError;
    onError([&] { data->Refresh(); });
    return data;
}

Recordset recordsetOf(Data *data)
{
    ResumeNext onError;
    Recordset rs;
    onError([&] { rs = data->recordset(); });
    return rs;
}

class Saveset : public QWidget {
public:
    Saveset()
    {
        setWindowTitle(QStringLiteral("Save settings"));
        text1_ = named(new QLineEdit(this), "Text1");
        auto *grid = named(new QListWidget(this), "DBGrid1");
        auto *command1 = named(new QPushButton(QStringLiteral("Save settings"), this), "Command1");
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(text1_);
        layout->addWidget(grid, 1);
        auto *buttons = new QHBoxLayout;
        buttons->addStretch(1);
        buttons->addWidget(command1);
        layout->addLayout(buttons);
        resize(380, 300);

        data1_ = openData(this, "Data1", QStringLiteral("settings"));
        Data *data2 = openData(this, "Data2", QStringLiteral("select name from settings"), dbOpenSnapshot);
        grid->addItems(data2->listOf(QStringLiteral("name")));

        connect(grid, &QListWidget::itemClicked, this, [this](QListWidgetItem *item) { text1_->setText(item->text()); });
        onKeyPress(text1_, [this](KeyPress &key) {
            if (vbTrim(text1_->text()).size() > kNameKeyLimit)
                key.ascii = 0;
        });
        connect(command1, &QPushButton::released, this, [this] {
            Recordset rs = recordsetOf(data1_);
            if (savesetting(rs, text1_->text()))
                unloadSelf(this);
        });
    }

private:
    QLineEdit *text1_ = nullptr;
    Data *data1_ = nullptr;
};

class Loadset : public QWidget {
public:
    Loadset()
    {
        setWindowTitle(QStringLiteral("Load settings"));
        data1_ = openData(this, "Data1", QStringLiteral("settings"));
        combo_ = named(new DBCombo(this), "DBCombo1");
        combo_->setMinimumWidth(320);
        combo_->setRowSource(data1_, QStringLiteral("name"));
        auto *command1 = named(new QPushButton(QStringLiteral("Load settings"), this), "Command1");
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(combo_);
        auto *buttons = new QHBoxLayout;
        buttons->addStretch(1);
        buttons->addWidget(command1);
        layout->addLayout(buttons);

        combo_->keyPress = [this](int &key) {
            if (vbTrim(combo_->Text()).size() > kNameKeyLimit)
                key = 0;
        };
        // Choosing or typing a name moves the recordset to that row.
        connect(combo_, &QComboBox::currentTextChanged, this, [this](const QString &text) {
            ResumeNext onError;
            if (hasRows())
                onError([&] { data1_->FindFirst(QStringLiteral("name = '") + text + QStringLiteral("'")); });
        });
        connect(command1, &QPushButton::released, this, [this] {
            Recordset rs = recordsetOf(data1_);
            if (loadsetting(rs, combo_->Text()) != LoadOutcome::NoRows)
                unloadSelf(this);
        });
        showCurrentName();
    }

protected:
    void showEvent(QShowEvent *event) override
    {
        QWidget::showEvent(event);
        showCurrentName();
    }

private:
    void showCurrentName()
    {
        if (hasRows())
            combo_->setText(data1_->currentText(QStringLiteral("name")));
    }

    bool hasRows() const
    {
        ResumeNext onError;
        bool rows = false;
        onError([&] { rows = recordsetOf(data1_).RecordCount() > 0; });
        return rows && onError.number == 0;
    }

    DBCombo *combo_ = nullptr;
    Data *data1_ = nullptr;
};

}  // namespace

void registerNamedSettingsForms()
{
    registerForm(QStringLiteral("saveset"), [] { return new Saveset; });
    registerForm(QStringLiteral("loadset"), [] { return new Loadset; });
}

}  // namespace kw
