#include "emc/resultsform.h"

#include "platform/dialogs.h"
#include "shell/mdi.h"
#include "shell/state.h"
#include "store/csvexport.h"

#include <QAction>
#include <QFileInfo>
#include <QMenu>

namespace kw {

namespace {

const QString kExportTitle = QStringLiteral("Export");

// The CSV file to write, beside the measurement file and named after it; empty when cancelled.
QString chooseCsv(const QString &title, const QString &measurementFile, const QString &suffix)
{
    const QFileInfo source(measurementFile);
    FileRequest request;
    request.save = true;
    request.title = title;
    request.filter = QStringLiteral("CSV (*.csv)|*.csv");
    request.defaultExt = QStringLiteral("csv");
    request.flags = FileRequest::OverwritePrompt | FileRequest::HideReadOnly | FileRequest::PathMustExist;
    request.dir = source.absolutePath() + QLatin1Char('/') + source.completeBaseName() + suffix + QStringLiteral(".csv");
    const std::optional<QString> chosen = dialogs().chooseFile(request);
    if (!chosen || chosen->trimmed().isEmpty())
        return QString();
    QString path = chosen->trimmed();
    if (QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".csv");
    return path;
}

void write(const QString &path, const QByteArray &bytes)
{
    QString error;
    if (!writeTextFile(path, bytes, &error))
        dialogs().message(kExportTitle, error);
}

QAction *entry(QMenu *menu, const char *name, const char *caption, void (*command)())
{
    QAction *action = menu->addAction(QString::fromUtf8(caption));
    action->setObjectName(QString::fromLatin1(name));
    QObject::connect(action, &QAction::triggered, action, command);
    return action;
}

}  // namespace

void exportMeasurementCsv()
{
    const QString file = shownMeasurementFile();
    if (file.isEmpty()) {
        dialogs().message(kExportTitle, QStringLiteral("No measurement file is shown: load one with Data > Load > Measurements, "
                                                       "or save the live traces first."));
        return;
    }
    const QString path = chooseCsv(QStringLiteral("Export measurement (CSV)"), file, QString());
    if (path.isEmpty())
        return;
    QString error;
    const QByteArray bytes = measurementCsv(file, csvStyle(), &error);
    if (bytes.isEmpty())
        dialogs().message(kExportTitle, error);
    else
        write(path, bytes);
}

void exportResultsCsv()
{
    const QString file = shownMeasurementFile();
    const ResultTable table = file.isEmpty() ? ResultTable{} : readResults(file);
    if (file.isEmpty() || !table.error.isEmpty()) {
        dialogs().message(kExportTitle, file.isEmpty() ? QStringLiteral("No EMC test file is shown: run a test, or load one "
                                                                        "with Data > Load > Measurements.")
                                                       : table.error);
        return;
    }
    const QString path = chooseCsv(QStringLiteral("Export results (CSV)"), file, QStringLiteral(" results"));
    if (!path.isEmpty())
        write(path, resultsCsv(table, csvStyle()));
}

void resultsMenu(Mdi &window)
{
    QMenu *data = window.findChild<QMenu *>(QStringLiteral("mnuKonfiguration"));
    QMenu *save = data ? data->findChild<QMenu *>(QStringLiteral("mnusave")) : nullptr;
    if (!save)
        return;
    const QList<QAction *> actions = data->actions();
    const qsizetype at = actions.indexOf(save->menuAction());
    QAction *before = at >= 0 && at + 1 < actions.size() ? actions[at + 1] : nullptr;

    auto *results = new QAction(QStringLiteral("&Results"), data);
    results->setObjectName(QStringLiteral("mnuresults"));
    QObject::connect(results, &QAction::triggered, results, &showResults);
    data->insertAction(before, results);

    auto *exports = new QMenu(QStringLiteral("Exp&ort"), data);
    exports->setObjectName(QStringLiteral("mnuexport"));
    exports->menuAction()->setObjectName(QStringLiteral("mnuexport"));
    entry(exports, "mnuexpmeasurement", "&Measurement (CSV)...", &exportMeasurementCsv);
    entry(exports, "mnuexpresults", "&Results (CSV)...", &exportResultsCsv);
    data->insertMenu(before, exports);
}

}  // namespace kw
