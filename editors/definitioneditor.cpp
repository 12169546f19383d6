#include "editors/definitioneditor.h"

#include "editors/editorwidgets.h"
#include "editors/pointedit.h"
#include "editors/pointfile.h"
#include "levels/correctiontables.h"
#include "platform/boundfields.h"
#include "platform/dialogs.h"
#include "platform/onerror.h"
#include "platform/vbformat.h"
#include "plot/grafik.h"
#include "shell/state.h"
#include "shell/uihooks.h"

#include <QApplication>
#include <QBoxLayout>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSaveFile>
#include <QTableWidget>
#include <string_view>

namespace kw {

namespace {

constexpr int kGridColumnPixels = 83;  // 1245 twips
constexpr int kMostListedLines = 20;

QString field(Family family, const char *which)
{
    const FamilyText &t = familyText(family);
    return QString::fromUtf8(std::string_view(which) == "name" ? t.nameColumn : t.numberColumn);
}

// The grid's keys reach the form before the table moves its cursor.
class PointGrid : public QTableWidget {
public:
    std::function<void(int row, int key)> onKey;
    using QTableWidget::QTableWidget;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        const int key = event->key();
        if (key == Qt::Key_Backspace || key == Qt::Key_Delete) {
            if (onKey)
                onKey(currentRow(), key);
            return;
        }
        QTableWidget::keyPressEvent(event);
        if (onKey && !event->text().isEmpty())
            onKey(currentRow(), key);
    }
};

}  // namespace

DefinitionEditor::DefinitionEditor(Family family, QWidget *parent) : EditorForm(parent), family_(family)
{
    const bool limit = family == Family::Limit;
    setObjectName(QString::fromUtf8(familyText(family).editorForm));
    setWindowTitle(limit ? QStringLiteral("Limit - definition") : QStringLiteral("Loss/Gain Components"));
    view_.component = !limit;

    auto *layout = new QGridLayout(this);
    combo1_ = pickList(QStringLiteral("DBCombo1"), &data2_, field(family, "name"), this,
                       [this](const QString &text) { chooseDefinition(text); });
    layout->addWidget(combo1_, 0, 0, 1, 3);

    auto *head = new QGridLayout;
    int row = 0;
    if (limit) {
        head->addWidget(new QLabel(QStringLiteral("Unit"), this), row, 0);
        combo2_ = pickList(QStringLiteral("DBCombo2"), &data3_, QStringLiteral("unitname"), this,
                           [this](const QString &text) { chooseUnit(text); });
        combo2_->setText(QStringLiteral("dBmW"));
        head->addWidget(combo2_, row++, 1);
    } else {
        const char *captions[] = {"Antenna", "Loss component", "Gain component"};
        for (int i = 0; i < 3; ++i) {
            option_[i] = new QRadioButton(QString::fromUtf8(captions[i]), this);
            option_[i]->setObjectName(QStringLiteral("Option1_%1").arg(i));
            head->addWidget(option_[i], row++, 0, 1, 2);
            connect(option_[i], &QRadioButton::clicked, this, [this, i] { chooseType(i); });
        }
    }
    text1_ = new NumberBox(QStringLiteral("Text1"), false, this);
    text2_ = new NumberBox(QStringLiteral("Text2"), true, this);
    head->addWidget(new QLabel(QStringLiteral("Freq. in MHz"), this), row, 0);
    head->addWidget(text1_, row++, 1);
    head->addWidget(new QLabel(QStringLiteral("Level"), this), row, 0);
    head->addWidget(text2_, row++, 1);
    connect(text1_, &NumberBox::entered, text2_, [this] { text2_->setFocus(); });
    connect(text2_, &NumberBox::entered, this, &DefinitionEditor::enterPoint);

    label3_ = new QLabel(QStringLiteral("Distance (m)"), this);
    label3_->setObjectName(QStringLiteral("Label3"));
    text3_ = new BoundTextBox(QStringLiteral("Text3"), QStringLiteral("Distance"), this);
    text4_ = new BoundTextBox(QStringLiteral("Text4"), QStringLiteral("Memo"), this);
    text5_ = new BoundTextBox(QStringLiteral("Text5"), QStringLiteral("dat"), this);
    text6_ = new BoundTextBox(QStringLiteral("Text6"), QStringLiteral("tim"), this);
    head->addWidget(label3_, row, 0);
    head->addWidget(text3_, row++, 1);
    head->addWidget(new QLabel(QStringLiteral("Memo:"), this), row, 0);
    head->addWidget(text4_, row++, 1);
    head->addWidget(new QLabel(QStringLiteral("Date"), this), row, 0);
    head->addWidget(text5_, row++, 1);
    head->addWidget(new QLabel(QStringLiteral("Time"), this), row, 0);
    head->addWidget(text6_, row++, 1);
    if (limit) {
        check1_ = new BoundCheckBox(QStringLiteral("Check1"), QStringLiteral("Radiated"), QStringLiteral("Radiated"), this);
        check2_ = new BoundCheckBox(QStringLiteral("Check2"), QStringLiteral("Logarithmic def."), QStringLiteral("loga"), this);
        head->addWidget(check1_, row++, 0, 1, 2);
        head->addWidget(check2_, row++, 0, 1, 2);
        connect(check1_, &QCheckBox::clicked, this, [this] { text3_->setEnabled(check1_->isChecked()); });
        connect(check2_, &QCheckBox::clicked, this, &DefinitionEditor::fillGrid);
    }
    for (BoundTextBox *box : {text3_, text4_, text5_, text6_}) {
        box->bind(&data2_);
        connect(box, &BoundTextBox::written, this, [this] {
            if (family_ == Family::Component && uiHooks().refreshForms)
                uiHooks().refreshForms();  // an antenna's distance is the configuration's
        });
    }
    if (check1_) {
        check1_->bind(&data2_);
        check2_->bind(&data2_);
    }
    auto *buttons = new QHBoxLayout;
    auto *importButton = new QPushButton(QStringLiteral("Import..."), this);
    importButton->setObjectName(QStringLiteral("cmdImport"));
    auto *exportButton = new QPushButton(QStringLiteral("Export..."), this);
    exportButton->setObjectName(QStringLiteral("cmdExport"));
    buttons->addWidget(importButton);
    buttons->addWidget(exportButton);
    head->addLayout(buttons, row++, 0, 1, 2);
    head->setRowStretch(row, 1);
    connect(importButton, &QPushButton::clicked, this, &DefinitionEditor::importFile);
    connect(exportButton, &QPushButton::clicked, this, &DefinitionEditor::exportFile);
    layout->addLayout(head, 1, 2);

    auto *grid = new PointGrid(0, 2, this);
    grid_ = grid;
    grid_->setObjectName(QStringLiteral("Grid1"));
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->setSelectionMode(QAbstractItemView::SingleSelection);
    grid_->horizontalHeader()->hide();
    grid_->verticalHeader()->hide();
    grid_->setColumnWidth(0, kGridColumnPixels);
    grid_->setColumnWidth(1, kGridColumnPixels);
    grid_->setFixedWidth(2 * kGridColumnPixels + 24);
    layout->addWidget(grid_, 1, 0, 1, 2);
    connect(grid_, &QTableWidget::cellClicked, this, [this](int r, int) { gridClicked(r); });
    grid->onKey = [this](int r, int key) { gridKey(r, key); };

    pic1_ = new PictureBox(QStringLiteral("Picture1"), this);
    pic2_ = new PictureBox(QStringLiteral("Picture2"), this);
    pic3_ = new PictureBox(QStringLiteral("Picture3"), this);
    pic2_->setFixedWidth(44);
    pic3_->setFixedHeight(18);
    pic1_->setMinimumSize(420, 200);
    auto *plot = new QGridLayout;
    plot->setSpacing(0);
    plot->addWidget(pic2_, 0, 0);
    plot->addWidget(pic1_, 0, 1);
    plot->addWidget(pic3_, 1, 1);
    layout->addLayout(plot, 2, 0, 1, 3);
    layout->setRowStretch(2, 1);
    resize(660, 560);

    // Load: every source on the database in use.
    data1_.setRecordSource(limit ? QStringLiteral("LimitDef") : QStringLiteral("losdef"));
    data2_.setRecordSource(limit ? QStringLiteral("select * from LimitHead order by limitname")
                                : QStringLiteral("select * from losHead order by losname"));
    data3_.setRecordSource(QStringLiteral("unit"));
    for (EditorData *d : {&data1_, &data2_, &data3_}) {
        d->setDatabaseName(st.databasefile);
        if (limit || d != &data3_)
            d->refresh();
    }
}

DefinitionEditor::~DefinitionEditor() = default;

QString DefinitionEditor::definitionName() { return data2_.text(field(family_, "name")); }

void DefinitionEditor::keepHead()
{
    for (BoundTextBox *box : {text3_, text4_, text5_, text6_})
        box->keepRow();
    if (check1_) {
        check1_->keepRow();
        check2_->keepRow();
    }
}

void DefinitionEditor::showHead()
{
    for (BoundTextBox *box : {text3_, text4_, text5_, text6_})
        box->showRow();
    if (check1_) {
        check1_->showRow();
        check2_->showRow();
    }
}

void DefinitionEditor::activate()
{
    keepHead();
    // Other forms may have added or removed definitions since this one last looked.
    data2_.refresh();
    const QString &current = currentName(family_);
    if (!vbTrim(current).isEmpty())
        data2_.findFirst(nameLike(family_, vbTrim(current)));
    paintForm();
}

void DefinitionEditor::deactivate()
{
    keepHead();
    if (data2_.hasRows())
        currentName(family_) = definitionName();
}

void DefinitionEditor::paintForm()
{
    const bool limit = family_ == Family::Limit;
    if (!data2_.hasRows() || (limit && !data3_.hasRows()))
        return;
    keepHead();
    showHead();
    combo1_->setText(definitionName());
    currentName(family_) = definitionName();
    data1_.setRecordSource(pointSource(family_, vbTrim(data2_.text(field(family_, "number")))));
    data1_.refresh();
    if (limit) {
        text3_->setEnabled(check1_->isChecked());
        const QString unit = data2_.text(QStringLiteral("limunit"));
        if (data3_.findFirst(QStringLiteral("unitname like '") + unit + QLatin1Char('\''))) {
            combo2_->setText(unit);
            ResumeNext onError;
            onError([&] { view_.offset = vbCInt(data3_.number(QStringLiteral("unitoffset"))); });
        } else {
            combo2_->setText(QStringLiteral("dBmW"));
            view_.offset = 0;
        }
    } else {
        const int type = int(data2_.number(QStringLiteral("lostyp")));
        if (type >= 0 && type <= 2)
            option_[type]->setChecked(true);
        label3_->setVisible(type == 0);
        text3_->setVisible(type == 0);
        if (type >= 0 && type <= 2)
            view_.sign = type == 2 ? -1 : 1;
    }
    fillGrid();
}

void DefinitionEditor::fillGrid()
{
    grid_->setRowCount(0);
    if (check2_)
        view_.logarithmic = check2_->isChecked();
    points_ = readDefinitionPoints(data1_);
    if (points_.empty())
        return;  // the old plot stays
    grid_->setRowCount(int(points_.size()));
    for (size_t i = 0; i < points_.size(); ++i) {
        grid_->setItem(int(i), 0, new QTableWidgetItem(vbCStr(points_[i].first)));
        grid_->setItem(int(i), 1, new QTableWidgetItem(vbFormat(float(view_.shown(points_[i].second)), QStringLiteral("###0.00"))));
    }
    definitionRange(points_, range_);
    drawDefinition({pic1_->surface(), pic2_->surface(), pic3_->surface()}, points_, range_, view_);
    for (PictureBox *p : {pic1_, pic2_, pic3_})
        p->update();
}

void DefinitionEditor::chooseDefinition(const QString &name)
{
    if (!data2_.hasRows())
        return;
    keepHead();
    if (data2_.findFirst(nameEquals(family_, name))) {
        data1_.setRecordSource(pointSource(family_, vbTrim(data2_.text(field(family_, "number")))));
        data1_.refresh();
        text1_->setText(QStringLiteral("0"));
        text2_->setText(QStringLiteral("0"));
        QApplication::beep();
    }
    paintForm();
}

void DefinitionEditor::chooseUnit(const QString &name)
{
    if (!data3_.hasRows() || !data2_.hasRows())
        return;
    if (data3_.findFirst(QStringLiteral("unitname = '") + vbTrim(name) + QLatin1Char('\''))) {
        writeBoundField(data2_, QStringLiteral("limunit"), vbTrim(name));
        ResumeNext onError;
        onError([&] { view_.offset = vbCInt(data3_.number(QStringLiteral("unitoffset"))); });
    }
    paintForm();
}

void DefinitionEditor::chooseType(int lostyp)
{
    label3_->setVisible(lostyp == 0);
    text3_->setVisible(lostyp == 0);
    if (data2_.hasRows()) {
        writeBoundField(data2_, QStringLiteral("lostyp"), lostyp);
        // Whether position A holds an antenna decides the configuration's distance.
        if (uiHooks().refreshForms)
            uiHooks().refreshForms();
    }
    paintForm();
}

void DefinitionEditor::enterPoint()
{
    // Without a definition there is nothing the point could belong to.
    if (!data2_.hasRows())
        return;
    storePoint(family_, data1_, data2_, text1_->text(), text2_->text(), view_);
    text1_->clear();
    text2_->clear();
    text1_->setFocus();
    fillGrid();
    QApplication::beep();
}

void DefinitionEditor::gridClicked(int row)
{
    if (!data1_.hasRows() || row < 0 || size_t(row) >= points_.size())
        return;
    if (!data1_.findFirst(QStringLiteral("frequency = ") + vbTrim(vbStr(points_[size_t(row)].first))))
        return;
    const float frequency = float(data1_.number(QStringLiteral("frequency")));
    const float level = float(view_.shown(data1_.number(QStringLiteral("level_dbmw"))));
    text1_->setText(vbCStr(frequency));
    text2_->setText(vbCStr(level));
}

void DefinitionEditor::gridKey(int row, int key)
{
    if (key != Qt::Key_Backspace && key != Qt::Key_Delete) {
        gridClicked(row);
        return;
    }
    if (!data1_.hasRows() || row < 0 || size_t(row) >= points_.size())
        return;
    deletePoint(family_, data1_, points_[size_t(row)].first);
    fillGrid();
}

QString DefinitionEditor::levelHeader()
{
    if (family_ == Family::Limit)
        return QStringLiteral("Level (") + vbTrim(combo2_->Text()) + QLatin1Char(')');
    switch (int(data2_.number(QStringLiteral("lostyp")))) {
    case 0: return QStringLiteral("Antenna factor (dB)");
    case 2: return QStringLiteral("Gain (dB)");
    default: return QStringLiteral("Loss (dB)");
    }
}

void DefinitionEditor::importFile()
{
    if (!data2_.hasRows())
        return;
    const QString title = QStringLiteral("Import");
    const auto path = dialogs().openFile(title, QStringLiteral("Text tables (*.csv *.txt)|*.csv;*.txt|All files (*.*)|*.*"),
                                         QString());
    if (!path || path->isEmpty())
        return;
    QFile file(*path);
    if (!file.open(QIODevice::ReadOnly)) {
        dialogs().message(title, QStringLiteral("The file can't be read:\n\n") + *path);
        return;
    }
    const PointTable table = readPointTable(file.readAll());
    const QString fileName = QFileInfo(*path).fileName();
    if (!table.errors.isEmpty()) {
        QStringList listed = table.errors.mid(0, kMostListedLines);
        if (table.errors.size() > kMostListedLines)
            listed << QStringLiteral("... and %1 more").arg(table.errors.size() - kMostListedLines);
        dialogs().message(title, QStringLiteral("Nothing was imported: these lines of %1 can't be read.\n\n").arg(fileName) +
                                     listed.join(QLatin1Char('\n')));
        return;
    }
    const QString name = definitionName();
    const DefinitionPoints present = readDefinitionPoints(data1_);
    const int n = int(table.points.size());
    bool replace = false;
    if (present.empty()) {
        const QString text = QStringLiteral("%1 points of %2 go into \"%3\".").arg(n).arg(fileName, name);
        if (dialogs().message(title, text, Buttons::OkCancel) != Answer::Ok)
            return;
    } else {
        const int common = commonFrequencies(present, table);
        const QString text =
            QStringLiteral("\"%1\" has %2 points; %3 holds %4, %5 of them at frequencies \"%1\" has.\n\n"
                           "Yes: replace the %2 points by the %4 of the file.\n"
                           "No: merge: add the points of the file; the %5 of equal frequency take the file's level.\n"
                           "Cancel: change nothing.")
                .arg(name)
                .arg(present.size())
                .arg(fileName)
                .arg(n)
                .arg(common);
        const Answer answer = dialogs().message(title, text, Buttons::YesNoCancel);
        if (answer != Answer::Yes && answer != Answer::No)
            return;
        replace = answer == Answer::Yes;
    }
    importPoints(family_, data1_, data2_, table, view_, replace);
    fillGrid();
}

void DefinitionEditor::exportFile()
{
    if (!data2_.hasRows())
        return;
    const QString title = QStringLiteral("Export");
    QString suggested = definitionName();
    for (QChar &c : suggested)
        if (QStringLiteral("\\/:*?\"<>|").contains(c))
            c = QLatin1Char('_');
    const auto path = dialogs().saveFile(title, QStringLiteral("Text tables (*.csv)|*.csv"), suggested + QStringLiteral(".csv"));
    if (!path || path->isEmpty())
        return;
    const DefinitionPoints points = readDefinitionPoints(data1_);
    const LevelView view = view_;
    const QByteArray bytes = writePointTable(
        levelHeader(), points, [view](float stored) { return view.shown(stored); },
        [view](double shown) { return storedLevel(view, shown); });
    QSaveFile file(*path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        dialogs().message(title, QStringLiteral("The file can't be written:\n\n") + *path);
}

}  // namespace kw
