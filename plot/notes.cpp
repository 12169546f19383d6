#include "plot/notes.h"

#include "platform/recordset.h"
#include "platform/vbformat.h"
#include "shell/state.h"

namespace kw {

namespace {
// The database column must always receive a value: an empty note is a single blank.
void keepNoteNonEmpty()
{
    if (st.note.isEmpty())
        st.note = QStringLiteral(" ");
}
}  // namespace

bool noteTakesKey(const QString &text) { return vbRTrim(text).size() <= kNoteKeyLimit; }

QString notesClear()
{
    st.note = QStringLiteral(" ");
    return st.note;
}

void notesExit() { keepNoteNonEmpty(); }

bool notesOk(const QString &text)
{
    st.note = text;
    keepNoteNonEmpty();
    if (st.filemode != 1)
        return true;
    if (vbTrim(st.headline).isEmpty())
        st.headline = st.testname;
    try {
        Database file = OpenDatabase(st.measurefile);
        Recordset rs = file.OpenRecordset(QStringLiteral("select * from settings"), dbOpenDynaset);
        rs.Edit();
        rs.SetField(QStringLiteral("note"), st.note);
        rs.SetField(QStringLiteral("headline"), vbTrim(st.headline));
        rs.Update();
        rs.Close();
        file.Close();
    } catch (const VbError &) {
        return false;
    }
    return true;
}

}  // namespace kw
