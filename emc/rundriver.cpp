#include "emc/rundriver.h"

#include "emc/emchooks.h"
#include "emc/loadtest.h"
#include "emc/passes.h"
#include "link/commands.h"
#include "link/connection.h"
#include "live/cycle.h"
#include "platform/dialogs.h"
#include "platform/onerror.h"
#include "shell/state.h"
#include "store/measurementfile.h"
#include "store/runfile.h"

#include <QFileInfo>

namespace kw {

namespace {

const QString kHorizontal = QStringLiteral("Set to horizontal / L position");
const QString kVertical = QStringLiteral("Set to vertical / N position");
const QString kDutOff = QStringLiteral("Switch DUT Off");
const QString kDutOn = QStringLiteral("Switch DUT ON");

// Whether the run may go on: Stop not pressed and the analyser still there.
bool running() { return st.stoprun != 1 && st.portopen == 1; }

// A prompt the operator can only acknowledge; false when the run has ended meanwhile.
bool prompt(const QString &title, const QString &text)
{
    dialogs().message(title, text, Buttons::Ok);
    return running();
}

bool sweepPass(uint8_t second, uint8_t phase)
{
    st.secondpass = second;
    st.ambientphase = phase;
    runPasses().sweep();
    return running();
}

// The limit rows and the settings row, written once before the first pass.
void copyHeader() { WriteEmcHeader(); }

// Sweep + Step: each polarisation a DUT-on pass, preceded by an ambient pass when the test has
// them. Returns at the first prompt or pass after which the run cannot go on.
void sweepSequence()
{
    const QString title = QStringLiteral("EMC - Sweep + Step");
    const bool ambient = st.ambient == 1;
    const auto polarisation = [&](uint8_t second, uint8_t phase) {
        if (!ambient)
            return sweepPass(second, 0);
        return prompt(title, kDutOff) && sweepPass(second, phase) && prompt(title, kDutOn) && sweepPass(1, 0);
    };
    if (st.polhorizontal) {
        if (!prompt(title, kHorizontal))
            return;
        st.polarisationh = true;
        copyHeader();
        if (!polarisation(0, 1) || !st.polvertical)
            return;
        if (!prompt(title, kVertical))
            return;
        st.polarisationh = false;
        polarisation(1, 2);
    } else if (st.polvertical) {
        st.polarisationh = false;
        if (!prompt(title, kVertical))
            return;
        copyHeader();
        polarisation(0, 2);
    } else {
        copyHeader();
        sweepPass(0, 0);
    }
}

// Step: the pass only starts here and goes on under Timer2. True when the run must be finished
// now, false when it carries on by itself (or has nothing to finish).
bool steppedSequence()
{
    const QString title = QStringLiteral("EMC - Stepped");
    st.secondpass = 0;
    if (st.polhorizontal || st.polvertical) {
        if (!prompt(title, st.polhorizontal ? kHorizontal : kVertical))
            return true;
        st.polarisationh = st.polhorizontal;
        copyHeader();
        runPasses().stepped();
        return !running();
    }
    copyHeader();
    runPasses().stepped();
    return false;
}

void finishRun()
{
    ResumeNext onError;
    onError([] { runfinish(); });
    onError([] { setpreset(); });
    onError([] { disconnectunit(); });
    st.redrawflag = 1;
}

void closeOpenFiles()
{
    ResumeNext onError;
    onError([] { st.rs.Close(); });
    onError([] { st.rs2.Close(); });
    onError([] { st.measdb.Close(); });
}

}  // namespace

RunPasses &runPasses()
{
    static RunPasses passes{&sweeprun, &startstepped};
    return passes;
}

void emcStart()
{
    st.stoprun = 0;
    st.reloadtest = 1;
    loadtest();
    enableTestChoice(false);
    eraseall();

    FileRequest request;
    request.save = true;
    request.title = QStringLiteral("Select Measurement");
    request.filter = QStringLiteral("EMC (*.emc) |*.emc");
    request.filterIndex = 1;
    request.defaultExt = QStringLiteral(".emc");
    request.flags = FileRequest::OverwritePrompt | FileRequest::CreatePrompt | FileRequest::HideReadOnly;
    const std::optional<QString> chosen = dialogs().chooseFile(request);
    if (chosen && !chosen->isEmpty()) {
        QString name = *chosen;
        if (QFileInfo(name).suffix().isEmpty())
            name += QStringLiteral(".emc");
        bool finish = false;
        try {
            st.measurefile = name;
            busypointer();
            enableStart(false);
            closeOpenFiles();
            CreateMeasurementFile();
            if (st.portopen != 1)
                connectunit();
            if (st.portopen == 1) {
                if (st.runmode == 1) {
                    finish = steppedSequence();
                } else {
                    sweepSequence();
                    finish = true;
                }
            }
        } catch (const VbError &) {
            finish = true;
        }
        if (finish)
            finishRun();
    }
    enableTestChoice(true);
    enableStart(true);
    normalpointer();
}

void emcStop()
{
    st.stoprun = 1;
    enableStart(true);
}

void runfinish()
{
    ResumeNext onError;
    onError([&] {
        st.measdb = OpenDatabase(vbTrim(st.measurefile));
        st.rs2 = st.measdb.OpenRecordset(QStringLiteral("select * from settings"));
        st.rs2.Edit();
        onError([] { st.rs2.SetField(QStringLiteral("grafikmin"), st.grafikmin); });
        onError([] { st.rs2.SetField(QStringLiteral("grafikmax"), st.grafikmax); });
        st.rs2.Update();
    });
    onError([] { st.rs2.Close(); });
    onError([] { st.measdb.Close(); });
    // Ends the hold of the run (a second stepped polarisation takes it up again at its first step).
    releaserunfile();
}

}  // namespace kw
