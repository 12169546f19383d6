#include "store/measurementfile.h"

#include "levels/units.h"
#include "platform/vbformat.h"
#include "shell/forms.h"
#include "shell/mdi.h"
#include "shell/state.h"

#include <QAction>
#include <QCoreApplication>
#include <functional>
#include <utility>

namespace kw {

namespace {

double number(const char *column) { return st.rs2.FieldNumber(QLatin1String(column)); }
QString text(const char *column) { return st.rs2.FieldText(QLatin1String(column)); }

using Reader = std::pair<const char *, std::function<void(const char *)>>;

// The view as the settings row holds it, in the order it is read. A column that can't be read
// ends the load there: what was read before it stays taken.
const std::vector<Reader> &viewColumns()
{
    static const std::vector<Reader> columns = {
        {"dat", [](const char *c) { st.dat = number(c); }},
        {"centerfreq", [](const char *c) { st.centerfreq = vbCSng(number(c)); }},
        {"reflevel", [](const char *c) { st.reflevel = vbCSng(number(c)); }},
        {"attenuator", [](const char *c) { st.attenuator = vbCSng(number(c)); }},
        {"bandwith", [](const char *c) { st.bandwith = vbCInt(number(c)); }},
        {"videofilter", [](const char *c) { st.videofilter = vbCByte(number(c)); }},
        {"span", [](const char *c) { st.span = vbCInt(number(c)); }},
        {"unit", [](const char *c) { st.unit = text(c); }},
        {"correctionon", [](const char *c) { st.correctionon = vbCByte(number(c)); }},
        {"configname", [](const char *c) { st.configname = text(c); }},
        {"readmode", [](const char *c) { st.readmode = vbCByte(number(c)); }},
        {"viewsample", [](const char *c) { st.viewsample = vbCByte(number(c)); }},
        {"viewaverage", [](const char *c) { st.viewaverage = vbCByte(number(c)); }},
        {"viewmaxhold", [](const char *c) { st.viewmaxhold = vbCByte(number(c)); }},
        {"viewb", [](const char *c) { st.viewb = vbCByte(number(c)); }},
        {"viewab", [](const char *c) { st.viewab = vbCByte(number(c)); }},
        {"viewqpeak", [](const char *c) { st.viewqpeak = vbCByte(number(c)); }},
        {"viewlimitmax", [](const char *c) { st.viewlimitmax = vbCByte(number(c)); }},
        {"viewlimitave", [](const char *c) { st.viewlimitave = vbCByte(number(c)); }},
        {"averagename", [](const char *c) { st.averagename = text(c); }},
        {"maxholdname", [](const char *c) { st.maxholdname = text(c); }},
        {"tgon", [](const char *c) { st.tgon = vbCByte(number(c)); }},
        {"tglevel", [](const char *c) { st.tglevel = vbCSng(number(c)); }},
        {"mode", [](const char *c) { st.mode = vbCByte(number(c)); }},
        {"lmaxdist", [](const char *c) { st.lmaxdist = vbCSng(number(c)); }},
        {"lavedist", [](const char *c) { st.lavedist = vbCSng(number(c)); }},
        {"configdist", [](const char *c) { st.configdist = vbCSng(number(c)); }},
        {"lmaxlog", [](const char *c) { st.lmaxlog = vbCInt(number(c)); }},
        {"lavelog", [](const char *c) { st.lavelog = vbCInt(number(c)); }},
        {"grafikmin", [](const char *c) { st.grafikmin = vbCInt(number(c)); }},
        {"grafikmax", [](const char *c) { st.grafikmax = vbCInt(number(c)); }},
        {"headline", [](const char *c) { st.headline = text(c); }},
        {"note", [](const char *c) { st.note = vbTrim(text(c)); }},
    };
    return columns;
}

void tickModeEntries(bool emcMode)
{
    Mdi *window = mdi();
    if (!window)
        return;
    if (QAction *a = window->menuEntry(QStringLiteral("mnuemc")))
        a->setChecked(emcMode);
    if (QAction *a = window->menuEntry(QStringLiteral("mnunormal")))
        a->setChecked(!emcMode);
}

// The windows of the mode the file was made in. Unlike the mode commands of the menu this
// neither erases the traces nor touches the view flags the file has just set.
void showWindowsOfMode()
{
    const QString panels[] = {QStringLiteral("measur"), QStringLiteral("track"), QStringLiteral("detec")};
    if (st.mode != 0) {
        st.testname = st.configname;
        for (const QString &name : panels)
            unloadForm(name);
        showForm(QStringLiteral("emc"));
        chooseunit(vbTrim(st.unit), true, true);
        tickModeEntries(true);
    } else {
        for (const QString &name : panels)
            showForm(name);
        unloadForm(QStringLiteral("emc"));
        tickModeEntries(false);
    }
    QCoreApplication::processEvents();
}

}  // namespace

void ReadMeasurementFile()
{
    st.measdb = OpenDatabase(vbRTrim(st.measurefile));
    st.rs2 = st.measdb.OpenRecordset(QStringLiteral("select * from settings"), dbOpenSnapshot);
    const int16_t version = vbCInt(number("vernr"));
    if (version == kMesVersion || version == kEmcVersion) {
        for (const auto &[column, read] : viewColumns())
            read(column);
        // Only an .emc file has written Ambient; a .mes file leaves the flag as it was.
        if (version == kEmcVersion)
            st.ambient = vbCByte(number("ambient"));
    }
    // An unknown version takes nothing from the row, and the load goes on with the view as it
    // stood; only the mode below comes from the file all the same.
    st.filemode = 1;
    showWindowsOfMode();
    st.mode = vbCByte(number("mode"));

    // The points stay in the file: only their count and the first and last frequency in order are
    // taken, so the frequency column is all that is read of up to 100,000 rows.
    st.rs2 = st.measdb.OpenRecordset(QStringLiteral("select frequency from measurement order by frequency"), dbOpenSnapshot);
    st.pointcount = st.rs2.RecordCount();
    st.rs2.MoveFirst();
    st.freqstart = vbCSng(number("frequency"));
    st.rs2.MoveLast();
    st.freqstop = vbCSng(number("frequency"));
    st.rs2.Close();
    st.measdb.Close();
}

}  // namespace kw
