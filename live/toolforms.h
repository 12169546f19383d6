#pragma once
// The forms of AutoStore (autost) and of the Toolbox (setsingle).

class QWidget;

namespace kw {

void registerToolForms();
// The AutoStore form, built by its own file.
QWidget *makeAutost();

}  // namespace kw
