#include "emc/emcstub.h"

#include "shell/forms.h"

#include <QLabel>
#include <QVBoxLayout>
#include <QWidget>

namespace kw {

void registerEmcStub()
{
    registerForm(QStringLiteral("emc"), [] {
        auto *form = new QWidget;
        form->setWindowTitle(QStringLiteral("EMC"));
        auto *layout = new QVBoxLayout(form);
        layout->addWidget(new QLabel(QStringLiteral("EMC test"), form));
        return form;
    });
}

}  // namespace kw
