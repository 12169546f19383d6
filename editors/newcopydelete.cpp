#include "editors/newcopydelete.h"

#include "levels/correctiontables.h"
#include "platform/dialogs.h"
#include "platform/onerror.h"
#include "platform/vbformat.h"
#include "shell/uihooks.h"

namespace kw {

namespace {

QString utf8(const char *text) { return QString::fromUtf8(text); }

// Tells the live chain and the panels that definitions changed under them: their lists of
// limits and configurations, and the chain they take from the configuration, are repainted.
void definitionsChanged(Family family)
{
    if (family == Family::Component)
        correctiontablesedited();
    if (uiHooks().definitionListsChanged)
        uiHooks().definitionListsChanged();
    else if (uiHooks().refreshForms)
        uiHooks().refreshForms();
}

// The criterion that finds a point of the frequency, as the engine writes a single to text.
QString frequencyEquals(double frequency) { return QStringLiteral("frequency = ") + vbTrim(vbStr(float(frequency))); }

}  // namespace

void NewCopyData::open(const QString &databasefile)
{
    const FamilyText &t = familyText(family);
    const bool points = family != Family::Configuration;
    data1.setRecordSource(points ? (family == Family::Limit ? QStringLiteral("LimitDef") : QStringLiteral("losdef")) : QString());
    data2.setRecordSource(utf8(t.targetSource));
    data3.setRecordSource(utf8(t.headTable));
    data4.setRecordSource(points ? QStringLiteral("MeasureCount") : QString());
    data5.setRecordSource(data1.RecordSource());
    for (EditorData *data : {&data1, &data2, &data3, &data4, &data5}) {
        data->setDatabaseName(databasefile);
        if (!data->RecordSource().isEmpty())
            data->refresh();
    }
}

AddResult addNewDefinition(NewCopyData &d, const QString &typed, QString &targetText)
{
    const FamilyText &t = familyText(d.family);
    const bool numbered = d.family != Family::Configuration;
    const QString name = vbTrim(typed);
    if (name.isEmpty() || (numbered && !d.data4.hasRows()))
        return AddResult::Nothing;
    ResumeNext onError;
    Recordset &heads = d.data2.rows();
    // A name that breaks its own criterion leaves NoMatch as the last search left it.
    onError([&] { heads.FindFirst(nameLike(d.family, name)); });
    if (onError.test([&] { return !heads.NoMatch(); })) {
        dialogs().message(QStringLiteral("Add new"), utf8(t.existsText) + name + QStringLiteral(" )"));
        return AddResult::Exists;
    }
    Recordset &counter = d.data4.rows();
    const QString number = utf8(t.numberColumn);
    if (numbered) {
        onError([&] { counter.Edit(); });
        onError([&] { counter.SetField(number, counter.FieldNumber(number) + 1); });
        onError([&] { counter.Update(); });
    }
    onError([&] { heads.AddNew(); });
    onError([&] { heads.SetField(utf8(t.nameColumn), name); });
    if (numbered)
        onError([&] { heads.SetField(number, counter.Field(number)); });
    onError([&] { heads.Update(); });
    d.data3.refresh();
    d.data2.refresh();
    d.data2.findFirst(nameLike(d.family, name));
    targetText = d.data2.text(utf8(t.nameColumn));
    currentName(d.family) = targetText;
    definitionsChanged(d.family);
    return AddResult::Added;
}

namespace {

bool copyConfiguration(NewCopyData &d)
{
    if (!d.data3.hasRows() || !d.data2.hasRows())
        return false;
    try {
        Recordset &target = d.data2.rows();
        const Recordset &source = d.data3.rows();
        target.Edit();
        for (const char *column : {"devicea", "deviceb", "devicec", "deviced", "devicee"})
            target.SetField(utf8(column), source.Field(utf8(column)));
        target.Update();
    } catch (const VbError &) {
        return false;
    }
    definitionsChanged(d.family);
    return true;
}

}  // namespace

bool copyDefinition(NewCopyData &d)
{
    if (d.family == Family::Configuration)
        return copyConfiguration(d);
    if (!d.data5.hasRows())
        return false;
    const QString number = utf8(familyText(d.family).numberColumn);
    bool wrote = false;
    try {
        const QVariant targetNumber = d.data2.rows().Field(number);
        d.data1.setRecordSource(pointSource(d.family, vbTrim(d.data2.text(number))));
        d.data1.refresh();
        Recordset &target = d.data1.rows();
        if (d.data1.hasRows())
            target.MoveFirst();
        d.data5.setRecordSource(pointSource(d.family, vbTrim(d.data3.text(number))));
        d.data5.refresh();
        Recordset &source = d.data5.rows();
        // An empty source is a set at both ends: nothing to walk.
        while (!source.Eof()) {
            const QVariant frequency = source.Field(QStringLiteral("frequency"));
            target.FindFirst(frequencyEquals(frequency.toDouble()));
            if (target.NoMatch()) {
                target.AddNew();
                target.SetField(number, targetNumber);
                target.SetField(QStringLiteral("frequency"), frequency);
                target.SetField(QStringLiteral("level_dbmw"), source.Field(QStringLiteral("level_dbmw")));
                target.Update();
                wrote = true;
            }
            source.MoveNext();
        }
    } catch (const VbError &) {
        // The copy ends where it failed, without a word; what was added stays.
    }
    if (wrote)
        definitionsChanged(d.family);
    return wrote;
}

void DeleteData::open(const QString &databasefile)
{
    data1.setRecordSource(family == Family::Limit       ? QStringLiteral("LimitDef")
                         : family == Family::Component ? QStringLiteral("losdef")
                                                       : QString());
    data2.setRecordSource(utf8(familyText(family).deleteSource));
    for (EditorData *data : {&data1, &data2}) {
        data->setDatabaseName(databasefile);
        if (!data->RecordSource().isEmpty())
            data->refresh();
    }
}

bool deleteDefinition(DeleteData &d, QString &comboText)
{
    const FamilyText &t = familyText(d.family);
    Recordset &heads = d.data2.rows();
    ResumeNext onError;
    if (d.family != Family::Configuration)
        onError([&] { heads.FindFirst(nameLike(d.family, vbTrim(comboText))); });
    comboText.clear();
    if (!d.data2.hasRows())
        return false;
    if (d.family != Family::Configuration) {
        try {
            d.data1.setRecordSource(pointSource(d.family, vbTrim(d.data2.text(utf8(t.numberColumn)))));
            d.data1.refresh();
            Recordset &points = d.data1.rows();
            while (!points.Eof()) {
                points.Delete();
                points.MoveNext();
            }
        } catch (const VbError &) {
            return false;
        }
    }
    bool deleted = false;
    onError([&] {
        heads.Delete();
        deleted = true;
    });
    d.data2.refresh();
    if (d.data2.hasRows())
        comboText = d.data2.text(utf8(t.nameColumn));
    definitionsChanged(d.family);
    return deleted;
}

}  // namespace kw
