#include "levels/units.h"

#include "platform/onerror.h"
#include "platform/recordset.h"
#include "platform/vbformat.h"
#include "shell/state.h"

namespace kw {

float shownlevel(float dbmw) { return dbmw + st.unitoffset; }

float shownlevelcount(int count) { return float(count / 2.5 + double(st.unitoffset)); }

float shownreflevel() { return st.reflevel + st.attenuator + st.unitoffset; }

float reflevelfromtyped(float typed) { return typed - st.attenuator - st.unitoffset; }

bool chooseunit(const QString &name, bool like, bool fallback)
{
    bool found = false;
    QString unit;
    float offset = 0.0f;
    ResumeNext onError;
    onError([&] {
        Recordset units = st.db.OpenRecordset(QStringLiteral("unit"), dbOpenSnapshot);
        units.FindFirst((like ? QStringLiteral("unitname like '") : QStringLiteral("unitname = '")) + vbTrim(name) +
                        QStringLiteral("'"));
        if (units.NoMatch())
            return;
        unit = units.FieldText(QStringLiteral("unitname"));
        offset = float(units.FieldNumber(QStringLiteral("unitoffset")));
        found = true;
        units.Close();
    });
    if (found) {
        st.unit = unit;
        st.unitoffset = offset;
    } else if (fallback) {
        st.unit = QStringLiteral("dBmW");
        st.unitoffset = 0.0f;
    }
    return found;
}

}  // namespace kw
