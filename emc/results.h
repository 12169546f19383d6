#pragma once
// The results of a finished EMC run, one line for each frequency that was stepped: the levels of
// the three detectors, the two limits at that frequency as the plot draws them, the margins, a
// verdict, and the ambient where the run swept one. Read from an ".emc" file; no widgets.

#include "plot/limitwalk.h"

#include <QString>
#include <optional>
#include <vector>

namespace kw {

// Margins are result minus limit: above 0 the result exceeds the limit. A level equal to its
// limit does not exceed it.
enum class Verdict { Pass, Fail, NoLimit };

// Levels and limits are in the display unit (dBmW plus the unit's offset).
struct ResultLine {
    double frequency = 0;  // MHz
    QChar polarisation;    // 'H' or 'V' by the larger peak; null when the run recorded neither
    std::optional<double> peak, qpeak, average;
    std::optional<double> peakLimit, averageLimit;
    // QPeak (Peak where no quasi-peak was measured) against the peak limit; Average against
    // the average limit.
    std::optional<double> peakMargin, averageMargin;
    bool marginFromQPeak = false;
    std::optional<double> ambient;  // the larger of the two ambient sweeps
    bool ambientNear = false;       // the ambient lies within 6 dB of the peak, or above it
    Verdict verdict = Verdict::NoLimit;

    // The larger of the two margins; none without a limit.
    std::optional<double> worstMargin() const;
};

struct ResultTable {
    QString test;           // the name of the test
    QString configuration;  // of the test, from the application database; empty when unknown
    double date = 0;        // of the run
    int distance = 0;       // metres, of the configuration; 0 unknown
    QString unit;           // display unit
    double unitOffset = 0;  // display unit over dBmW
    bool peakLimitLog = false, averageLimitLog = false;
    QString peakLimitName, averageLimitName;
    std::vector<ResultLine> lines;  // worst margin first; lines without a limit at the end
    QString error;                  // why nothing could be read; empty otherwise

    Verdict overall() const;
    int failed() const;
};

// A gap in a table: no value, the classic -1000, or anything below it.
constexpr double kNoLevel = -1000.0;
inline bool hasLevel(std::optional<double> v) { return v && *v > kNoLevel + 0.5; }

// The level of a limit at frequency f (MHz): straight between its points, or straight in the
// logarithm of the frequency for a logarithmic limit. Where two points share a frequency (a step
// of the limit) the lower level holds there. Nothing outside the limit's frequencies.
std::optional<double> limitAt(const std::vector<LimitRow> &rows, double f, bool logarithmic);

// Reads the table of the ".emc" file at path. The unit of the file and the test's configuration
// are looked up in the application database (st.db); an unknown unit shows dBmW.
ResultTable readResults(const QString &path);

QString verdictText(Verdict v);

// The offset of a display unit over dBmW from table unit of the application database (st.db);
// nothing when the unit is not there.
std::optional<double> unitOffset(const QString &unitName);

}  // namespace kw
