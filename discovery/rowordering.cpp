#include "discovery/rowordering.h"

namespace veltor {

int insertionRow(const QVector<int> &rowKeys, int key)
{
    int row = 0;
    for (int r = 0; r < rowKeys.size(); ++r) {
        if (key > rowKeys.at(r))
            row = r + 1;
    }
    return row;
}

} // namespace veltor
