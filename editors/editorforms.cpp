#include "editors/editorforms.h"

#include "editors/configeditor.h"
#include "editors/definitiondialogs.h"
#include "editors/definitioneditor.h"
#include "shell/forms.h"
#include "shell/menu.h"

namespace kw {

void registerEditorForms()
{
    registerForm(QStringLiteral("Limitdef"), [] { return new DefinitionEditor(Family::Limit); });
    registerForm(QStringLiteral("losdef"), [] { return new DefinitionEditor(Family::Component); });
    registerForm(QStringLiteral("configdef"), [] { return new ConfigEditor; });
    for (Family family : {Family::Limit, Family::Component, Family::Configuration}) {
        const FamilyText &t = familyText(family);
        registerForm(QString::fromUtf8(t.newForm), [family] { return new NewCopyDialog(family); });
        registerForm(QString::fromUtf8(t.deleteForm), [family] { return new DeleteDialog(family); });
    }
}

namespace {

// Shows the form and lets it take the name in work, as its activation does.
template <const char *Name>
void show(Mdi &)
{
    if (auto *form = qobject_cast<EditorForm *>(showForm(QString::fromUtf8(Name))))
        form->activate();
}

constexpr char kNewlim[] = "newlim", kNewlos[] = "newlos", kNewconf[] = "newconf";
constexpr char kLimitdef[] = "Limitdef", kLosdef[] = "losdef", kConfigdef[] = "configdef";
constexpr char kDellim[] = "dellim", kDellos[] = "dellos", kDelconf[] = "delconf";

}  // namespace

void wireEditorMenu(Mdi &window)
{
    onMenu(window, QStringLiteral("mnunewlim"), &show<kNewlim>);
    onMenu(window, QStringLiteral("mnulosnew"), &show<kNewlos>);
    onMenu(window, QStringLiteral("mnuconfnew"), &show<kNewconf>);
    onMenu(window, QStringLiteral("mnulimitdef"), &show<kLimitdef>);
    onMenu(window, QStringLiteral("mnuopenlos"), &show<kLosdef>);
    onMenu(window, QStringLiteral("mnuconfigdef"), &show<kConfigdef>);
    onMenu(window, QStringLiteral("mnudellim"), &show<kDellim>);
    onMenu(window, QStringLiteral("mnudelloss"), &show<kDellos>);
    onMenu(window, QStringLiteral("mnudelconf"), &show<kDelconf>);
}

}  // namespace kw
