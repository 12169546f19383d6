#include "store/settingsforms.h"

#include "platform/onerror.h"
#include "platform/recordset.h"
#include "platform/vbformat.h"
#include "shell/forms.h"
#include "shell/keyfilter.h"
#include "shell/state.h"
#include "store/namedsettings.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QShowEvent>
#include <QVBoxLayout>

namespace kw {

namespace {

// Name fields take no key once the trimmed text is longer than this.
constexpr int kNameKeyLimit = 80;

void limitNameKeys(QWidget *control, std::function<QString()> text)
{
    onKeyPress(control, [text = std::move(text)](KeyPress &key) {
        if (vbTrim(text()).size() > kNameKeyLimit)
            key.ascii = 0;
    });
}

// The dialogs' recordsets on table settings, each on its own opening of the application
// database, held for as long as the dialog is loaded.
Recordset openSettings(const QString &source, int type)
{
    ResumeNext onError;
    Recordset rs;
    onError([&] { rs = OpenDatabase(vbTrim(st.databasefile)).OpenRecordset(source, type); });
    return rs;
}

class Saveset : public QWidget {
public:
    Saveset()
    {
        setWindowTitle(QStringLiteral("Save settings"));
        text1_ = named(new QLineEdit(this), "Text1");
        grid_ = named(new QListWidget(this), "DBGrid1");
        auto *command1 = named(new QPushButton(QStringLiteral("Save settings"), this), "Command1");
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(text1_);
        layout->addWidget(grid_, 1);
        auto *buttons = new QHBoxLayout;
        buttons->addStretch(1);
        buttons->addWidget(command1);
        layout->addLayout(buttons);
        resize(380, 300);

        data1_ = openSettings(QStringLiteral("settings"), dbOpenDynaset);
        fillNames();

        connect(grid_, &QListWidget::itemClicked, this, [this](QListWidgetItem *item) { text1_->setText(item->text()); });
        limitNameKeys(text1_, [this] { return text1_->text(); });
        connect(command1, &QPushButton::released, this, [this] {
            if (savesetting(data1_, text1_->text()))
                unloadSelf(this);
        });
    }

private:
    void fillNames()
    {
        Recordset data2 = openSettings(QStringLiteral("select name from settings"), dbOpenSnapshot);
        ResumeNext onError;
        grid_->clear();
        bool more = false;
        onError([&] { more = data2.RecordCount() > 0 && !data2.Eof(); });
        while (more && onError.number == 0) {
            onError([&] {
                grid_->addItem(data2.FieldText(QStringLiteral("name")));
                data2.MoveNext();
                more = !data2.Eof();
            });
        }
    }

    QLineEdit *text1_ = nullptr;
    QListWidget *grid_ = nullptr;
    Recordset data1_;
};

class Loadset : public QWidget {
public:
    Loadset()
    {
        setWindowTitle(QStringLiteral("Load settings"));
        combo_ = named(new QComboBox(this), "DBCombo1");
        combo_->setEditable(true);
        combo_->setInsertPolicy(QComboBox::NoInsert);
        combo_->setMinimumWidth(320);
        auto *command1 = named(new QPushButton(QStringLiteral("Load settings"), this), "Command1");
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(combo_);
        auto *buttons = new QHBoxLayout;
        buttons->addStretch(1);
        buttons->addWidget(command1);
        layout->addLayout(buttons);

        data1_ = openSettings(QStringLiteral("settings"), dbOpenDynaset);
        fillList();

        limitNameKeys(combo_->lineEdit(), [this] { return combo_->currentText(); });
        // Choosing or typing a name moves the recordset to that row.
        connect(combo_, &QComboBox::currentTextChanged, this, [this](const QString &text) {
            ResumeNext onError;
            if (hasRows())
                onError([&] { data1_.FindFirst(QStringLiteral("name = '") + text + QStringLiteral("'")); });
        });
        connect(command1, &QPushButton::released, this, [this] {
            if (loadsetting(data1_, combo_->currentText()) != LoadOutcome::NoRows)
                unloadSelf(this);
        });
    }

protected:
    void showEvent(QShowEvent *event) override
    {
        QWidget::showEvent(event);
        ResumeNext onError;
        if (hasRows())
            onError([&] { combo_->setEditText(data1_.FieldText(QStringLiteral("name"))); });
    }

private:
    bool hasRows() const
    {
        ResumeNext onError;
        bool rows = false;
        onError([&] { rows = data1_.RecordCount() > 0; });
        return rows;
    }

    void fillList()
    {
        ResumeNext onError;
        if (!hasRows())
            return;
        QStringList names;
        onError([&] {
            for (data1_.MoveFirst(); !data1_.Eof(); data1_.MoveNext())
                names << data1_.FieldText(QStringLiteral("name"));
            data1_.MoveFirst();
        });
        const QSignalBlocker quiet(combo_);
        combo_->addItems(names);
    }

    QComboBox *combo_ = nullptr;
    Recordset data1_;
};

}  // namespace

void registerNamedSettingsForms()
{
    registerForm(QStringLiteral("saveset"), [] { return new Saveset; });
    registerForm(QStringLiteral("loadset"), [] { return new Loadset; });
}

}  // namespace kw
