#include "editors/definitiondialogs.h"

#include "editors/editorwidgets.h"
#include "platform/vbformat.h"
#include "shell/state.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace kw {

namespace {

QString nameField(Family family) { return QString::fromUtf8(familyText(family).nameColumn); }

}  // namespace

NewCopyDialog::NewCopyDialog(Family family, QWidget *parent) : EditorForm(parent)
{
    const FamilyText &t = familyText(family);
    data_.family = family;
    setObjectName(QString::fromUtf8(t.newForm));
    setWindowTitle(QString::fromUtf8(t.newCaption));
    auto *layout = new QGridLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("New definition"), this), 0, 0);
    // A component's name has never been held to the rule: its check ran where it had no effect.
    text1_ = new NameBox(QStringLiteral("Text1"), family == Family::Component ? 0 : 80, this);
    text1_->setMinimumWidth(300);
    layout->addWidget(text1_, 0, 1);
    auto *add = new QPushButton(QStringLiteral("Add New"), this);
    add->setObjectName(QStringLiteral("Command1"));
    layout->addWidget(add, 0, 2);
    connect(add, &QPushButton::clicked, this, &NewCopyDialog::addNew);

    auto *frame = new QGroupBox(this);
    frame->setObjectName(QStringLiteral("Frame1"));
    auto *copyLayout = new QGridLayout(frame);
    combo1_ = pickList(QStringLiteral("DBCombo1"), &data_.data3, nameField(family), frame,
                       [this](const QString &text) { pickSource(text); });
    combo2_ = pickList(QStringLiteral("DBCombo2"), &data_.data2, nameField(family), frame,
                       [this](const QString &text) { pickTarget(text); });
    copyLayout->addWidget(combo1_, 0, 0);
    auto *arrow = new QLabel(QStringLiteral("\u2193"), frame);
    arrow->setAlignment(Qt::AlignCenter);
    copyLayout->addWidget(arrow, 1, 0);
    copyLayout->addWidget(combo2_, 2, 0);
    auto *copyButton = new QPushButton(QStringLiteral("Copy"), frame);
    copyButton->setObjectName(QStringLiteral("Command2"));
    copyLayout->addWidget(copyButton, 1, 1);
    layout->addWidget(frame, 1, 0, 1, 3);
    auto *viewButton = new QPushButton(QString::fromUtf8(t.viewCaption), this);
    viewButton->setObjectName(QStringLiteral("Command3"));
    layout->addWidget(viewButton, 2, 2);
    connect(copyButton, &QPushButton::clicked, this, &NewCopyDialog::copy);
    connect(viewButton, &QPushButton::clicked, this, &NewCopyDialog::view);
    data_.open(st.databasefile);
}

void NewCopyDialog::activate()
{
    const QString &current = currentName(data_.family);
    if (!vbTrim(current).isEmpty())
        data_.data2.findFirst(nameLike(data_.family, vbTrim(current)));
    paintForm();
}

void NewCopyDialog::deactivate() { currentName(data_.family) = vbTrim(combo2_->Text()); }

void NewCopyDialog::closeEvent(QCloseEvent *e)
{
    EditorForm::closeEvent(e);
    // Closing the dialog shows its target in the editor.
    if (!vbTrim(currentName(data_.family)).isEmpty())
        openEditor(data_.family);
}

void NewCopyDialog::paintForm()
{
    if (!data_.data2.hasRows() || !data_.data3.hasRows())
        return;
    combo1_->setText(data_.data3.text(nameField(data_.family)));
    combo2_->setText(data_.data2.text(nameField(data_.family)));
}

void NewCopyDialog::addNew()
{
    QString target;
    if (addNewDefinition(data_, text1_->text(), target) != AddResult::Added)
        return;
    combo2_->setText(target);
    if (!vbTrim(target).isEmpty()) {
        openEditor(data_.family);
        // The dialog stays in front for the next name.
        if (QWidget *frame = parentWidget())
            frame->raise();
        raise();
        activateWindow();
    }
}

void NewCopyDialog::copy() { copyDefinition(data_); }

void NewCopyDialog::view()
{
    currentName(data_.family) = vbTrim(combo2_->Text());
    if (!currentName(data_.family).isEmpty())
        openEditor(data_.family);
}

void NewCopyDialog::pickSource(const QString &text)
{
    if (data_.data3.hasRows())
        data_.data3.findFirst(nameLike(data_.family, text));
}

void NewCopyDialog::pickTarget(const QString &text)
{
    if (data_.data2.hasRows())
        data_.data2.findFirst(nameLike(data_.family, text));
}

DeleteDialog::DeleteDialog(Family family, QWidget *parent) : EditorForm(parent)
{
    const FamilyText &t = familyText(family);
    data_.family = family;
    setObjectName(QString::fromUtf8(t.deleteForm));
    setWindowTitle(QString::fromUtf8(t.deleteCaption));
    auto *layout = new QGridLayout(this);
    combo_ = new DBCombo(this);
    combo_->setObjectName(QStringLiteral("DBCombo2"));
    combo_->setRowSource(&data_.data2, nameField(family));
    combo_->setMinimumWidth(320);
    combo_->keyPress = [this](int &key) {
        if (key >= 32 && vbTrim(combo_->Text()).size() > 80)
            key = 0;
    };
    // Every key released, and a choice from the list, look the text up.
    connect(combo_->lineEdit(), &QLineEdit::textEdited, this, [this](const QString &text) { pick(text); });
    connect(combo_, &DBCombo::listChosen, this, [this] { pick(combo_->Text()); });
    layout->addWidget(combo_, 0, 0);
    auto *button = new QPushButton(QString::fromUtf8(t.deleteCaption), this);
    button->setObjectName(QStringLiteral("Command1"));
    layout->addWidget(button, 0, 1);
    connect(button, &QPushButton::clicked, this, &DeleteDialog::deleteNow);
    data_.open(st.databasefile);
}

QComboBox *DeleteDialog::combo() const { return combo_; }

void DeleteDialog::activate()
{
    combo_->refill();
    paintForm();
}

void DeleteDialog::paintForm()
{
    if (data_.data2.hasRows())
        combo_->setText(data_.data2.text(nameField(data_.family)));
}

void DeleteDialog::pick(const QString &text)
{
    if (data_.data2.hasRows())
        data_.data2.findFirst(nameEquals(data_.family, text));
}

void DeleteDialog::deleteNow()
{
    QString text = combo_->Text();
    deleteDefinition(data_, text);
    combo_->setText(text);
}

}  // namespace kw
