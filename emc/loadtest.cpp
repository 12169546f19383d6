#include "emc/loadtest.h"

#include "emc/emchooks.h"
#include "levels/correctiontables.h"
#include "levels/units.h"
#include "platform/onerror.h"
#include "shell/state.h"

namespace kw {

namespace {

struct LimitChoice {
    int32_t &number;
    int16_t &log;
    float &distance;
    QString &name;
    uint8_t &view;
};

// "limitnr = " + number on LimitHead; without a row the limit is "Not set" and not shown.
void chooselimit(const Recordset &test, const char *column, LimitChoice limit)
{
    ResumeNext onError;
    bool found = false;
    onError([&] {
        const int32_t number = int32_t(test.FieldNumber(QLatin1String(column)));
        Recordset head = st.db.OpenRecordset(QStringLiteral("LimitHead"), dbOpenSnapshot);
        head.FindFirst(QStringLiteral("limitnr = ") + QString::number(number));
        if (head.NoMatch())
            return;
        found = true;
        limit.number = number;
        onError([&] { limit.log = head.Field(QStringLiteral("loga")).toBool() ? -1 : 0; });
        onError([&] { limit.distance = float(head.FieldNumber(QStringLiteral("distance"))); });
        onError([&] { limit.name = head.FieldText(QStringLiteral("limitname")); });
        limit.view = 1;
    });
    if (!found) {
        limit.number = 0;
        limit.name = QStringLiteral("Not set");
        limit.log = 0;
        limit.distance = 0.0f;
        limit.view = 0;
    }
}

void chooseconfiguration(const Recordset &test)
{
    ResumeNext onError;
    bool found = false;
    onError([&] {
        const QString name = test.FieldText(QStringLiteral("config"));
        Recordset config = st.db.OpenRecordset(QStringLiteral("config"), dbOpenSnapshot);
        config.FindFirst(QStringLiteral("configname like '") + name + QStringLiteral("'"));
        if (config.NoMatch())
            return;
        found = true;
        st.configname = config.FieldText(QStringLiteral("configname"));
        st.correctionon = 1;
        static const char *const columns[] = {"devicea", "deviceb", "devicec", "deviced", "devicee"};
        for (size_t slot = 0; slot < 5; ++slot)
            onError([&] { st.devicenr[slot] = int32_t(config.FieldNumber(QLatin1String(columns[slot]))); });
        st.configdist = configurationdistance(st.devicenr[0]);
    });
    if (!found) {
        st.configdist = 0.0f;
        st.correctionon = 0;
    }
}

}  // namespace

void loadtest()
{
    ResumeNext onError;
    Recordset test;
    onError([&] {
        test = st.db.OpenRecordset(QStringLiteral("test"), dbOpenSnapshot);
        test.FindFirst(QStringLiteral("name like '") + vbTrim(st.testname) + QStringLiteral("'"));
        if (test.NoMatch())
            test.MoveFirst();
    });
    if (!test.isOpen())
        return;
    const auto number = [&](const char *column) { return test.FieldNumber(QLatin1String(column)); };
    const auto flag = [&](const char *column) { return test.Field(QLatin1String(column)).toBool(); };

    onError([&] { st.testname = test.FieldText(QStringLiteral("Name")); });
    chooseconfiguration(test);
    st.viewsample = 0;
    chooselimit(test, "peak", {st.limitnrmax, st.lmaxlog, st.lmaxdist, st.maxholdname, st.viewlimitmax});
    chooselimit(test, "average", {st.limitnrave, st.lavelog, st.lavedist, st.averagename, st.viewlimitave});
    onError([&] {
        const bool quasipeak = number("peakdet") == 1;
        st.detmaxhold = 1;
        st.detqpeak = quasipeak ? 1 : 0;
    });
    onError([&] {
        st.detaverage = flag("avdet") ? 1 : 0;
        st.viewaverage = st.detaverage;
    });
    onError([&] {
        static const int16_t filters[] = {400, 120, 9};
        const double index = number("rbw");
        if (index >= 0 && index <= 2)
            st.bandwith = filters[int(index)];
    });
    onError([&] { chooseunit(test.FieldText(QStringLiteral("unit")), true, true); });
    onError([&] { st.reflevel = float(number("ref")); });
    onError([&] { st.attenuator = float(number("atten")); });
    onError([&] { st.runmode = vbCByte(number("mode")); });

    if (st.reloadtest == 1) {
        st.reloadtest = 0;
        onError([&] { st.freqstop = float(number("stopfreq")); });
        onError([&] { st.freqstart = float(number("startfreq")); });
        st.centerfreq = st.freqstart;
        st.viewaverage = st.detaverage;
        st.viewmaxhold = st.detmaxhold;
        st.viewqpeak = st.detqpeak;
        if (st.runmode == 1) {
            st.viewb = 0;
            st.mode = 1;
        } else if (st.runmode == 0) {
            st.viewb = 1;
            st.mode = 2;
        }
    }

    st.span = 1000;
    onError([&] { st.meastime = vbCInt(number("meastime")); });
    onError([&] { st.limitbezug = vbCByte(number("limitbezug")); });
    onError([&] { st.leveldist = float(number("leveldist")); });
    onError([&] { st.polhorizontal = flag("horizontal"); });
    onError([&] { st.polvertical = flag("vertical"); });
    // A database below version 1.1 has no column ambient: the flag keeps its value.
    onError([&] { st.ambient = flag("ambient") ? 1 : 0; });

    if (st.ambient == 1) {
        st.viewhorizontal = st.polhorizontal ? 1 : 0;
        st.viewvertical = st.polvertical ? 1 : 0;
        st.calcon = 1;
        st.viewambient = 1;
    } else {
        st.viewhorizontal = 0;
        st.viewvertical = 0;
        st.calcon = 0;
    }
    test.Close();
    if (emcHooks().testLoaded)
        emcHooks().testLoaded();
}

}  // namespace kw
