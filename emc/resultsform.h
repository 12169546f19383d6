#pragma once
// The form results, "Results": the table of the ".emc" file shown, worst margin first, under a
// header with the test and the overall verdict. A click on a line puts cursor 1 of grafik there.
// Also the "Data" menu's "Results" and "Export" entries and the Results button of emc.

#include "emc/results.h"

#include <QWidget>

class QBoxLayout;
class QLabel;
class QPushButton;
class QTableWidget;

namespace kw {

class Mdi;

class ResultsForm : public QWidget {
    Q_OBJECT
public:
    explicit ResultsForm(QWidget *parent = nullptr);
    // Reads the table of the file shown again.
    void refresh();
    const ResultTable &table() const { return table_; }
    QTableWidget *grid() const { return grid_; }

protected:
    void showEvent(QShowEvent *event) override;

private:
    void fillGrid();
    void lineChosen(int row);

    QLabel *header_ = nullptr;
    QLabel *verdict_ = nullptr;
    QLabel *note_ = nullptr;
    QTableWidget *grid_ = nullptr;
    ResultTable table_;
    bool placed_ = false;
};

// The ".emc" or ".mes" file the plot shows; empty when it shows live traces or no file.
QString shownMeasurementFile();

// Puts cursor 1 of grafik on the judged level of a line.
void putCursorOn(const ResultLine &line, double unitOffset);

// "Data > Export": the shown file's measurement, or its results, into a CSV file the operator
// names. A box says why when there is nothing to export or the file can't be written.
void exportMeasurementCsv();
void exportResultsCsv();

void registerResultsForms();
// Shows results, reading the file shown again.
void showResults();
// "Results" after "Save" in the "Data" menu, with "Export" and its two entries after it.
void resultsMenu(Mdi &window);
// The button of emc that shows results.
QPushButton *resultsButton(QWidget *parent);

}  // namespace kw
