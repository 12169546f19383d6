#include "shell/forms.h"

#include "shell/mdi.h"

#include <QHash>
#include <QWidget>

namespace kw {

namespace {
QHash<QString, FormFactory> &factories()
{
    static QHash<QString, FormFactory> table;
    return table;
}
}  // namespace

void registerForm(const QString &name, FormFactory factory) { factories().insert(name, std::move(factory)); }

QWidget *loadedForm(const QString &name)
{
    Mdi *window = mdi();
    return window ? window->child(name) : nullptr;
}

bool formLoaded(const QString &name) { return loadedForm(name) != nullptr; }

QWidget *showForm(const QString &name)
{
    Mdi *window = mdi();
    if (!window)
        return nullptr;
    QWidget *form = window->child(name);
    if (!form) {
        const auto it = factories().constFind(name);
        if (it == factories().constEnd() || !*it)
            return nullptr;
        form = (*it)();
        if (!form)
            return nullptr;
        form->setObjectName(name);
    }
    window->showChild(form);
    return form;
}

void unloadForm(const QString &name)
{
    if (Mdi *window = mdi())
        window->unloadChild(name);
}

void unloadSelf(QWidget *form)
{
    if (Mdi *window = mdi(); window && window->child(form->objectName()) == form) {
        window->unloadChild(form->objectName());
        return;
    }
    form->close();
    form->deleteLater();
}

}  // namespace kw
