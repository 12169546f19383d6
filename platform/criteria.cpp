#include "platform/criteria.h"

#include "platform/vbformat.h"

#include <cmath>
#include <optional>

namespace kw {

namespace {

constexpr int kSyntaxError = 3077;
constexpr int kUnknownField = 3070;
constexpr int kTypeMismatch = 3464;
constexpr int kTooComplex = 3360;
// And, Or, Not and brackets in one criterion. The program's own criteria hold a few; the bound
// keeps the recursive parse, evaluation and destruction of the tree far from the stack's end.
constexpr int kMostOperators = 500;

class Parser {
public:
    explicit Parser(const QString &text) : s_(text) {}

    Criterion parse()
    {
        Criterion c = orExpr();
        skipBlanks();
        if (i_ < s_.size())
            throw VbError(kSyntaxError);
        return c;
    }

private:
    const QString &s_;
    qsizetype i_ = 0;
    int operators_ = 0;

    void countOperator()
    {
        if (++operators_ > kMostOperators)
            throw VbError(kTooComplex);
    }

    void skipBlanks()
    {
        while (i_ < s_.size() && s_[i_].isSpace())
            ++i_;
    }

    // A keyword as a whole word, without regard to case.
    bool keyword(const char *word)
    {
        skipBlanks();
        const QString w = QString::fromLatin1(word);
        if (s_.mid(i_, w.size()).compare(w, Qt::CaseInsensitive) != 0)
            return false;
        const qsizetype end = i_ + w.size();
        if (end < s_.size() && (s_[end].isLetterOrNumber() || s_[end] == QLatin1Char('_')))
            return false;
        i_ = end;
        return true;
    }

    Criterion join(Criterion::Kind kind, Criterion left, Criterion right)
    {
        Criterion c;
        c.kind = kind;
        c.children.push_back(std::move(left));
        c.children.push_back(std::move(right));
        return c;
    }

    Criterion orExpr()
    {
        Criterion c = andExpr();
        while (keyword("or")) {
            countOperator();
            c = join(Criterion::Kind::Or, std::move(c), andExpr());
        }
        return c;
    }

    Criterion andExpr()
    {
        Criterion c = notExpr();
        while (keyword("and")) {
            countOperator();
            c = join(Criterion::Kind::And, std::move(c), notExpr());
        }
        return c;
    }

    Criterion notExpr()
    {
        if (keyword("not")) {
            countOperator();
            Criterion c;
            c.kind = Criterion::Kind::Not;
            c.children.push_back(notExpr());
            return c;
        }
        skipBlanks();
        if (i_ < s_.size() && s_[i_] == QLatin1Char('(')) {
            ++i_;
            countOperator();
            Criterion c = orExpr();
            skipBlanks();
            if (i_ >= s_.size() || s_[i_] != QLatin1Char(')'))
                throw VbError(kSyntaxError);
            ++i_;
            return c;
        }
        return comparison();
    }

    QString columnName()
    {
        skipBlanks();
        if (i_ < s_.size() && s_[i_] == QLatin1Char('[')) {
            const qsizetype end = s_.indexOf(QLatin1Char(']'), i_ + 1);
            if (end < 0)
                throw VbError(kSyntaxError);
            QString name = s_.mid(i_ + 1, end - i_ - 1);
            i_ = end + 1;
            return name;
        }
        const qsizetype start = i_;
        while (i_ < s_.size() && (s_[i_].isLetterOrNumber() || s_[i_] == QLatin1Char('_')))
            ++i_;
        if (i_ == start || s_[start].isDigit())
            throw VbError(kSyntaxError);
        return s_.mid(start, i_ - start);
    }

    CriterionOp op()
    {
        skipBlanks();
        if (keyword("like"))
            return CriterionOp::Like;
        if (keyword("not")) {
            if (!keyword("like"))
                throw VbError(kSyntaxError);
            return CriterionOp::NotLike;
        }
        // The engine takes "=>" and "=<" as well as the usual spellings.
        static const struct { const char *text; CriterionOp op; } ops[] = {
            {"<>", CriterionOp::Ne}, {"<=", CriterionOp::Le}, {"=<", CriterionOp::Le}, {">=", CriterionOp::Ge},
            {"=>", CriterionOp::Ge}, {"=", CriterionOp::Eq},  {"<", CriterionOp::Lt},  {">", CriterionOp::Gt},
        };
        for (const auto &o : ops) {
            const QString t = QString::fromLatin1(o.text);
            if (s_.mid(i_, t.size()) == t) {
                i_ += t.size();
                return o.op;
            }
        }
        throw VbError(kSyntaxError);
    }

    void literal(Criterion &c)
    {
        skipBlanks();
        if (i_ >= s_.size())
            throw VbError(kSyntaxError);
        const QChar q = s_[i_];
        if (q == QLatin1Char('\'') || q == QLatin1Char('"')) {
            // A doubled quote stands for one; anything else after the closing quote is left to
            // the caller, which fails on it.
            QString text;
            ++i_;
            for (;;) {
                if (i_ >= s_.size())
                    throw VbError(kSyntaxError);
                if (s_[i_] == q) {
                    if (i_ + 1 < s_.size() && s_[i_ + 1] == q) {
                        text += q;
                        i_ += 2;
                        continue;
                    }
                    ++i_;
                    break;
                }
                text += s_[i_++];
            }
            c.literal = text;
            c.literalText = text;
            return;
        }
        if (keyword("true")) {
            c.literal = true;
            c.literalText = QStringLiteral("True");
            return;
        }
        if (keyword("false")) {
            c.literal = false;
            c.literalText = QStringLiteral("False");
            return;
        }
        const qsizetype start = i_;
        if (s_[i_] == QLatin1Char('-') || s_[i_] == QLatin1Char('+'))
            ++i_;
        qsizetype digits = 0;
        while (i_ < s_.size() && s_[i_].isDigit())
            ++i_, ++digits;
        if (i_ < s_.size() && s_[i_] == QLatin1Char('.')) {
            ++i_;
            while (i_ < s_.size() && s_[i_].isDigit())
                ++i_, ++digits;
        }
        if (digits == 0)
            throw VbError(kSyntaxError);
        if (i_ < s_.size() && (s_[i_] == QLatin1Char('e') || s_[i_] == QLatin1Char('E'))) {
            qsizetype j = i_ + 1;
            if (j < s_.size() && (s_[j] == QLatin1Char('-') || s_[j] == QLatin1Char('+')))
                ++j;
            const qsizetype expStart = j;
            while (j < s_.size() && s_[j].isDigit())
                ++j;
            if (j == expStart)
                throw VbError(kSyntaxError);
            i_ = j;
        }
        if (i_ < s_.size() && (s_[i_].isLetterOrNumber() || s_[i_] == QLatin1Char('.') || s_[i_] == QLatin1Char(',')))
            throw VbError(kSyntaxError);
        c.literalText = s_.mid(start, i_ - start);
        bool ok = false;
        const double v = c.literalText.toDouble(&ok);
        if (!ok || !std::isfinite(v))
            throw VbError(kSyntaxError);
        c.literal = v;
    }

    Criterion comparison()
    {
        Criterion c;
        c.column = columnName();
        c.op = op();
        literal(c);
        return c;
    }
};

bool isText(const QVariant &v) { return v.typeId() == QMetaType::QString; }

double numberOf(const QVariant &v)
{
    if (v.typeId() == QMetaType::Bool)
        return v.toBool() ? -1.0 : 0.0;  // the engine's True
    return v.toDouble();
}

QString likeText(const QVariant &v)
{
    if (isText(v))
        return v.toString();
    if (v.typeId() == QMetaType::Bool)
        return v.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    const double d = v.toDouble();
    if (d == std::trunc(d) && std::abs(d) < 1e15)
        return QString::number(qint64(d));
    return QString::number(d, 'g', 15);
}

template <class T>
bool ordered(CriterionOp op, const T &a, const T &b)
{
    switch (op) {
    case CriterionOp::Eq: return a == b;
    case CriterionOp::Ne: return !(a == b);
    case CriterionOp::Lt: return a < b;
    case CriterionOp::Le: return !(b < a);
    case CriterionOp::Gt: return b < a;
    case CriterionOp::Ge: return !(a < b);
    default: return false;
    }
}

// Null compares to nothing: the answer is unknown, and stays unknown through Not, as the
// engine's three-valued logic has it; only a known true finds a row.
using Truth = std::optional<bool>;

Truth compare(const Criterion &c, const QVariant &value)
{
    if (value.isNull())
        return std::nullopt;
    if (c.op == CriterionOp::Like || c.op == CriterionOp::NotLike) {
        const bool hit = vbLike(likeText(value), c.literalText, false);
        return c.op == CriterionOp::Like ? hit : !hit;
    }
    if (isText(value) != isText(c.literal))
        throw VbError(kTypeMismatch);
    if (isText(value)) {
        const int cmp = value.toString().compare(c.literal.toString(), Qt::CaseInsensitive);
        return ordered(c.op, cmp, 0);
    }
    if (c.singleColumn)
        return ordered(c.op, float(numberOf(value)), float(numberOf(c.literal)));
    return ordered(c.op, numberOf(value), numberOf(c.literal));
}

Truth evaluate(const Criterion &criterion, const std::vector<QVariant> &row)
{
    switch (criterion.kind) {
    case Criterion::Kind::And: {
        const Truth a = evaluate(criterion.children[0], row);
        if (a == false)
            return false;
        const Truth b = evaluate(criterion.children[1], row);
        if (b == false)
            return false;
        return a && b ? Truth(true) : std::nullopt;
    }
    case Criterion::Kind::Or: {
        const Truth a = evaluate(criterion.children[0], row);
        if (a == true)
            return true;
        const Truth b = evaluate(criterion.children[1], row);
        if (b == true)
            return true;
        return a && b ? Truth(false) : std::nullopt;
    }
    case Criterion::Kind::Not: {
        const Truth a = evaluate(criterion.children[0], row);
        return a ? Truth(!*a) : std::nullopt;
    }
    case Criterion::Kind::Compare: break;
    }
    if (criterion.columnIndex < 0 || size_t(criterion.columnIndex) >= row.size())
        throw VbError(kUnknownField);
    return compare(criterion, row[size_t(criterion.columnIndex)]);
}

}  // namespace

Criterion parseCriterion(const QString &text) { return Parser(text).parse(); }

void bindCriterion(Criterion &criterion, const std::function<int(const QString &)> &indexOf,
                   const std::function<bool(int)> &isSingle)
{
    if (criterion.kind != Criterion::Kind::Compare) {
        for (Criterion &child : criterion.children)
            bindCriterion(child, indexOf, isSingle);
        return;
    }
    criterion.columnIndex = indexOf(criterion.column);
    if (criterion.columnIndex < 0)
        throw VbError(kUnknownField);
    criterion.singleColumn = isSingle(criterion.columnIndex);
}

bool matchesCriterion(const Criterion &criterion, const std::vector<QVariant> &row)
{
    return evaluate(criterion, row).value_or(false);
}

}  // namespace kw
