// A received sample block as any bytes: level bytes and trailer land in rawblock, and storetrace
// scales them through the delivered correction chain and the distance term into the trace that
// the first byte names. The trailer's centre frequency goes through the reply conversion.

#include "levels/correctiontables.h"
#include "link/commandtext.h"
#include "link/storetrace.h"
#include "platform/progdir.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "store/appdb.h"
#include "support/fuzzsupport.h"

#include <QFile>

namespace {

void openDeliveredDatabase()
{
    static bool open = false;
    if (open)
        return;
    const QString target = kw::programFile(QStringLiteral("default.mdb"));
    QFile::copy(qEnvironmentVariable("KW_DEFAULT_MDB", QStringLiteral(KW_FUZZ_DEFAULT_MDB)), target);
    QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner);
    kw::st.databasefile = target;
    kw::openApplicationDatabase();
    open = true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    kw::fuzz::prepare();
    openDeliveredDatabase();
    if (size < 4)
        return 0;
    kw::st.vmtrace = data[0] % 8;
    kw::st.correctionon = data[1] & 1;
    kw::st.reflevel = float(int8_t(data[2]));
    kw::st.attenuator = float(data[3] % 50);
    kw::st.centerfreq = 100.0f;
    kw::st.span = 100;
    kw::st.freqstart = 50.0f;
    kw::st.freqstop = 150.0f;
    if (kw::st.correctionon)
        kw::setupconfiguration(QStringLiteral("Radiated 3 m bilog, cable, preamplifier"));
    size_t at = 4;
    for (int i = 1; i <= 2044; ++i)
        kw::st.rawblock[size_t(i)] = at < size ? data[at++] : 0;
    kw::opencorrectiontables();
    kw::storetrace();

    QString trailer;
    for (int i = 2002; i <= 2044; ++i)
        trailer += QChar(kw::st.rawblock[size_t(i)]);
    kw::storeFloat(kw::vbVal(trailer.mid(17, 8)), kw::st.centerfreq);
    return 0;
}
