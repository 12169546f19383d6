#pragma once
// Key presses of a control seen before the control takes them, as the forms' key-press events
// do: the handler may change the key or swallow it.

#include <QString>
#include <functional>

class QWidget;

namespace kw {

// What a key-press handler sees and may change: the key's character code (13 Return, 8
// backspace), or 0 after it swallowed the key.
struct KeyPress {
    int ascii = 0;
};

// Installs handler on the control; a key left at 0 is swallowed, a changed one is typed instead.
void onKeyPress(QWidget *control, std::function<void(KeyPress &)> handler);

// The number boxes' rule: comma and point become the decimal mark; only digits, the decimal
// mark, backspace, minus and Return pass.
void numberKey(KeyPress &key);

}  // namespace kw
