#include "editors/pointedit.h"

#include "levels/correctiontables.h"
#include "platform/onerror.h"
#include "platform/vbformat.h"
#include "shell/state.h"

#include <set>

namespace kw {

namespace {

QString numberColumn(Family family) { return QString::fromUtf8(familyText(family).numberColumn); }

QString frequencyEquals(float frequency) { return QStringLiteral("frequency = ") + vbTrim(vbStr(frequency)); }

// Finds the point of the frequency and opens it for writing, or starts a new one of the definition.
void openPoint(Family family, Recordset &rs, EditorData &heads, float frequency)
{
    ResumeNext onError;
    onError([&] { rs.FindFirst(frequencyEquals(frequency)); });
    if (onError.test([&] { return rs.NoMatch(); })) {
        onError([&] { rs.AddNew(); });
        onError([&] { rs.SetField(numberColumn(family), heads.rows().Field(numberColumn(family))); });
    } else {
        onError([&] { rs.Edit(); });
    }
}

}  // namespace

DefinitionPoints readDefinitionPoints(EditorData &points)
{
    DefinitionPoints out;
    if (!points.hasRows())
        return out;
    try {
        Recordset &rs = points.rows();
        rs.MoveFirst();
        while (!rs.Eof()) {
            out.emplace_back(float(rs.Field(QStringLiteral("frequency")).toDouble()),
                             float(rs.Field(QStringLiteral("level_dbmw")).toDouble()));
            rs.MoveNext();
        }
        rs.MoveFirst();
    } catch (const VbError &) {
    }
    return out;
}

double editorNumber(const QString &text)
{
    QString t = text;
    t.replace(QChar(st.decimalchar), QLatin1Char('.'));
    return vbVal(t);
}

float storedLevel(const LevelView &view, double shown)
{
    if (view.component)
        return float(shown * view.sign);
    return float(shown - view.offset);
}

void storePoint(Family family, EditorData &points, EditorData &heads, const QString &frequencyText,
                const QString &levelText, const LevelView &view)
{
    ResumeNext onError;
    Recordset &rs = points.rows();
    const float frequency = float(editorNumber(frequencyText));
    openPoint(family, rs, heads, frequency);
    onError([&] { rs.SetField(QStringLiteral("frequency"), double(frequency)); });
    onError([&] { rs.SetField(QStringLiteral("level_dbmw"), double(storedLevel(view, editorNumber(levelText)))); });
    onError([&] { rs.Update(); });
    points.refresh();
    pointsChanged(family);
}

void deletePoint(Family family, EditorData &points, float frequency)
{
    ResumeNext onError;
    Recordset &rs = points.rows();
    onError([&] { rs.FindFirst(frequencyEquals(frequency)); });
    onError([&] { rs.Delete(); });
    points.refresh();
    pointsChanged(family);
}

int commonFrequencies(const DefinitionPoints &present, const PointTable &table)
{
    std::set<float> have;
    for (const auto &p : present)
        have.insert(p.first);
    int n = 0;
    for (const auto &p : table.points)
        n += have.count(float(p.first)) ? 1 : 0;
    return n;
}

int importPoints(Family family, EditorData &points, EditorData &heads, const PointTable &table,
                 const LevelView &view, bool replace)
{
    if (!heads.hasRows() || !points.rows().isOpen())
        return 0;
    int written = 0;
    try {
        Recordset &rs = points.rows();
        if (replace && points.hasRows()) {
            rs.MoveFirst();
            while (!rs.Eof()) {
                rs.Delete();
                rs.MoveNext();
            }
        }
        const QVariant owner = heads.rows().Field(numberColumn(family));
        std::set<float> seen;
        for (const auto &[frequency, level] : table.points) {
            const float f = float(frequency);
            // The second row of a step at one frequency is a row of its own.
            const bool step = !seen.insert(f).second;
            if (!step)
                rs.FindFirst(frequencyEquals(f));
            if (step || rs.NoMatch()) {
                rs.AddNew();
                rs.SetField(numberColumn(family), owner);
            } else {
                rs.Edit();
            }
            rs.SetField(QStringLiteral("frequency"), double(f));
            rs.SetField(QStringLiteral("level_dbmw"), double(storedLevel(view, level)));
            rs.Update();
            ++written;
        }
    } catch (const VbError &) {
    }
    points.refresh();
    pointsChanged(family);
    return written;
}

void pointsChanged(Family family)
{
    if (family == Family::Component)
        correctiontablesedited();
}

}  // namespace kw
