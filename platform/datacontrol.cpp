#include "platform/datacontrol.h"

#include "platform/vbformat.h"

#include <cmath>

namespace kw {

Data::Data(QWidget *parent) : QWidget(parent)
{
    // Never seen: it stands in a form only to hold the recordset.
    hide();
    setAttribute(Qt::WA_DontShowOnScreen);
}

Data::~Data()
{
    // A loaded form's recordsets go with it; a pending edit is dropped, never half written.
    try {
        if (rs_.isOpen())
            rs_.Close();
        if (db_.isSet())
            db_.Close();
    } catch (const VbError &) {
    }
}

void Data::setDatabaseName(const QString &path) { databaseName_ = vbTrim(path); }

void Data::setRecordSource(const QString &source) { recordSource_ = source; }

void Data::Refresh()
{
    emit validate();
    if (rs_.isOpen())
        rs_.Close();
    rs_ = Recordset();
    try {
        if (!db_.isSet() || db_.Name() != databaseName_) {
            if (db_.isSet())
                db_.Close();
            db_ = Database();
            db_ = OpenDatabase(databaseName_);
        }
        rs_ = db_.OpenRecordset(recordSource_, type_);
    } catch (const VbError &) {
        emit refreshed();
        emit rowMoved();
        throw;
    }
    emit refreshed();
    emit rowMoved();
}

Recordset &Data::recordset()
{
    if (!rs_.isOpen())
        throw VbError(91);
    return rs_;
}

template <class Move>
void Data::move(Move &&m)
{
    emit validate();
    try {
        m(recordset());
    } catch (const VbError &) {
        emit rowMoved();
        throw;
    }
    emit rowMoved();
}

void Data::MoveFirst() { move([](Recordset &rs) { rs.MoveFirst(); }); }
void Data::MoveLast() { move([](Recordset &rs) { rs.MoveLast(); }); }
void Data::MoveNext() { move([](Recordset &rs) { rs.MoveNext(); }); }
void Data::MovePrevious() { move([](Recordset &rs) { rs.MovePrevious(); }); }
void Data::FindFirst(const QString &criterion) { move([&](Recordset &rs) { rs.FindFirst(criterion); }); }
void Data::FindNext(const QString &criterion) { move([&](Recordset &rs) { rs.FindNext(criterion); }); }
void Data::FindLast(const QString &criterion) { move([&](Recordset &rs) { rs.FindLast(criterion); }); }
void Data::AddNew() { move([](Recordset &rs) { rs.AddNew(); }); }
void Data::Delete() { move([](Recordset &rs) { rs.Delete(); }); }

void Data::Update()
{
    recordset().Update();
    emit rowMoved();
}

void Data::writeField(const QString &field, const QVariant &value)
{
    Recordset &rs = recordset();
    rs.Edit();
    try {
        rs.SetField(field, value);
        rs.Update();
    } catch (const VbError &) {
        rs.CancelUpdate();
        emit rowMoved();  // the control shows the stored value again
        throw;
    }
    emit rowMoved();
}

bool Data::hasCurrentRow() const
{
    if (!rs_.isOpen())
        return false;
    try {
        return !rs_.Bof() && !rs_.Eof();
    } catch (const VbError &) {
        return false;
    }
}

QVariant Data::currentValue(const QString &field) const
{
    if (!hasCurrentRow())
        return {};
    try {
        return rs_.Field(field);
    } catch (const VbError &) {
        return {};  // a deleted row, an unknown field: nothing to show
    }
}

namespace {

QString textOf(const QVariant &v)
{
    if (v.isNull())
        return {};
    switch (v.typeId()) {
    case QMetaType::Bool:
        return v.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case QMetaType::Double: {
        // A single-precision column arrives as the double of its float: show it with a float's digits.
        const double d = v.toDouble();
        const float f = float(d);
        if (std::isfinite(d) && double(f) == d)
            return vbCStr(f);
        return vbCStr(d);
    }
    case QMetaType::LongLong:
    case QMetaType::Int:
        return QString::number(v.toLongLong());
    default:
        return v.toString();
    }
}

}  // namespace

QString Data::currentText(const QString &field) const { return textOf(currentValue(field)); }

QStringList Data::listOf(const QString &field) const
{
    QStringList list;
    if (!db_.isSet() || recordSource_.isEmpty())
        return list;
    try {
        Recordset snap = db_.OpenRecordset(recordSource_, dbOpenSnapshot);
        while (!snap.Eof()) {
            list << textOf(snap.Field(field));
            snap.MoveNext();
        }
        snap.Close();
    } catch (const VbError &) {
        // An unknown field or source lists what was read before it.
    }
    return list;
}

}  // namespace kw
