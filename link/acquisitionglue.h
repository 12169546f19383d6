#pragma once
// What the reads need of the command set and the plot.

namespace kw {

void queryreflevelplain();
void queryattenuator();
void setvmtrace();
void setreadmode();
void readallsettings();
void drawplot();

}  // namespace kw
