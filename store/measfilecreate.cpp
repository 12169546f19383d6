#include "store/measurementfile.h"

#include "platform/onerror.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "store/runfile.h"

#include <QFile>

namespace kw {

namespace {

// The file's collation and code page as the engine is told them at creation.
const QString kFileLocale = QStringLiteral(";LANGID=0x0409;CP=1252;COUNTRY=0");

using T = FieldType;

// The path whose creation failed last: the writers leave that file alone, so that an old file
// that could not be deleted never gets the new rows added to its own.
QString &failedCreation()
{
    static QString path;
    return path;
}

}  // namespace

const TableDef &measurementTableDef()
{
    static const TableDef table{QStringLiteral("Measurement"),
                                {{QStringLiteral("Frequency"), T::Single},
                                 {QStringLiteral("Sample_dBmW"), T::Single},
                                 {QStringLiteral("Average_dBmW"), T::Single},
                                 {QStringLiteral("Maxhold_dBmW"), T::Single},
                                 {QStringLiteral("QPeak_dBmW"), T::Single},
                                 {QStringLiteral("memory_dBmW"), T::Single},
                                 {QStringLiteral("Ambient_H_dBmW"), T::Single},
                                 {QStringLiteral("Ambient_V_dBmW"), T::Single},
                                 {QStringLiteral("H_Average_dBmW"), T::Single},
                                 {QStringLiteral("H_Maxhold_dBmW"), T::Single},
                                 {QStringLiteral("H_QPeak_dBmW"), T::Single},
                                 {QStringLiteral("V_Average_dBmW"), T::Single},
                                 {QStringLiteral("V_Maxhold_dBmW"), T::Single},
                                 {QStringLiteral("V_QPeak_dBmW"), T::Single}}};
    return table;
}

const TableDef &limitlinesTableDef()
{
    static const TableDef table{QStringLiteral("Limitlines"),
                                {{QStringLiteral("avefreq"), T::Single},
                                 {QStringLiteral("Average_dBmW"), T::Single},
                                 {QStringLiteral("maxfreq"), T::Single},
                                 {QStringLiteral("Maxhold_dBmW"), T::Single}}};
    return table;
}

const TableDef &settingsTableDef()
{
    static const TableDef table{QStringLiteral("Settings"),
                                {{QStringLiteral("Vernr"), T::Integer},
                                 {QStringLiteral("dat"), T::Date},
                                 {QStringLiteral("centerfreq"), T::Single},
                                 {QStringLiteral("reflevel"), T::Single},
                                 {QStringLiteral("attenuator"), T::Single},
                                 {QStringLiteral("bandwith"), T::Integer},
                                 {QStringLiteral("videofilter"), T::Byte},
                                 {QStringLiteral("span"), T::Integer},
                                 {QStringLiteral("unit"), T::Text, 20},
                                 {QStringLiteral("correctionon"), T::Byte},
                                 {QStringLiteral("configname"), T::Text, 80},
                                 {QStringLiteral("readmode"), T::Byte},
                                 {QStringLiteral("viewsample"), T::Byte},
                                 {QStringLiteral("viewaverage"), T::Byte},
                                 {QStringLiteral("viewmaxhold"), T::Byte},
                                 {QStringLiteral("viewb"), T::Byte},
                                 {QStringLiteral("viewqpeak"), T::Byte},
                                 {QStringLiteral("viewlimitmax"), T::Byte},
                                 {QStringLiteral("viewlimitave"), T::Byte},
                                 {QStringLiteral("averagename"), T::Text, 80},
                                 {QStringLiteral("maxholdname"), T::Text, 80},
                                 {QStringLiteral("tgon"), T::Byte},
                                 {QStringLiteral("tglevel"), T::Single},
                                 {QStringLiteral("Mode"), T::Byte},
                                 {QStringLiteral("viewab"), T::Byte},
                                 {QStringLiteral("lmaxdist"), T::Byte},
                                 {QStringLiteral("lavedist"), T::Byte},
                                 {QStringLiteral("lmaxlog"), T::Boolean},
                                 {QStringLiteral("lavelog"), T::Boolean},
                                 {QStringLiteral("configdist"), T::Byte},
                                 {QStringLiteral("grafikmin"), T::Integer},
                                 {QStringLiteral("grafikmax"), T::Integer},
                                 {QStringLiteral("note"), T::Memo},
                                 {QStringLiteral("headline"), T::Text, 80},
                                 {QStringLiteral("Ambient"), T::Byte}}};
    return table;
}

void deleteMeasurementFile(const QString &path)
{
    // A log left beside the old file would otherwise be taken into the new one at its opening.
    for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")})
        QFile::remove(path + suffix);
}

uint8_t CreateMeasurementFile()
{
    const QString path = vbRTrim(st.measurefile);
    // A run's hold on the file that stood here would keep its old log alive under the new file.
    releaserunfile();
    deleteMeasurementFile(path);
    try {
        st.measdb = CreateDatabase(path, kFileLocale);
        for (const TableDef *table : {&measurementTableDef(), &limitlinesTableDef(), &settingsTableDef()})
            st.measdb.AppendTable(*table);
        st.measdb.Close();
    } catch (const VbError &) {
        ResumeNext onError;
        onError([] { st.measdb.Close(); });
        failedCreation() = path;
        return 1;
    }
    failedCreation().clear();
    return 0;
}

bool creationFailed(const QString &path) { return !failedCreation().isEmpty() && failedCreation() == path; }

}  // namespace kw
