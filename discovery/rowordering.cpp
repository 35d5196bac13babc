#include "discovery/rowordering.h"

#include <algorithm>

namespace veltor {

int insertionRow(const QVector<int> &rowKeys, int key)
{
    return int(std::lower_bound(rowKeys.cbegin(), rowKeys.cend(), key) - rowKeys.cbegin());
}

} // namespace veltor
