#include "emc/testdialogs.h"

#include "platform/datacontrol.h"
#include "platform/dbcombo.h"
#include "platform/dialogs.h"
#include "platform/onerror.h"
#include "platform/vbformat.h"
#include "shell/forms.h"
#include "shell/state.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace kw {

namespace {

Data *testData(QWidget *form, int number)
{
    auto *data = new Data(form);
    data->setObjectName(QStringLiteral("Data%1").arg(number));
    data->setRecordSource(QStringLiteral("test"));
    data->setDatabaseName(st.databasefile);
    data->hide();
    ResumeNext onError;
    onError([&] { data->Refresh(); });
    return data;
}

QString nameCriterion(const QString &name) { return QStringLiteral("name like '") + name + QStringLiteral("'"); }

// A selection combo over the names of table test: keys are swallowed, Return and the list move
// its Data control to the name.
DBCombo *testCombo(QWidget *form, const char *name, Data *source)
{
    auto *combo = new DBCombo(form);
    combo->setObjectName(QLatin1String(name));
    combo->setMinimumContentsLength(28);
    combo->setRowSource(source, QStringLiteral("Name"));
    const auto find = [combo, source] {
        ResumeNext onError;
        onError([&] {
            if (source->hasCurrentRow())
                source->FindFirst(nameCriterion(combo->Text()));
        });
    };
    combo->keyPress = [find](int &key) {
        if (key == 13)
            find();
        key = 0;
    };
    QObject::connect(combo, &DBCombo::listChosen, form, find);
    if (source->hasCurrentRow())
        combo->setText(source->currentText(QStringLiteral("Name")));
    return combo;
}

QPushButton *button(QWidget *parent, const char *name, const QString &caption)
{
    auto *b = new QPushButton(caption, parent);
    b->setObjectName(QLatin1String(name));
    return b;
}

}  // namespace

NewTestForm::NewTestForm(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("newtest"));
    setWindowTitle(QStringLiteral("New / Copy Test"));
    data2_ = testData(this, 2);
    data3_ = testData(this, 3);
    if (!vbTrim(st.testname).isEmpty()) {
        ResumeNext onError;
        onError([&] { data2_->FindFirst(nameCriterion(vbTrim(st.testname))); });
    }
    text1_ = new QLineEdit(this);
    text1_->setObjectName(QStringLiteral("Text1"));
    text1_->setMaxLength(81);
    combo1_ = testCombo(this, "DBCombo1", data3_);
    combo2_ = testCombo(this, "DBCombo2", data2_);
    auto *command1 = button(this, "Command1", QStringLiteral("Add New"));
    auto *command2 = button(this, "Command2", QStringLiteral("Copy"));
    auto *command3 = button(this, "Command3", QStringLiteral("View Test"));

    auto *grid = new QGridLayout(this);
    grid->addWidget(new QLabel(QStringLiteral("New test"), this), 0, 0);
    grid->addWidget(text1_, 0, 1);
    grid->addWidget(command1, 0, 2);
    grid->addWidget(new QLabel(QStringLiteral("Copy from"), this), 1, 0);
    grid->addWidget(combo1_, 1, 1);
    grid->addWidget(new QLabel(QStringLiteral("to"), this), 2, 0);
    grid->addWidget(combo2_, 2, 1);
    grid->addWidget(command2, 2, 2);
    grid->addWidget(command3, 3, 2);

    connect(command1, &QPushButton::clicked, this, &NewTestForm::addNew);
    connect(command2, &QPushButton::clicked, this, &NewTestForm::copy);
    connect(command3, &QPushButton::clicked, this, [this] {
        rememberTarget();
        if (!vbTrim(st.testname).isEmpty())
            showForm(QStringLiteral("test"));
    });
}

void NewTestForm::closeEvent(QCloseEvent *event)
{
    rememberTarget();
    QWidget::closeEvent(event);
}

void NewTestForm::rememberTarget()
{
    const QString name = vbTrim(combo2_->Text());
    if (!name.isEmpty())
        st.testname = name;
}

void NewTestForm::addNew()
{
    const QString name = vbTrim(text1_->text());
    if (name.isEmpty())
        return;
    ResumeNext onError;
    bool exists = false;
    onError([&] {
        data2_->FindFirst(nameCriterion(name));
        exists = !data2_->recordset().NoMatch();
    });
    if (exists) {
        dialogs().message(QStringLiteral("Add new"), QStringLiteral("Configuration exist ( ") + name + QStringLiteral(" )"), Buttons::Ok);
        return;
    }
    onError([&] {
        data2_->AddNew();
        data2_->recordset().SetField(QStringLiteral("Name"), name);
        data2_->Update();
    });
    onError([&] { data3_->Refresh(); });
    onError([&] { data2_->Refresh(); });
    onError([&] { data2_->FindFirst(nameCriterion(name)); });
    if (data2_->hasCurrentRow())
        combo2_->setText(data2_->currentText(QStringLiteral("Name")));
    rememberTarget();
}

void NewTestForm::copy()
{
    if (!data2_->hasCurrentRow() || !data3_->hasCurrentRow())
        return;
    // Everything a run uses except the ambient column, which stays the target's own.
    static const char *const columns[] = {"config", "peak", "average", "startfreq", "stopfreq", "peakdet",
                                          "avdet", "rbw", "ref", "unit", "atten", "horizontal", "vertical",
                                          "mode", "leveldist", "meastime", "limitbezug"};
    ResumeNext onError;
    onError([&] {
        Recordset &target = data2_->recordset();
        target.Edit();
        for (const char *column : columns)
            target.SetField(QLatin1String(column), data3_->currentValue(QLatin1String(column)));
        target.Update();
        data2_->notifyRowMoved();
    });
}

DelTestForm::DelTestForm(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("deltest"));
    setWindowTitle(QStringLiteral("Delete test"));
    data2_ = testData(this, 2);
    combo2_ = testCombo(this, "DBCombo2", data2_);
    auto *command1 = button(this, "Command1", QStringLiteral("Delete"));
    auto *grid = new QGridLayout(this);
    grid->addWidget(combo2_, 0, 0);
    grid->addWidget(command1, 0, 1);
    connect(command1, &QPushButton::clicked, this, &DelTestForm::deleteTest);
}

void DelTestForm::deleteTest()
{
    ResumeNext onError;
    // The search is not tested: without the name the row the table stands on goes.
    onError([&] { data2_->FindFirst(nameCriterion(vbTrim(combo2_->Text()))); });
    combo2_->setText(QString());
    if (!data2_->hasCurrentRow())
        return;
    QString next;
    onError([&] {
        Recordset &rows = data2_->recordset();
        rows.Delete();
        rows.MoveNext();
        if (rows.Eof())
            rows.MoveLast();
        if (!rows.Eof() && !rows.Bof())
            next = rows.FieldText(QStringLiteral("Name"));
    });
    onError([&] { data2_->Refresh(); });
    if (!next.isEmpty())
        onError([&] { data2_->FindFirst(nameCriterion(next)); });
    if (data2_->hasCurrentRow())
        combo2_->setText(data2_->currentText(QStringLiteral("Name")));
}

}  // namespace kw
