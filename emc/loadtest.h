#pragma once
// Putting the row of table test named by testname into the run state.

namespace kw {

// The test named by testname, or the first test when there is none of that name: chain, limits,
// detectors, unit, levels and the run parameters. With reloadtest set (cleared here) the band and
// the view flags follow the test too. Errors are passed over a step at a time.
void loadtest();

}  // namespace kw
