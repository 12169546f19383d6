#pragma once
// Find criteria of the recordsets ("limitname like 'CISPR*'", "frequency => 100.5", joined by And,
// Or, Not and brackets). The text is parsed here into column, operator and literal and evaluated in
// C++ against a row: it never reaches SQL, so a name with a quote in it can only make its own
// criterion fail, never change what a statement does to the data.

#include <QString>
#include <QVariant>
#include <functional>
#include <vector>

namespace kw {

enum class CriterionOp { Eq, Ne, Lt, Le, Gt, Ge, Like, NotLike };

struct Criterion {
    enum class Kind { Compare, And, Or, Not };
    Kind kind = Kind::Compare;
    // Compare: column op literal. The literal is a QString, a double or (True/False) a bool.
    QString column;
    CriterionOp op = CriterionOp::Eq;
    QVariant literal;
    QString literalText;  // the literal as written, for like against a number
    // Filled by bindCriterion: where the column stands in the row, and whether it holds 32-bit
    // floats, which the engine compares at that precision.
    int columnIndex = -1;
    bool singleColumn = false;
    std::vector<Criterion> children;
};

// Throws VbError(3077) when the text does not parse (a quote inside a quoted name, "100,5"), and
// 3360 when it joins more than 500 terms or brackets (too complex).
Criterion parseCriterion(const QString &text);

// Resolves the column names: indexOf answers -1 for an unknown name, which throws VbError(3070).
void bindCriterion(Criterion &criterion, const std::function<int(const QString &)> &indexOf,
                   const std::function<bool(int)> &isSingle);

// Text compares without regard to case; like takes * ? # [..] as wildcards; Null never matches.
// A text column against a number (or the reverse) throws VbError(3464).
bool matchesCriterion(const Criterion &criterion, const std::vector<QVariant> &row);

}  // namespace kw
