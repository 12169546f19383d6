#pragma once
// The quasi-peak detector worked out on the PC: a capacitor (st.qpstate, linear amplitude) that
// charges and discharges toward each sample of a zero-span block by fixed fractions.

namespace kw {

struct QpDivisors {
    double charge;
    double discharge;
};

// The divisors of the qpeak table (tauf30 ... tent1000), by the band of the frequency: the lower
// band below 30 MHz, the upper from 30 MHz on. Used for the blocks of a Step test.
QpDivisors tabledivisors(float centerfreq);
// The fixed divisors of the marked rows of a Sweep + Step test: 2, and 320 or 1100; a changed
// qpeak table does not touch them.
QpDivisors fixeddivisors(float centerfreq);

// One sample of amplitude u: qpstate moves by the difference over the divisor of its direction.
// A zero divisor raises VbError(11).
void qpstep(double u, const QpDivisors &divisors);

}  // namespace kw
