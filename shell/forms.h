#pragma once
// Child forms by name. Each subsystem registers the forms it builds; the shell, the menu and the
// sequences that show or close another subsystem's form ("show emc", "close measur") go through
// these calls, so no subsystem needs another's widget headers.

#include <QString>
#include <functional>

class QWidget;

namespace kw {

class Mdi;

using FormFactory = std::function<QWidget *()>;

// The factory builds the form with its objectName set to name.
void registerForm(const QString &name, FormFactory factory);
// Builds every form of the program into the table; called once before the main form loads.
void registerAllForms();

// Shows the form in the frame, building it first when it is not loaded; nullptr for an unknown
// name or without a frame.
QWidget *showForm(const QString &name);
// Closes the form when it is loaded.
void unloadForm(const QString &name);
bool formLoaded(const QString &name);
// A form closing itself (its own Exit or OK): through the frame when it is shown there, else the
// widget alone is closed and deleted.
void unloadSelf(QWidget *form);

// A control with its objectName, as the forms build them.
template <class Control>
Control *named(Control *control, const char *name)
{
    control->setObjectName(QString::fromLatin1(name));
    return control;
}
QWidget *loadedForm(const QString &name);

}  // namespace kw
