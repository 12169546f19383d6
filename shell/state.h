#pragma once
// The shared state record: the program's one picture of the analyser, the view and the workplace.
// Every routine reads and writes it directly; there is no analyser object. One thread uses it.

#include "platform/recordset.h"

#include <QString>
#include <array>
#include <cstdint>

class QSqlDatabase;

namespace kw {

constexpr int kTraceSize = 2049;  // valid indexes 0..2048, of which 1..pointcount are used
using Trace = std::array<int16_t, kTraceSize>;

struct State {
    // ---- Instrument settings, as last sent to or read from the analyser
    float centerfreq = 500.0f;
    float reflevel = -30.0f;
    float attenuator = 10.0f;
    int16_t span = 1000;
    int16_t bandwith = 400;
    uint8_t videofilter = 0;
    uint8_t dbperdiv = 10;
    uint8_t readmode = 0;
    uint8_t vmstart = 0;
    uint8_t vmtrace = 0;
    uint8_t calc = 0;
    uint8_t tgon = 0;
    float tglevel = -50.0f;
    float triggervalue = -30.0f;
    uint8_t triggerrun = 0;
    uint8_t triggerprint = 0;
    uint8_t memorynumber = 1;
    uint8_t ucflag = 0;

    // ---- Link state
    int16_t portopen = 0;
    int16_t connectionstate2 = 0;
    int16_t comport = 2;
    int32_t baudrate = 19200;
    uint8_t unitfound = 0;
    QString modelname;
    QString firmware;
    uint8_t serialerror = 0;
    uint8_t serialquiet = 0;
    QString serialerrortext;
    QString command;
    QString reply;
    uint8_t serialtimeout = 4;
    float waitstart = 0.0f;
    uint8_t rdretry = 0;
    uint8_t sendretry = 0;
    uint8_t warmupvalue = 0;
    uint8_t warmupon = 0;
    uint8_t transmissiondebug = 0;
    uint8_t debugclicks = 0;
    double noisevalue = 50;
    uint8_t busycursor = 0;

    // ---- Trace data (levels in counts: 2.5 counts to the dB, 0 counts = 0 dBmW)
    int32_t pointcount = 2001;
    Trace rawblock{};
    Trace sampledata{};
    Trace averagedata{};
    Trace maxholddata{};
    Trace memorydata{};
    double sampledate = 0;
    double averagedate = 0;
    double maxholddate = 0;
    double memorydate = 0;
    int16_t grafikmin = 1000;
    int16_t grafikmax = -1000;
    float peakfreq = 0.0f;
    int16_t peaklevel = -1000;
    uint8_t filemode = 0;
    float freqstart = 0.0f;
    float freqstop = 1000.0f;

    // ---- View and evaluation, the flags saved with a measurement
    uint8_t viewsample = 1;
    uint8_t viewaverage = 0;
    uint8_t viewmaxhold = 0;
    uint8_t viewb = 0;
    uint8_t viewab = 0;
    uint8_t viewqpeak = 1;
    uint8_t viewlimitave = 0;
    uint8_t viewlimitmax = 0;
    uint8_t correctionon = 0;
    QString configname = QStringLiteral("Not set");
    int32_t limitnrmax = 0;
    int32_t limitnrave = 0;
    QString averagename;
    QString maxholdname;
    QString unit = QStringLiteral("dBmW");  // 20 characters
    float unitoffset = 0.0f;
    uint8_t mode = 0;
    uint8_t ambient = 1;
    QString headline = QStringLiteral("Vorlane Instruments");
    QString note = QStringLiteral(" ");
    QString measext = QStringLiteral(".mes");

    // ---- Quasi-peak constants, replaced from the database
    int16_t tauf30 = 2;
    int16_t tauf1000 = 2;
    int16_t tent30 = 320;
    int16_t tent1000 = 1100;

    // ---- Application and form state
    QString databasefile;  // 150 characters on disk, blank-padded
    float dbversion = 1.0f;
    QString automessfile;
    int32_t autostoreinterval = 60;
    uint8_t autostoreon = 0;
    double autostorenext = 0;
    uint8_t autostoreprint = 0;
    int32_t autostorecount = 0;       // number of the next AutoStore file; 0 gives no number
    uint8_t liveread = 0;
    uint8_t redrawflag = 0;
    uint8_t stoprun = 0;
    uint8_t tick20 = 0;
    uint8_t decimalchar = 46;
    std::array<QString, 14> digits{};  // rows 1..13 used, each 8 characters
    uint8_t digitcount = 10;
    uint8_t carriedbyte = 0;

    // Saved form placement in twips, 1-based as the table of placements numbers it.
    std::array<int16_t, 18> formpos{};

    // Check boxes of the tool bar, mirrored here so that the link can clear them without a widget.
    uint8_t ckrm = 0;
    uint8_t ckauto = 0;
    QString caption;

    // ---- Instrument link (further fields)

    // ---- Level processing
    float configdist = 0.0f;          // metres, of the antenna in slot a of the configuration; 0 unknown
    float lmaxdist = 0.0f;            // metres the peak limit was defined for
    float lavedist = 0.0f;            // metres the average limit was defined for; kept, never used
    float distancecorrection = 0.0f;  // dB, worked out once per trace or step
    std::array<int32_t, 5> devicenr{};  // losnr of slots a..e; below 1 is an empty slot
    // For each slot the two table rows around the last frequency asked: low f, high f, low, high.
    std::array<std::array<float, 4>, 5> corrsegment{};
    float correction = 0.0f;          // dB, the result of correctionat
    // The point tables of slots b..e (index 1..4), read-only snapshots opened once a trace; slot a
    // reads through the shared rs.
    std::array<Recordset, 5> slotrs{};

    // ---- Live measurement
    // Nothing beyond liveread, redrawflag and the trace data above: the cycle keeps no state.

    // ---- EMC test
    QString testname;             // the test in work, kept between the forms
    uint8_t runmode = 0;          // 0 Sweep + Step, 1 Step
    bool polhorizontal = false;   // the test measures in horizontal / L position
    bool polvertical = false;     // ... in vertical / N position
    uint8_t secondpass = 0;       // 0: a pass creates the rows of measurement; 1: they exist and are edited
    uint8_t ambientphase = 0;     // 0 DUT on, 1 ambient horizontal, 2 ambient vertical
    bool polarisationh = true;    // the horizontal position is being measured
    uint8_t detmaxhold = 0;
    uint8_t detqpeak = 0;
    uint8_t detaverage = 0;
    int16_t meastime = 1;         // dwell per sweep slice, seconds
    float leveldist = 0.0f;       // dB; a row is judged at its level minus this
    uint8_t limitbezug = 0;       // 0 the peak limit judges, else the average limit
    uint8_t reloadtest = 0;       // the emc form loads the test at its next repaint
    double stepsize = 0.4;        // MHz
    double stepfreq = 0.0;        // MHz
    int16_t stepcounter = 0;      // steps since the last time shown
    double steptimebase = 0.0;    // date: start of the timed period
    float runstart = 0.0f;        // band of the test while a pass moves freqstart / freqstop
    float runstop = 0.0f;
    float doneupto = 0.0f;        // merge state of a sweep pass
    float nextrowfreq = 0.0f;
    float limitmark = 0.0f;
    double qpstate = 0.0;         // the quasi-peak model's capacitor, linear amplitude

    // ---- Definition editors: the name in work, kept from one form to the next
    QString currentlimit;
    QString currentcomponent;
    QString currentconfig;

    // ---- Persistence
    Database db;        // the application database, open from the load to the unload of the main window
    Recordset rs;       // short-lived recordsets of the routines that read tables
    Recordset rs2;
    Database measdb;    // the open measurement file

    // ---- Display and print
    uint8_t logaxis = 0;          // the "Log" box of grafik
    float decadelow = 0.0f;       // frequencies at the edges of a logarithmic plot, from the last draw
    float decadehigh = 0.0f;
    float decadestep = 0.001f;
    uint8_t drawbusy = 0;         // a drawing pass runs; refuses re-entry
    uint8_t cursorfresh = 1;      // the last pass wiped the cursor lines
    // The two crosshairs: x 0..1000000 across, y in plot units; the old fields are where the lines
    // stand now, so that the inverting mode can take them away again.
    int32_t cursor1x = 100000;
    int32_t cursor1y = 0;
    int32_t cursor2x = 200000;
    int32_t cursor2y = 0;
    int32_t cursor1oldx = 100000;
    int32_t cursor1oldy = 0;
    int32_t cursor2oldx = 200000;
    int32_t cursor2oldy = 0;
    uint8_t cursorgrab = 0;       // 0 none, 1 or 2: the cursor the mouse holds
    uint8_t cursorsactive = 1;    // mouse handling of the plot on
    float cursor1freq = 0.0f;     // MHz, as last shown
    float cursor1level = 0.0f;    // display unit, as last shown
    uint8_t economic = 0;         // the "Economic" box: thinned reading of files
    uint8_t economicstep = 20;
    int16_t limitlow = 2000;      // limit extent seen in the last pass, in dB
    int16_t limithigh = -2000;
    // Read by the plot, set by the limit, configuration, file and EMC forms.
    int16_t lmaxlog = 0;          // 0 or -1: the limit is interpolated logarithmically in frequency
    int16_t lavelog = 0;
    QString measurefile;
    double dat = 0;               // date of the measurement shown from a file
    uint8_t viewhorizontal = 0;
    uint8_t viewvertical = 0;
    uint8_t calcon = 0;
    uint8_t viewambient = 0;
    int16_t calcoffset = 0;       // dB
    uint8_t previewopen = 0;
    // The report's options, for the run of the program only.
    uint8_t printvertical = 0;    // portrait, with the notes under the plot
    uint8_t printcursor = 0;
    uint8_t printcolor = 1;
    uint8_t printnotes = 0;
    uint8_t printdate = 1;
    uint8_t printbusy = 0;        // a report or preview pass runs; refuses re-entry
    uint8_t limitnameprinted = 0; // the limit in work has its name on the page
};

// The one record of the program.
extern State st;

// Back to the start values of the load of the main window (tests use it between cases).
void resetState();

}  // namespace kw
