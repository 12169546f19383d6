#pragma once
// The correction of the measuring chain: up to five components (slots a to e), each a table of dB
// against frequency, summed at any frequency. It runs for every point of every corrected trace,
// so each slot keeps the two table rows around the last frequency (st.corrsegment) and asks its
// table only when an ascending trace crosses a row.

#include <QString>

namespace kw {

struct CorrRow {
    float frequency = 0.0f;
    float level = 0.0f;
};

// The finds correctionat runs on the table of one slot, by criterion text such as
// "frequency < 100.5"; false when no row matches or the table cannot answer.
struct CorrTable {
    virtual ~CorrTable() = default;
    virtual bool findLast(const QString &criterion, CorrRow &row) = 0;
    virtual bool findFirst(const QString &criterion, CorrRow &row) = 0;
};

// The table of slot 0..4 (a..e); nullptr leaves the slot's share out.
CorrTable *correctiontable(int slot);
// Tests and the opening of the tables put the slots' tables here.
void setcorrectiontable(int slot, CorrTable *table);

// Before the first point of a trace: the high frequency of every cached segment to 0.
void resetcorrectionsegments();

// Sets st.correction to the chain's value in dB at frequency (MHz). Called in ascending
// frequency after resetcorrectionsegments; a call below the last one extrapolates along the
// cached segment, as the cache never looks back.
void correctionat(float &frequency);

}  // namespace kw
