#pragma once
// Run-time errors passed over, one statement at a time, the way all database work of the system
// runs: a statement that fails is abandoned and the next one runs; a branch whose test fails is
// entered. The last error number stays readable, as the classic Err object keeps it.

#include "platform/vbformat.h"

#include <utility>

namespace kw {

class ResumeNext {
public:
    // Err.Number: the last error passed over since clear(), 0 when none.
    int number = 0;

    template <class Statement>
    void operator()(Statement &&statement)
    {
        try {
            std::forward<Statement>(statement)();
        } catch (const VbError &e) {
            number = e.number;
        }
    }

    // The test of an If: a condition that raises an error counts as true, so its branch runs.
    template <class Condition>
    bool test(Condition &&condition)
    {
        try {
            return std::forward<Condition>(condition)();
        } catch (const VbError &e) {
            number = e.number;
            return true;
        }
    }

    void clear() { number = 0; }
};

}  // namespace kw
