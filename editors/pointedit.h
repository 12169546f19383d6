#pragma once
// The points of the definition in an editor: reading them for the grid and the plot, storing a
// typed point, deleting one, and taking in an imported table.

#include "editors/definitionplot.h"
#include "editors/editordata.h"
#include "editors/family.h"
#include "editors/pointfile.h"

namespace kw {

// The points of data1 in its order; rows with an empty cell are read as 0 there.
DefinitionPoints readDefinitionPoints(EditorData &points);

// A number as typed into an editor box: the system's decimal mark, nothing typed is 0.
double editorNumber(const QString &text);

// The stored value of a level shown (or typed) in the editor.
float storedLevel(const LevelView &view, double shown);

// Text2's Enter: a point of the typed frequency is overwritten, otherwise added to the definition
// data2 stands on. Errors are passed over.
void storePoint(Family family, EditorData &points, EditorData &heads, const QString &frequencyText,
                const QString &levelText, const LevelView &view);

// The grid's delete key: the point of that frequency goes. Without it the current row goes.
void deletePoint(Family family, EditorData &points, float frequency);

// Import: how many of the table's frequencies the definition holds already.
int commonFrequencies(const DefinitionPoints &present, const PointTable &table);

// Writes the table's points into the definition data2 stands on: replacing all its points, or
// merging (points of equal frequency take the file's level). A frequency the table repeats, as a
// step, gives a row of its own. Levels are turned to stored values.
// Returns the number of points written.
int importPoints(Family family, EditorData &points, EditorData &heads, const PointTable &table,
                 const LevelView &view, bool replace);

// After any change to a component's points: the chain reads them anew.
void pointsChanged(Family family);

}  // namespace kw
