#include "live/livepanel.h"

#include "link/commands.h"
#include "live/detec.h"
#include "live/measur.h"
#include "live/track.h"
#include "platform/twips.h"
#include "shell/forms.h"
#include "shell/mdi.h"
#include "shell/state.h"
#include "shell/uihooks.h"

#include <QAction>
#include <QButtonGroup>
#include <QGroupBox>
#include <QGridLayout>
#include <QMdiSubWindow>
#include <QRadioButton>

namespace kw {

namespace {
const char *const kPanels[] = {"measur", "track", "detec"};
}

LivePanel::LivePanel(const QString &name, const QString &caption, int leftSlot, QWidget *parent)
    : QWidget(parent), leftSlot_(leftSlot)
{
    setObjectName(name);
    setWindowTitle(caption);
    uiHooks().refreshForms = &refreshPanels;
    uiHooks().definitionListsChanged = &refreshPanelLists;
}

void LivePanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (placed_)
        return;
    placed_ = true;
    // The Load: place the frame's child window by the saved Left, Top and window state.
    auto *sub = qobject_cast<QMdiSubWindow *>(parentWidget());
    if (!sub)
        return;
    const auto &pos = st.formpos;
    sub->adjustSize();
    sub->move(twipsToPixelsX(pos[size_t(leftSlot_)]), twipsToPixelsY(pos[size_t(leftSlot_) + 1]));
    if (pos[size_t(leftSlot_) + 2] == 1)
        sub->showMinimized();
    else if (pos[size_t(leftSlot_) + 2] == 2)
        sub->showMaximized();
}

void LivePanel::storePlacement() const
{
    const QWidget *sub = parentWidget();
    if (!sub)
        return;
    auto &pos = st.formpos;
    pos[size_t(leftSlot_) + 2] = int16_t(sub->isMinimized() ? 1 : sub->isMaximized() ? 2 : 0);
    if (sub->isMinimized() || sub->isMaximized())
        return;
    const auto store = [](int16_t &slot, int twips) {
        if (twips >= -32768 && twips <= 32767)
            slot = int16_t(twips);
    };
    store(pos[size_t(leftSlot_)], pixelsToTwipsX(sub->x()));
    store(pos[size_t(leftSlot_) + 1], pixelsToTwipsY(sub->y()));
}

QButtonGroup *optionArray(QWidget *container, const QString &name, const QStringList &captions, int columns)
{
    auto *group = new QButtonGroup(container);
    group->setObjectName(name);
    auto *grid = new QGridLayout(container);
    compact(grid);
    const int rows = (int(captions.size()) + columns - 1) / columns;
    for (int i = 0; i < captions.size(); ++i) {
        auto *b = new QRadioButton(captions[i], container);
        b->setObjectName(name);
        b->setProperty("Index", i);
        group->addButton(b, i);
        grid->addWidget(b, i % rows, i / rows);
    }
    return group;
}

void compact(QLayout *layout)
{
    layout->setContentsMargins(4, 2, 4, 2);
    layout->setSpacing(2);
}

void setOption(QButtonGroup *group, int index)
{
    if (QAbstractButton *b = group->button(index)) {
        b->setChecked(true);
        return;
    }
    // A value with no button: none is set.
    group->setExclusive(false);
    for (QAbstractButton *b : group->buttons())
        b->setChecked(false);
    group->setExclusive(true);
}

void numberBoxKey(int &key, const std::function<void()> &onReturn)
{
    if (key == ',' || key == '.')
        key = st.decimalchar;
    if (key == 13)
        onReturn();
    const bool digit = key >= '0' && key <= '9';
    if (!digit && key != st.decimalchar && key != 8 && key != 45)
        key = 0;
}

void restartCalculation()
{
    if (st.calc == 1)
        setcalcon();
}

void repaintPanel(const QString &name)
{
    if (auto *panel = qobject_cast<LivePanel *>(loadedForm(name)))
        panel->repaintFromRecord();
}

void refreshPanels()
{
    for (const char *name : kPanels) {
        auto *panel = qobject_cast<LivePanel *>(loadedForm(QString::fromLatin1(name)));
        const QWidget *sub = panel ? panel->parentWidget() : nullptr;
        if (panel && !(sub && (sub->isMinimized() || sub->isMaximized())))
            panel->repaintFromRecord();
    }
}

void refreshPanelLists()
{
    for (const char *name : kPanels)
        if (auto *panel = qobject_cast<LivePanel *>(loadedForm(QString::fromLatin1(name))))
            panel->refreshLists();
    refreshPanels();
}

void storePanelPlacements()
{
    for (const char *name : kPanels)
        if (auto *panel = qobject_cast<LivePanel *>(loadedForm(QString::fromLatin1(name))))
            panel->storePlacement();
}

void registerLiveForms()
{
    registerForm(QStringLiteral("measur"), [] { return new Measur; });
    registerForm(QStringLiteral("track"), [] { return new Track; });
    registerForm(QStringLiteral("detec"), [] { return new Detec; });
}

void connectPanelMenu(Mdi &window)
{
    const std::pair<const char *, const char *> entries[] = {
        {"Measurement", "measur"}, {"Detectors", "detec"}, {"Tracking", "track"}};
    for (const auto &[entry, form] : entries) {
        if (QAction *action = window.menuEntry(QString::fromLatin1(entry))) {
            const QString name = QString::fromLatin1(form);
            QObject::connect(action, &QAction::triggered, &window, [name] { showForm(name); });
        }
    }
}

}  // namespace kw
