#include "support/fuzzsupport.h"

#include "platform/dialogs.h"
#include "platform/progdir.h"
#include "shell/state.h"

#include <QCoreApplication>
#include <QTemporaryDir>

namespace kw::fuzz {

namespace {
QTemporaryDir *workDir = nullptr;
ScriptedDialogs *quietBoxes = nullptr;
}

void prepare()
{
    static bool ready = false;
    if (!ready) {
        static int argc = 1;
        static char name[] = "fuzz";
        static char *argv[] = {name, nullptr};
        new QCoreApplication(argc, argv);
        quietBoxes = new ScriptedDialogs;  // every box answers at once
        setDialogs(quietBoxes);
        workDir = new QTemporaryDir;
        setProgramDirectory(workDir->path());
        ready = true;
    }
    quietBoxes->shown.clear();
    resetState();
}

QString workDirectory() { return workDir->path(); }

}  // namespace kw::fuzz
