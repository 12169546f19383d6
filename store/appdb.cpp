#include "store/appdb.h"

#include "link/connection.h"
#include "platform/dialogs.h"
#include "platform/onerror.h"
#include "platform/progdir.h"
#include "platform/recordset.h"
#include "platform/vbformat.h"
#include "shell/state.h"

#include <cmath>

namespace kw {

namespace {

const QString kInitTitle = QStringLiteral("Init Database");
const QString kSelectTitle = QStringLiteral("Select Database");
const QString kVersionQuery = QStringLiteral("select * from version order by versionnr");
constexpr int kPathLength = 150;

QString twoReturns() { return QStringLiteral("\r\r"); }

// Twice the whole part of the stored constant, sign dropped, as a 16-bit integer.
int16_t quasiPeakConstant(double stored)
{
    const double doubled = std::abs(std::trunc(stored)) * 2;
    if (!std::isfinite(doubled) || doubled > 32767)
        throw VbError(6);
    return int16_t(doubled);
}

void readQuasiPeak(ResumeNext &on)
{
    on([] { st.rs = st.db.OpenRecordset(QStringLiteral("select * from qpeak"), dbOpenSnapshot); });
    on([] { st.tauf30 = quasiPeakConstant(st.rs.FieldNumber(QStringLiteral("tauf-30"))); });
    on([] { st.tauf1000 = quasiPeakConstant(st.rs.FieldNumber(QStringLiteral("tauf-1000"))); });
    on([] { st.tent30 = quasiPeakConstant(st.rs.FieldNumber(QStringLiteral("tent-30"))); });
    on([] { st.tent1000 = quasiPeakConstant(st.rs.FieldNumber(QStringLiteral("tent-1000"))); });
}

void readVersion(ResumeNext &on)
{
    on([] { st.rs.MoveLast(); });
    on([] { st.dbversion = float(st.rs.FieldNumber(QStringLiteral("versionnr"))); });
}

QString wrongVersionText()
{
    return QStringLiteral("Wrong Database-Version: ") + vbFormat(st.dbversion, QStringLiteral("0.00")) + twoReturns() +
           QStringLiteral("Aktuel: ") + vbFormat(kDatabaseVersion, QStringLiteral("0.00"));
}

QString oldVersionText()
{
    return QStringLiteral("Please use the actual Database-Version: ") + vbFormat(kDatabaseVersion, QStringLiteral("0.00")) +
           QStringLiteral(" your Version: ") + vbFormat(st.dbversion, QStringLiteral("0.00")) + twoReturns() +
           QStringLiteral("You can not use all functions");
}

// The version rows are open in rs: the highest counts. Too old a file sends the operator to the
// selection (again, when this is the selection); an older one is used with a warning.
void checkVersion(ResumeNext &on)
{
    readVersion(on);
    if (on.test([] { return st.dbversion < 1.0f; })) {
        dialogs().message(kInitTitle, wrongVersionText());
        selectDatabase();
    } else {
        if (st.dbversion < kDatabaseVersion)
            dialogs().message(kInitTitle, oldVersionText());
        readQuasiPeak(on);
    }
}

}  // namespace

void openApplicationDatabase()
{
    // From here every failing statement is passed over; a failed test enters its branch.
    ResumeNext on;
    on([] {
        st.databasefile = vbTrim(st.databasefile);
        st.db = OpenDatabase(st.databasefile);
    });
    on([] { st.rs = st.db.OpenRecordset(kVersionQuery, dbOpenSnapshot); });
    if (on.test([] { return st.rs.Eof() && st.rs.Bof(); })) {
        dialogs().message(kInitTitle, QStringLiteral("Database defekt or not found ") + twoReturns() + vbTrim(st.databasefile));
        selectDatabase();
    } else {
        checkVersion(on);
    }
    on([] { st.rs.Close(); });
}

void closeApplicationDatabase()
{
    ResumeNext on;
    on([] { st.db.Close(); });
}

void selectDatabase()
{
    ResumeNext on;
    const std::optional<QString> chosen =
        dialogs().openFile(kSelectTitle, QStringLiteral("Datenbank (*.mdb) | *.mdb "), programDirectory());
    if (!chosen) {
        // "default" in the text is the file in use, which stays open.
        dialogs().message(kSelectTitle, QStringLiteral("Use default Database ( ") + vbTrim(st.databasefile) + QStringLiteral(" )"));
    } else {
        // The name is taken before it is tried; a file that does not open leaves db on the
        // file that was open, so the check below runs on that one.
        st.databasefile = chosen->left(kPathLength);
        on([] { st.db = OpenDatabase(vbTrim(st.databasefile)); });
        // rs may still hold a table of the correction chain: a file without version rows must
        // not pass the test below on that table's rows.
        on([] { st.rs.Close(); });
        on([] { st.rs = st.db.OpenRecordset(kVersionQuery, dbOpenSnapshot); });
        if (on.test([] { return st.rs.Eof() && st.rs.Bof(); })) {
            dialogs().message(kInitTitle, QStringLiteral("Database defekt or a wrong format") + twoReturns() + vbTrim(st.databasefile));
        } else {
            checkVersion(on);
        }
    }
    on([] { st.rs.Close(); });
    normalpointer();
}

void mnuseldata(Mdi &) { selectDatabase(); }

}  // namespace kw
