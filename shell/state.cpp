#include "shell/state.h"

namespace kw {

State st;

void resetState()
{
    st = State{};
    for (int row = 1; row <= 10; ++row)
        st.digits[row] = QString::number(row - 1);
}

}  // namespace kw
