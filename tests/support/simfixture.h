#pragma once
// An analyser simulator on a real pseudo-terminal, wired to Com2 of a fresh program state.
// Each test case gets its own: start values, scripted dialogs, a short time-out, an empty log.

#include "platform/dialogs.h"
#include "sim/ptyserver.h"

#include <QTemporaryDir>
#include <memory>

namespace kw {

class SimBench {
public:
    explicit SimBench(const kt::Options &options = {});
    ~SimBench();

    kt::PtyServer &sim() { return *server_; }
    ScriptedDialogs &boxes() { return boxes_; }
    QStringList log() { return server_->commandLog(); }
    void clearLog();
    // Connects the program to the analyser and empties the log; true when the link is up.
    bool connect();
    // The boxes shown so far, as "title|text".
    QStringList shown() const;
    // Replaces the analyser behind the line (a new pty on the same Com2), e.g. with faults.
    void restart(const kt::Options &options);
    // A new analyser behind Com2 while the program still holds the port to the old one, as when
    // an adapter is plugged in again.
    void replug(const kt::Options &options = {});
    QString dir() const { return dir_.path(); }

private:
    void wire();
    void release();

    QTemporaryDir dir_;
    std::unique_ptr<kt::PtyServer> server_;
    ScriptedDialogs boxes_;
};

}  // namespace kw
