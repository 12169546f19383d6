#include "plot/printforms.h"

#include "platform/dialogs.h"
#include "platform/twips.h"
#include "platform/vbformat.h"
#include "plot/drawplot.h"
#include "plot/grafik.h"
#include "plot/report.h"
#include "plot/resultspage.h"
#include "shell/forms.h"
#include "shell/menu.h"
#include "shell/state.h"

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kw {

namespace {

constexpr int kHeadlineKeys = 60;  // keys are taken while the trimmed headline is not longer

const QString kSetprn = QStringLiteral("setprn");
const QString kPrinte = QStringLiteral("printe");

QCheckBox *checkBox(QWidget *parent, const char *name, const char *caption)
{
    auto *box = new QCheckBox(QString::fromLatin1(caption), parent);
    box->setObjectName(QString::fromLatin1(name));
    return box;
}

QPushButton *button(QWidget *parent, const char *name, const char *caption)
{
    auto *b = new QPushButton(QString::fromLatin1(caption), parent);
    b->setObjectName(QString::fromLatin1(name));
    return b;
}

void unloadBoth()
{
    unloadForm(kPrinte);
    unloadForm(kSetprn);
}

}  // namespace

Setprn::Setprn(QWidget *parent) : QWidget(parent)
{
    setObjectName(kSetprn);
    setWindowTitle(QStringLiteral("Printer settings"));
    auto *label1 = new QLabel(QStringLiteral("Headline"), this);
    label1->setObjectName(QStringLiteral("Label1"));
    text1_ = new QLineEdit(this);
    text1_->setObjectName(QStringLiteral("Text1"));
    text1_->installEventFilter(this);
    check2_ = checkBox(this, "Check2", "Vertical");
    check1_ = checkBox(this, "Check1", "Print Cursor");
    check7_ = checkBox(this, "Check7", "Color");
    check6_ = checkBox(this, "Check6", "Notes");
    check5_ = checkBox(this, "Check5", "Date");
    QPushButton *print = button(this, "Command1", "&Print");
    QPushButton *cancel = button(this, "Command2", "&Cancel");
    QPushButton *pdfButton = button(this, "Command3", "P&DF...");

    auto *layout = new QGridLayout(this);
    layout->addWidget(label1, 0, 0, 1, 2);
    layout->addWidget(text1_, 1, 0, 1, 3);
    layout->addWidget(check2_, 2, 0);
    layout->addWidget(check1_, 2, 1);
    layout->addWidget(check7_, 2, 2);
    layout->addWidget(check6_, 3, 0);
    layout->addWidget(check5_, 3, 1);
    layout->addWidget(resultsOption(this, [this] { refresh(); }), 3, 2);
    layout->addWidget(print, 4, 0);
    layout->addWidget(cancel, 4, 1);
    layout->addWidget(pdfButton, 4, 2);

    connect(check2_, &QCheckBox::clicked, this, [this] { option(check2_, st.printvertical); });
    connect(check1_, &QCheckBox::clicked, this, [this] { option(check1_, st.printcursor); });
    connect(check7_, &QCheckBox::clicked, this, [this] { option(check7_, st.printcolor); });
    connect(check6_, &QCheckBox::clicked, this, [this] { option(check6_, st.printnotes); });
    connect(check5_, &QCheckBox::clicked, this, [this] { option(check5_, st.printdate); });
    connect(print, &QPushButton::clicked, this, [] {
        PrintReport();
        unloadBoth();
    });
    connect(cancel, &QPushButton::clicked, this, [] { unloadBoth(); });
    connect(pdfButton, &QPushButton::clicked, this, [this] { pdf(); });
}

Setprn::~Setprn() { unloadForm(kPrinte); }

void Setprn::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!placed_) {
        placed_ = true;
        // At the top left of the main frame.
        if (QWidget *sub = parentWidget())
            sub->move(0, 0);
    }
    refresh();
}

void Setprn::refresh()
{
    if (text1_->text() != st.headline)
        text1_->setText(st.headline);
    check2_->setChecked(st.printvertical == 1);
    check1_->setChecked(st.printcursor == 1);
    check7_->setChecked(st.printcolor == 1);
    check6_->setChecked(st.printnotes == 1);
    check5_->setChecked(st.printdate == 1);
    DrawPreview();
}

void Setprn::option(QCheckBox *box, uint8_t &field)
{
    field = box->isChecked() ? 1 : 0;
    // The landscape preview has no notes: there is nothing to draw anew.
    if (box == check6_ && st.printvertical != 1)
        return;
    refresh();
}

void Setprn::storeHeadline()
{
    st.headline = vbRTrim(text1_->text());
    refresh();
}

bool Setprn::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != text1_)
        return QWidget::eventFilter(watched, event);
    if (event->type() == QEvent::FocusOut) {
        storeHeadline();
    } else if (event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            storeHeadline();
            return true;
        }
        // Keys that type (backspace too) stop once the headline is past its length; the mouse
        // can still cut it shorter.
        const bool types = key->key() == Qt::Key_Backspace || (!key->text().isEmpty() && key->text().at(0).isPrint());
        if (types && vbRTrim(text1_->text()).size() > kHeadlineKeys)
            return true;
    }
    return QWidget::eventFilter(watched, event);
}

void Setprn::pdf()
{
    const auto chosen = dialogs().saveFile(QStringLiteral("Save report as PDF"), QStringLiteral("PDF (*.pdf)|*.pdf"),
                                           QDir::homePath());
    if (!chosen || chosen->trimmed().isEmpty())
        return;
    QString path = *chosen;
    if (QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".pdf");
    printReportToPdf(path);
    if (!QFileInfo(path).isFile() || QFileInfo(path).size() == 0)
        dialogs().message(QStringLiteral("PDF"), QStringLiteral("The report could not be written to ") + path);
}

Printe::Printe(QWidget *parent) : QWidget(parent)
{
    setObjectName(kPrinte);
    setWindowTitle(QStringLiteral("Print Preview"));
    r_ = new PictureBox(QStringLiteral("r"), this);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(r_);
    r_->surface().setJoinedLines(true);
    st.previewopen = 1;
    previewArea() = PreviewArea{&r_->surface(), [this] { r_->update(); }};
    previewDrawing() = &DrawPreview;
}

Printe::~Printe()
{
    st.previewopen = 0;
    previewArea() = PreviewArea{};
    previewDrawing() = nullptr;
}

void Printe::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (placed_)
        return;
    placed_ = true;
    if (QWidget *sub = parentWidget())
        sub->setGeometry(twipsToPixelsX(1000), twipsToPixelsY(1600), twipsToPixelsX(5700), twipsToPixelsY(8000));
}

void Printe::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    // The picture fills the form before the preview takes its scale.
    r_->setGeometry(rect());
    r_->surface().resize(width(), height());
    DrawPreview();
}

void registerReportForms()
{
    registerForm(kSetprn, [] { return new Setprn; });
    registerForm(kPrinte, [] { return new Printe; });
}

void showPrintSettings()
{
    if (QWidget *form = showForm(kSetprn))
        if (auto *settings = qobject_cast<Setprn *>(form))
            settings->refresh();
}

void connectPrintMenu(Mdi &window)
{
    onMenu(window, QStringLiteral("mnuprint"), [](Mdi &) {
        if (st.busycursor == 1)
            return;
        showPrintSettings();
    });
}

}  // namespace kw
