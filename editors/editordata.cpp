#include "editors/editordata.h"

#include "platform/vbformat.h"

namespace kw {

void EditorData::open(const QString &databasefile, const QString &source)
{
    setDatabaseName(databasefile);
    setRecordSource(source);
    refresh();
}

void EditorData::refresh()
{
    try {
        Refresh();
    } catch (const VbError &) {
    }
}

bool EditorData::hasRows() const
{
    if (!isOpen())
        return false;
    try {
        Recordset &rs = const_cast<EditorData *>(this)->recordset();
        return !(rs.Bof() && rs.Eof());
    } catch (const VbError &) {
        return false;
    }
}

Recordset &EditorData::rows()
{
    if (!isOpen())
        return closed_ = Recordset();
    return recordset();
}

bool EditorData::findFirst(const QString &criterion)
{
    try {
        FindFirst(criterion);
        return !recordset().NoMatch();
    } catch (const VbError &) {
        return false;
    }
}

}  // namespace kw
