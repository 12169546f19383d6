#include "plot/grafik.h"

#include "platform/twips.h"
#include "plot/cursorbuttons.h"
#include "plot/cursormouse.h"
#include "plot/cursors.h"
#include "plot/grid.h"
#include "plot/labelfont.h"
#include "shell/mdi.h"
#include "shell/state.h"
#include "shell/uihooks.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QResizeEvent>
#include <QVBoxLayout>

namespace kw {

namespace {

constexpr int kMinWidthTwips = 6000;
constexpr int kMinHeightTwips = 4500;
constexpr int kDefaultSizeTwips = 7200;

QLabel *label(QWidget *parent, const char *name, const QString &text, const QColor &colour = Qt::black)
{
    auto *l = new QLabel(text, parent);
    l->setObjectName(QString::fromLatin1(name));
    QPalette pal = l->palette();
    pal.setColor(QPalette::WindowText, colour);
    l->setPalette(pal);
    return l;
}

QRect twips(int left, int top, int width, int height)
{
    return QRect(twipsToPixelsX(left), twipsToPixelsY(top), std::max(1, twipsToPixelsX(width)),
                 std::max(1, twipsToPixelsY(height)));
}

// Picture1 takes the mouse for the cursors: a move over it (hovering too) and the double click.
class PlotPicture : public PictureBox {
public:
    explicit PlotPicture(QWidget *parent) : PictureBox(QStringLiteral("Picture1"), parent)
    {
        setMouseTracking(true);
        setCursor(Qt::CrossCursor);
    }

protected:
    void mouseMoveEvent(QMouseEvent *event) override
    {
        const QPointF at = event->position();
        const int pointer = cursorMouseMove(event->buttons().testFlag(Qt::LeftButton), surface().userX(at.x()),
                                            surface().userY(at.y()));
        if (pointer == kPointerCursor)
            setCursor(Qt::SizeAllCursor);
        else if (pointer == kPointerCrosshair)
            setCursor(Qt::CrossCursor);
    }
    void mouseDoubleClickEvent(QMouseEvent *) override { plotDoubleClick(); }
};

}  // namespace

PictureBox::PictureBox(const QString &name, QWidget *parent) : QWidget(parent)
{
    setObjectName(name);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void PictureBox::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.drawImage(0, 0, surface_.image());
}

void PictureBox::resizeEvent(QResizeEvent *event)
{
    surface_.resize(event->size().width(), event->size().height());
    QWidget::resizeEvent(event);
}

Grafik::Grafik(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("grafik"));
    setWindowTitle(QStringLiteral("Measurement Display"));
    setMinimumSize(twipsToPixelsX(kMinWidthTwips), twipsToPixelsY(kMinHeightTwips));

    pic1_ = new PlotPicture(this);
    pic2_ = new PictureBox(QStringLiteral("Picture2"), this);
    pic3_ = new PictureBox(QStringLiteral("Picture3"), this);
    pic4_ = new QWidget(this);
    pic4_->setObjectName(QStringLiteral("Picture4"));

    QFont small = pic4_->font();
    small.setPixelSize(10);
    pic4_->setFont(small);
    auto *panel = new QVBoxLayout(pic4_);
    panel->setContentsMargins(2, 2, 2, 2);
    panel->setSpacing(2);
    check1_ = new QCheckBox(QStringLiteral("Log"), pic4_);
    check1_->setObjectName(QStringLiteral("Check1"));
    check2_ = new QCheckBox(QStringLiteral("Economic"), pic4_);
    check2_->setObjectName(QStringLiteral("Check2"));
    const char *names[3] = {"Command1", "Command2", "Command3"};
    const char *captions[3] = {"CA -> PK", "CA = CF", "2 * CF"};
    panel->addWidget(label(pic4_, "Label1", QStringLiteral("Sample"), paletteColour(2)));
    panel->addWidget(label(pic4_, "Label2", QStringLiteral("Average"), paletteColour(9)));
    panel->addWidget(label(pic4_, "Label3", QStringLiteral("Max. Hold"), paletteColour(12)));
    panel->addWidget(label(pic4_, "Label9", QStringLiteral("QPeak"), paletteColour(5)));
    label4_ = label(pic4_, "Label4", QStringLiteral("Mem B"), paletteColour(3));
    panel->addWidget(label4_);
    label6_ = label(pic4_, "Label6", QString(), paletteColour(5));
    panel->addWidget(label6_);
    label11_ = label(pic4_, "Label11", QStringLiteral("UNCAL"), paletteColour(12));
    label11_->hide();
    panel->addWidget(label11_);
    panel->addWidget(check1_);
    panel->addWidget(check2_);
    const char *headings[3][2] = {{"Label7", "Cursor 1"}, {"Label10", "Cursor 2"}, {"Label8", "Cur. 1-2 (dB)"}};
    const int headingColours[3] = {5, 2, 0};
    const char *readouts[6] = {"freqa", "leva", "freqb", "levb", "freqab", "levab"};
    for (int i = 0; i < 3; ++i) {
        panel->addWidget(label(pic4_, headings[i][0], QString::fromLatin1(headings[i][1]), paletteColour(headingColours[i])));
        for (int j = 0; j < 2; ++j) {
            readout_[2 * i + j] = label(pic4_, readouts[2 * i + j], QString());
            panel->addWidget(readout_[2 * i + j]);
        }
    }
    for (int i = 0; i < 3; ++i) {
        command_[i] = new QPushButton(QString::fromLatin1(captions[i]), pic4_);
        command_[i]->setObjectName(QString::fromLatin1(names[i]));
        panel->addWidget(command_[i]);
    }
    panel->addStretch(1);
    // Label5, the distance caption, stands under the frequency labels.
    label5_ = label(this, "Label5", QString(), paletteColour(5));
    label5_->hide();

    check1_->setChecked(st.logaxis);
    check2_->setChecked(st.economic);
    connect(check1_, &QCheckBox::clicked, this, [](bool on) {
        st.logaxis = on;
        st.redrawflag = 1;
    });
    connect(check2_, &QCheckBox::clicked, this, [](bool on) {
        st.economic = on;
        st.redrawflag = 1;
    });
    connect(command_[0], &QPushButton::clicked, this, [] { cursorToPeak(); });
    connect(command_[1], &QPushButton::clicked, this, [] { centreOnCursor(); });
    connect(command_[2], &QPushButton::clicked, this, [] { doubleCentre(); });

    uiHooks().uncalVisible = [this](bool visible) { label11_->setVisible(visible); };
    // A new configuration changes the distance caption at once; whoever listened before still
    // hears of it.
    previousConfigurationHook_ = uiHooks().configurationChanged;
    uiHooks().configurationChanged = [this] {
        if (previousConfigurationHook_)
            previousConfigurationHook_();
        DistanceCaption();
    };
    applyLayout(false);
    // The load leaves the scales to the first resize; a pass may come before it, so set them.
    setHorizontalScales(*this);
    setPlotForm(this);
}

Grafik::~Grafik()
{
    if (plotForm() == this)
        setPlotForm(nullptr);
    uiHooks().uncalVisible = nullptr;
    uiHooks().configurationChanged = previousConfigurationHook_;
}

PictureBox *Grafik::pictureBox(int number) const
{
    return number == 1 ? pic1_ : number == 2 ? pic2_ : number == 3 ? pic3_ : nullptr;
}

void Grafik::applyLayout(bool withScales)
{
    const int w = std::max(pixelsToTwipsX(width()), kMinWidthTwips);
    const int h = std::max(pixelsToTwipsY(height()), kMinHeightTwips);
    pic2_->setGeometry(twips(0, 0, 600, h - 400));
    pic3_->setGeometry(twips(600, h - 800, w - 700, 400));
    pic4_->setGeometry(twips(w - 1200, 0, 1100, h - 800));
    pic1_->setGeometry(twips(600, 0, w - 1800, h - 800));
    label5_->setGeometry(twips(600, h - 400, w - 1800, 300));
    // A hidden widget hears of its new size only when shown; the surfaces need it now.
    for (PictureBox *box : {pic1_, pic2_, pic3_})
        box->surface().resize(box->width(), box->height());
    pic3_->surface().setFont(frequencyLabelFont(pic1_->width()));
    pic2_->surface().setFont(levelLabelFont(pic2_->width(), pic1_->height()));
    fitPanelFont();
    if (withScales) {
        setHorizontalScales(*this);
        st.redrawflag = 1;
    }
}

void Grafik::fitPanelFont()
{
    // Read-outs and buttons stay whole in a short panel: a smaller font before anything is cut.
    constexpr int kPanelPixels = 10;
    constexpr int kSmallestPanelPixels = 7;
    QFont font = pic4_->font();
    for (int pixels = kPanelPixels; pixels >= kSmallestPanelPixels; --pixels) {
        if (font.pixelSize() != pixels) {
            font.setPixelSize(pixels);
            pic4_->setFont(font);
        }
        if (pic4_->layout()->sizeHint().height() <= pic4_->height())
            return;
    }
}

void Grafik::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    // Only in the normal window state: nothing moves while minimised or maximised.
    const QWidget *frame = parentWidget() ? parentWidget() : this;
    if (!frame->isMinimized() && !frame->isMaximized())
        applyLayout(true);
}

void Grafik::closeEvent(QCloseEvent *event) { event->ignore(); }

void Grafik::setCaption(const QString &text)
{
    setWindowTitle(text);
    if (auto *sub = qobject_cast<QMdiSubWindow *>(parentWidget()))
        sub->setWindowTitle(text);
}

void Grafik::setLogBox(bool enabled, bool checked)
{
    check1_->setEnabled(enabled);
    check1_->setChecked(checked);
}

void Grafik::setUnitLabel(const QString &text) { label6_->setText(text); }

void Grafik::setDistanceLabel(bool visible, const QString &text)
{
    if (visible)
        label5_->setText(text);
    label5_->setVisible(visible);
}

void Grafik::setMemoryLabel(const QString &text)
{
    label4_->setText(text);
    label4_->repaint();
}

void Grafik::setButtons(bool peak, bool centre, bool twice)
{
    command_[0]->setEnabled(peak);
    command_[1]->setEnabled(centre);
    command_[2]->setEnabled(twice);
}

void Grafik::showPicture()
{
    pic1_->update();
    pic2_->update();
    pic3_->update();
}

void Grafik::showCursors(const CursorReadouts &readouts)
{
    const QString *texts[6] = {&readouts.freqa, &readouts.leva, &readouts.freqb,
                               &readouts.levb,  &readouts.freqab, &readouts.levab};
    for (int i = 0; i < 6; ++i)
        readout_[i]->setText(*texts[i]);
    pic1_->update();
}

Grafik *showGrafik(Mdi &window)
{
    if (auto *loaded = qobject_cast<Grafik *>(window.child(QStringLiteral("grafik")))) {
        window.showChild(loaded);
        return loaded;
    }
    auto *form = new Grafik;
    QMdiSubWindow *sub = window.showChild(form);
    // Placement in twips as saved: Left, Top, Width, Height at 2..5, the window state at 1.
    const auto &pos = st.formpos;
    const int w = pos[4] > 0 ? pos[4] : kDefaultSizeTwips;
    const int h = pos[5] > 0 ? pos[5] : kDefaultSizeTwips;
    sub->setGeometry(twipsToPixelsX(pos[2]), twipsToPixelsY(pos[3]), twipsToPixelsX(w), twipsToPixelsY(h));
    if (pos[1] == 1)
        sub->showMinimized();
    else if (pos[1] == 2)
        sub->showMaximized();
    return form;
}

void storeGrafikPlacement(Mdi &window)
{
    auto *form = window.child(QStringLiteral("grafik"));
    QWidget *sub = form ? form->parentWidget() : nullptr;
    if (!sub)
        return;
    auto &pos = st.formpos;
    pos[1] = int16_t(sub->isMinimized() ? 1 : sub->isMaximized() ? 2 : 0);
    // A plot minimised or maximised at the exit keeps the place it was given at the start.
    if (pos[1] != 0)
        return;
    // A value beyond 16 bits fails its conversion and leaves the slot as it was.
    const auto store = [](int16_t &slot, int twips) {
        if (twips >= -32768 && twips <= 32767)
            slot = int16_t(twips);
    };
    const QRect g = sub->geometry();
    store(pos[2], pixelsToTwipsX(g.left()));
    store(pos[3], pixelsToTwipsY(g.top()));
    store(pos[4], pixelsToTwipsX(g.width()));
    store(pos[5], pixelsToTwipsY(g.height()));
}

}  // namespace kw
