#pragma once
// The three kinds of definition the editors keep, and what their forms and dialogs differ in:
// tables, columns, criteria, captions and the name in work.

#include <QString>

namespace kw {

enum class Family { Limit, Component, Configuration };

struct FamilyText {
    const char *headTable;      // the head rows
    const char *nameColumn;
    const char *numberColumn;   // empty: rows are keyed by name
    const char *pointQuery;     // + number + " order by frequency"
    const char *targetSource;   // the head rows a new definition or a copy goes to
    const char *deleteSource;   // the head rows the delete dialog offers
    const char *existsText;     // + name + " )"
    const char *newCaption;
    const char *deleteCaption;
    const char *viewCaption;
    const char *newForm;
    const char *deleteForm;
    const char *editorForm;
};

const FamilyText &familyText(Family family);

// The name in work of the family, shared between its forms.
QString &currentName(Family family);

// The criterion "<name> like '<text>'" as the forms write it, text pasted as it stands.
QString nameLike(Family family, const QString &text);
QString nameEquals(Family family, const QString &text);
// The points of one definition: "select * from ... where ...nr like <number> order by frequency".
QString pointSource(Family family, const QString &number);

}  // namespace kw
