#include "shell/measurementmenu.h"

#include "link/connection.h"
#include "platform/dialogs.h"
#include "platform/onerror.h"
#include "platform/progdir.h"
#include "platform/vbformat.h"
#include "shell/mdi.h"
#include "shell/menu.h"
#include "shell/state.h"
#include "shell/uihooks.h"
#include "store/measurementfile.h"

#include <QAction>
#include <QFileInfo>

namespace kw {

namespace {

const QString kSelectTitle = QStringLiteral("Select Measurement");
const QString kProgramLabel = QStringLiteral("KW3400R - V1.53");

// The dialogs open where the last measurement file lies.
QString startFolder()
{
    const QString file = vbTrim(st.measurefile);
    return file.isEmpty() ? programDirectory() : QFileInfo(file).absolutePath();
}

// A load that failed half way leaves nothing open on the file.
void closeFile()
{
    ResumeNext on;
    on([] { st.rs2.Close(); });
    on([] { st.measdb.Close(); });
}

}  // namespace

void registerMeasurementMenu(Mdi &window)
{
    onMenu(window, QStringLiteral("mnusmeasurement"), &mnusmeasurement);
    onMenu(window, QStringLiteral("mnulmeasure"), &mnulmeasure);
}

void mnusmeasurement(Mdi &)
{
    FileRequest request;
    request.save = true;
    request.title = kSelectTitle;
    request.filter = QStringLiteral("Measurement (*.mes) |*.mes");
    request.defaultExt = QStringLiteral("MES");
    request.filterIndex = 1;
    request.flags = FileRequest::OverwritePrompt | FileRequest::HideReadOnly | FileRequest::CreatePrompt;  // 8198
    request.dir = startFolder();
    // Only live traces are saved here, always as ".mes"; an EMC run writes its file as it goes.
    if (const std::optional<QString> chosen = dialogs().chooseFile(request)) {
        busypointer();
        deleteMeasurementFile(*chosen);
        st.measurefile = *chosen;
        CreateMeasurementFile();
        WriteMeasurementFile();
    }
    normalpointer();
}

void mnulmeasure(Mdi &window)
{
    FileRequest request;
    request.title = kSelectTitle;
    request.filter = QStringLiteral("Measurement (*.MES) |*.MES|EMC (*.emc) |*.emc");
    request.filterIndex = st.mode != 0 ? 2 : 1;
    request.defaultExt = st.measext.mid(1);
    request.flags = FileRequest::HideReadOnly | FileRequest::PathMustExist | FileRequest::FileMustExist;  // 6148
    request.dir = startFolder();
    const std::optional<QString> chosen = dialogs().chooseFile(request);
    if (!chosen) {
        normalpointer();
        return;
    }
    // The dialog insists on an existing file; one that is gone by now (or never was, where the
    // platform lets a name through) is named to the operator, and the file shown stays shown.
    if (!QFileInfo(*chosen).isFile()) {
        dialogs().message(kSelectTitle, QStringLiteral("File not found ( ") + vbRTrim(*chosen) + QStringLiteral(" )"));
        normalpointer();
        return;
    }
    try {
        busypointer();
        st.measurefile = *chosen;
        if (st.ckrm) {
            disconnectunit();  // the live read must not run on a loaded file
            busypointer();
        }
        st.caption = kProgramLabel + QStringLiteral("   File: ") + st.measurefile;
        notifyCaption();
        ReadMeasurementFile();
        // A loaded file is not saved again as a live trace; the next Read enables the entry.
        if (QAction *save = window.menuEntry(QStringLiteral("mnusmeasurement")))
            save->setEnabled(false);
        st.redrawflag = 1;
    } catch (const VbError &) {
        // Silent, as every failing load is: the caption and measurefile stay changed.
        closeFile();
    }
    normalpointer();
}

}  // namespace kw
