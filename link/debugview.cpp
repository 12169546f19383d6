#include "link/debugview.h"

namespace kw {

DebugView &debugView()
{
    static DebugView view;
    return view;
}

namespace {
void tell(DebugView &view)
{
    if (view.changed)
        view.changed();
}
}  // namespace

void DebugView::clearAll()
{
    label3.clear();
    label4.clear();
    label5.clear();
    tell(*this);
}

void DebugView::clearReceived()
{
    label4.clear();
    label5.clear();
    tell(*this);
}

void DebugView::sent(QChar c)
{
    label3 += c;
    tell(*this);
}

void DebugView::received(const QString &c)
{
    label4 += c;
    label5 += QString::number(c.isEmpty() ? 0 : c.at(0).unicode()) + QLatin1Char(';');
    tell(*this);
}

}  // namespace kw
