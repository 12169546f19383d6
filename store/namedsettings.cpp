#include "store/namedsettings.h"

#include "link/commands.h"
#include "platform/dialogs.h"
#include "platform/onerror.h"
#include "platform/recordset.h"
#include "platform/vbformat.h"
#include "shell/state.h"

namespace kw {

namespace {

const QChar kCr(13);

// The columns beside the name, in the table's order, with the field each comes from. The two
// limit columns are crossed: averagename holds the max hold limit and maxholdname the average
// limit. Stored settings rely on it, so it stays crossed both ways.
template <class Visit>
void eachColumn(Visit &&visit)
{
    visit(QStringLiteral("centerfreq"), st.centerfreq);
    visit(QStringLiteral("reflevel"), st.reflevel);
    visit(QStringLiteral("attenuator"), st.attenuator);
    visit(QStringLiteral("bandwith"), st.bandwith);
    visit(QStringLiteral("videofilter"), st.videofilter);
    visit(QStringLiteral("span"), st.span);
    visit(QStringLiteral("unit"), st.unit);
    visit(QStringLiteral("correctionon"), st.correctionon);
    visit(QStringLiteral("configname"), st.configname);
    visit(QStringLiteral("readmode"), st.readmode);
    visit(QStringLiteral("viewsample"), st.viewsample);
    visit(QStringLiteral("viewaverage"), st.viewaverage);
    visit(QStringLiteral("viewmaxhold"), st.viewmaxhold);
    visit(QStringLiteral("viewb"), st.viewb);
    visit(QStringLiteral("viewab"), st.viewab);
    visit(QStringLiteral("viewlimitmax"), st.viewlimitmax);
    visit(QStringLiteral("viewlimitave"), st.viewlimitave);
    visit(QStringLiteral("averagename"), st.limitnrmax);
    visit(QStringLiteral("maxholdname"), st.limitnrave);
    visit(QStringLiteral("tgon"), st.tgon);
    visit(QStringLiteral("tglevel"), st.tglevel);
    visit(QStringLiteral("calc"), st.calc);
}

QVariant toVariant(float v) { return QVariant(double(v)); }
QVariant toVariant(const QString &v) { return QVariant(v); }
template <class Int>
QVariant toVariant(Int v) { return QVariant(qlonglong(v)); }

void fromField(const Recordset &rs, const QString &column, float &field) { field = vbCSng(rs.FieldNumber(column)); }
void fromField(const Recordset &rs, const QString &column, QString &field) { field = rs.FieldText(column); }
void fromField(const Recordset &rs, const QString &column, int16_t &field) { field = vbCInt(rs.FieldNumber(column)); }
void fromField(const Recordset &rs, const QString &column, int32_t &field) { field = vbCLng(rs.FieldNumber(column)); }
void fromField(const Recordset &rs, const QString &column, uint8_t &field) { field = vbCByte(rs.FieldNumber(column)); }

}  // namespace

QString overwriteQuestion(const QString &name)
{
    return QStringLiteral("Setting exist ( ") + name + QStringLiteral(" )") + kCr + kCr + QStringLiteral("Overwrite?") +
           kCr + kCr;
}

void writesettingrow(Recordset &rs)
{
    ResumeNext onError;
    eachColumn([&](const QString &column, const auto &field) { onError([&] { rs.SetField(column, toVariant(field)); }); });
}

void readsettingrow(Recordset &rs)
{
    ResumeNext onError;
    eachColumn([&](const QString &column, auto &field) { onError([&] { fromField(rs, column, field); }); });
}

bool savesetting(Recordset &data1, const QString &name)
{
    ResumeNext onError;
    const QString trimmed = vbTrim(name);
    // A name with a quote makes the criterion fail: the last search's answer then stands.
    onError([&] { data1.FindFirst(QStringLiteral("name like '") + trimmed + QStringLiteral("'")); });
    bool noMatch = true;
    onError([&] { noMatch = data1.NoMatch(); });
    if (noMatch) {
        onError([&] { data1.AddNew(); });
    } else {
        if (dialogs().message(QStringLiteral("Save setting"), overwriteQuestion(trimmed), Buttons::YesNo) == Answer::No)
            return false;
        onError([&] { data1.Edit(); });
    }
    onError([&] { data1.SetField(QStringLiteral("name"), trimmed); });
    writesettingrow(data1);
    onError([&] { data1.Update(); });
    return true;
}

LoadOutcome loadsetting(Recordset &data1, const QString &name)
{
    ResumeNext onError;
    int rows = 0;
    onError([&] { rows = data1.RecordCount(); });
    if (rows <= 0)
        return LoadOutcome::NoRows;
    const QString trimmed = vbTrim(name);
    onError([&] { data1.FindFirst(QStringLiteral("name like '") + trimmed + QStringLiteral("'")); });
    bool noMatch = true;
    onError([&] { noMatch = data1.NoMatch(); });
    if (noMatch) {
        dialogs().message(QStringLiteral("load setting"), QStringLiteral("Setting not exist ( ") + trimmed + QStringLiteral(" )"),
                          Buttons::Ok);
        return LoadOutcome::NotFound;
    }
    readsettingrow(data1);
    refreshforms();
    return LoadOutcome::Loaded;
}

}  // namespace kw
