#pragma once
// The key-press event of a text box: every typed character (Return 13, Backspace 8 and printable
// ones) passes the handler first, which may change it or set it to 0 to drop it.
//
//     onKeyPress(text1, [](int &key) { if (key == 'k') key = 0; });

#include <functional>

class QWidget;

namespace kw {

using KeyPressHandler = std::function<void(int &keyAscii)>;

// Installs the handler on the widget (a line edit, or a combo's line edit); it lives as long as the
// widget does.
void onKeyPress(QWidget *widget, KeyPressHandler handler);

}  // namespace kw
