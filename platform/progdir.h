#pragma once
#include <QString>

namespace kw {

// Where setting.def, the port map and default.mdb live: the executable's directory when it can be
// written (a build tree, a portable install), else the per-user data directory.
QString programDirectory();
void setProgramDirectory(const QString &dir);  // tests and the run script point it elsewhere

// Joins the program directory and a file name the way the system writes paths ("dir" + "\name").
QString programFile(const QString &name);

}  // namespace kw
