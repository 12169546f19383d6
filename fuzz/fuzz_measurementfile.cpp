// A ".mes" or ".emc" file as any bytes: the load the menu makes, its failure handling (the file
// closed again, no box), and a drawing pass over whatever the load left, as the redraw after it
// would make one. Afterwards nothing stays open on the file and a good file loads again.
//
// KW_FUZZ_WRITE_SEEDS=<folder> makes the program's own writers put a small .mes and two .emc there
// and ends: that is how the seeds in fuzz/corpus/measurementfile were made.

#include "platform/onerror.h"
#include "platform/progdir.h"
#include "platform/recordset.h"
#include "plot/drawplot.h"
#include "plot/plotform.h"
#include "shell/state.h"
#include "store/appdb.h"
#include "store/measurementfile.h"
#include "support/fuzzsupport.h"

#include <QDir>
#include <QFile>
#include <cmath>
#include <cstdlib>

namespace {

// Lines and texts go nowhere, but each line passes the device conversion a screen makes.
class NullSurface : public kw::Surface {
public:
    double deviceWidth() const override { return 1000; }
    double deviceHeight() const override { return 700; }
    void clear() override {}
    void line(double x1, double y1, double x2, double y2, int) override
    {
        const double xs[] = {toDeviceX(x1), toDeviceX(x2), toDeviceY(y1), toDeviceY(y2)};
        for (double x : xs)
            if (std::isnan(x))
                std::abort();
        ++lines;
    }
    void print(const QString &) override {}
    long lines = 0;
};

class NullPlot : public kw::PlotForm {
public:
    kw::Surface &picture1() override { return p1; }
    kw::Surface &picture2() override { return p2; }
    kw::Surface &picture3() override { return p3; }
    void setCaption(const QString &) override {}
    QString caption() const override { return {}; }
    void setLogBox(bool, bool) override {}
    void setUnitLabel(const QString &) override {}
    void setDistanceLabel(bool, const QString &) override {}
    void setMemoryLabel(const QString &) override {}
    void setButtons(bool, bool, bool) override {}
    void showPicture() override {}
    NullSurface p1, p2, p3;
};

kw::Database applicationDatabase()
{
    static kw::Database db;
    if (!db.isSet()) {
        const QString target = kw::programFile(QStringLiteral("default.mdb"));
        QFile::copy(qEnvironmentVariable("KW_DEFAULT_MDB", QStringLiteral(KW_FUZZ_DEFAULT_MDB)), target);
        QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner);
        db = kw::OpenDatabase(target);
    }
    return db;
}

void removeFile(const QString &path)
{
    for (const char *tail : {"", "-wal", "-shm", "-journal"})
        QFile::remove(path + QLatin1String(tail));
}

// What the load command does around the reader: a failure ends it silently with the file closed.
bool loadAsTheMenuDoes(const QString &path)
{
    kw::st.measurefile = path;
    try {
        kw::ReadMeasurementFile();
        kw::st.redrawflag = 1;
        return true;
    } catch (const kw::VbError &) {
        kw::ResumeNext on;
        on([] { kw::st.rs2.Close(); });
        on([] { kw::st.measdb.Close(); });
        return false;
    }
}

void writeSeeds(const QString &folder)
{
    using namespace kw;
    QDir().mkpath(folder);
    // A live trace of six points with an average and a max hold limit of four points each.
    resetState();
    st.db = applicationDatabase();
    st.measurefile = folder + QStringLiteral("/live.mes");
    removeFile(st.measurefile);
    st.pointcount = 6;
    st.freqstart = 30.0f;
    st.freqstop = 80.0f;
    st.centerfreq = 55.0f;
    st.span = 50;
    for (int i = 0; i <= 6; ++i) {
        st.sampledata[size_t(i)] = int16_t(-100 - 7 * i);
        st.averagedata[size_t(i)] = int16_t(-150 + 3 * i);
        st.maxholddata[size_t(i)] = int16_t(-80 - i);
        st.memorydata[size_t(i)] = int16_t(-120);
    }
    st.limitnrave = 2;
    st.limitnrmax = 1;
    st.unit = QStringLiteral("dBµV");
    st.headline = QStringLiteral("Bench 'A'");
    CreateMeasurementFile();
    WriteMeasurementFile();

    // EMC runs, a Step test and a Sweep + Step test (drawn as stems), each header with three rows,
    // two of them marked, and ambient levels.
    st.ambient = 1;
    for (const auto &[name, runmode] : {std::pair{"/step.emc", 1}, std::pair{"/sweep.emc", 0}}) {
        st.measurefile = folder + QLatin1String(name);
        removeFile(st.measurefile);
        st.testname = QStringLiteral("radiated");
        st.runmode = uint8_t(runmode);
        CreateMeasurementFile();
        WriteEmcHeader();
        Database run = OpenDatabase(st.measurefile);
        run.Execute(QStringLiteral("insert into measurement (Frequency, Sample_dBmW, Average_dBmW, Maxhold_dBmW, QPeak_dBmW, "
                                   "memory_dBmW, Ambient_H_dBmW, Ambient_V_dBmW) values "
                                   "(40, 1, -1000, -50, -70, -60, -90, -95), (50, 0, -1000, -1000, -1000, -62, -90, -1000), "
                                   "(60, 1, -55, -45, -52, -55, -90, -92)"));
        run.Close();
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    const QString seeds = qEnvironmentVariable("KW_FUZZ_WRITE_SEEDS");
    if (!seeds.isEmpty()) {
        kw::fuzz::prepare();
        writeSeeds(seeds);
        std::exit(0);
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QString good = [] {
        kw::fuzz::prepare();
        const QString folder = kw::fuzz::workDirectory() + QStringLiteral("/good");
        writeSeeds(folder);
        return folder + QStringLiteral("/live.mes");
    }();
    kw::fuzz::prepare();
    static NullPlot plot;
    kw::setPlotForm(&plot);
    kw::st.db = applicationDatabase();

    const QString path = kw::fuzz::workDirectory() + QStringLiteral("/input.mes");
    removeFile(path);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(reinterpret_cast<const char *>(data), qint64(size)) != qint64(size))
        std::abort();
    file.close();

    loadAsTheMenuDoes(path);
    kw::DrawPlot();
    // Nothing stays open on the file, and the next load of a good file works as ever.
    if (kw::st.measdb.isSet())
        std::abort();
    if (!loadAsTheMenuDoes(good) || kw::st.pointcount != 6 || kw::st.freqstart != 30.0f || kw::st.freqstop != 80.0f ||
        kw::st.filemode != 1)
        std::abort();
    return 0;
}
