#include "editors/editordata.h"

#include "platform/onerror.h"
#include "platform/vbformat.h"

#include <QStringList>

namespace kw {

void EditorData::refresh()
{
    ResumeNext onError;
    const QString file = vbTrim(databaseName);
    if (!database_.isSet() || openedOn_ != file) {
        database_ = Database();
        onError([&] { database_ = OpenDatabase(file); });
        openedOn_ = file;
    }
    onError([&] { recordset.Close(); });
    recordset = Recordset();
    onError([&] { recordset = database_.OpenRecordset(recordSource, dbOpenDynaset); });
}

bool EditorData::hasRows() const
{
    try {
        return recordset.isOpen() && !(recordset.Bof() && recordset.Eof());
    } catch (const VbError &) {
        return false;
    }
}

QString EditorData::text(const QString &field) const
{
    try {
        const QVariant v = recordset.Field(field);
        return v.isNull() ? QString() : v.toString();
    } catch (const VbError &) {
        return QString();
    }
}

double EditorData::number(const QString &field) const
{
    try {
        return recordset.Field(field).toDouble();
    } catch (const VbError &) {
        return 0.0;
    }
}

bool EditorData::findFirst(const QString &criterion)
{
    try {
        recordset.FindFirst(criterion);
        return !recordset.NoMatch();
    } catch (const VbError &) {
        return false;
    }
}

QStringList EditorData::column(const QString &field)
{
    QStringList values;
    try {
        Recordset all = database_.OpenRecordset(recordSource, dbOpenSnapshot);
        while (!all.Eof()) {
            values << all.Field(field).toString();
            all.MoveNext();
        }
        all.Close();
    } catch (const VbError &) {
    }
    return values;
}

void EditorData::close()
{
    ResumeNext onError;
    onError([&] { recordset.Close(); });
    recordset = Recordset();
    database_ = Database();
    openedOn_.clear();
}

}  // namespace kw
