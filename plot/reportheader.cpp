#include "plot/reportparts.h"

#include "platform/clock.h"
#include "platform/surface.h"
#include "platform/vbformat.h"
#include "plot/page.h"
#include "shell/state.h"

namespace kw {

namespace {

constexpr uint8_t kUnitColour = 5;
constexpr int kSecondColumn = 40;  // tab position of the second column on the notes sheet

// A trace tag in its colour, with the time of the trace when the report shows dates of a live
// measurement.
void tag(Surface &page, uint8_t colour, const QString &text, double date)
{
    page.foreColour = ink(colour);
    if (st.filemode == 0 && st.printdate == 1)
        page.printInline(text + QStringLiteral(": ") + vbGeneralDate(date) + QStringLiteral("   "));
    else
        page.printInline(text + QStringLiteral("   "));
}

void legend(Surface &page)
{
    const bool stepped = st.mode == 1 || st.mode == 2;
    const bool dated = st.filemode == 0 && st.printdate == 1;
    if (st.viewsample)
        tag(page, 2, QStringLiteral("Sam"), st.sampledate);
    if (st.viewaverage)
        tag(page, 9, QStringLiteral("Ave"), st.averagedate);
    if (st.viewmaxhold)
        tag(page, 12, st.mode == 0 ? QStringLiteral("Max.HLD") : QStringLiteral("Peak"), st.maxholddate);
    if (st.viewqpeak && stepped) {
        page.foreColour = ink(5);
        page.printInline(QStringLiteral("QPeak   "));
    }
    page.foreColour = ink(3);
    if (st.viewb) {
        if (dated)
            page.printInline(QStringLiteral("Mem: ") + vbGeneralDate(st.memorydate));
        else if (st.filemode == 0)
            page.printInline(QStringLiteral("Mem   "));
        else if (stepped)
            page.printInline(QStringLiteral("Sweep   "));
    }
    if (st.viewab)
        page.printInline(dated ? QStringLiteral("A-B: ") + vbGeneralDate(st.memorydate) : QStringLiteral("A-B   "));
}

// Tab(n): the start of the n-th character column of the line.
void tab(Surface &page, int column)
{
    page.currentX = page.scaleLeft() + double(column - 1) * page.textWidth(QStringLiteral("0"));
}

void columns(Surface &page, const QString &first, const QString &second)
{
    page.printInline(first);
    tab(page, kSecondColumn);
    page.print(second);
}

}  // namespace

void printHeaderLines(Surface &page)
{
    legend(page);
    page.foreColour = 0;
    page.print(QStringLiteral("      RBW: ") + vbFormat(int(st.bandwith), QStringLiteral("0")) + QStringLiteral("kHz"));
    if (st.printdate == 1) {
        page.print(QString());
        page.print(QStringLiteral("Print date: ") + vbGeneralDate(nowDate()));
    }
    page.print(QString());
    page.foreColour = ink(kUnitColour);
    QString line = QStringLiteral("Unit: ") + vbTrim(st.unit);
    if (st.configdist > 0.0f && st.correctionon == 1)
        line += QStringLiteral("    Distance from DUT: ") + vbStr(st.configdist) + QStringLiteral("m      ");
    if (st.mode > 0)
        line += QStringLiteral("    ") + vbTrim(st.testname);
    if (st.autostoreon == 1)
        line += QStringLiteral("    ") + vbTrim(st.measurefile);
    if (st.ucflag == 1)
        line += QStringLiteral("    UNCAL");
    page.print(line);
}

void printSettingColumns(Surface &page)
{
    page.foreColour = 0;
    columns(page, QStringLiteral("CF: ") + vbFormat(st.centerfreq, QStringLiteral("0.00")) + QStringLiteral("MHz"),
            QStringLiteral("SPAN: ") + vbFormat(int(st.span), QStringLiteral("0.0")) + QStringLiteral("MHz"));
    columns(page, QStringLiteral("RBW: ") + vbFormat(int(st.bandwith), QStringLiteral("0.00")) + QStringLiteral("kHz"),
            QStringLiteral("ATTN.: ") + vbFormat(st.attenuator, QStringLiteral("0.0")) + QStringLiteral("dB"));
    const double ref = double(st.reflevel) + double(st.unitoffset) + double(st.attenuator);
    columns(page, QStringLiteral("REF: ") + vbFormat(ref, QStringLiteral("###0.0")) + st.unit,
            vbFormat(int(st.dbperdiv), QStringLiteral("0")) + QStringLiteral("dB/div"));
    const QString tg = st.tgon == 1 ? QStringLiteral("TG: ") +
                                          vbFormat(double(st.tglevel) + double(st.unitoffset), QStringLiteral("###0.0")) +
                                          st.unit
                                    : QStringLiteral("TG: OFF");
    columns(page, QStringLiteral("Videofilter: ") + (st.videofilter ? QStringLiteral("On") : QStringLiteral("Off")), tg);
}

void printNotes(Surface &page, const PageStyle &style)
{
    page.foreColour = 0;
    page.print(QString());
    page.print(QString());
    page.setFont(style.font, style.notesHeading, true, true);
    page.print(QStringLiteral("Notes:"));
    page.setFont(style.font, style.notesText, false, false);
    page.print(QString());
    // The text as typed: carriage returns are passed over, and each line feed starts the next
    // line where the notes begin.
    const double left = page.currentX;
    const QString text = vbRTrim(st.note);
    QString run;
    for (const QChar c : text) {
        if (c == QLatin1Char('\r'))
            continue;
        if (c == QLatin1Char('\n')) {
            page.print(run);
            page.currentX = left;
            run.clear();
            continue;
        }
        run += c;
    }
    page.printInline(run);
}

}  // namespace kw
