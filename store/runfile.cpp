#include "store/runfile.h"

#include "platform/onerror.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "store/measurementfile.h"

namespace kw {

namespace {

struct Hold {
    QString path;
    Database file;
};

Hold &hold()
{
    static Hold h;
    return h;
}

}  // namespace

void holdrunfile()
{
    const QString path = vbRTrim(st.measurefile);
    Hold &h = hold();
    if (h.file.isSet() && h.path == path)
        return;
    releaserunfile();
    if (path.isEmpty() || creationFailed(path))
        return;
    try {
        h.file = OpenDatabase(path);
        h.path = path;
        // Also what puts this handle on the log, so that the log outlives the routines' closes.
        h.file.Execute(QStringLiteral("create index if not exists measurement_frequency on measurement (frequency)"));
    } catch (const VbError &) {
        // A file without the table, or one that may not be written: held without the index,
        // the routines meet the same failures they would meet anyway.
    }
}

void releaserunfile()
{
    Hold &h = hold();
    ResumeNext onError;
    if (h.file.isSet())
        onError([&] { h.file.Close(); });
    h.file = Database();
    h.path.clear();
}

void checkpointrunfile()
{
    Hold &h = hold();
    if (h.file.isSet())
        h.file.Checkpoint();
}

bool runfileheld() { return hold().file.isSet(); }

}  // namespace kw
