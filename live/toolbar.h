#pragma once

namespace kw {

class Mdi;

// The buttons of the tool bar panel beside RM and Auto: Print, Read, Set/Read, Erase, Notes,
// Toolbox. Print, Notes and Toolbox open forms that join them when those forms exist.
void addToolButtons(Mdi &window);

}  // namespace kw
