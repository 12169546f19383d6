#pragma once
// What the transmission debug form shows: the text sent, the text received and the codes received.
// The link writes here; the form, when it is open, listens.

#include <QString>
#include <functional>

namespace kw {

struct DebugView {
    QString label3;  // sent
    QString label4;  // received
    QString label5;  // codes received, each followed by ";"
    std::function<void()> changed;

    void clearAll();
    void clearReceived();
    void sent(QChar c);
    void received(const QString &c);
};

DebugView &debugView();

}  // namespace kw
